// What a check of the journal cannot know: columns, whole tables ("*"), and rows of `setting`, that
// nothing is compared with.
#pragma once

#include <string>

namespace lorimat {

struct JournalException {
  const char* table;
  const char* column;
  const char* why;
};
inline constexpr JournalException kJournalExceptions[] = {
    {"roll", "*", "a copy of the paper; the journal keeps what counts of it"},
    {"header_line", "*", "printed on the next document, and kept with it"},
    {"logo", "*", "printed on the next document"},
    {"article", "*", "a table to sell from: each line holds what was sold, at which price"},
    {"programmed_key", "*", "what a key does"},
    {"setting", "key", "the position of the key"},
    {"setting", "operator", "who is at the register now; each document has its own"},
    {"setting", "drawer_openings", "counts nothing that is registered"},
    {"setting", "faults", "set from outside, by design"},
    {"setting", "answer_due", "for the notice of the next start"},
    {"setting", "courtesy_text", "printed on the next document, and kept with it"},
    {"setting", "trailer_line_1", "the same"},
    {"setting", "header_logo", "printed on the next document"},
};

inline bool IsJournalException(const std::string& table, const std::string& column) {
  for (const JournalException& one : kJournalExceptions) {
    if (table == one.table && (column == one.column || std::string("*") == one.column)) return true;
  }
  return false;
}

}  // namespace lorimat
