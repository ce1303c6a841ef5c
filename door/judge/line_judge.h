// What a job may hold, judged before any of it is sent: by opcodes and numbers of fields, as the
// translator's own parser reads them, whatever words the lines were written with.
#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "console/check/language.h"
#include "door/log/job.h"

namespace lorimat::door {

enum class LineFault : uint8_t {
  kNotAllowed,      // no desk may send it
  kForOperator,     // a desk of an operator may
  kNamesFile,       // of the server
  kSecondDocument,  // behind one that has been paid
  kSecondEffect,    // a job has one effect
  kMarkOfJob,       // by which another job is known
};

struct JudgedFault {
  LineFault fault = LineFault::kNotAllowed;
  int line = 0;         // from 1
  std::string command;  // its name; empty for one without
  std::string field;    // of kNamesFile, and of kMarkOfJob
};

struct Judged {
  std::optional<JudgedFault> fault = {};
  // The first line that the translator does not understand, with its code.
  std::optional<LineAnswer> refused = {};
  JobEffect effect = JobEffect::kOther;
  DocumentKind kind = DocumentKind::kSale;  // that its document is opened as
  std::vector<bool> pays = {};              // for each line: whether it may end a fiscal document
  std::vector<bool> voids = {};             // for each line: whether it may take an open one back
  std::vector<bool> leaves = {};  // for each line: whether it prints or programmes, without number
  // The sale that a line makes void as a whole, without room for a mark; its numbers are 0 where it
  // is the last document. Nothing without such a line, or where it does not name a sale whole.
  std::optional<DocumentName> voids_whole = {};
  bool may_hold_mark = false;  // what has the form of one stands in a field
};

class LineJudge {
 public:
  // The words of a definition file. Throws console::Failure with place and cause.
  explicit LineJudge(const std::string& definition_file);

  // Lines in the code page of the device, without control characters. Several threads may ask.
  Judged Judge(const std::vector<std::string>& lines, bool is_operator);

  // The first line with one of these marks of jobs in a field. Several threads may ask.
  std::optional<JudgedFault> FindMark(const std::vector<std::string>& lines,
                                      const std::set<std::string>& marks);

  // A field's number and what it holds.
  using Fields = std::vector<std::pair<int, std::string>>;
  // What quotes a text.
  char quote() const;
  // Whether the parser finds this opcode, these fields and no other ones in a line. Several threads
  // may ask.
  bool ReadsAs(const std::string& line, int opcode, const Fields& fields);

 private:
  std::mutex mutex_;
  console::Language language_;
};

// Class, index and causes of a result code, in English; empty for 0.
std::string ExplainAnswer(long code);

}  // namespace lorimat::door
