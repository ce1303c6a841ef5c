#include "console/conform/conform_progress.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "console/conform/reading_calls.h"
#include "console/conform/refusal_calls.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kReadings = "readings";
constexpr std::string_view kStatesGroup = "states";
constexpr std::string_view kOperations = "operations";
constexpr std::string_view kRefusals = "refusals";
constexpr std::string_view kAgain = "again";

// How large tables are does not change by what was done.
bool IsReadAgain(const ReadingCall& reading) { return reading.form == AnswerForm::kCount; }

Json RowAsJson(size_t place, const ConformRow& row) {
  Json findings = Json::array();
  for (const ConformFinding& finding : row.findings) {
    findings.push_back(Json::array({static_cast<int>(finding.cause), finding.operation,
                                    static_cast<int>(finding.state), finding.expected, finding.got,
                                    finding.text}));
  }
  return Json::array({place, static_cast<int>(row.verdict), findings});
}

void TakeRow(const Json& json, ConformRow* row) {
  row->verdict = static_cast<ConformVerdict>(json.at(1).get<int>());
  row->findings.clear();
  for (const Json& finding : json.at(2)) {
    row->findings.push_back({.cause = static_cast<ConformCause>(finding.at(0).get<int>()),
                             .operation = finding.at(1),
                             .state = static_cast<State>(finding.at(2).get<int>()),
                             .expected = finding.at(3),
                             .got = finding.at(4),
                             .text = finding.at(5)});
  }
}

}  // namespace

std::string ConformPiece::Name() const {
  switch (kind) {
    case kReading:
    case kAgain:
      return ReadingCalls()[place].Name();
    case kState:
      return std::string(NameOfState(state).name);
    case kOperation:
      return std::string(StateCalls()[place].name) + ", " + std::string(NameOfState(state).name);
    case kRefusal:
      break;
  }
  const RefusalCall& refusal = RefusalCalls()[place];
  return std::string(refusal.name) + ": " + std::string(refusal.what);
}

std::vector<ConformPiece> ConformPieces() {
  std::vector<ConformPiece> pieces;
  for (size_t i = 0; i < ReadingCalls().size(); ++i) pieces.push_back({ConformPiece::kReading, i});
  for (int number = 0; number < kStates; ++number) {
    const auto state = static_cast<State>(number);
    pieces.push_back({ConformPiece::kState, 0, state});
    for (size_t i = 0; i < StateCalls().size(); ++i) {
      pieces.push_back({ConformPiece::kOperation, i, state});
    }
  }
  for (size_t i = 0; i < RefusalCalls().size(); ++i) pieces.push_back({ConformPiece::kRefusal, i});
  for (size_t i = 0; i < ReadingCalls().size(); ++i) {
    if (IsReadAgain(ReadingCalls()[i])) pieces.push_back({ConformPiece::kAgain, i});
  }
  return pieces;
}

ConformProgress::ConformProgress()
    : pieces_(ConformPieces()), cells_(StateCalls().size()), first_answers_(ReadingCalls().size()) {
  begins_[ConformPiece::kReading] = rows_.size();
  for (const ReadingCall& reading : ReadingCalls())
    rows_.push_back({kReadings, reading.Name(), {}});
  begins_[ConformPiece::kState] = rows_.size();
  for (int state = 0; state < kStates; ++state) {
    rows_.push_back({kStatesGroup, std::string(NameOfState(static_cast<State>(state)).name), {}});
  }
  begins_[ConformPiece::kOperation] = rows_.size();
  for (const StateCall& call : StateCalls()) {
    rows_.push_back({kOperations, std::string(call.name), {}});
  }
  begins_[ConformPiece::kRefusal] = rows_.size();
  for (const RefusalCall& refusal : RefusalCalls()) {
    rows_.push_back({kRefusals, std::string(refusal.name), refusal.what});
  }
  begins_[ConformPiece::kAgain] = rows_.size();
  for (size_t i = 0; i < ReadingCalls().size(); ++i) {
    if (!IsReadAgain(ReadingCalls()[i])) continue;
    rows_.push_back({kAgain, ReadingCalls()[i].Name(), {}});
    again_.push_back(i);
  }
}

size_t ConformProgress::PlaceOf(const ConformPiece& piece) const {
  const size_t begin = begins_[piece.kind];
  if (piece.kind == ConformPiece::kState) return begin + piece.state;
  if (piece.kind != ConformPiece::kAgain) return begin + piece.place;
  const auto found = std::find(again_.begin(), again_.end(), piece.place);
  return begin + static_cast<size_t>(found - again_.begin());
}

ConformRow& ConformProgress::RowOf(const ConformPiece& piece) { return rows_[PlaceOf(piece)]; }

ConformRow& ConformProgress::RowOfState(State state) {
  return rows_[begins_[ConformPiece::kState] + state];
}

void ConformProgress::NoteEnd(const ProcessEnd& end, std::string_view operation) {
  ++resumed;
  if (tried == pieces_.size()) return;
  const ConformPiece& piece = pieces_[tried++];
  AddFinding(&RowOf(piece), {.cause = end.cause(),
                             .operation = std::string(operation),
                             .state = piece.state,
                             .got = end.number()});
}

bool ConformProgress::EndedAt(const ConformRow& row) {
  return std::any_of(row.findings.begin(), row.findings.end(), [](const ConformFinding& finding) {
    return finding.cause == ConformCause::kKilled || finding.cause == ConformCause::kExited;
  });
}

std::string ConformProgress::Changes(size_t number) const {
  const ConformPiece& piece = pieces_[number];
  const size_t own = PlaceOf(piece);
  Json json = {{"piece", number}, {"gone", gone}, {"rows", {RowAsJson(own, rows_[own])}}};
  if (piece.kind == ConformPiece::kReading) json["answer"] = first_answers_[piece.place];
  if (piece.state != kStates) {
    const size_t state = begins_[ConformPiece::kState] + piece.state;
    json["rows"].push_back(RowAsJson(state, rows_[state]));
    json["reached"] = reached_[piece.state];
  }
  if (piece.kind == ConformPiece::kOperation) {
    const Cell& cell = cells_[piece.place][piece.state];
    json["cell"] = {cell.tried, cell.code};
  }
  // Texts of a device may hold any bytes, which this form takes as they are.
  std::string bytes;
  Json::to_cbor(json, bytes);
  return bytes;
}

void ConformProgress::Take(std::string_view changes) {
  const Json json = Json::from_cbor(changes.begin(), changes.end());
  const size_t number = json.at("piece");
  const ConformPiece& piece = pieces_.at(number);
  for (const Json& row : json.at("rows")) TakeRow(row, &rows_.at(row.at(0).get<size_t>()));
  if (json.contains("answer")) first_answers_[piece.place] = json["answer"];
  if (json.contains("reached")) reached_.at(piece.state) = json["reached"];
  if (json.contains("cell")) {
    CellOf(piece) = {.tried = json["cell"].at(0), .code = json["cell"].at(1)};
  }
  gone = json.at("gone");
  tried = number + 1;
}

ConformReport ConformProgress::Report(bool training) const {
  ConformReport report;
  report.rows = rows_;
  const auto operations =
      report.rows.begin() + static_cast<std::ptrdiff_t>(begins_[ConformPiece::kOperation]);
  for (size_t place = 0; place < StateCalls().size(); ++place) {
    JudgeCells(place, training, &operations[static_cast<std::ptrdiff_t>(place)]);
  }
  for (size_t place = StateCalls().size(); place > 0; --place) {
    if ((StateCalls()[place - 1].flags & kLeftAlone) == 0) continue;
    report.rows.erase(report.rows.begin() +
                      static_cast<std::ptrdiff_t>(begins_[ConformPiece::kOperation] + place - 1));
  }
  return report;
}

void ConformProgress::JudgeCells(size_t place, bool training, ConformRow* row) const {
  const StateCall& call = StateCalls()[place];
  const std::array<Cell, kStates>& cells = cells_[place];
  bool has_it = false;
  bool allowed_was_tried = false;
  bool was_tried = false;
  for (int state = 0; state < kStates; ++state) {
    was_tried |= cells[state].tried;
    if (!call.allowed[state] || !cells[state].tried) continue;
    allowed_was_tried = true;
    has_it |= cells[state].code != RTF_E_ILLEGAL;
  }
  // One that no state allows has nothing that shows it to be there.
  if (!allowed_was_tried) {
    has_it = std::any_of(cells.begin(), cells.end(),
                         [](const Cell& cell) { return cell.tried && cell.code != RTF_E_ILLEGAL; });
  }
  for (int number = 0; number < kStates; ++number) {
    const auto state = static_cast<State>(number);
    const int code = cells[number].code;
    if (!cells[number].tried) continue;
    const bool in_training =
        training && (call.flags & kNotInTraining) != 0 && code == RTF_EFPTR_WRONG_STATE;
    ConformFinding finding = {.operation = row->name, .state = state, .got = code};
    if (code == RTF_E_ILLEGAL) {
      if (!has_it) continue;
      finding.cause = ConformCause::kChangedMind;
    } else if (call.allowed[state]) {
      const bool own_rule = (call.flags & kOwnRules) != 0 && code != RTF_EFPTR_WRONG_STATE;
      if (code == RTF_SUCCESS || in_training || own_rule) continue;
      finding.cause = ConformCause::kRefused;
    } else {
      if (code == RTF_EFPTR_WRONG_STATE) continue;
      finding.cause = code == RTF_SUCCESS ? ConformCause::kAccepted : ConformCause::kOtherCode;
      finding.expected = RTF_EFPTR_WRONG_STATE;
    }
    AddFinding(row, std::move(finding));
  }
  if (row->verdict == ConformVerdict::kAgainst || !was_tried) return;
  row->verdict = has_it ? ConformVerdict::kFits : ConformVerdict::kMissing;
}

void AddFinding(ConformRow* row, ConformFinding finding) {
  row->verdict = ConformVerdict::kAgainst;
  const auto is_same = [&finding](const ConformFinding& other) {
    return other.cause == finding.cause && other.operation == finding.operation &&
           other.state == finding.state && other.got == finding.got;
  };
  if (std::none_of(row->findings.begin(), row->findings.end(), is_same)) {
    row->findings.push_back(std::move(finding));
  }
}

}  // namespace lorimat::console
