// Training: documents print with a mark, and nothing is registered, numbered or counted.
#include "register/virtual_register.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

int VirtualRegister::BeginTraining() {
  return Perform(__func__, [&] {
    if (core_.setup.training || !core_.Allows(Operation::kTraining)) return RTF_EFPTR_WRONG_STATE;
    core_.setup.training = true;
    return RTF_SUCCESS;
  });
}

int VirtualRegister::EndTraining() {
  return Perform(__func__, [&] {
    if (!core_.setup.training || !core_.Allows(Operation::kTraining)) return RTF_EFPTR_WRONG_STATE;
    core_.setup.training = false;
    return RTF_SUCCESS;
  });
}

}  // namespace lorimat
