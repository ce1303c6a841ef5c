// The state of a device in words: the line above the prompt, and ".status".
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "console/check/translator_memory.h"
#include "console/device/device.h"
#include "console/message/json_text.h"

namespace lorimat::console {

// "RECEIPT OPEN": what the printer is doing.
std::string PrinterStateText(const DeviceState& device);

// "RECEIPT OPEN  2 items  subtotal 4,00  key registering". What is out of the ordinary stands at
// the end: training, faults that wait, and what the next sale does, if that is told.
std::string StatusLine(const DeviceState& device, const std::string& next_sale = {});

// The same and more, an entry for each, in lines of at most so many columns; 0 gives each one
// line. `next_sale` tells what the next sale does; `more` are the rows that the device has besides.
std::string StatusText(const DeviceState& device, const std::string& next_sale,
                       const std::vector<std::pair<std::string, std::string>>& more,
                       size_t columns);

// "the receipt is open, with 2 items and a subtotal of 4,00"; empty when nothing is open.
std::string OpenDocumentWords(const DeviceState& device);

// The state for a program: what the line above the prompt tells, as values.
Json StateJson(const DeviceState& device, TranslatorMemory::NextSale next_sale);

}  // namespace lorimat::console
