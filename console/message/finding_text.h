// The sentences of what a check finds, in the reader's language.
#pragma once

#include <span>
#include <string>

#include "console/message/finding.h"

namespace lorimat::console {

// A cause in English, for Translated(); the fields are the finding's arguments.
struct FindingRow {
  FindingCause cause;
  Severity severity;
  const char* rule;
  int code;  // what the library answers to the line; 0 for OK, or where that depends
  const char* what;
  const char* effect;  // what the library does with it; may be empty
  const char* remedy;  // what to write instead; empty where a suggestion says all
};

// By cause, each once.
std::span<const FindingRow> FindingRows();

// With texts as they are: whoever shows them on a terminal takes Shown() of them.
struct FindingSentences {
  std::string what;
  std::string effect;
  std::string remedy;  // none beside a suggestion, which is shorter than any advice
};

FindingSentences SentencesOf(const Finding& finding);

// What was found, alone and with a better word behind it.
std::string WhatText(const Finding& finding);
std::string WhatAndBetterWord(const Finding& finding);

}  // namespace lorimat::console
