#include "console/command/backup/table_refusals.h"

#include "rpccommon/services/rtfconst.h"

namespace lorimat::console {

void TableRefusals::Begin() {
  answered_ = 0;
  first_.clear();
}

int TableRefusals::Answer(ClientOperation operation, const conversation::CallSlip& slip,
                          const conversation::Forward& forward) {
  const int result = forward(device_);
  // What the library does around each line is no part of a table.
  if (operation == ClientOperation::kLogTrace || operation == ClientOperation::kLogError) {
    return result;
  }
  if (result != RTF_E_ILLEGAL) {
    ++answered_;
  } else if (first_.empty()) {
    first_ = std::string(ClientOperationName(operation)) + "(";
    for (size_t i = 0; i < slip.arguments.size(); ++i) {
      first_ += (i == 0 ? "" : ", ") + slip.arguments[i].Shown();
    }
    first_ += ")";
  }
  return result;
}

}  // namespace lorimat::console
