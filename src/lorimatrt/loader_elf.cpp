// ELF loaders know constructors and destructors of the shared object, and no threads: the
// two thread notifications do not happen.

#include "lorimatrt/loader.h"

namespace {

__attribute__((constructor)) void Load() {
  lorimat_init();
  LoaderNotification(kProcessAttach);
}

__attribute__((destructor)) void Unload() {
  LoaderNotification(kProcessDetach);
  lorimat_destroy();
}

}  // namespace
