// What the register refused, in a sentence of the user's language.
#pragma once

#include <span>
#include <string>

#include "register/value/refusal.h"

namespace lorimat::console {

// How the sentence of a cause is made. The fields of the text are filled in their order, each by
// the letter at its place:
//
//   n number      a amount        q quantity     p percentage
//   s subject     k key position  c step into service
//   d document (closure and number)   e message of the system   t the text of the refusal
//   w time
struct RefusalSentence {
  lorimat::RefusalCause cause;
  const char* fields;
  const char* text;
};

// One for each cause, but for kUnknown, and kState, whose sentence is made of two.
std::span<const RefusalSentence> RefusalSentences();

// The sentence; empty when the cause is not known.
std::string RefusalText(const lorimat::Refusal& refusal);

// The name of a subject: "the tax code".
std::string SubjectText(lorimat::Subject subject);

}  // namespace lorimat::console
