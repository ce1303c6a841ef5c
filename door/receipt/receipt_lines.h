// The lines of the language that make a receipt, by numbers of commands and fields: the words of
// the definition file play no part, and no text can gain a field or a line.
#pragma once

#include <string>
#include <vector>

#include "door/receipt/receipt_request.h"

namespace lorimat::door {

struct ReceiptField {
  int number = 0;
  std::string value;
  bool is_text = false;  // else digits and a point
};

struct ReceiptLine {
  int opcode = 0;
  std::vector<ReceiptField> fields = {};
};

std::vector<ReceiptLine> LinesOf(const ReceiptRequest& receipt);

// "#10 #1=1, #4=3.90, #7='CAFFE'"; `quote` is what quotes a text.
std::string LineText(const ReceiptLine& line, char quote);

}  // namespace lorimat::door
