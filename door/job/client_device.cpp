#include "door/job/client_device.h"

#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <string_view>
#include <utility>

#include "console/message/translate.h"
#include "door/job/result_code.h"
#include "door/log/iso_time.h"
#include "register/totals/journal.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::door {
namespace {

// Data items.
constexpr int kGrandTotal = 9;
constexpr int kInvoice = 15;
constexpr int kDayTotal = 89;
constexpr int kSerial = 92;
constexpr int kClock = 149;
constexpr int kStatus = 371;
constexpr int kClosure = 394;

// Kinds of documents, bits of the journal's filter.
constexpr int kReceipts = 0x2;
constexpr int kInvoices = 0x4;
constexpr int kRefunds = 0x8;
constexpr int kVoids = 0x10;

// The longest text of the interface has 512 characters; a client that is in no hurry to close its
// text finds it closed.
using Text = std::array<char, 1024>;

// What a client does wrong is a device that does not answer.
template <typename Call>
int ResultOf(Call call) {
  try {
    return call();
  } catch (...) {
    return RTF_E_FAILURE;
  }
}

// With the device's result in *result, where somebody wants it.
template <typename Call>
bool Asks(Call call, int* result = nullptr) {
  const int told = ResultOf(call);
  if (result != nullptr) *result = told;
  return told == RTF_SUCCESS;
}

std::optional<std::string> Item(RtfClientInterface& client, int item, int* result = nullptr) {
  Text text{};
  if (!Asks([&] { return client.GetDataInternal(item, text.data()); }, result)) {
    return std::nullopt;
  }
  text.back() = 0;
  return std::string(text.data());
}

template <typename Number>
std::optional<Number> ReadNumber(std::string_view text) {
  Number value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

template <typename Number>
std::optional<Number> NumberItem(RtfClientInterface& client, int item, int* result = nullptr) {
  const std::optional<std::string> text = Item(client, item, result);
  return text ? ReadNumber<Number>(*text) : std::nullopt;
}

// An item that not every device has. False when this one does not answer.
bool ReadWhereItIs(RtfClientInterface& client, int item, std::optional<int64_t>* value) {
  Text text{};
  const int result = ResultOf([&] { return client.GetDataInternal(item, text.data()); });
  text.back() = 0;
  if (result == RTF_SUCCESS) *value = ReadNumber<int64_t>(text.data());
  return !IsUnclearResult(result);
}

std::optional<int> LastReceipt(RtfClientInterface& client, int* result = nullptr) {
  Text text{};
  int number = 0;
  const auto ask = [&] { return client.GetData(RTF_FPTR_GD_FISCAL_REC, &number, text.data()); };
  if (!Asks(ask, result)) return std::nullopt;
  text.back() = 0;
  return ReadNumber<int>(text.data());
}

std::optional<int> PrinterState(RtfClientInterface& client, int* result = nullptr) {
  int state = 0;
  const auto ask = [&] { return client.GetIntProperty(RTF_PIDXFptr_PrinterState, &state); };
  if (!Asks(ask, result)) return std::nullopt;
  return state;
}

// The last field of the status line, and what is open by its second one, a decimal number: 2 to 6
// are fiscal documents.
struct Status {
  int functional = 0;
  int key = 0;
};

std::optional<Status> ReadStatus(RtfClientInterface& client, int* result = nullptr) {
  const std::optional<std::string> line = Item(client, kStatus, result);
  if (!line) return std::nullopt;
  const size_t first = line->find(';');
  const size_t last = line->rfind(';');
  if (first == line->npos) return std::nullopt;
  const std::string_view all = *line;
  const size_t second = all.find(';', first + 1);
  if (second == all.npos) return std::nullopt;
  const std::optional<int> functional = ReadNumber<int>(all.substr(first + 1, second - first - 1));
  const std::optional<int> key = ReadNumber<int>(all.substr(last + 1));
  if (!functional || !key) return std::nullopt;
  return Status{*functional, *key};
}

bool IsFiscal(const Status& status) { return status.functional >= 2 && status.functional <= 6; }

// Whether it stands there, and is no part of a longer number.
bool HasWord(std::string_view line, std::string_view word) {
  const auto is_digit = [&](size_t at) {
    return at < line.size() && line[at] >= '0' && line[at] <= '9';
  };
  for (size_t at = line.find(word); at != line.npos; at = line.find(word, at + 1)) {
    if ((at == 0 || !is_digit(at - 1)) && !is_digit(at + word.size())) return true;
  }
  return false;
}

// A file without a name, which needs no disk: the device writes into it, as long as it is there.
class NamelessFile {
 public:
  NamelessFile() : descriptor_(memfd_create("lorimatd", MFD_CLOEXEC)) {}
  ~NamelessFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  NamelessFile(const NamelessFile&) = delete;
  NamelessFile& operator=(const NamelessFile&) = delete;

  bool good() const { return descriptor_ >= 0; }
  std::string path() const { return fmt::format("/proc/self/fd/{}", descriptor_); }
  // Its lines; no document has more than that.
  std::vector<std::string> Lines() const {
    constexpr size_t kMost = 8 << 20;
    std::vector<std::string> lines(1);
    std::array<char, 4096> part;
    for (size_t taken = 0; taken < kMost;) {
      const ssize_t got = pread(descriptor_, part.data(), part.size(), static_cast<off_t>(taken));
      if (got <= 0) break;
      taken += static_cast<size_t>(got);
      for (const char c : std::string_view(part.data(), static_cast<size_t>(got))) {
        if (c == '\n') {
          lines.emplace_back();
        } else {
          lines.back() += c;
        }
      }
    }
    return lines;
  }

 private:
  int descriptor_;
};

}  // namespace

std::optional<DeviceState> ClientDevice::Ask() {
  RtfClientInterface& device = client();
  // One that does not answer may take its time for each: the first is the last.
  const std::optional<std::string> serial = Item(device, kSerial);
  if (!serial || serial->empty()) return std::nullopt;
  const std::optional<int> closure = NumberItem<int>(device, kClosure);
  if (!closure) return std::nullopt;
  const std::optional<int> document = LastReceipt(device);
  if (!document) return std::nullopt;
  const std::optional<int> invoice = NumberItem<int>(device, kInvoice);
  if (!invoice) return std::nullopt;
  const std::optional<int64_t> total = NumberItem<int64_t>(device, kDayTotal);
  if (!total) return std::nullopt;
  const std::optional<int> printer = PrinterState(device);
  if (!printer) return std::nullopt;
  const std::optional<Status> status = ReadStatus(device);
  if (!status) return std::nullopt;
  std::optional<int64_t> grand_total;
  if (!ReadWhereItIs(device, kGrandTotal, &grand_total)) return std::nullopt;
  DeviceState state;
  state.numbers = {*serial, *closure, *document, *invoice, *total, grand_total};
  // Both are asked: a device may be open for one and closed for the other.
  state.is_open = *printer != RTF_FPTR_PS_MONITOR || status->functional > 1;
  state.is_fiscal_open = IsFiscal(*status);
  state.key_registering = status->key == 1;
  return state;
}

std::optional<bool> ClientDevice::AskFiscalOpen() {
  const std::optional<Status> status = ReadStatus(client());
  if (!status) return std::nullopt;
  return IsFiscal(*status);
}

MissingItems ClientDevice::Missing() {
  RtfClientInterface& device = client();
  MissingItems missing;
  int result = RTF_SUCCESS;
  const auto need = [&missing, &result](bool there, std::string_view what) {
    if (there) return;
    if (!missing.text.empty()) missing.text += ", ";
    missing.text += console::Translated(what);
    // What was told, and cannot be read, will be told so again.
    if (result == RTF_SUCCESS || IsRefusal(result)) missing.may_pass = false;
  };
  const std::optional<std::string> serial = Item(device, kSerial, &result);
  need(serial && !serial->empty(), TR_TEXT("serial number (data item 92)"));
  const bool has_closure = NumberItem<int>(device, kClosure, &result).has_value();
  need(has_closure, TR_TEXT("last day closing (data item 394)"));
  const bool has_document = LastReceipt(device, &result).has_value();
  need(has_document, TR_TEXT("last document (GetData 20)"));
  const bool has_invoice = NumberItem<int>(device, kInvoice, &result).has_value();
  need(has_invoice, TR_TEXT("last invoice (data item 15)"));
  const bool has_total = NumberItem<int64_t>(device, kDayTotal, &result).has_value();
  need(has_total, TR_TEXT("total of the day (data item 89)"));
  const bool has_state = PrinterState(device, &result).has_value();
  need(has_state, TR_TEXT("state of the printer"));
  const bool has_status = ReadStatus(device, &result).has_value();
  need(has_status, TR_TEXT("status line (data item 371)"));
  return missing;
}

std::optional<DeviceReport> ClientDevice::Report() {
  const std::optional<DeviceState> state = Ask();
  if (!state) return std::nullopt;
  const DeviceNumbers& numbers = state->numbers;
  DeviceReport report;
  report.is_open = state->is_open;
  report.is_fiscal_open = state->is_fiscal_open;
  report.day.total = numbers.day_total;
  // The last one of the day that is open, but an invoice.
  if (numbers.document > 0) {
    report.last_document =
        JobDocument{numbers.closure + 1, numbers.document, numbers.serial, {}, {}};
  }
  struct Row {
    int property;
    const char* warning;
  };
  static constexpr Row kRows[] = {{RTF_PIDXFptr_RecNearEnd, "paper_near_end"},
                                  {RTF_PIDXFptr_RecEmpty, "paper_end"},
                                  {RTF_PIDXFptr_CoverOpen, "cover_open"}};
  for (const Row& row : kRows) {
    int value = 0;
    if (Asks([&] { return client().GetIntProperty(row.property, &value); }) && value != 0) {
      report.warnings.emplace_back(row.warning);
    }
  }
  AddReport(&report);
  return report;
}

Told ClientDevice::Extract(const DocumentName& name, int kinds, std::vector<std::string>* lines) {
  // An extract of the journal by closing and number, as the language's DGFE asks for it.
  constexpr int kJournal = 1;
  constexpr int kByClosure = 3;
  constexpr uint32_t kNumbersOfAClosure = 10000;
  constexpr int kIntoFile = 2;
  const NamelessFile file;
  if (!file.good()) return Told::kNoAnswer;
  const uint32_t number =
      static_cast<uint32_t>(name.closure) * kNumbersOfAClosure + static_cast<uint32_t>(name.number);
  const int result = ResultOf([&] {
    return client().FiscalReportMessageEx(kJournal, kinds, kByClosure, 0, 0, number, number, "", "",
                                          "txt", file.path().c_str(), kIntoFile);
  });
  lines->clear();
  if (result == RTF_E_NOEXIST) return Told::kYes;
  // A state such as an open cover passes.
  if (result != RTF_SUCCESS) return IsRefusal(result) ? Told::kNo : Told::kNoAnswer;
  *lines = file.Lines();
  return Told::kYes;
}

Told ClientDevice::FindPaper(const DocumentName& name, std::optional<DocumentKind> kind,
                             std::vector<std::string>* lines) {
  const int all = name.is_invoice ? kInvoices : kReceipts | kRefunds | kVoids;
  return Extract(name, kind ? JournalKindOf(*kind) : all, lines);
}

Told ClientDevice::FindLast(const DocumentName& name, LastDocument* document) {
  std::vector<std::string> paper;
  const Told told = FindPaper(name, std::nullopt, &paper);
  if (told != Told::kYes) return told;
  if (paper.empty()) return Told::kNo;
  document->facts = {name.closure, name.number, {}, {}, {}};
  document->is_invoice = name.is_invoice;
  document->paper = std::move(paper);
  return Told::kYes;
}

Told ClientDevice::FindVoid(const DocumentName& name, const DocumentName& sale) {
  if (name.is_invoice || sale.is_invoice) return Told::kNo;
  std::vector<std::string> paper;
  const Told told = Extract(name, kVoids, &paper);
  if (told != Told::kYes) return told;
  const std::string named = fmt::format("{:04}-{:04}", sale.closure, sale.number);
  const bool is_it = std::any_of(paper.begin(), paper.end(),
                                 [&](const std::string& line) { return HasWord(line, named); });
  return is_it ? Told::kYes : Told::kNo;
}

std::string ClientDevice::Clock() {
  // "DDMMYYYYHHMM".
  constexpr size_t kDigits = 12;
  const std::optional<std::string> text = Item(client(), kClock);
  if (!text || text->size() != kDigits || text->find_first_not_of("0123456789") != text->npos) {
    return {};
  }
  const auto part = [&](size_t from, size_t digits) {
    return ReadNumber<int>(std::string_view(*text).substr(from, digits)).value_or(0);
  };
  std::tm time{};
  time.tm_mday = part(0, 2);
  time.tm_mon = part(2, 2) - 1;
  time.tm_year = part(4, 4) - 1900;
  time.tm_hour = part(8, 2);
  time.tm_min = part(10, 2);
  const bool is_time = time.tm_mday >= 1 && time.tm_mday <= 31 && time.tm_mon >= 0 &&
                       time.tm_mon < 12 && time.tm_year >= 0 && time.tm_hour < 24 &&
                       time.tm_min < 60;
  return is_time ? IsoTime(time) : std::string();
}

int ClientDevice::PrintMark(const std::string& mark) {
  try {
    return client().PrintRecMessage(mark.c_str());
  } catch (...) {
    return RTF_E_FAILURE;
  }
}

}  // namespace lorimat::door
