// What is known of a device that is being tried, piece by piece. It is no part of the process in
// which a piece is tried: that one may end with the device, and the next goes on behind the piece.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "console/conform/conform_report.h"
#include "console/conform/state_calls.h"

namespace lorimat::console {

// A row of the tables beside this file, tried once.
struct ConformPiece {
  enum Kind : uint8_t { kReading, kState, kOperation, kRefusal, kAgain };
  Kind kind = kReading;
  size_t place = 0;       // in the kind's table
  State state = kStates;  // of kState and kOperation

  std::string Name() const;
};

// All of them, in the order in which they are tried.
std::vector<ConformPiece> ConformPieces();

// How a device ended the process that it was tried in.
struct ProcessEnd {
  int signal = 0;  // 0 for none
  int code = 0;    // of an exit

  ConformCause cause() const { return signal != 0 ? ConformCause::kKilled : ConformCause::kExited; }
  int number() const { return signal != 0 ? signal : code; }
  // For a person.
  std::string Text() const { return EndText(cause(), number()); }
};

class ConformProgress {
 public:
  // What an operation answered in a state, by rows.
  struct Cell {
    bool tried = false;
    int code = 0;
  };

  ConformProgress();

  // The row that comes of a piece.
  ConformRow& RowOf(const ConformPiece& piece);
  ConformRow& RowOfState(State state);
  Cell& CellOf(const ConformPiece& piece) { return cells_[piece.place][piece.state]; }
  // Of a reading, the first time.
  std::string& FirstAnswer(size_t place) { return first_answers_[place]; }
  // Whether the device got there.
  bool& Reached(State state) { return reached_[state]; }

  // How many pieces are behind: those of a device that is given up are not.
  size_t tried = 0;
  bool gone = false;   // nothing more is tried
  size_t resumed = 0;  // how often another process went on

  // The piece that comes next ended the process, in an operation or, with an empty name, beside
  // one: it is not tried again, nor is its operation in other states.
  void NoteEnd(const ProcessEnd& end, std::string_view operation);
  // Whether that was noted of a row.
  static bool EndedAt(const ConformRow& row);

  // What a piece has changed, as bytes for another process, and taken over there.
  std::string Changes(size_t piece) const;
  void Take(std::string_view changes);

  // All rows, with the verdict over each operation.
  ConformReport Report(bool training) const;

 private:
  size_t PlaceOf(const ConformPiece& piece) const;
  void JudgeCells(size_t place, bool training, ConformRow* row) const;

  std::vector<ConformPiece> pieces_;
  std::vector<ConformRow> rows_;
  std::array<size_t, 5> begins_{};  // of each group of rows: readings, states, operations ...
  std::vector<size_t> again_;       // the places of the readings that are asked again
  std::vector<std::array<Cell, kStates>> cells_;
  std::vector<std::string> first_answers_;
  std::array<bool, kStates> reached_{};
};

// A finding joins a row, which is against the contract then; one that it has does not come again.
void AddFinding(ConformRow* row, ConformFinding finding);

}  // namespace lorimat::console
