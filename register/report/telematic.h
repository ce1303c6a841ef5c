// The telematic summary of a day as an XML file, the lottery documents, and what of both has
// been sent. The agency of this register is its outbox: a folder, or nothing at all.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "register/core/core.h"

namespace lorimat {

// The summary of one closing.
std::string SummaryXml(const RegisterCore& core, const Closure& closure);

class TelematicDesk {
 public:
  explicit TelematicDesk(RegisterCore& core) : core_(core) {}

  // Sends the summaries that wait, oldest first. One whose file cannot be written goes on
  // waiting with all behind it: RTF_E_FAILURE. Nothing to send is a success.
  int SendSummaries();
  // Writes those that wait to a file; they go on waiting. RTF_E_NOEXIST when there is none.
  int ExportSummaries(std::string_view file) const;
  // Writes the summaries of a range of closings to a file. Options: 0 all, 1 those that wait,
  // 2 those that were sent. RTF_E_NOEXIST when there is none.
  int SaveSummaries(int from, int to, std::string_view file, int options) const;

  // Sends the lottery documents that wait.
  int SendLottery();
  // Writes those that wait, or those of a range of documents (closure and number at both ends),
  // to a file. RTF_E_NOEXIST when there is none.
  int SavePendingLottery(std::string_view file) const;
  int SaveLottery(int from_closure, int from_number, int to_closure, int to_number,
                  std::string_view file) const;

 private:
  int WriteSummaries(const std::vector<Closure>& closures, std::string_view file) const;
  int WriteLottery(const std::vector<StoredDocument>& documents, std::string_view file) const;
  std::string OutboxFile(std::string_view name) const;
  int WriteOut(std::string_view file, std::string_view xml) const;

  RegisterCore& core_;
};

}  // namespace lorimat
