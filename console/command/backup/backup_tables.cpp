#include "console/command/backup/backup_tables.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "console/check/batch_check.h"
#include "console/check/finding.h"
#include "console/message/failure.h"
#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr std::array<BackupTable, 9> kTables = {{
    {"vat", "vat.txt", TR_TEXT("VAT rates"), 3, 33, false},
    {"header", "header.txt", TR_TEXT("header lines"), 4, 34, true},
    {"options", "options.txt", TR_TEXT("options"), 6, 36, true},
    {"groups", "groups.txt", TR_TEXT("groups"), 8, 38, false},
    {"operators", "operators.txt", TR_TEXT("operators"), 12, 53, false},
    {"departments", "departments.txt", TR_TEXT("departments"), 1, 31, false},
    {"subtenders", "subtenders.txt", TR_TEXT("subtenders"), 9, 39, false},
    {"keyboards", "keyboards.txt", TR_TEXT("keyboards"), 10, 43, false},
    {"articles", "articles.txt", TR_TEXT("articles"), 0, 0, false},
}};

// More than a register can hold: 60,000 articles with all texts quoted.
constexpr size_t kLargestDump = size_t{16} * 1024 * 1024;

constexpr int kBeginProgramming = 1;  // opcodes of the lines around a dump
constexpr int kEndProgramming = 2;
constexpr int kKeyboards = 10;

// A file that lies on no disk. A limit of file sizes (ulimit -f) holds for it, too.
class MemoryFile {
 public:
  MemoryFile() : file_(memfd_create("lorimat", MFD_CLOEXEC)) {
    if (!file_.is_open()) throw Failure(Tr("no file in memory: {}", SystemMessage(errno)));
  }

  // For this process; it has no capitals, which the library would make small.
  std::string name() const { return fmt::format("/proc/self/fd/{}", file_.get()); }

  // The errno value of what keeps it from growing; 0 when nothing does, and then nothing has cut
  // what was written.
  int full() const {
    const off_t end = lseek(file_.get(), 0, SEEK_END);
    if (end < 0 || pwrite(file_.get(), "\n", 1, end) != 1) return errno;
    return ftruncate(file_.get(), end) == 0 ? 0 : errno;
  }

 private:
  Descriptor file_;
};

// The lines of a text, without line ends.
std::vector<DumpRow> LinesOf(const std::string& text) {
  std::vector<DumpRow> lines;
  size_t begin = 0;
  while (begin < text.size()) {
    const size_t feed = text.find('\n', begin);
    size_t end = feed == std::string::npos ? text.size() : feed;
    const size_t next = feed == std::string::npos ? text.size() : feed + 1;
    if (end > begin && text[end - 1] == '\r') --end;
    lines.push_back({lines.size() + 1, text.substr(begin, end - begin)});
    begin = next;
  }
  return lines;
}

[[noreturn]] void Refuse(const std::string& path, uint64_t line, const std::string& cause) {
  throw Failure(fmt::format("{}:{}: {}", Shown(path), line, cause));
}

// Refuses the first line that the library's parser does not take.
void CheckLines(const std::string& path, const std::vector<DumpRow>& lines,
                const Language& language) {
  Findings findings;
  BatchCheck check(language, findings);
  for (const DumpRow& line : lines) {
    SourceLine source;
    source.number = line.line;
    source.text = line.text;
    source.length = line.text.size();
    const size_t nul = line.text.find('\0');
    source.nul_at = nul == std::string::npos ? 0 : nul + 1;
    check.Take(source);
    if (findings.errors() != 0) break;
  }
  for (const Finding& finding : findings.sorted()) {
    if (finding.severity() == Severity::kError) {
      Refuse(path, finding.line, Shown(WhatText(finding)));
    }
  }
}

// The code of an article's row, as it stands there.
std::string ArticleCode(const std::string& row) {
  if (row.empty() || row.front() != '\'') return row.substr(0, row.find(','));
  size_t end = 1;
  while (end < row.size()) {
    if (row[end] == '\'') {
      if (end + 1 >= row.size() || row[end + 1] != '\'') break;
      ++end;
    }
    ++end;
  }
  return row.substr(0, end + 1);
}

// What tells a row from the others of its table: the number in its first field, with a key the
// keyboard in its last field besides.
std::string RowKey(const BackupTable& table, const std::string& row) {
  if (table.one_row) return {};
  if (table.number == 0) return ArticleCode(row);
  const std::string first = row.substr(0, row.find(','));
  if (table.number != kKeyboards) return first;
  const size_t last = row.rfind(',');
  return first + (last == std::string::npos ? "" : row.substr(last));
}

}  // namespace

std::span<const BackupTable> BackupTables() { return kTables; }

std::string DumpTable(const BackupTable& table, const std::string& path, Library& library) {
  // By numbers, which every definition file takes. Around the rows stand the lines that turn the
  // key: they load into a register that wants it, and show that the dump is whole.
  const MemoryFile file;
  const std::string line = table.number == 0
                               ? fmt::format("#30 #1='DA', #2='{}'", file.name())
                               : fmt::format("#3 #1={}, #2='{}', #4", table.number, file.name());
  std::string answer;
  const long code = library.RunLine(line, &answer);
  std::string text = ReadWholeFile(file.name(), kLargestDump);
  if (const int error = file.full()) {
    throw Failure(Tr("{}: cannot be written: {}", Shown(path), SystemMessage(error)));
  }
  if (code != 0) {
    throw Failure(Tr("the {} cannot be read: code {}: {}", Translated(table.text), code,
                     Shown(WithoutTrailingBlanks(answer))));
  }
  return text;
}

std::vector<DumpRow> DumpRows(const BackupTable& table, const std::string& path,
                              const std::string& text, const Language& language) {
  std::vector<DumpRow> lines = LinesOf(text);
  const uint64_t count = lines.size();
  if (!text.empty() && text.back() != '\n') Refuse(path, count, Tr("the line has no end"));
  if (table.number == 0) {
    for (const DumpRow& line : lines) {
      if (line.text.find('\0') != std::string::npos) {
        Refuse(path, line.line, Tr("a NUL byte in the row of an article"));
      }
    }
    return lines;
  }
  CheckLines(path, lines, language);
  const std::string begin = language.CommandName(kBeginProgramming) + " ";
  const std::string end = language.CommandName(kEndProgramming);
  if (lines.size() < 2 || lines.front().text.compare(0, begin.size(), begin) != 0) {
    Refuse(path, 1, Tr("this is not the first line of a dump"));
  }
  if (lines.back().text != end) Refuse(path, count, Tr("this is not the last line of a dump"));
  std::vector<DumpRow> rows;
  for (size_t i = 1; i + 1 < lines.size(); ++i) {
    if (lines[i].text.empty() || lines[i].text.front() == ';') continue;
    // A table's file does not get to run other commands.
    const std::string word = lines[i].text.substr(0, lines[i].text.find(' '));
    if (language.FindCommand(word).number != table.opcode) {
      Refuse(path, lines[i].line, Tr("this is no row of the table"));
    }
    rows.push_back(std::move(lines[i]));
  }
  return rows;
}

std::vector<RowDifference> CompareRows(const BackupTable& table, const std::vector<DumpRow>& backup,
                                       const std::vector<DumpRow>& in_register) {
  std::map<std::string, const DumpRow*> present;
  for (const DumpRow& row : in_register) present.emplace(RowKey(table, row.text), &row);
  std::vector<RowDifference> differences;
  std::map<std::string, bool> kept;
  for (const DumpRow& row : backup) {
    const std::string key = RowKey(table, row.text);
    const auto found = present.find(key);
    kept[key] = true;
    if (found == present.end()) {
      differences.push_back({&table, row.line, row.text, ""});
    } else if (found->second->text != row.text) {
      differences.push_back({&table, row.line, row.text, found->second->text});
    }
  }
  for (const DumpRow& row : in_register) {
    if (!kept.contains(RowKey(table, row.text))) differences.push_back({&table, 0, "", row.text});
  }
  return differences;
}

FolderStay::FolderStay(const std::string& folder)
    : before_(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (!before_.is_open() || chdir(folder.c_str()) != 0) {
    throw Failure(Tr("{}: cannot work in this folder: {}", Shown(folder), SystemMessage(errno)));
  }
}

FolderStay::~FolderStay() {
  if (fchdir(before_.get()) != 0) {
    // The folder of the start is gone; nothing is opened by a relative name any more.
  }
}

std::string ReadWholeFile(const std::string& path, size_t most) {
  const auto fail = [&path](const std::string& cause) {
    throw Failure(Tr("{}: cannot be read: {}", Shown(path), cause));
  };
  // Not to wait for a writer of a pipe.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.is_open()) fail(SystemMessage(errno));
  struct stat status;
  if (fstat(file.get(), &status) != 0) fail(SystemMessage(errno));
  if (!S_ISREG(status.st_mode)) fail(Tr("it is no file"));
  std::string text;
  std::array<char, 65536> buffer;
  for (;;) {
    const ssize_t got = read(file.get(), buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail(SystemMessage(errno));
    if (got == 0) return text;
    text.append(buffer.data(), static_cast<size_t>(got));
    if (text.size() > most) fail(Tr("it is larger than {} bytes", most));
  }
}

}  // namespace lorimat::console
