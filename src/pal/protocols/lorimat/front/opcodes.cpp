#include "pal/protocols/lorimat/front/opcodes.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

struct Opcode {
  int id;
  CommandHandler handler;
};

constexpr Opcode kOpcodes[] = {
#define LORIMAT_COMMAND(Opcode, Handler, ...) {Opcode, &EcrCmdInterpreter::Handler},
#include "pal/protocols/lorimat/commands.inc"
};

constexpr int kHighestOpcode =
    std::max_element(std::begin(kOpcodes), std::end(kOpcodes),
                     [](const Opcode& a, const Opcode& b) { return a.id < b.id; })
        ->id;

// By opcode; null where no command has it.
constexpr auto kHandlers = [] {
  std::array<CommandHandler, kHighestOpcode + 1> handlers{};
  for (const Opcode& row : kOpcodes) handlers[static_cast<size_t>(row.id)] = row.handler;
  return handlers;
}();

}  // namespace

CommandHandler FindHandler(int opcode) {
  return opcode >= 0 && opcode <= kHighestOpcode ? kHandlers[static_cast<size_t>(opcode)] : nullptr;
}
