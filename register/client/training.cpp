// Training: documents print with a mark, and nothing is registered, numbered or counted.
#include "register/client/virtual_register.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

int VirtualRegister::BeginTraining() {
  return Perform(ClientOperation::kBeginTraining, [&] {
    if (!core_.Allows(Operation::kTraining)) return RTF_EFPTR_WRONG_STATE;
    if (core_.setup.training) return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kTraining);
    core_.setup.training = true;
    return RTF_SUCCESS;
  });
}

int VirtualRegister::EndTraining() {
  return Perform(ClientOperation::kEndTraining, [&] {
    if (!core_.Allows(Operation::kTraining)) return RTF_EFPTR_WRONG_STATE;
    if (!core_.setup.training) return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kNotTraining);
    core_.setup.training = false;
    return RTF_SUCCESS;
  });
}

}  // namespace lorimat
