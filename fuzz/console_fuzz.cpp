// What the console and the paper read: lines, definition files, requests of the JSON shell, dates,
// faults, barcodes, logos, lists of a backup. The input: which one, a byte of choices, the text; a
// NUL divides two.
#include <iterator>
#include <sstream>

#include "console/check/batch_check.h"
#include "console/check/definition_check.h"
#include "console/check/definition_fault.h"
#include "console/check/number_reading.h"
#include "console/check/password_mask.h"
#include "console/command/backup/backup_manifest.h"
#include "console/command/backup/backup_tables.h"
#include "console/command/shop_options.h"
#include "console/device/clock_text.h"
#include "console/host/answer_causes.h"
#include "console/host/answer_text.h"
#include "console/host/batch_request.h"
#include "console/message/failure.h"
#include "console/shell/json_request.h"
#include "console/shell/shell_completion.h"
#include "console/terminal/line_encoding.h"
#include "console/terminal/shell_text.h"
#include "fuzz/scratch.h"
#include "language/code_table.h"
#include "register/fault/faults.h"
#include "register/paper/barcode.h"
#include "register/paper/paper.h"
#include "register/paper/picture.h"
#include "register/paper/picture_barcode.h"
#include "register/paper/picture_logo.h"
#include "register/paper/picture_surface.h"

namespace {

using namespace lorimat::console;

struct Input {
  uint8_t choice;
  std::string text;
  std::string other;
};

const Language& Words() {
  static const Language words(LORIMAT_SOURCE_DIR "/language/merkelin.ini");
  return words;
}

lorimat::console::SourceLine Line(const std::string& text) {
  SourceLine line;
  line.number = 1;
  line.text = text.substr(0, LineReader::kKept);
  line.length = text.size();
  const size_t nul = text.find('\0');
  line.nul_at = nul == std::string::npos ? 0 : nul + 1;
  return line;
}

template <typename Check>
void TakeFile(const std::string& text, Check& check) {
  WriteInput("in", text);
  LineReader reader("in");
  for (SourceLine line; reader.Next(&line);) check.Take(line);
  check.Finish();
}

void ShowAll(const Findings& findings, bool colours) {
  for (const Finding& finding : findings.sorted()) {
    Require(!FindingText("in", finding, colours).empty(), "a finding has a text");
    FindingJson(finding).dump(-1, ' ', false, Json::error_handler_t::replace);
  }
}

void Batches(const Input& input) {
  Findings findings;
  BatchCheck check(Words(), findings);
  TakeFile(input.text, check);
  ShowAll(findings, (input.choice & 1) != 0);
}

void Definitions(const Input& input) {
  Findings findings;
  DefinitionCheck check(findings);
  TakeFile(input.text, check);
  ShowAll(findings, (input.choice & 1) != 0);
  const DefinitionReport report = InspectDefinition("in");
  Require((report.fault ? report.fault->line : 0) == check.stop_line(),
          "both readers stop at the same line");
  try {
    const Language words = Language::FromText(input.text);
    Require(!report.fault, "the library refuses what the check refuses");
    words.commands();
    words.symbols();
    words.FindCommand(input.other);
    words.FindField(input.choice, input.other);
  } catch (const Failure&) {
    Require(report.fault.has_value(), "the check refuses what the library refuses");
  }
}

void Requests(const Input& input) {
  const JsonRequest request = ReadRequest(Line(input.text));
  if (!request.error) {
    Require(request.line.find('\n') == std::string::npos, "a request is one line");
  }
}

void Dates(const Input& input) {
  const std::optional<GivenDate> date = ParseDate(input.text);
  if (date) Require(date->time.tm_mon >= 0 && date->time.tm_mon < 12, "a date has a month");
}

void Lines(const Input& input) {
  WithoutPasswords(&Words(), input.text);
  WithoutPasswords(nullptr, input.text);
  const std::string line = input.text.substr(0, input.text.find('\0'));
  ParserFinding(Words(), line);
  ParserHint(Words(), line, 20 + input.choice);
  EncodingHint(input.text);
  ShowsUtf16(Line(input.text));
  for (int opcode = 0; opcode < 128; opcode += 1 + input.choice % 7) {
    ReadNumber(KindOfNumber(opcode, input.choice % 41), line);
    LikelyNumber(KindOfNumber(opcode, input.choice % 41), line);
  }
}

void Completions(const Input& input) {
  static const ShellCompleter completer(Words(), {"quit", "paper", "file"}, {"next", "paper-end"});
  const size_t cursor = input.text.empty() ? 0 : input.choice % (input.text.size() + 1);
  const Completion completion = completer.Complete(input.text, cursor);
  Require(completion.begin <= input.text.size(), "what is replaced lies in the line");
  completion.common_beginning();
}

void Texts(const Input& input) {
  const size_t columns = input.choice;
  ColumnsOf(input.text);
  Require(ColumnsOf(CutTo(input.text, columns)) <= columns || columns == 0, "a cut text fits");
  Flowed(input.text, columns % 7, columns % 5, columns);
  Wrapped(input.text, columns % 5, columns);
  Entry(input.text, input.other, columns);
  Broken(input.text, columns);
  InColumns({input.text, input.other}, columns);
}

void Codes(const Input& input) {
  ReadCodeNumber(input.text);
  ParseBatchError(input.text);
  WriteInput("errors.txt", input.text);
  ReadBatchErrors("errors.txt");
  const int code = input.choice * 131 + static_cast<int>(input.text.size());
  language::ReadCode(code);
  CausesText(code, 60);
}

void Faults(const Input& input) {
  lorimat::FaultPlan plan;
  if (!lorimat::FaultPlan::FromText(input.text, &plan)) return;
  lorimat::FaultPlan back;
  Require(lorimat::FaultPlan::FromText(plan.ToText(), &back) && back.faults() == plan.faults(),
          "a plan comes back from its text");
}

void Backups(const Input& input) {
  WriteInput(BackupManifest::kFileName, input.text);
  try {
    const BackupManifest manifest = ReadManifest(".");
    for (const BackupFile& file : manifest.files) ReadBackupFile(".", file);
  } catch (const Failure&) {
  }
  for (const BackupTable& table : BackupTables()) {
    try {
      const auto rows = DumpRows(table, "in", input.other, Words());
      CompareRows(table, rows, rows);
    } catch (const Failure&) {
    }
  }
}

void Shops(const Input& input) {
  ShopOptions options;
  options.serial = input.text;
  options.vat_number = input.other;
  options.header = {input.text, input.other};
  options.vat = {input.other};
  options.departments = {input.text};
  try {
    ReadShopOptions(options);
  } catch (const Failure&) {
  }
}

void Papers(const Input& input) {
  lorimat::Paper paper;
  paper.Text(input.text.substr(0, 300));
  paper.Centred(input.other.substr(0, 300));
  const std::string id = {'0', static_cast<char>('0' + input.choice % 10)};
  const lorimat::BarcodeType* type = lorimat::FindBarcode(id);
  if (type != nullptr) {
    const lorimat::BarcodeRow row{type->id, input.other, 1 + input.choice % 9,
                                  (input.choice & 1) != 0, lorimat::Alignment::kCentre};
    if (lorimat::CheckBarcode(*type, input.other) == 0) {
      lorimat::EncodeBars(row);
      paper.Barcode(row, type->name);
    }
  }
  if (input.choice % 8 == 0) {
    try {
      lorimat::RenderPng(paper);
    } catch (const lorimat::PictureError&) {
    }
  }
}

void Logos(const Input& input) {
  WriteInput("logo", input.text);
  try {
    lorimat::ReadLogo("logo");
  } catch (const lorimat::PictureError&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  FreshFolder();
  static constexpr void (*kReaders[])(const Input&) = {
      Batches, Definitions, Requests, Dates, Lines,  Completions, Texts,
      Codes,   Faults,      Backups,  Shops, Papers, Logos};
  const auto reader = kReaders[data[0] % std::size(kReaders)];
  Input input{data[1], {}, {}};
  if (reader == Logos || reader == Batches || reader == Requests) {
    input.text.assign(reinterpret_cast<const char*>(data) + 2, size - 2);
  } else {
    InputParts parts(data + 2, size - 2);
    input.text = parts.Next();
    input.other = parts.Rest();
  }
  reader(input);
  return 0;
}
