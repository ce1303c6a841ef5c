// What the library does when the loader brings it in and lets it go.
#pragma once

// Reasons of a loader notification, with the values of the Windows loader.
enum LoaderReason {
  kProcessDetach = 0,
  kProcessAttach = 1,
  kThreadAttach = 2,
  kThreadDetach = 3,
};

// Ahead of the process attach notification: constructs a first translator object, which
// that notification replaces and which is never used.
void lorimat_init();

// One notification: makes or destroys the translator object, and writes its line to
// standard output. Always true; an unknown reason does nothing.
bool LoaderNotification(unsigned long reason);

// Behind the process detach notification: destroys an object that is left, and writes
// "library destroy\n" to standard error.
void lorimat_destroy();
