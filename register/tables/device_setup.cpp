#include "register/tables/device_setup.h"

#include "register/value/row_encoding.h"

namespace lorimat {

std::string ToRecord(const ClockSetBack& back) {
  RowEncoder record;
  record.Number(back.from).Number(back.to).Number(back.document).Number(back.closure);
  return record.Take();
}

std::optional<ClockSetBack> ReadClockSetBack(std::string_view text) {
  RowDecoder record(text);
  ClockSetBack back;
  back.from = record.Number();
  back.to = record.Number();
  back.document = record.Number();
  back.closure = record.Number();
  if (!record.done()) return std::nullopt;
  return back;
}

}  // namespace lorimat
