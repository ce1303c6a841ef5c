// What the seller tells about each line that was answered with success: one record, written
// whole to a pipe before the next line is sent.
#pragma once

#include <cstdint>

struct Answer {
  enum Kind : int32_t { kReady, kSale, kInvoice, kRefund, kClosed, kArticle };
  int32_t kind = kReady;
  int32_t closure = 0;  // the one that a document falls under, or that was made
  int32_t number = 0;   // of an article: how many have been sent
  int64_t total = 0;    // ten-thousandths
};
