#include "door/judge/line_judge.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "door/judge/mark_text.h"
#include "language/code_explanation.h"
#include "language/field_kinds.h"
#include "language/handler_fields.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/fields.h"

namespace lorimat::door {
namespace {

// What a line may do, as far as it counts for the outcome of a job.
enum Does : unsigned {
  kNothing = 0,
  kInDocument = 1,  // belongs to a fiscal document
  kSells = 2,
  kOpens = 4,
  kPays = 8,         // or ends the document in another way
  kLotteryKey = 16,  // announces a code
  kCloses = 32,      // the day
  kPrints = 64,      // what has no number
  kProgrammes = 128,
  kDenied = 256,
  kBeginsText = 512,
  kEndsText = 1024,
  kVoids = 2048,  // what is open, or may
};

constexpr unsigned kFiscal = kInDocument | kSells | kOpens | kPays;
constexpr unsigned kWithoutNumber = kPrints | kProgrammes;

using Read = unsigned (*)(const EcrCmdCommand& line);

struct Row {
  int opcode;
  bool for_operator;
  unsigned does;
  Read more = nullptr;  // by its fields
};

int Number(const EcrCmdCommand& line, int field) { return TextToInt(line.szCampi[field]); }

unsigned Text(const EcrCmdCommand& line) {
  constexpr int kBegin = 1;
  constexpr int kEnd = 2;
  if (Given(line, kBegin)) return kBeginsText;
  return Given(line, kEnd) ? kEndsText : kNothing;
}

// A document that the device makes void by itself is over.
unsigned VoidDocument(const EcrCmdCommand& line) {
  constexpr int kAuto = 5;
  return Given(line, kAuto) ? kPays : kNothing;
}

std::optional<int> Digits(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0) return std::nullopt;
  return value;
}

// The sale of a void that the device makes by itself, as the translator takes it: DOC may have the
// closing ahead of the number, and no DOC is the last document. Nothing for one that only the
// device might understand.
std::optional<DocumentName> VoidedSale(const EcrCmdCommand& line) {
  constexpr int kDocument = 1;
  constexpr int kClosure = 3;
  constexpr size_t kHalf = 4;
  DocumentName sale;
  if (Given(line, kDocument)) {
    const std::string_view text = line.szCampi[kDocument];
    const bool has_both = text.size() == 2 * kHalf;
    const std::optional<int> closure = has_both ? Digits(text.substr(0, kHalf)) : 0;
    const std::optional<int> number = Digits(has_both ? text.substr(kHalf) : text);
    if (!closure || !number) return std::nullopt;
    sale = {*closure, *number, false};
  }
  if (Given(line, kClosure)) {
    const std::optional<int> closure = Digits(line.szCampi[kClosure]);
    if (!closure) return std::nullopt;
    sale.closure = *closure;
  }
  if ((sale.closure == 0) != (sale.number == 0)) return std::nullopt;
  return sale;
}

// Behind a reading the mode closes the day; with another report it clears a period, of which no
// number tells.
unsigned Report(const EcrCmdCommand& line) {
  constexpr int kCode = 1;
  constexpr int kMode = 2;
  constexpr int kLastReading = 4;
  const int code = Given(line, kCode) ? Number(line, kCode) : 1;
  const bool is_reading = code >= 1 && code <= kLastReading;
  return is_reading && Number(line, kMode) == 1 ? kCloses : kPrints;
}

// Keys sell, void and report too; these are the ones that have no command of their own.
unsigned Key(const EcrCmdCommand& line) {
  constexpr int kKey = 4;
  const int key = Number(line, kKey);
  switch (key) {
    case FunctionCode::kClear:
      return kNothing;
    case FunctionCode::kLotteryCode:
      return kInDocument | kLotteryKey;
    case FunctionCode::kConfirm:
    case FunctionCode::kTaxCode:
      return kInDocument;
    default:
      break;
  }
  const bool pays = key >= FunctionCode::kSubTender01 && key <= FunctionCode::kLastSubTender;
  return pays ? kInDocument | kPays : kDenied;
}

// What opens something else than a sale.
constexpr int kInvoice = 23;
constexpr int kCreditNote = 24;
constexpr int kVoidDocument = 124;

DocumentKind KindOf(int opcode) {
  switch (opcode) {
    case kInvoice:
      return DocumentKind::kInvoice;
    case kCreditNote:
      return DocumentKind::kRefund;
    case kVoidDocument:
      return DocumentKind::kCancel;
    default:
      return DocumentKind::kSale;
  }
}

constexpr Row kRows[] = {
    {10, false, kInDocument | kSells},
    {11, false, kInDocument | kPays},
    {9, false, kNothing, &Key},
    {12, false, kInDocument},
    {80, false, kInDocument},
    {16, false, kInDocument},
    {17, false, kInDocument},
    {18, false, kInDocument},
    {73, false, kInDocument | kVoids},
    {19, false, kInDocument},
    {20, false, kInDocument},
    {21, false, kInDocument},
    {22, false, kPrints, &Text},
    {kInvoice, false, kInDocument | kOpens},
    {kCreditNote, false, kInDocument | kOpens},
    {kVoidDocument, false, kInDocument | kOpens, &VoidDocument},
    {8, false, kNothing},
    {74, false, kVoids},
    {26, true, kNothing, &Report},
    {27, true, kCloses},
    {72, true, kPrints},
    {121, true, kPrints},
    {1, true, kProgrammes},
    {2, true, kProgrammes},
    {15, true, kProgrammes},
    {31, true, kProgrammes},
    {33, true, kProgrammes},
    {34, true, kProgrammes},
    {36, true, kProgrammes},
    {38, true, kProgrammes},
    {39, true, kProgrammes},
    {41, true, kProgrammes},
    {43, true, kProgrammes},
    {53, true, kProgrammes},
    {54, true, kProgrammes},
};

const Row* FindRow(int opcode) {
  const Row* row = std::find_if(std::begin(kRows), std::end(kRows),
                                [&](const Row& one) { return one.opcode == opcode; });
  return row == std::end(kRows) ? nullptr : row;
}

// 0 when it names none.
int FileField(const EcrCmdCommand& line, int opcode) {
  const language::CommandFields* command = language::find_handler_fields(opcode);
  if (command == nullptr) return 0;
  for (const int field : command->fields) {
    if (language::file_use(opcode, field) != language::FileUse::kNone && Given(line, field)) {
      return field;
    }
  }
  return 0;
}

// The first field whose text it holds for; 0 without one.
template <typename Holds>
int FieldThat(const EcrCmdCommand& line, Holds holds) {
  for (int field = 1; field <= MAXCAMPI; ++field) {
    if (Given(line, field) && holds(std::string_view(line.szCampi[field]))) return field;
  }
  return 0;
}

// The key of the total confirms a lottery code; by itself it pays, and the translator takes no
// notice.
bool ConfirmsCode(const EcrCmdCommand& line, int opcode, bool code_due) {
  constexpr int kInput = 9;
  constexpr int kKey = 4;
  return code_due && opcode == kInput && Number(line, kKey) == FunctionCode::kTotal;
}

}  // namespace

LineJudge::LineJudge(const std::string& definition_file) : language_(definition_file) {}

Judged LineJudge::Judge(const std::vector<std::string>& lines, bool is_operator) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const EcrCmdCommand& translator = language_.translator();
  Judged judged;
  judged.pays.resize(lines.size(), false);
  judged.voids.resize(lines.size(), false);
  judged.leaves.resize(lines.size(), false);
  unsigned all = kNothing;
  bool paid = false;
  bool code_due = false;
  bool in_text = false;
  for (size_t i = 0; i < lines.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    long code = 0;
    const int opcode = language_.ReadLine(lines[i], &code);
    const auto refuse = [&](LineFault fault, const std::string& field = {}) {
      judged.fault = {fault, number, opcode > 0 ? language_.CommandName(opcode) : "", field};
      return judged;
    };
    if (opcode == 0) {
      if (code != 0 && !judged.refused) {
        judged.refused = {number, code, {}, ExplainAnswer(code)};
      }
      continue;
    }
    const Row* row = FindRow(opcode);
    if (row == nullptr) return refuse(LineFault::kNotAllowed);
    unsigned does = row->does;
    if (ConfirmsCode(translator, opcode, code_due)) {
      does |= kInDocument;
    } else if (row->more != nullptr) {
      does |= row->more(translator);
    }
    if ((does & kDenied) != 0) return refuse(LineFault::kNotAllowed);
    if (row->for_operator && !is_operator) return refuse(LineFault::kForOperator);
    if (const int field = FileField(translator, opcode)) {
      return refuse(LineFault::kNamesFile, language_.FieldName(opcode, field));
    }
    if (paid && (does & (kSells | kOpens)) != 0) return refuse(LineFault::kSecondDocument);
    const bool closes_again = (all & does & kCloses) != 0;
    // The first one that opens it; where it does not, the job ends there.
    if ((does & kOpens) != 0 && (all & kOpens) == 0) judged.kind = KindOf(opcode);
    all |= does;
    int effects = 0;
    for (const unsigned effect : {kFiscal, unsigned{kCloses}, kWithoutNumber}) {
      if ((all & effect) != 0) ++effects;
    }
    if (effects > 1 || closes_again) return refuse(LineFault::kSecondEffect);
    code_due = (does & kLotteryKey) != 0;
    judged.pays[i] = (does & kPays) != 0;
    judged.voids[i] = (does & kVoids) != 0;
    if (opcode == kVoidDocument && judged.pays[i]) judged.voids_whole = VoidedSale(translator);
    judged.may_hold_mark = judged.may_hold_mark || FieldThat(translator, &MayHoldMark) != 0;
    in_text = ((does & kBeginsText) != 0 || in_text) && (does & kEndsText) == 0;
    // A text that is left open is given up, and nothing of it stays.
    judged.leaves[i] = (does & kWithoutNumber) != 0 && !in_text;
    paid = paid || judged.pays[i];
  }
  // A text alone is no document; a line that sells is one that may be paid.
  if ((all & (kSells | kOpens | kPays)) != 0) {
    judged.effect = JobEffect::kDocument;
  } else if ((all & kCloses) != 0) {
    judged.effect = JobEffect::kClosing;
  }
  return judged;
}

std::optional<JudgedFault> LineJudge::FindMark(const std::vector<std::string>& lines,
                                               const std::set<std::string>& marks) {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (size_t i = 0; i < lines.size(); ++i) {
    const int opcode = language_.ReadLine(lines[i]);
    const int field = FieldThat(language_.translator(),
                                [&](std::string_view text) { return HoldsMark(text, marks); });
    if (opcode == 0 || field == 0) continue;
    return JudgedFault{LineFault::kMarkOfJob, static_cast<int>(i) + 1,
                       language_.CommandName(opcode), language_.FieldName(opcode, field)};
  }
  return std::nullopt;
}

char LineJudge::quote() const { return language_.translator().GetQuoteChar(); }

bool LineJudge::ReadsAs(const std::string& line, int opcode, const Fields& fields) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (language_.ReadLine(line) != opcode) return false;
  std::array<std::string_view, MAXCAMPI + 1> wanted = {};
  for (const auto& [number, value] : fields) wanted[static_cast<size_t>(number)] = value;
  const EcrCmdCommand& translator = language_.translator();
  for (size_t number = 1; number < wanted.size(); ++number) {
    if (translator.szCampi[number] != wanted[number]) return false;
  }
  return true;
}

std::string ExplainAnswer(long code) {
  if (code == 0) return {};
  std::string text;
  for (const std::string& sentence :
       language::ExplainCode(code, [](std::string_view english) { return english; })) {
    if (!text.empty()) text += text.back() == '.' ? " " : ". ";
    text += sentence;
  }
  return text;
}

}  // namespace lorimat::door
