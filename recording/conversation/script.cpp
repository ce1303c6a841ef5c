#include "recording/conversation/script.h"

#include <cstdint>
#include <map>
#include <set>

namespace conversation {
namespace {

// Of all texts of a file, written out.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 30;

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

class ScriptReader {
 public:
  ScriptReader(const std::string& path, std::vector<ScriptLine> lines, bool may_be_cut)
      : may_be_cut_(may_be_cut) {
    conversation_.path = path;
    conversation_.lines = std::move(lines);
    std::uintmax_t size = 0;
    for (const ScriptLine& line : conversation_.lines) size += UnescapedSize(line.text);
    if (size > kMostBytes) throw Failure(0, "the texts of the file are too large");
  }

  Conversation Read() {
    const std::vector<ScriptLine>& lines = conversation_.lines;
    while (at_ < lines.size()) {
      line_ = static_cast<int>(at_) + 1;
      const std::string& line = lines[at_++].text;
      try {
        ReadLine(line);
      } catch (const Failure& failure) {
        throw InFile(conversation_,
                     Failure(failure.line == 0 ? line_ : failure.line, failure.what()));
      }
    }
    Finish();
    return std::move(conversation_);
  }

 private:
  void ReadLine(const std::string& line) {
    if (line.empty() || line[0] == '#') return;
    if (line.back() == ' ' || line.back() == '\t' || line.back() == '\r') {
      throw Failure(0, "a line ends in a blank; write it as \\x20");
    }
    switch (line[0]) {
      case '>':
        Begin(Step::kSend).text = Unescape(Behind(line));
        return;
      case '!':
        Begin(Step::kExport).call = ReadCall(Behind(line));
        conversation_.steps.back().call.line = line_;
        return;
      case '<':
        return ReadClientCall(Behind(line));
      case '~':
        return ReadTrace(line);
      case '=':
        return ReadAnswer(Behind(line));
      default:
        return ReadDirective(line);
    }
  }

  std::string_view Behind(std::string_view line) {
    if (line.size() > 1 && line[1] != ' ') throw Failure(0, "a blank is missing behind the mark");
    return line.size() > 2 ? line.substr(2) : std::string_view();
  }

  Step& Begin(Step::Kind kind) {
    Step step;
    step.kind = kind;
    step.line = line_;
    conversation_.steps.push_back(std::move(step));
    return conversation_.steps.back();
  }

  Step& Talking(const char* mark) {
    if (conversation_.steps.empty() || !conversation_.steps.back().TalksToLibrary()) {
      throw Failure(0, std::string("\"") + mark + "\" stands behind no step that it belongs to");
    }
    return conversation_.steps.back();
  }

  void ReadClientCall(std::string_view written) {
    Step& step = Talking("<");
    step.strict = true;
    if (Trimmed(written) == "none") return;
    Call call = ReadCall(written);
    if (!call.operation && call.name != "EcrIo") {
      throw Failure(0, "the client has no operation " + call.name);
    }
    call.line = line_;
    step.calls.push_back(std::move(call));
  }

  void ReadTrace(const std::string& line) {
    const bool error = StartsWith(line, "~!");
    Talking("~").traces.push_back({error, Unescape(Behind(error ? line.substr(1) : line))});
  }

  void ReadAnswer(std::string_view written) {
    Step& step = Talking("=");
    const bool begun = step.kind == Step::kInit && step.code_below;
    if (step.kind != Step::kSend && !begun) throw Failure(0, "\"=\" belongs to a line sent");
    if (step.answer_line != 0) throw Failure(0, "a second answer for one line");
    step.answer_line = line_;
    const std::size_t blank = written.find(' ');
    step.code = static_cast<long>(ReadNumber(written.substr(0, blank)));
    const std::string_view text =
        blank == std::string_view::npos ? "" : Trimmed(written.substr(blank + 1));
    if (begun) {
      if (!text.empty()) throw Failure(0, "TradInit answers with a code alone");
      return;
    }
    if (text.empty()) throw Failure(0, "the answer's text is missing; * accepts any");
    if (text == "*") {
      step.answer = {Value::kAny, ""};
    } else if (text.front() == '"') {
      if (text.size() < 2 || text.back() != '"') throw Failure(0, "the closing \" is missing");
      step.answer = Value::Text(Unescape(text.substr(1, text.size() - 2)));
    } else {
      step.answer = Value::Text(Unescape(text));
    }
  }

  // The text behind a directive's colon: a block of indented lines for "|" (each ends in a
  // line feed) or "bytes|" (nothing but what is written), or the rest of the line.
  std::string Contents(const std::string& value) {
    if (value != "|" && value != "bytes|") return Unescape(value);
    const bool line_feeds = value == "|";
    std::string contents;
    std::string held;  // empty lines, kept only in front of another indented one
    for (; at_ < conversation_.lines.size(); ++at_) {
      const std::string& line = conversation_.lines[at_].text;
      if (line.empty()) {
        held += line_feeds ? "\n" : "";
        continue;
      }
      if (!StartsWith(line, "  ")) break;
      if (line.back() == ' ' || line.back() == '\t') {
        throw Failure(static_cast<int>(at_) + 1, "a line ends in a blank; write it as \\x20");
      }
      contents += held + Unescape(line.substr(2)) + (line_feeds ? "\n" : "");
      held.clear();
    }
    return contents;
  }

  void ReadDirective(const std::string& line) {
    if (StartsWith(line, "sweep ")) return ReadSweep(line.substr(6));
    const std::size_t colon = line.find(": ");
    const std::string head = line.substr(0, colon);
    const std::string value =
        colon == std::string::npos ? "" : std::string(Trimmed(line.substr(colon + 2)));
    const std::size_t blank = head.find(' ');
    const std::string word = head.substr(0, blank);
    const std::string name =
        blank == std::string::npos ? "" : Unescape(Trimmed(head.substr(blank + 1)));

    static const std::map<std::string, Step::Kind> kWithContents = {
        {"language", Step::kLanguageName},
        {"language+", Step::kLanguageMore},
        {"options", Step::kOptions},
        {"client", Step::kClient},
        {"registry", Step::kRegistry},
        {"item", Step::kItem},
        {"file", Step::kFile},
        {"file-is", Step::kFileIs},
    };
    static const std::map<std::string, Step::Kind> kNameAlone = {
        {"folder", Step::kFolder}, {"remove", Step::kRemove}, {"no-file", Step::kNoFile}};
    static const std::set<std::string> kNotes = {"recording", "made-by", "library", "device",
                                                 "secrets",   "at",      "took",    "end"};

    if (word == "init") {
      if (value == "none") {
        own_init_ = true;
        return;
      }
      own_init_ = true;
      Step& step = Begin(Step::kInit);
      step.strict = false;
      step.code_below = value == "below";
      if (!step.code_below) step.code = static_cast<long>(ReadNumber(value));
    } else if (word == "stdout-is" || word == "stderr-is" || word == "stdout-has") {
      conversation_.streams.push_back(
          {line_, word == "stderr-is", word != "stdout-has", Contents(value)});
    } else if (kNotes.count(word) != 0 && colon != std::string::npos) {
      conversation_.notes.push_back({line_, word, Unescape(value)});
    } else if (word == "must-fail") {
      // The runner reads this line itself: the script may be the fault.
    } else if (const auto with = kWithContents.find(word);
               with != kWithContents.end() && colon != std::string::npos) {
      Step& step = Begin(with->second);
      step.name = name;
      if (word == "language" && (value == "|" || value == "bytes|"))
        step.kind = Step::kLanguageText;
      if (word == "item" && value.size() > 1 && value.front() == '"' && value.back() == '"') {
        step.text = Unescape(value.substr(1, value.size() - 2));
      } else {
        const int start = line_;
        step.text = Contents(value);
        line_ = start;
      }
    } else if (const auto alone = kNameAlone.find(word);
               alone != kNameAlone.end() && colon == std::string::npos) {
      Begin(alone->second).name = name;
    } else {
      throw Failure(0, "\"" + word + "\" is no directive, or its value is missing");
    }
  }

  // "Name(arguments) code: outcome, no Name, also Name()"
  void ReadSweep(const std::string& written) {
    SweepRule rule;
    rule.line = line_;
    const std::size_t colon = written.find(": ");
    if (colon == std::string::npos) throw Failure(0, "a sweep rule is written CALL: OUTCOME");
    std::string head(Trimmed(written.substr(0, colon)));
    const std::size_t last = head.find_last_of(" )");
    if (last != std::string::npos && head[last] == ' ') {
      rule.any_code = false;
      rule.code = static_cast<long>(ReadNumber(head.substr(last + 1)));
      head.resize(last);
    }
    rule.call = ReadCall(head);

    std::string_view rest = std::string_view(written).substr(colon + 2);
    bool first = true;
    while (!rest.empty()) {
      const std::size_t comma = rest.find(", ");
      const std::string_view item = Trimmed(rest.substr(0, comma));
      rest = comma == std::string_view::npos ? "" : rest.substr(comma + 2);
      if (first) {
        ReadOutcome(item, rule);
        first = false;
      } else if (item == "no *") {
        rule.nothing_more = true;
      } else if (StartsWith(item, "no ")) {
        rule.without.emplace_back(item.substr(3));
      } else if (StartsWith(item, "also ")) {
        rule.also.push_back(ReadCall(item.substr(5)));
        rule.also.back().line = line_;
      } else {
        throw Failure(0, "\"" + std::string(item) + "\" is no part of a sweep rule");
      }
    }
    conversation_.sweep.push_back(std::move(rule));
  }

  static void ReadOutcome(std::string_view item, SweepRule& rule) {
    if (item == "checkResult") {
      rule.outcome = SweepRule::kChecked;
    } else if (item == "checkResult twice") {
      rule.outcome = SweepRule::kCheckedTwice;
    } else if (item == "as before") {
      rule.outcome = SweepRule::kAsBefore;
    } else if (item == "skip") {
      rule.outcome = SweepRule::kSkip;
    } else {
      rule.outcome = SweepRule::kFixed;
      rule.fixed = static_cast<long>(ReadNumber(item));
    }
  }

  // Puts the ordinary start in front of the first step that needs it.
  void Finish() {
    auto& steps = conversation_.steps;
    if (may_be_cut_ && !steps.empty() && steps.back().answer_line == 0) {
      Step& last = steps.back();
      last.cut = last.kind == Step::kSend || last.code_below;
      if (last.cut) last.answer = {Value::kAny, ""};
    }
    for (const Step& step : steps) {
      if (step.cut) continue;
      if (step.kind == Step::kSend && step.answer_line == 0) {
        throw InFile(conversation_, Failure(step.line, "the line has no answer (=)"));
      }
      if (step.kind == Step::kInit && step.code_below && step.answer_line == 0) {
        throw InFile(conversation_, Failure(step.line, "no code (=) of TradInit stands below"));
      }
    }
    if (own_init_) return;
    for (auto step = steps.begin(); step != steps.end(); ++step) {
      if (!step->TalksToLibrary()) continue;
      Step init;
      init.kind = Step::kInit;
      init.line = step->line;
      init.strict = false;
      steps.insert(step, std::move(init));
      return;
    }
  }

  Conversation conversation_;
  std::size_t at_ = 0;
  int line_ = 0;
  bool own_init_ = false;
  bool may_be_cut_ = false;
};

}  // namespace

Conversation ReadConversation(const std::string& path) {
  return ScriptReader(path, ReadScriptLines(path), false).Read();
}

Conversation ReadConversation(const std::string& path, const std::string& text, bool may_be_cut) {
  return ScriptReader(path, ReadScriptLines(path, text), may_be_cut).Read();
}

int LineInFile(const Conversation& conversation, int line) {
  const auto index = static_cast<std::size_t>(line) - 1;
  return line < 1 || index >= conversation.lines.size() ? line : conversation.lines[index].line;
}

Failure InFile(const Conversation& conversation, const Failure& failure) {
  const auto index = static_cast<std::size_t>(failure.line) - 1;
  if (failure.line < 1 || index >= conversation.lines.size()) return failure;
  const ScriptLine& made = conversation.lines[index];
  if (made.made_by.empty()) return Failure(made.line, failure.what());
  return Failure(made.line, std::string(failure.what()) + "\n    made by " + made.made_by);
}

}  // namespace conversation
