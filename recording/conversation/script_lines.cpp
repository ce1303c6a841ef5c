#include "recording/conversation/script_lines.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>

#include "recording/conversation/script_fields.h"
#include "recording/conversation/script_text.h"

namespace conversation {
namespace {

namespace fs = std::filesystem;

// Enough for every conversation, and a stop for a table that was written by mistake.
constexpr std::size_t kMostLines = 100'000;
constexpr int kDeepest = 16;

using Block = std::vector<Written>;

std::size_t Indentation(std::string_view text) {
  return std::min(text.find_first_not_of(' '), text.size());
}

std::string_view WithoutIndentation(std::string_view text) {
  return text.substr(Indentation(text));
}

struct Parameter {
  std::string name;
  std::optional<std::string> value;
};

struct Part {
  std::vector<Parameter> parameters;
  Block body;
};

// A row of a table, or a value of a list.
struct Row {
  int number = 0;  // of its line
  std::vector<std::string> cells;
};

class Expander {
 public:
  explicit Expander(const std::string& path) : path_(path) {}

  std::vector<ScriptLine> Run() { return Run(ReadFile(path_, "")); }
  std::vector<ScriptLine> Run(const std::string& text) {
    std::istringstream lines(text);
    return Run(LinesOf(lines, ""));
  }

 private:
  std::vector<ScriptLine> Run(const Block& block) {
    std::vector<ScriptLine> made;
    Frame frame;
    Expand(block, "", frame, made);
    return made;
  }

  static Block ReadFile(const fs::path& path, const std::string& name) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw Failure(0, "the file " + name + (name.empty() ? "" : " ") + "cannot be read");
    return LinesOf(file, name);
  }

  static Block LinesOf(std::istream& file, const std::string& name) {
    Block block;
    int number = 0;
    for (std::string line; std::getline(file, line);) block.push_back({line, name, ++number});
    return block;
  }

  // The lines behind `head` that are indented deeper, without that indentation.
  static Block TakeBody(const Block& block, std::size_t& at, std::size_t indentation) {
    Block body;
    std::size_t solid = 0;  // empty lines behind the last other one are none of the body's
    std::size_t next = at;
    for (; next < block.size(); ++next) {
      Written line = block[next];
      if (!line.text.empty()) {
        if (Indentation(line.text) < indentation + 2) break;
        line.text.erase(0, indentation + 2);
        solid = body.size() + 1;
      }
      body.push_back(std::move(line));
    }
    body.resize(solid);
    at += solid;
    return body;
  }

  void Expand(const Block& block, const std::string& margin, Frame& frame,
              std::vector<ScriptLine>& made) {
    for (std::size_t at = 0; at < block.size();) {
      const Written& written = block[at++];
      const std::size_t indentation = Indentation(written.text);
      if (indentation == written.text.size() || written.text[indentation] != '%') {
        Emit(written, margin, frame, made);
        continue;
      }
      const std::string text = Filled(written, frame).substr(indentation);
      const Block body = TakeBody(block, at, indentation);
      const std::size_t blank = std::min(text.find(' '), text.size());
      const std::string word = text.substr(0, blank);
      const std::string rest(Trimmed(std::string_view(text).substr(blank)));
      const std::string inner = margin + std::string(indentation, ' ');
      if (frame.depth == kDeepest) Fail(written, frame, "tables and parts stand too deep");
      if (word == "%repeat") {
        Repeat(written, rest, body, inner, frame, made);
      } else if (word == "%use") {
        Use(written, rest, body, inner, frame, made);
      } else if (word == "%part") {
        Define(written, rest, body, frame);
      } else if (word == "%parts") {
        if (!body.empty()) Fail(body[0], frame, "nothing belongs to %parts");
        TakeParts(written, rest, frame);
      } else {
        Fail(written, frame, "\"" + word + "\" is none of %repeat, %part, %use and %parts");
      }
    }
  }

  void Emit(const Written& written, const std::string& margin, Frame& frame,
            std::vector<ScriptLine>& made) {
    if (++lines_ > kMostLines && frame.depth > 0) {
      Fail(written, frame, "the tables make more than " + std::to_string(kMostLines) + " lines");
    }
    ScriptLine line;
    const std::string text = Filled(written, frame);
    line.text = text.empty() ? "" : margin + text;
    line.line = frame.line == 0 ? written.number : frame.line;
    if (frame.depth > 0) {
      line.made_by =
          (written.file.empty() ? "line " : written.file + ":") + std::to_string(written.number);
      const char* between = " with ";
      for (const Binding& binding : frame.bindings) {
        line.made_by += between + binding.name + "=" + binding.value;
        between = ", ";
      }
    }
    made.push_back(std::move(line));
  }

  // %repeat NAME=VALUE,FIRST..LAST, or %repeat N times, or %repeat and a table.
  void Repeat(const Written& head, const std::string& rest, const Block& body,
              const std::string& margin, Frame& frame, std::vector<ScriptLine>& made) {
    std::vector<std::string> columns;
    std::vector<Row> rows;
    Block repeated = body;
    if (rest.empty()) {
      rows = TakeTable(head, repeated, columns, frame);
    } else if (const auto times = Times(rest)) {
      rows.resize(*times, {head.number, {}});
    } else {
      const std::size_t equals = rest.find('=');
      if (equals == std::string::npos) Fail(head, frame, "%repeat is written NAME=VALUES");
      columns.push_back(rest.substr(0, equals));
      for (std::string& value : ListOf(head, rest.substr(equals + 1), frame)) {
        rows.push_back({head.number, {std::move(value)}});
      }
    }
    CheckColumns(head, columns, frame);
    if (repeated.empty()) Fail(head, frame, "%repeat has nothing to repeat");
    std::vector<bool> used(columns.size(), false);
    for (const Row& row : rows) {
      Frame inner = frame;
      ++inner.depth;
      // Of a list's values each has the same line: that of the template tells more.
      if (inner.line == 0 && rest.empty()) inner.line = row.number;
      const std::size_t outer = inner.bindings.size();
      for (std::size_t c = 0; c < columns.size(); ++c) {
        inner.bindings.push_back({columns[c], row.cells[c]});
      }
      Expand(repeated, margin, inner, made);
      for (std::size_t c = 0; c < columns.size(); ++c) {
        used[c] = used[c] || inner.bindings[outer + c].used;
      }
      for (std::size_t b = 0; b < outer; ++b) frame.bindings[b].used |= inner.bindings[b].used;
    }
    for (std::size_t c = 0; c < columns.size(); ++c) {
      if (!used[c]) Fail(head, frame, "the column \"" + columns[c] + "\" is used nowhere");
    }
  }

  // The N of "N times".
  static std::optional<std::size_t> Times(std::string_view written) {
    constexpr std::string_view kTimes = " times";
    if (!written.ends_with(kTimes)) return std::nullopt;
    const auto number = WholeNumber(Trimmed(written.substr(0, written.size() - kTimes.size())));
    if (!number || *number < 1 || static_cast<std::size_t>(*number) > kMostLines) {
      return std::nullopt;
    }
    return static_cast<std::size_t>(*number);
  }

  // The rows at the head of the body, which keeps what stands behind them. A row's fields are
  // those of the tables around it.
  std::vector<Row> TakeTable(const Written& head, Block& body, std::vector<std::string>& columns,
                             Frame& frame) {
    std::vector<Row> rows;
    std::size_t at = 0;
    for (; at < body.size(); ++at) {
      const std::string& line = body[at].text;
      if (line.empty() || line[0] == '#') continue;
      if (line[0] != '|') break;
      std::vector<std::string> cells = CellsOf(body[at], frame);
      if (columns.empty()) {
        columns = std::move(cells);
        continue;
      }
      if (cells.size() != columns.size()) {
        Fail(body[at], frame,
             "the row has " + std::to_string(cells.size()) + " cells, the table " +
                 std::to_string(columns.size()) + " columns");
      }
      rows.push_back({body[at].number, std::move(cells)});
    }
    if (columns.empty()) Fail(head, frame, "%repeat has neither values nor a table");
    if (rows.empty()) Fail(head, frame, "the table has no row");
    body.erase(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(at));
    return rows;
  }

  static std::vector<std::string> CellsOf(const Written& written, Frame& frame) {
    const std::string text = Filled(written, frame);
    if (text.size() < 2 || text.back() != '|') Fail(written, frame, "a row ends in |");
    std::vector<std::string> cells;
    std::string_view rest = std::string_view(text).substr(1);
    while (!rest.empty()) {
      const std::size_t bar = rest.find('|');
      cells.emplace_back(Trimmed(rest.substr(0, bar)));
      rest = rest.substr(bar + 1);
    }
    return cells;
  }

  static std::vector<std::string> ListOf(const Written& head, const std::string& written,
                                         const Frame& frame) {
    std::vector<std::string> values;
    std::string_view rest = written;
    for (;;) {
      const std::size_t comma = rest.find(',');
      const std::string_view item = Trimmed(rest.substr(0, comma));
      if (item.empty()) Fail(head, frame, "a value is missing");
      const std::size_t dots = item.find("..");
      if (dots == std::string_view::npos) {
        values.emplace_back(item);
      } else {
        const auto first = WholeNumber(item.substr(0, dots));
        const auto last = WholeNumber(item.substr(dots + 2));
        if (!first || !last || *last < *first ||
            static_cast<std::size_t>(*last - *first) > kMostLines) {
          Fail(head, frame, "\"" + std::string(item) + "\" is no range of numbers");
        }
        for (long long n = *first; n <= *last; ++n) values.push_back(std::to_string(n));
      }
      if (comma == std::string_view::npos) return values;
      rest = rest.substr(comma + 1);
    }
  }

  static void CheckColumns(const Written& head, const std::vector<std::string>& columns,
                           const Frame& frame) {
    for (std::size_t c = 0; c < columns.size(); ++c) {
      const std::string& name = columns[c];
      if (!IsName(name)) Fail(head, frame, "\"" + name + "\" is no name of a column");
      const bool twice =
          std::find(columns.begin(), columns.begin() + static_cast<std::ptrdiff_t>(c), name) !=
          columns.begin() + static_cast<std::ptrdiff_t>(c);
      const bool outside = std::any_of(frame.bindings.begin(), frame.bindings.end(),
                                       [&](const Binding& b) { return b.name == name; });
      if (twice || outside) Fail(head, frame, "there is a column \"" + name + "\" already");
    }
  }

  // %part NAME PARAMETER PARAMETER=VALUE
  void Define(const Written& head, const std::string& rest, const Block& body, const Frame& frame) {
    if (frame.depth > 0) Fail(head, frame, "a part is defined outside of tables and parts");
    Part part;
    part.body = body;
    const std::vector<std::string> words = WordsOf(rest);
    if (words.empty() || !IsName(words[0])) Fail(head, frame, "the part has no name");
    std::vector<std::string> names;
    for (std::size_t w = 1; w < words.size(); ++w) {
      const std::size_t equals = words[w].find('=');
      Parameter parameter;
      parameter.name = words[w].substr(0, equals);
      if (equals != std::string::npos) parameter.value = words[w].substr(equals + 1);
      names.push_back(parameter.name);
      part.parameters.push_back(std::move(parameter));
    }
    CheckColumns(head, names, frame);
    if (body.empty()) Fail(head, frame, "the part is empty");
    if (!parts_.emplace(words[0], std::move(part)).second) {
      Fail(head, frame, "there is a part \"" + words[0] + "\" already");
    }
  }

  // %parts FILE: the parts of a file in the conversation's folder, which holds nothing else.
  void TakeParts(const Written& head, const std::string& name, Frame& frame) {
    if (frame.depth > 0) Fail(head, frame, "parts are taken outside of tables and parts");
    Frame inside;
    inside.line = head.number;
    Block block;
    try {
      block = ReadFile(fs::path(path_).parent_path() / name, name);
    } catch (const Failure& failure) {
      Fail(head, frame, failure.what());
    }
    for (std::size_t at = 0; at < block.size();) {
      const Written& line = block[at++];
      if (line.text.empty() || line.text[0] == '#') continue;
      if (line.text.compare(0, 6, "%part ") != 0) {
        Fail(line, inside, "a file of parts holds parts only");
      }
      Define(line, std::string(Trimmed(line.text.substr(6))), TakeBody(block, at, 0), inside);
    }
  }

  // %use NAME PARAMETER=VALUE from TEXT until TEXT, with lines below that stand instead of the
  // part's.
  void Use(const Written& head, const std::string& rest, const Block& body,
           const std::string& margin, Frame& frame, std::vector<ScriptLine>& made) {
    std::string call = rest;
    const std::string until = TakeBehind(" until ", call);
    const std::string from = TakeBehind(" from ", call);
    const std::vector<std::string> words = WordsOf(call);
    const auto found = words.empty() ? parts_.end() : parts_.find(words[0]);
    if (found == parts_.end()) Fail(head, frame, "there is no part \"" + call + "\"");
    Frame inner;
    inner.depth = frame.depth + 1;
    inner.line = frame.line == 0 ? head.number : frame.line;
    inner.bindings = Arguments(head, words, found->second, frame);
    std::vector<ScriptLine> lines;
    Expand(found->second.body, margin, inner, lines);
    for (const Binding& binding : inner.bindings) {
      if (!binding.used) {
        Fail(head, frame, "the parameter \"" + binding.name + "\" is used nowhere");
      }
    }
    const auto line_with = [&](const std::string& beginning) {
      const auto line = std::find_if(lines.begin(), lines.end(), [&](const ScriptLine& l) {
        return WithoutIndentation(l.text).substr(0, beginning.size()) == beginning;
      });
      if (line == lines.end()) {
        Fail(head, frame, "no line of \"" + words[0] + "\" begins with " + beginning);
      }
      return line;
    };
    if (!from.empty()) lines.erase(lines.begin(), line_with(from));
    if (!until.empty()) lines.erase(line_with(until), lines.end());
    if (lines.empty()) Fail(head, frame, "nothing of \"" + words[0] + "\" is left");
    Replace(head, words[0], body, margin, frame, lines);
    made.insert(made.end(), lines.begin(), lines.end());
  }

  // The text behind the mark, which goes with it.
  static std::string TakeBehind(const std::string& mark, std::string& text) {
    const std::size_t at = text.find(mark);
    if (at == std::string::npos) return "";
    const std::string behind(Trimmed(std::string_view(text).substr(at + mark.size())));
    text.resize(at);
    return behind;
  }

  static std::vector<Binding> Arguments(const Written& head, const std::vector<std::string>& words,
                                        const Part& part, const Frame& frame) {
    std::vector<Binding> bindings;
    std::size_t taken = 0;
    for (const Parameter& parameter : part.parameters) {
      std::optional<std::string> value = parameter.value;
      for (std::size_t w = 1; w < words.size(); ++w) {
        if (words[w].compare(0, parameter.name.size() + 1, parameter.name + "=") != 0) continue;
        value = words[w].substr(parameter.name.size() + 1);
        ++taken;
      }
      if (!value) Fail(head, frame, "\"" + parameter.name + "\" has no value");
      bindings.push_back({parameter.name, *value});
    }
    if (taken + 1 != words.size()) {
      Fail(head, frame, "a value is given twice, or to no parameter of \"" + words[0] + "\"");
    }
    return bindings;
  }

  // Each line of the body takes the place of the one with the same beginning: the call ahead of
  // its arrow, or the record's first value with its separator.
  void Replace(const Written& head, const std::string& part, const Block& body,
               const std::string& margin, Frame& frame, std::vector<ScriptLine>& lines) {
    if (body.empty()) return;
    std::vector<ScriptLine> others;
    ++frame.depth;
    Expand(body, margin, frame, others);
    --frame.depth;
    std::vector<bool> replaced(lines.size(), false);
    for (ScriptLine& other : others) {
      const std::string_view text = WithoutIndentation(other.text);
      if (text.empty() || text[0] == '#') continue;
      const std::string_view key = Beginning(text);
      std::size_t place = lines.size();
      for (std::size_t i = 0; i < lines.size(); ++i) {
        if (Beginning(WithoutIndentation(lines[i].text)) != key) continue;
        if (place != lines.size() || replaced[i]) {
          Fail(head, frame, "more than one line begins with " + std::string(key));
        }
        place = i;
      }
      if (place == lines.size()) {
        Fail(head, frame, "no line of \"" + part + "\" begins with " + std::string(key));
      }
      const std::string there = lines[place].text;
      if (WithoutIndentation(there) == text) {
        Fail(head, frame, "\"" + std::string(text) + "\" stands in \"" + part + "\" already");
      }
      replaced[place] = true;
      other.text = there.substr(0, Indentation(there)) + std::string(text);
      lines[place] = std::move(other);
    }
  }

  static std::string_view Beginning(std::string_view text) {
    if (const std::size_t arrow = text.find(" -> "); arrow != std::string_view::npos) {
      return text.substr(0, arrow);
    }
    const std::size_t comma = text.find(',');
    return comma == std::string_view::npos ? text : text.substr(0, comma + 1);
  }

  static std::vector<std::string> WordsOf(std::string_view text) {
    std::vector<std::string> words;
    while (!(text = Trimmed(text)).empty()) {
      const std::size_t blank = std::min(text.find(' '), text.size());
      words.emplace_back(text.substr(0, blank));
      text = text.substr(blank);
    }
    return words;
  }

  const std::string path_;
  std::map<std::string, Part> parts_;
  std::size_t lines_ = 0;
};

}  // namespace

std::vector<ScriptLine> ReadScriptLines(const std::string& path) { return Expander(path).Run(); }

std::vector<ScriptLine> ReadScriptLines(const std::string& path, const std::string& text) {
  return Expander(path).Run(text);
}

}  // namespace conversation
