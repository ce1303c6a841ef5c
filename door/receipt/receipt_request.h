// A document as a client asks for it, without the language: its fields read and found good, its
// texts in the code page of the device.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "door/log/document_kind.h"

namespace lorimat::door {

// A discount or a surcharge, in ten-thousandths of the currency or of a percent.
struct ReceiptAdjustment {
  bool is_surcharge = false;
  bool is_percentage = false;
  int64_t value = 0;
};

struct ReceiptItem {
  int department = 0;   // 0 where the article says it
  std::string article;  // empty for none
  std::string description;
  int32_t quantity = 0;          // thousandths; 0 where none was given
  std::optional<int64_t> price;  // ten-thousandths, of a piece; else the preset one
  bool is_refund = false;
  bool is_void = false;  // takes an earlier line back
  std::optional<ReceiptAdjustment> adjustment;
};

struct ReceiptPayment {
  int tender = 1;                 // as CHIU names it
  std::optional<int64_t> amount;  // ten-thousandths; else the rest
};

// An earlier document.
struct ReceiptReference {
  int closure = 0;
  int number = 0;
  std::string date;                       // DDMMYY
  std::string serial;                     // of another register
  std::optional<DocumentKind> kind = {};  // a receipt or an invoice

  // Whether it is one of the register with this serial number, as that itself decides it: by none,
  // or by its own, however that is written.
  bool IsOf(const std::string& own_serial) const;
};

struct ReceiptRequest {
  static constexpr size_t kCustomerLines = 5;
  static constexpr size_t kMostItems = 1000;
  static constexpr size_t kMostPayments = 20;
  static constexpr size_t kMostTrailerLines = 100;
  static constexpr size_t kLongestText = 50;  // that no command of the language cuts
  static constexpr size_t kLongestArticle = 20;

  DocumentKind kind = DocumentKind::kSale;
  std::vector<ReceiptItem> items;  // empty for a sale that the device makes void as a whole
  std::optional<ReceiptAdjustment> subtotal;
  std::vector<ReceiptPayment> payments;
  std::vector<std::string> customer;
  std::string tax_code;
  std::string lottery_code;
  std::optional<ReceiptReference> refers_to;
  std::vector<std::string> trailer;
};

// What is wrong with one, for the client's developer: a code that stays, the place as a JSON
// pointer, and the cause as an English sentence.
struct ReceiptProblem {
  int status = 400;
  std::string code;
  std::string pointer;
  std::string detail;
};

// Reads the body, which has desk, reference and expires_s besides: these are not looked at. The
// first thing that is wrong is told.
std::optional<ReceiptProblem> ReadReceipt(const nlohmann::json& body, ReceiptRequest* receipt);

}  // namespace lorimat::door
