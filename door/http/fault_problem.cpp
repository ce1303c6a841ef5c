#include "door/http/fault_problem.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace lorimat::door {
namespace {

struct FaultRow {
  LineFault fault;
  const char* code;
  const char* what;
};

constexpr FaultRow kFaults[] = {
    {LineFault::kNotAllowed, "line_not_allowed", "a job may not hold this line"},
    {LineFault::kForOperator, "line_not_allowed", "a desk of an operator alone may send this line"},
    {LineFault::kNamesFile, "line_not_allowed", "it names a file"},
    {LineFault::kMarkOfJob, "line_not_allowed", "it has the mark of a job that is not over"},
    {LineFault::kSecondDocument, "two_documents",
     "it sells or opens behind a line that has paid: a job is one document"},
    {LineFault::kSecondEffect, "two_documents",
     "a job is one document, or one day closing, or what has no number"},
};

}  // namespace

Reply FaultProblem(const JudgedFault& fault) {
  const auto* row = std::find_if(std::begin(kFaults), std::end(kFaults),
                                 [&](const FaultRow& one) { return one.fault == fault.fault; });
  std::string detail = fmt::format("line {}", fault.line);
  if (!fault.command.empty()) detail += " (" + fault.command + ")";
  detail += fmt::format(": {}", row->what);
  if (!fault.field.empty()) detail += fmt::format(", in {}", fault.field);
  return Problem(422, row->code, detail);
}

}  // namespace lorimat::door
