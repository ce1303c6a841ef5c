// What the body of a request comes to, for a device with these tables, or null for one that does
// not tell them.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "door/receipt/receipt_request.h"
#include "door/receipt/receipt_sums.h"

namespace lorimat::door {

inline std::optional<ReceiptProblem> SumWith(const nlohmann::json& body, const DeviceTables* device,
                                             ReceiptSums* sums) {
  ReceiptRequest receipt;
  const std::optional<ReceiptProblem> problem = ReadReceipt(body, &receipt);
  EXPECT_FALSE(problem) << problem->code << " " << problem->pointer << " " << problem->detail;
  return SumReceipt(receipt, device, sums);
}

inline ReceiptSums SumsWith(const nlohmann::json& body, const DeviceTables* device) {
  ReceiptSums sums;
  const std::optional<ReceiptProblem> problem = SumWith(body, device, &sums);
  EXPECT_FALSE(problem) << problem->code << " " << problem->pointer << " " << problem->detail;
  return sums;
}

// "refused /items/0"; empty where there is no problem.
inline std::string RefusalWith(const nlohmann::json& body, const DeviceTables* device) {
  ReceiptSums sums;
  const std::optional<ReceiptProblem> problem = SumWith(body, device, &sums);
  if (!problem) return {};
  EXPECT_EQ(problem->status, 422);
  EXPECT_FALSE(problem->detail.empty());
  return problem->code + " " + problem->pointer;
}

}  // namespace lorimat::door
