// A shared library by hand, on either platform.
#pragma once

#include <string>

namespace conversation {

// Loads a library that the process does not hold yet. Null, with the system's cause, where that
// fails.
void* OpenLibrary(const std::string& path, std::string* cause);

// Whether the process holds the library.
bool IsLoaded(const std::string& path);

// Null for a name that the library does not export.
void* FindFunction(void* library, const char* name);

void CloseLibrary(void* library);

}  // namespace conversation
