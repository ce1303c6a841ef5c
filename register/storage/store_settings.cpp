// Single values, device options, keyboards and the open document as rows.
#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "register/storage/chain.h"
#include "register/storage/store_tables.h"
#include "register/value/row_encoding.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

// --- Single values

// Enough for every type of value that a row has: integers, enumerations and flags as numbers.
std::string ToText(int64_t value) { return std::to_string(value); }
std::string ToText(const std::string& value) { return value; }
std::string ToText(const std::tm& value) { return std::to_string(TimeNumber(value)); }
std::string ToText(const ClockSetBack& value) { return ToRecord(value); }
std::string ToText(const FaultPlan& value) { return value.ToText(); }
template <typename Enumeration>
requires std::is_enum_v<Enumeration> std::string ToText(Enumeration value) {
  return std::to_string(static_cast<int>(value));
}

std::optional<int64_t> ReadNumber(std::string_view text) {
  const std::string field = std::string(text) + ' ';
  const int64_t number = RowDecoder(field).Number();
  // Only what is written here.
  if (std::to_string(number) != text) return std::nullopt;
  return number;
}

bool FromText(std::string_view text, std::string* value) {
  *value = text;
  return true;
}
bool FromText(std::string_view text, int64_t* value) {
  const std::optional<int64_t> number = ReadNumber(text);
  *value = number.value_or(0);
  return number.has_value();
}
// Counts and places in a table: far beyond what they come to, and what is counted on stays in
// range.
bool FromText(std::string_view text, int* value) {
  constexpr int64_t kMost = 1'000'000'000;
  const std::optional<int64_t> number = ReadNumber(text);
  if (!number || *number < 0 || *number > kMost) return false;
  *value = static_cast<int>(*number);
  return true;
}
bool FromText(std::string_view text, bool* value) {
  *value = text == "1";
  return text == "0" || text == "1";
}
bool FromText(std::string_view text, std::tm* value) {
  const std::optional<int64_t> number = ReadNumber(text);
  *value = NumberTime(number.value_or(0));
  return number.has_value();
}
bool FromText(std::string_view text, FaultPlan* value) { return FaultPlan::FromText(text, value); }
bool FromText(std::string_view text, ClockSetBack* value) {
  const std::optional<ClockSetBack> back = ReadClockSetBack(text);
  *value = back.value_or(ClockSetBack{});
  return back.has_value();
}
bool FromText(std::string_view text, KeyPosition* value) {
  int number = 0;
  if (!FromText(text, &number) || number < 1 || number > 4) return false;
  *value = static_cast<KeyPosition>(number);
  return true;
}
bool FromText(std::string_view text, Commissioning* value) {
  int number = 0;
  if (!FromText(text, &number) || number < 0 || number > 3) return false;
  *value = static_cast<Commissioning>(number);
  return true;
}
bool FromText(std::string_view text, AnswerDue* value) {
  int number = 0;
  if (!FromText(text, &number) || number > 2) return false;
  *value = static_cast<AnswerDue>(number);
  return true;
}

bool Same(const std::tm& a, const std::tm& b) { return TimeNumber(a) == TimeNumber(b); }
bool Same(const FaultPlan& a, const FaultPlan& b) { return a.faults() == b.faults(); }
template <typename Value>
bool Same(const Value& a, const Value& b) {
  return a == b;
}

struct SettingRow {
  const char* name;
  bool (*same)(const RegisterState&, const RegisterState&);
  std::string (*write)(const RegisterState&);
  bool (*read)(std::string_view, RegisterState*);
};

// A row for the member that `access` names.
template <typename Access>
constexpr SettingRow Row(const char* name, Access) {
  return {
      name,
      [](const RegisterState& a, const RegisterState& b) { return Same(Access()(a), Access()(b)); },
      [](const RegisterState& state) { return ToText(Access()(state)); },
      [](std::string_view text, RegisterState* state) {
        return FromText(text, &Access()(*state));
      }};
}

constexpr SettingRow kSettings[] = {
    Row(
        "key", [](auto& state) -> auto& { return state.key; }),
    Row(
        "operator", [](auto& state) -> auto& { return state.current_operator; }),
    Row(
        "drawer_openings", [](auto& state) -> auto& { return state.drawer_count; }),
    Row(
        "firmware_version", [](auto& state) -> auto& { return state.firmware_version; }),
    Row(
        "courtesy_text", [](auto& state) -> auto& { return state.options.courtesy_text; }),
    Row(
        "invoice_series", [](auto& state) -> auto& { return state.options.invoice_series; }),
    Row(
        "send_lottery", [](auto& state) -> auto& { return state.options.send_lottery; }),
    Row(
        "auto_close", [](auto& state) -> auto& { return state.options.auto_close; }),
    Row(
        "trailer_line_1", [](auto& state) -> auto& { return state.setup.trailer_lines[0]; }),
    Row(
        "trailer_line_2", [](auto& state) -> auto& { return state.setup.trailer_lines[1]; }),
    Row(
        "trailer_line_3", [](auto& state) -> auto& { return state.setup.trailer_lines[2]; }),
    Row(
        "trailer_line_4", [](auto& state) -> auto& { return state.setup.trailer_lines[3]; }),
    Row(
        "trailer_line_5", [](auto& state) -> auto& { return state.setup.trailer_lines[4]; }),
    Row(
        "trailer_line_6", [](auto& state) -> auto& { return state.setup.trailer_lines[5]; }),
    Row(
        "fiscal_id", [](auto& state) -> auto& { return state.setup.fiscal_id; }),
    Row(
        "pos_id", [](auto& state) -> auto& { return state.setup.pos_id; }),
    Row(
        "cashier_id", [](auto& state) -> auto& { return state.setup.cashier_id; }),
    Row(
        "outbox", [](auto& state) -> auto& { return state.setup.outbox; }),
    Row(
        "header_logo", [](auto& state) -> auto& { return state.setup.header_logo; }),
    Row(
        "trailer_logo", [](auto& state) -> auto& { return state.setup.trailer_logo; }),
    Row(
        "clock_offset", [](auto& state) -> auto& { return state.setup.clock_offset; }),
    Row(
        kClockSetBackName, [](auto& state) -> auto& { return state.setup.clock_set_back; }),
    Row(
        "commissioning", [](auto& state) -> auto& { return state.setup.commissioning; }),
    Row(
        "round_cash", [](auto& state) -> auto& { return state.setup.round_cash; }),
    Row(
        "training", [](auto& state) -> auto& { return state.setup.training; }),
    Row(
        "power_losses", [](auto& state) -> auto& { return state.setup.power_losses; }),
    Row(
        "last_power_loss", [](auto& state) -> auto& { return state.setup.last_power_loss; }),
    Row(
        "faults", [](auto& state) -> auto& { return state.faults; }),
    Row(
        "answer_due", [](auto& state) -> auto& { return state.answer_due; }),
};

}  // namespace

bool SettingsDiffer(const RegisterState& state, const RegisterState& kept) {
  for (const SettingRow& row : kSettings) {
    if (!row.same(state, kept)) return true;
  }
  if (state.device_options.values() != kept.device_options.values()) return true;
  bool differs = false;
  state.keyboards.ForEachChange(kept.keyboards,
                                [&differs](int, int, const ProgrammedKey&) { differs = true; });
  return differs;
}

void StoreSettings(Database& database, const RegisterState& state, const RegisterState& kept) {
  for (const SettingRow& row : kSettings) {
    if (row.same(state, kept)) continue;
    database.Prepare("REPLACE INTO setting (name, value) VALUES (?, ?)")
        .With(std::string_view(row.name), row.write(state))
        .Run();
  }
  if (state.device_options.values() != kept.device_options.values()) {
    for (const auto& [number, value] : state.device_options.values()) {
      database.Prepare("REPLACE INTO device_option (number, value) VALUES (?, ?)")
          .With(number, value)
          .Run();
    }
  }
  state.keyboards.ForEachChange(
      kept.keyboards, [&database](int keyboard, int position, const ProgrammedKey& key) {
        database
            .Prepare(
                "REPLACE INTO programmed_key (keyboard, position, code, macro) VALUES (?, ?, ?, ?)")
            .With(keyboard, position, key.code, key.macro)
            .Run();
      });
}

void LoadSettings(Database& database, RegisterState* state) {
  for (const SettingRow& row : kSettings) {
    Statement stored = database.Prepare("SELECT value FROM setting WHERE name = ?");
    if (!stored.With(std::string_view(row.name)).Step()) continue;
    if (!row.read(stored.Text(0), state)) database.Damaged(row.name);
  }
  for (Statement row = database.Prepare("SELECT number, value FROM device_option"); row.Step();) {
    if (state->device_options.Write(row.Int(0), row.Text(1)) != RTF_SUCCESS) {
      database.Damaged("device_option");
    }
  }
  for (Statement row =
           database.Prepare("SELECT keyboard, position, code, macro FROM programmed_key");
       row.Step();) {
    const int code = row.Int(2);
    if (code < 0 || code > std::numeric_limits<uint8_t>::max() ||
        state->keyboards.Program(row.Int(0), row.Int(1),
                                 {static_cast<uint8_t>(code), row.String(3)}) != RTF_SUCCESS) {
      database.Damaged("programmed_key");
    }
  }
}

// --- The open document

std::string OpenDocumentRecord(const RegisterState& state, const OpenDocument& document,
                               const Paper& paper) {
  if (state.state == PrinterState::kMonitor) return {};
  RowEncoder notes;
  notes.Number(static_cast<int>(state.state)).Number(static_cast<int>(document.receipt.kind()));
  notes.Number(TimeNumber(document.begun));
  notes.Number(static_cast<int64_t>(document.receipt.lines().size()));
  notes.Number(document.cash != CashMove::kNone ? document.cash_total : document.receipt.total());
  notes.Number(static_cast<int64_t>(paper.dropped() + state.document_start));
  notes.Number(state.keep_non_fiscal ? 1 : 0).Number(static_cast<int>(document.cash));
  notes.Number(document.id).Number(document.number).Text(document.number_text);
  notes.Number(TimeNumber(document.time)).Number(document.trailer_printed ? 1 : 0);
  return notes.Take();
}

void StoreOpenDocument(Database& database, const RegisterState& state, const OpenDocument& document,
                       const std::string& record) {
  if (record.empty()) {
    database.Prepare("DELETE FROM open_document").Run();
    return;
  }
  database
      .Prepare(
          "REPLACE INTO open_document (id, state, kind, begun, lines, subtotal, notes) VALUES (1, "
          "?, ?, ?, ?, ?, ?)")
      .With(static_cast<int>(state.state), static_cast<int>(document.receipt.kind()),
            TimeNumber(document.begun), document.receipt.lines().size(), document.receipt.total(),
            record)
      .Run();
}

std::optional<StoredOpenDocument> LoadOpenDocument(Database& database) {
  Statement row = database.Prepare("SELECT notes FROM open_document");
  if (!row.Step()) return std::nullopt;
  RowDecoder notes(row.Text(0));
  StoredOpenDocument document;
  const int state = notes.Int();
  const int kind = notes.Int();
  document.notes.begun = NumberTime(notes.Number());
  document.lines = notes.Int();
  document.subtotal = notes.Number();
  const int64_t start = notes.Number();
  document.keep_non_fiscal = notes.Int() != 0;
  const int cash = notes.Int();
  document.notes.id = notes.Number();
  document.notes.number = notes.Int();
  document.notes.number_text = notes.Text();
  document.notes.time = NumberTime(notes.Number());
  document.notes.trailer_printed = notes.Int() != 0;
  constexpr PrinterState kOpen[] = {PrinterState::kReceipt, PrinterState::kTotal,
                                    PrinterState::kEnding, PrinterState::kNonFiscal,
                                    PrinterState::kItemList};
  const bool known = std::any_of(std::begin(kOpen), std::end(kOpen), [state](PrinterState one) {
    return static_cast<int>(one) == state;
  });
  if (!notes.done() || !known || kind < 0 || kind > static_cast<int>(DocumentKind::kCancel) ||
      cash < 0 || cash > static_cast<int>(CashMove::kOut) || start < 0) {
    database.Damaged("open_document");
  }
  document.state = static_cast<PrinterState>(state);
  document.kind = static_cast<DocumentKind>(kind);
  document.start = static_cast<size_t>(start);
  document.notes.cash = static_cast<CashMove>(cash);
  if (document.notes.cash != CashMove::kNone) document.notes.cash_total = document.subtotal;
  return document;
}

}  // namespace lorimat
