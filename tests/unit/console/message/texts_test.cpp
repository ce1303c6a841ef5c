// The messages of the console and their Italian, read as texts: what is written in the code, and
// what the table has for it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace lorimat::console {

using testing::IsEmpty;
using testing::Not;

namespace {

struct Token {
  bool is_text = false;  // a string literal, joined with those that follow it
  std::string text;      // what a literal stands for, else a word or a sign
};

// A lexer of as much C++ as the console is written in.
class Lexer {
 public:
  explicit Lexer(std::string source) : source_(std::move(source)) {}

  std::vector<Token> tokens() {
    while (at_ < source_.size()) Step();
    return std::move(tokens_);
  }

 private:
  bool Sees(const char* text) const { return source_.compare(at_, std::strlen(text), text) == 0; }

  void SkipTo(const std::string& end, size_t from) {
    const size_t found = source_.find(end, from);
    at_ = found == std::string::npos ? source_.size() : found + end.size();
  }

  void Step() {
    const char c = source_[at_];
    const bool line_begins = at_ == 0 || source_[at_ - 1] == '\n';
    if (Sees("//") || (line_begins && c == '#')) {
      at_ = std::min(source_.find('\n', at_), source_.size());
    } else if (Sees("/*")) {
      SkipTo("*/", at_);
    } else if (Sees("R\"")) {
      const size_t open = source_.find('(', at_);
      const std::string end = ")" + source_.substr(at_ + 2, open - at_ - 2) + "\"";
      const size_t close = source_.find(end, open);
      AddText(source_.substr(open + 1, close - open - 1));
      at_ = close + end.size();
    } else if (c == '"') {
      ++at_;
      std::string text;
      while (source_[at_] != '"') text += character();
      ++at_;
      AddText(text);
    } else if (c == '\'') {
      ++at_;
      while (source_[at_] != '\'') character();
      ++at_;
      tokens_.push_back({false, "'"});
    } else if (std::isalnum(static_cast<unsigned char>(c)) || c == '_') {
      const size_t begin = at_;
      // In a number a quote parts the digits.
      const bool number = std::isdigit(static_cast<unsigned char>(c)) != 0;
      while (at_ < source_.size() && (std::isalnum(static_cast<unsigned char>(source_[at_])) ||
                                      source_[at_] == '_' || (number && source_[at_] == '\''))) {
        ++at_;
      }
      tokens_.push_back({false, source_.substr(begin, at_ - begin)});
    } else {
      if (!std::isspace(static_cast<unsigned char>(c))) tokens_.push_back({false, {c}});
      ++at_;
    }
  }

  void AddText(const std::string& text) {
    if (!tokens_.empty() && tokens_.back().is_text) {
      tokens_.back().text += text;
    } else {
      tokens_.push_back({true, text});
    }
  }

  // A character of a literal, its escapes resolved.
  std::string character() {
    if (source_[at_] != '\\') return {source_[at_++]};
    at_ += 2;
    const char c = source_[at_ - 1];
    switch (c) {
      case 'n':
        return "\n";
      case 'r':
        return "\r";
      case 't':
        return "\t";
      case 'x': {
        const size_t begin = at_;
        while (std::isxdigit(static_cast<unsigned char>(source_[at_]))) ++at_;
        return {static_cast<char>(std::stoi(source_.substr(begin, at_ - begin), nullptr, 16))};
      }
      default:
        return {c};
    }
  }

  std::string source_;
  size_t at_ = 0;
  std::vector<Token> tokens_;
};

std::vector<Token> TokensOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return Lexer({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}).tokens();
}

bool IsSign(const std::vector<Token>& tokens, size_t at, const char* sign) {
  return at < tokens.size() && !tokens[at].is_text && tokens[at].text == sign;
}

bool IsMarked(const std::vector<Token>& tokens, size_t at) {
  return at >= 2 && IsSign(tokens, at - 1, "(") &&
         (IsSign(tokens, at - 2, "Tr") || IsSign(tokens, at - 2, "TR_TEXT"));
}

bool IsTable(const std::filesystem::path& path) {
  return path.filename().string().rfind("italian", 0) == 0;
}

std::vector<std::filesystem::path> FilesOf(const std::string& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(
           std::string(LORIMAT_SOURCE_DIR) + "/" + folder)) {
    const std::string ending = entry.path().extension().string();
    if (ending == ".cpp" || ending == ".h") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::filesystem::path> ConsoleFiles() { return FilesOf("console"); }

// The English messages, each with a file that it stands in.
const std::map<std::string, std::string>& Messages() {
  static const auto all = [] {
    std::map<std::string, std::string> found;
    for (const auto& path : ConsoleFiles()) {
      if (IsTable(path)) continue;
      const std::vector<Token> tokens = TokensOf(path);
      for (size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].is_text && IsMarked(tokens, i)) {
          found.emplace(tokens[i].text, path.filename().string());
        }
      }
    }
    return found;
  }();
  return all;
}

struct Row {
  std::string english;
  std::string italian;
};

const std::vector<Row>& Rows() {
  static const auto all = [] {
    std::vector<Row> found;
    for (const auto& path : ConsoleFiles()) {
      if (!IsTable(path)) continue;
      const std::vector<Token> tokens = TokensOf(path);
      for (size_t i = 1; i + 3 < tokens.size(); ++i) {
        if (tokens[i].is_text && IsSign(tokens, i - 1, "{") && IsSign(tokens, i + 1, ",") &&
            tokens[i + 2].is_text && IsSign(tokens, i + 3, "}")) {
          found.push_back({tokens[i].text, tokens[i + 2].text});
        }
      }
    }
    return found;
  }();
  return all;
}

// The fields of a format, each as "number:how it is written", in the order of the numbers.
std::vector<std::string> Fields(const std::string& format) {
  std::vector<std::string> found;
  int next = 0;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '{' && format[i] != '}') continue;
    if (i + 1 < format.size() && format[i + 1] == format[i]) {
      ++i;
      continue;
    }
    // A brace that opens no field is one that {fmt} refuses.
    if (format[i] == '}') return {"stray brace"};
    const size_t close = format.find('}', i);
    if (close == std::string::npos) return {"open brace"};
    const std::string field = format.substr(i + 1, close - i - 1);
    const size_t colon = std::min(field.find(':'), field.size());
    const std::string number = colon == 0 ? std::to_string(next++) : field.substr(0, colon);
    found.push_back(number + field.substr(colon));
    i = close;
  }
  std::sort(found.begin(), found.end());
  return found;
}

bool EndsLine(const std::string& text) { return !text.empty() && text.back() == '\n'; }

// The number of blanks in front.
size_t Indent(const std::string& text) {
  return std::min(text.find_first_not_of(' '), text.size());
}

}  // namespace

TEST(ConsoleTexts, TheReaderFindsMessagesAndRows) {
  // The rest would pass if it found none.
  EXPECT_GT(Messages().size(), 200u);
  EXPECT_GT(Rows().size(), 200u);
  EXPECT_EQ(Messages().count("{}: cannot be opened: {}"), 1u);
  const std::vector<Token> tokens =
      Lexer("x = Tr(\"a\\\"b\" // no\n  \"c\\n\", '\"'); TR_TEXT(R\"(d\"\n)\");").tokens();
  std::vector<std::string> found;
  for (size_t i = 0; i < tokens.size(); ++i) {
    if (tokens[i].is_text && IsMarked(tokens, i)) found.push_back(tokens[i].text);
  }
  EXPECT_THAT(found, testing::ElementsAre("a\"bc\n", "d\"\n"));
}

TEST(ConsoleTexts, EveryMessageHasItsItalian) {
  std::map<std::string, bool> translated;
  for (const Row& row : Rows()) translated[row.english] = true;
  for (const auto& [message, file] : Messages()) {
    EXPECT_TRUE(translated.count(message)) << file << ": \"" << message << "\"";
  }
}

TEST(ConsoleTexts, EveryRowOfTheTableIsAMessageOfTheProgram) {
  for (const Row& row : Rows()) EXPECT_TRUE(Messages().count(row.english)) << row.english;
}

TEST(ConsoleTexts, NoMessageHasTwoRows) {
  std::map<std::string, int> seen;
  for (const Row& row : Rows()) EXPECT_EQ(++seen[row.english], 1) << row.english;
}

TEST(ConsoleTexts, NoRowIsEmpty) {
  for (const Row& row : Rows()) {
    EXPECT_THAT(row.english, Not(IsEmpty()));
    EXPECT_THAT(row.italian, Not(IsEmpty())) << row.english;
  }
}

TEST(ConsoleTexts, BothLanguagesHaveTheSameFields) {
  for (const Row& row : Rows()) {
    EXPECT_EQ(Fields(row.english), Fields(row.italian)) << row.english << "\n" << row.italian;
  }
  EXPECT_EQ(Fields("{} of {:04}"), Fields("{1:04} e {0}"));
  EXPECT_NE(Fields("{}"), Fields("{:x}"));
  EXPECT_NE(Fields("{} {}"), Fields("{0} {0}"));
  EXPECT_EQ(Fields("{{}}"), Fields("none"));
}

TEST(ConsoleTexts, BothLanguagesBeginAndEndAlike) {
  for (const Row& row : Rows()) {
    EXPECT_EQ(EndsLine(row.english), EndsLine(row.italian)) << row.english;
    EXPECT_EQ(Indent(row.english), Indent(row.italian)) << row.english;
    EXPECT_EQ(row.english.back() == ' ', row.italian.back() == ' ') << row.english;
  }
}

TEST(ConsoleTexts, TheItalianIsUtf8WithoutControlCharacters) {
  for (const Row& row : Rows()) {
    EXPECT_TRUE(std::none_of(row.italian.begin(), row.italian.end(), [](char c) {
      return static_cast<unsigned char>(c) < 0x20 && c != '\n';
    })) << row.english;
    size_t continued = 0;
    for (const char c : row.italian) {
      const unsigned char byte = static_cast<unsigned char>(c);
      const bool continuation = (byte & 0xC0) == 0x80;
      ASSERT_EQ(continuation, continued != 0) << row.italian;
      if (continuation) --continued;
      if (byte >= 0xC0) continued = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
    }
    EXPECT_EQ(continued, 0u) << row.italian;
  }
}

TEST(ConsoleTexts, HelpLinesFitATerminal) {
  for (const Row& row : Rows()) {
    for (const std::string& text : {row.english, row.italian}) {
      if (text.find("\n\n") == std::string::npos) continue;
      size_t column = 0;
      for (const char c : text) {
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++column;
        if (c == '\n') column = 0;
        ASSERT_LE(column, 100u) << text;
      }
    }
  }
}

TEST(ConsoleTexts, TheTranslatorIsGivenLiteralsAlone) {
  for (const auto& path : ConsoleFiles()) {
    if (IsTable(path) || path.stem() == "translate") continue;
    const std::vector<Token> tokens = TokensOf(path);
    for (size_t i = 0; i + 2 < tokens.size(); ++i) {
      const bool called =
          (IsSign(tokens, i, "Tr") || IsSign(tokens, i, "TR_TEXT")) && IsSign(tokens, i + 1, "(");
      if (called) {
        EXPECT_TRUE(tokens[i + 2].is_text) << path.filename() << " near " << tokens[i + 2].text;
      }
    }
  }
}

TEST(ConsoleTexts, SentencesThatAreNotForTranslationAreKnown) {
  // What the library answers or expects, what goes into files and JSON.
  const std::vector<std::string> known = {
      " in line ",                        // of the library's error file
      "; lorimat run",                    // a line that does nothing
      "; lorimat shell",                  // the same
      "standard input",                   // in JSON
      "credit note",                      // the same
      ".fault clear",                     // what is typed in the shell
      "help, quit, exit",                 // the same
      "Complete a word of the language",  // for the line editor, which does not show it
      "bare flag",                        // with which docs/language.md says what a field takes
      "highest price",
      "preset price",
      "up to ",
      "made small letters",
  };
  const std::regex sentence("[A-Za-z]{2,}[,;:]? [a-z]{2,}");
  const std::regex query("^ *(SELECT|INSERT|DELETE|CREATE|PRAGMA|ATTACH|UPDATE|BEGIN) ");
  for (const auto& path : ConsoleFiles()) {
    if (IsTable(path)) continue;
    // What is wrong with a request is told in JSON alone.
    if (path.filename() == "json_request.cpp") continue;
    const std::vector<Token> tokens = TokensOf(path);
    for (size_t i = 0; i < tokens.size(); ++i) {
      const std::string& text = tokens[i].text;
      if (!tokens[i].is_text || IsMarked(tokens, i) || !std::regex_search(text, sentence)) continue;
      if (std::regex_search(text, query)) continue;
      EXPECT_TRUE(std::find(known.begin(), known.end(), text) != known.end())
          << path.filename() << ": \"" << text << "\" is neither translated nor known";
    }
  }
}

TEST(ConsoleTexts, MessagesOfTheRegisterAreAsTheRegisterHasThem) {
  const auto with_bare_fields = [](const std::string& text) {
    return std::regex_replace(text, std::regex("\\{[^}]*\\}"), "{}");
  };
  std::map<std::string, bool> registers;
  for (const auto& path : FilesOf("register")) {
    for (const Token& token : TokensOf(path)) {
      if (token.is_text) registers[with_bare_fields(token.text)] = true;
    }
  }
  int found = 0;
  for (const auto& [message, file] : Messages()) {
    if (file != "register_messages.cpp") continue;
    ++found;
    // In front of a cause stands the file.
    const std::string cause = message.rfind("{}: ", 0) == 0 ? message.substr(4) : message;
    EXPECT_TRUE(registers.count(message) || registers.count(cause)) << message;
  }
  EXPECT_GT(found, 20);
}

}  // namespace lorimat::console
