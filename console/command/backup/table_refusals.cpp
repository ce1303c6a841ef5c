#include "console/command/backup/table_refusals.h"

#include <algorithm>
#include <iterator>

#include "recording/doing.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

// By which a device says that it has no such table, or no such row in it.
constexpr int kHasNot[] = {RTF_E_ILLEGAL, RTF_E_NOEXIST, RTF_E_DEPRECATED, RTF_EFPTR_BAD_VAT};

bool IsUnanswered(ClientOperation operation, int result) {
  // A refused row may be the end of the articles; where it is not, the line fails.
  if (operation == ClientOperation::kDownloadTable) return false;
  const recording::Doing doing = recording::DoingOf(operation);
  if (doing != recording::Doing::kReads && doing != recording::Doing::kRecords) return false;
  return result != RTF_SUCCESS &&
         std::find(std::begin(kHasNot), std::end(kHasNot), result) == std::end(kHasNot);
}

std::string ShownCall(ClientOperation operation, const conversation::CallSlip& slip) {
  std::string shown = std::string(ClientOperationName(operation)) + "(";
  for (size_t i = 0; i < slip.arguments.size(); ++i) {
    shown += (i == 0 ? "" : ", ") + slip.arguments[i].Shown();
  }
  return shown + ")";
}

}  // namespace

void TableRefusals::Begin() {
  answered_ = 0;
  first_.clear();
  unanswered_.clear();
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
    first_ = ShownCall(operation, slip);
  }
  if (unanswered_.empty() && IsUnanswered(operation, result)) {
    unanswered_ = ShownCall(operation, slip);
    unanswered_result_ = result;
  }
  return result;
}

}  // namespace lorimat::console
