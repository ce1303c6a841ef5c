// The state of the register in words: the line above the prompt, and ".status".
#pragma once

#include <cstddef>
#include <string>

#include "console/check/translator_memory.h"
#include "console/message/json_text.h"

namespace lorimat {
class VirtualRegister;
}

namespace lorimat::console {

// "RECEIPT OPEN": what the printer is doing.
std::string PrinterStateText(const lorimat::VirtualRegister& device);

// "RECEIPT OPEN  2 items  subtotal 4,00  key registering". What is out of the ordinary stands at
// the end: training, faults that wait, and what the next sale does, if that is told.
std::string StatusLine(const lorimat::VirtualRegister& device, const std::string& next_sale = {});

// The same and more, an entry for each, in lines of at most so many columns; 0 gives each one
// line. `file` is where the register is kept; empty in memory. `next_sale` tells what the next sale
// does.
std::string StatusText(const lorimat::VirtualRegister& device, const std::string& file,
                       const std::string& next_sale, size_t columns);

// "the receipt is open, with 2 items and a subtotal of 4,00"; empty when nothing is open.
std::string OpenDocumentWords(const lorimat::VirtualRegister& device);

// The state for a program: what the line above the prompt tells, as values.
Json StateJson(const lorimat::VirtualRegister& device, TranslatorMemory::NextSale next_sale);

}  // namespace lorimat::console
