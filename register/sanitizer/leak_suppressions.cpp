// What LeakSanitizer is not to report in a program that draws the paper. It goes into every such
// program that is built with the sanitizers, so that they agree however they are started.
//
// libfontconfig: pango keeps a thread's font map, and with it the patterns of the fonts in use,
// until the process ends; some are then reachable no more. It is done once, whatever is drawn:
// one picture and a hundred leave the same.
extern "C" {

const char* __lsan_default_suppressions();
const char* __lsan_default_options();

__attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}

// The list of what was suppressed would stand on standard error, among a program's own lines.
__attribute__((visibility("default"))) const char* __lsan_default_options() {
  return "print_suppressions=0";
}

}  // extern "C"
