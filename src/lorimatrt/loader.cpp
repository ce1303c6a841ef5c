#include "lorimatrt/loader.h"

#include <cstdio>
#include <new>

#include "lorimatrt/instance.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace {

// The first object lives in the module itself: it is never released, and must not keep
// memory of the host's when the library is unloaded.
alignas(EcrCmdCommand) unsigned char first_object[sizeof(EcrCmdCommand)];
bool instance_is_first = false;

void WriteLine(const char* line) {
  std::puts(line);
  std::fflush(stdout);
}

// Destroys the live object. The pointer is cleared, so that lorimat_destroy, which runs
// behind the detach notification, finds nothing to destroy again.
void DestroyInstance() {
  if (translator_instance == nullptr) return;
  if (instance_is_first) {
    translator_instance->~EcrCmdCommand();
  } else {
    delete translator_instance;
  }
  translator_instance = nullptr;
}

}  // namespace

void lorimat_init() {
  translator_instance = new (first_object) EcrCmdCommand;
  instance_is_first = true;
}

bool LoaderNotification(unsigned long reason) {
  switch (reason) {
    case kProcessAttach: {
      EcrCmdCommand* live = new (std::nothrow) EcrCmdCommand;
      // Without memory the first object stays in use.
      if (live != nullptr) {
        translator_instance = live;
        instance_is_first = false;
      }
      WriteLine("Load working...");
      break;
    }
    case kProcessDetach:
      DestroyInstance();
      WriteLine("Unload working...");
      break;
    case kThreadAttach:
      WriteLine("ThreadLoad working...");
      break;
    case kThreadDetach:
      WriteLine("ThreadUnload working...");
      break;
    default:
      break;
  }
  return true;
}

void lorimat_destroy() {
  DestroyInstance();
  std::fputs("library destroy\n", stderr);
  std::fflush(stderr);
}
