// The tenders of a payment, as a line names them and as the client does.
#pragma once

#include <cstddef>
#include <cstdio>

#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/buffers.h"

struct TenderNumber {
  long number;
  const char* identifier;
};

// The language's tender numbers and the client's identifiers, gaps and doubled rows included.
inline constexpr TenderNumber kTenderNumbers[] = {
    {1, "0"},  {6, "0"},  {7, "0"},  {8, "0"},  {9, "0"}, {20, "0"}, {3, "1"},
    {22, "1"}, {4, "2"},  {16, "2"}, {14, "3"}, {5, "4"}, {23, "4"}, {10, "5"},
    {15, "5"}, {11, "6"}, {12, "7"}, {13, "8"}, {2, "9"}, {21, "9"}, {30, "30"},
};

inline constexpr size_t kTenderSize = 24;

// The identifier that the client knows a tender by; `text` is the number as the line has it.
inline void TenderIdentifier(char (&identifier)[kTenderSize], long number, const char* text) {
  for (const TenderNumber& tender : kTenderNumbers) {
    if (tender.number == number) {
      CopyText(identifier, tender.identifier);
      return;
    }
  }
  if (number >= FunctionCode::kSubTender01 && number <= FunctionCode::kLastSubTender) {
    std::snprintf(identifier, kTenderSize, "%ld", number - 115);
    return;
  }
  // Any other number, and any word, is the client's to understand.
  CopyText(identifier, text);
}
