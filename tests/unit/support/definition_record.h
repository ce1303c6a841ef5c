// What the reader of definition files tells, written down.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/front/definition_reader.h"

// A note without the places that its texts have in memory.
struct Told {
  DefinitionCause cause;
  uint64_t line;
  uint64_t column;
  std::string text;
  std::string kept;
  int row;
  int number;
};

class Record : public DefinitionSink {
 public:
  void Take(const DefinitionNote& note) override {
    told.push_back({note.cause, note.line, note.column, std::string(note.text),
                    std::string(note.kept), note.row, note.number});
  }

  std::vector<Told> told;
};
