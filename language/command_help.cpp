#include "language/command_help.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace language {

extern const char* const kEnglishPage;
extern const char* const kItalianPage;

namespace {

// What the reader knows a page's parts by, and what it says of commands without a chapter.
struct PageWords {
  std::string_view shortest;  // in front of how far a command may be cut
  std::string_view number;    // headings of columns
  std::string_view value;
  std::string_view code;
  std::string_view fields;
  std::string_view without_effect;  // and the code behind it
  std::string_view word_of_dumps;
  std::string_view field_of_dumps;
  std::string_view always;
};

constexpr PageWords kEnglish = {
    .shortest = "Short:",
    .number = "No",
    .value = "Value",
    .code = "Code",
    .fields = "Fields",
    .without_effect = "Without effect; answers ",
    .word_of_dumps = "A word of dumps; a line that begins with it answers 268.",
    .field_of_dumps = "stands in dumps",
    .always = "always",
};

constexpr PageWords kItalian = {
    .shortest = "Abbreviazione:",
    .number = "N.",
    .value = "Valore",
    .code = "Codice",
    .fields = "Campi",
    .without_effect = "Senza effetto; risponde ",
    .word_of_dumps = "Una parola dei dump; una riga che comincia così risponde 268.",
    .field_of_dumps = "compare nei dump",
    .always = "sempre",
};

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string WithoutMarks(std::string_view text) {
  std::string out;
  for (const char c : Trimmed(text)) {
    if (c != '`') out += c;
  }
  return out;
}

// The number that the text begins with; 0 for none.
int LeadingNumber(std::string_view text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  size_t at = 0;
  while (at <= text.size()) {
    const size_t end = std::min(text.find(separator, at), text.size());
    parts.push_back(WithoutMarks(text.substr(at, end - at)));
    at = end + 1;
  }
  return parts;
}

// The cells of "| a | b |".
std::vector<std::string> Cells(std::string_view line) {
  line = Trimmed(line);
  if (!line.empty()) line.remove_prefix(1);
  if (!line.empty() && line.back() == '|') line.remove_suffix(1);
  return Split(line, '|');
}

// Reads the page line by line.
class PageReader {
 public:
  explicit PageReader(const PageWords& words) : words_(words) {}

  std::vector<CommandGroup> Read(std::string_view page) {
    while (!page.empty()) {
      const size_t end = std::min(page.find('\n'), page.size());
      Take(page.substr(0, end));
      page.remove_prefix(std::min(end + 1, page.size()));
    }
    return std::move(groups_);
  }

 private:
  void Take(std::string_view line) {
    if (StartsWith(line, "```")) {
      fenced_ = !fenced_;
      open_paragraph_ = false;
    } else if (fenced_) {
      if (command_ && !Trimmed(line).empty()) command().examples.emplace_back(line);
    } else if (StartsWith(line, "## ")) {
      groups_.push_back({std::string(Trimmed(line.substr(3))), {}, {}});
      BeginChapter(false);
    } else if (StartsWith(line, "### ")) {
      BeginCommand(Trimmed(line.substr(4)));
    } else if (groups_.empty() || foreign_) {
      return;
    } else if (!line.empty() && line.front() == '|') {
      TakeRow(Cells(line));
    } else {
      header_.clear();
      TakeText(line);
    }
  }

  void BeginChapter(bool command) {
    command_ = command;
    foreign_ = false;
    open_paragraph_ = false;
    header_.clear();
  }

  // "10 VEND"; a heading without a number is about something else.
  void BeginCommand(std::string_view heading) {
    const int id = LeadingNumber(heading);
    BeginChapter(id != 0);
    foreign_ = id == 0;
    if (foreign_ || groups_.empty()) return;
    CommandHelp help;
    help.id = id;
    help.name = Trimmed(heading.substr(std::min(heading.find(' '), heading.size())));
    help.group = groups_.back().title;
    groups_.back().commands.push_back(std::move(help));
  }

  CommandHelp& command() { return groups_.back().commands.back(); }

  void TakeText(std::string_view line) {
    const std::string text = WithoutMarks(line);
    if (text.empty()) {
      open_paragraph_ = false;
      return;
    }
    if (command_ && StartsWith(text, words_.shortest)) {
      const std::string_view word = Trimmed(std::string_view(text).substr(words_.shortest.size()));
      command().shortest = word.substr(0, word.find_last_not_of('.') + 1);
      return;
    }
    std::vector<std::string>& paragraphs = !command_ ? groups_.back().text
                                           : command().fields.empty() && command().values.empty()
                                               ? command().text
                                               : command().remarks;
    if (open_paragraph_ && !StartsWith(text, "- ")) {
      paragraphs.back() += " " + text;
    } else {
      paragraphs.push_back(text);
    }
    open_paragraph_ = true;
  }

  void TakeRow(const std::vector<std::string>& row) {
    open_paragraph_ = false;
    if (header_.empty()) {
      header_ = row;
      if (command_ && header_[0] == words_.value && header_.size() == 3) {
        command().values.push_back({header_[2], {}});
      }
      return;
    }
    if (StartsWith(row[0], "--") || row.size() != header_.size()) return;
    if (!command_) {
      TakeListed(row);
    } else if (header_[0] == words_.number && row.size() == 4) {
      command().fields.push_back({LeadingNumber(row[0]), Split(row[1], ','), row[2], row[3]});
    } else if (header_[0] == words_.value && row.size() == 3) {
      command().values.back().rows.push_back({row[0], row[1], row[2]});
    } else if (header_[0] == words_.code && row.size() == 2) {
      command().codes.push_back({row[0], row[1]});
    }
  }

  // The tables of commands that have no chapter.
  void TakeListed(const std::vector<std::string>& row) {
    if (header_[0] != words_.number || row.size() != 3) return;
    CommandHelp help;
    help.id = LeadingNumber(row[0]);
    help.name = row[1];
    help.group = groups_.back().title;
    const std::string always(words_.always);
    if (header_[2] == words_.code) {
      help.text = {std::string(words_.without_effect) + row[2] + "."};
      help.codes = {{row[2], always}};
    } else if (header_[2] == words_.fields) {
      help.text = {std::string(words_.word_of_dumps)};
      help.codes = {{"268", always}};
      int number = 0;
      for (const std::string& name : Split(row[2], ',')) {
        help.fields.push_back({++number, {name}, "", std::string(words_.field_of_dumps)});
      }
    } else {
      return;
    }
    groups_.back().commands.push_back(std::move(help));
  }

  const PageWords& words_;
  std::vector<CommandGroup> groups_;
  std::vector<std::string> header_;  // of the table being read
  bool command_ = false;             // in a command's chapter
  bool foreign_ = false;             // in a chapter that is about no command
  bool fenced_ = false;
  bool open_paragraph_ = false;
};

// What a page has, but the groups without commands.
std::vector<CommandGroup> GroupsWithCommands(std::string_view page, PageLanguage language) {
  std::vector<CommandGroup> groups = read_command_help(page, language);
  std::erase_if(groups, [](const CommandGroup& group) { return group.commands.empty(); });
  return groups;
}

}  // namespace

std::string CommandHelp::summary() const {
  if (text.empty()) return {};
  const size_t end = text.front().find(". ");
  return end == std::string::npos ? text.front() : text.front().substr(0, end + 1);
}

const FieldHelp* CommandHelp::find_field(int number) const {
  for (const FieldHelp& field : fields) {
    if (field.number == number) return &field;
  }
  return nullptr;
}

std::vector<CommandGroup> read_command_help(std::string_view page, PageLanguage language) {
  return PageReader(language == PageLanguage::kItalian ? kItalian : kEnglish).Read(page);
}

const std::vector<CommandGroup>& command_groups(PageLanguage language) {
  if (language == PageLanguage::kItalian) {
    static const auto italian = GroupsWithCommands(kItalianPage, PageLanguage::kItalian);
    return italian;
  }
  static const auto english = GroupsWithCommands(kEnglishPage, PageLanguage::kEnglish);
  return english;
}

const CommandHelp* find_command_help(int id, PageLanguage language) {
  for (const CommandGroup& group : command_groups(language)) {
    for (const CommandHelp& command : group.commands) {
      if (command.id == id) return &command;
    }
  }
  return nullptr;
}

}  // namespace language
