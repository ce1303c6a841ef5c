// A conversation file, read: what is set up, said, expected and compared, step by step.
// HACKING.md tells the format. Lines are counted as they are with the tables written out;
// `InFile` turns them into those of the file.
#pragma once

#include <string>
#include <vector>

#include "recording/conversation/script_lines.h"
#include "recording/conversation/script_text.h"

namespace conversation {

// A trace line of the translator.
struct Trace {
  bool error = false;
  std::string text;
};

struct Step {
  enum Kind {
    kSend,          // > line = code text
    kExport,        // ! Name(...) -> ...
    kInit,          // init: code
    kLanguageName,  // language: NAME
    kLanguageText,  // language: |
    kLanguageMore,  // language+: |
    kOptions,       // options: N
    kClient,        // client: yes, none
    kRegistry,      // registry: |
    kItem,          // item N: "text"
    kFile,          // file NAME: |
    kFolder,        // folder NAME
    kRemove,        // remove NAME
    kFileIs,        // file-is NAME: |
    kNoFile,        // no-file NAME
  };
  Kind kind = kSend;
  int line = 0;
  std::string name;  // file, folder, item
  std::string text;  // line sent, contents
  Call call;         // kExport

  // The client calls that the step makes; strict means: these and no others.
  bool strict = true;
  std::vector<Call> calls;
  // Trace lines, compared when any is given.
  std::vector<Trace> traces;
  bool code_below = false;  // kInit: its code stands in "=", as it was learned
  bool cut = false;         // the file ends ahead of its "="
  int answer_line = 0;      // line of "=", 0 without
  long code = 0;
  Value answer;

  bool TalksToLibrary() const { return kind == kSend || kind == kExport || kind == kInit; }
};

// What the library wrote to a stream between its loading and its unloading.
struct StreamCheck {
  int line = 0;
  bool error_stream = false;
  bool whole = true;  // false: one line contains the text
  std::string text;
};

// How a line ends when one of its calls fails. The first rule that fits a call counts.
struct SweepRule {
  int line = 0;
  Call call;  // name, or name with arguments
  bool any_code = true;
  long code = 0;
  enum Outcome {
    kChecked,       // the code through checkResult
    kCheckedTwice,  // through it again
    kAsBefore,      // the line's answer without the fault
    kFixed,         // a code of its own
    kSkip,          // the call cannot fail
  };
  Outcome outcome = kChecked;
  long fixed = 0;
  bool nothing_more = false;         // "no *"
  std::vector<std::string> without;  // later calls that are not made
  std::vector<Call> also;            // calls that follow the failed one
};

// What a recording tells of itself, and the player leaves alone: the versions, the times, its end.
struct Note {
  int line = 0;
  std::string word;
  std::string value;
};

struct Conversation {
  std::string path;
  std::vector<ScriptLine> lines;
  std::vector<Step> steps;
  std::vector<StreamCheck> streams;
  std::vector<SweepRule> sweep;
  std::vector<Note> notes;
};

// Throws Failure, with the line of the file.
Conversation ReadConversation(const std::string& path);
// The same of a text that was read already. What may be cut may lack the answer of its last step.
Conversation ReadConversation(const std::string& path, const std::string& text,
                              bool may_be_cut = false);

// The line of the file that a line with the tables written out comes from.
int LineInFile(const Conversation& conversation, int line);

// The failure of a conversation that is played, with the line of the file, and with what made the
// line when it comes out of a table.
Failure InFile(const Conversation& conversation, const Failure& failure);

}  // namespace conversation
