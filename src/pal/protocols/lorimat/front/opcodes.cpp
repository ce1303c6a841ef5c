#include "pal/protocols/lorimat/front/opcodes.h"

namespace {

struct Opcode {
  int id;
  CommandHandler handler;
};

constexpr Opcode kOpcodes[] = {
#define LORIMAT_COMMAND(Opcode, Handler, ...) {Opcode, &EcrCmdInterpreter::Handler},
#include "pal/protocols/lorimat/commands.inc"
};

}  // namespace

CommandHandler FindHandler(int opcode) {
  for (const Opcode& row : kOpcodes) {
    if (row.id == opcode) return row.handler;
  }
  return nullptr;
}
