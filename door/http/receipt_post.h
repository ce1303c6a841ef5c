// The body of a POST of a receipt, on its way to a job or to what a dry run answers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "door/http/api.h"
#include "door/receipt/receipt_request.h"
#include "door/receipt/receipt_sums.h"

namespace lorimat::door {

class ReceiptPost {
 public:
  explicit ReceiptPost(const std::string& body);

  // What is wrong with it; nothing as long as all is well.
  const std::optional<Reply>& problem() const { return problem_; }
  const ReceiptRequest& receipt() const { return receipt_; }
  // Without key and effect; with its lines behind Prepare.
  const NewJob& job() const { return job_; }
  bool has_desk() const { return has_desk_; }
  // Seconds.
  int64_t expires_s() const { return expires_s_; }

  // Works out sums and lines. `tables` is null where the device does not tell them.
  void Prepare(const DeviceTables* tables, LineJudge& judge);
  // What Prepare has found.
  Reply DryRun() const;

 private:
  void Refuse(const std::optional<ReceiptProblem>& problem);

  std::optional<Reply> problem_;
  ReceiptRequest receipt_;
  ReceiptSums sums_;
  NewJob job_;
  int64_t expires_s_ = 0;
  bool has_desk_ = false;
};

}  // namespace lorimat::door
