// ELF loaders know constructors and destructors of the shared object, and no threads: the
// two thread notifications do not happen.

#include "lorimatrt/loader.h"

namespace {

__attribute__((constructor)) void load() {
  lorimat_init();
  loader_notification(kProcessAttach);
}

__attribute__((destructor)) void unload() {
  loader_notification(kProcessDetach);
  lorimat_destroy();
}

}  // namespace
