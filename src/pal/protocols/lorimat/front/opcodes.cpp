#include "pal/protocols/lorimat/front/opcodes.h"

namespace {

struct Opcode {
  int id;
  CommandHandler handler;
};

// Ids end at 127. An id that is missing here has no command.
constexpr Opcode kOpcodes[] = {
    {1, &EcrCmdInterpreter::Trad_PROG},
    {2, &EcrCmdInterpreter::Trad_ENDPROG},
    {3, &EcrCmdInterpreter::Trad_LEGGI},
    {4, &EcrCmdInterpreter::Trad_IDLE},
    {5, &EcrCmdInterpreter::Trad_SELEZ},
    {8, &EcrCmdInterpreter::Trad_CLEAR},
    {9, &EcrCmdInterpreter::Trad_INP},
    {10, &EcrCmdInterpreter::Trad_VEND},
    {11, &EcrCmdInterpreter::Trad_CHIU},
    {12, &EcrCmdInterpreter::Trad_SCONTO},
    {14, &EcrCmdInterpreter::Trad_VIS},
    {15, &EcrCmdInterpreter::Trad_CHIAVE},
    {16, &EcrCmdInterpreter::Trad_PERCA},
    {17, &EcrCmdInterpreter::Trad_PERCB},
    {18, &EcrCmdInterpreter::Trad_SUBT},
    {19, &EcrCmdInterpreter::Trad_CORT},
    {20, &EcrCmdInterpreter::Trad_PRMSG},
    {21, &EcrCmdInterpreter::Trad_ALLEG},
    {22, &EcrCmdInterpreter::Trad_NOFIS},
    {23, &EcrCmdInterpreter::Trad_FATTURA},
    {24, &EcrCmdInterpreter::Trad_NOTACRED},
    {25, &EcrCmdInterpreter::Trad_TAVOLO},
    {26, &EcrCmdInterpreter::Trad_REPORT},
    {27, &EcrCmdInterpreter::Trad_AZZGIO},
    {28, &EcrCmdInterpreter::Trad_SETCOM},
    {29, &EcrCmdInterpreter::Trad_SLAVE},
    {30, &EcrCmdInterpreter::Trad_EMLINK},
    {31, &EcrCmdInterpreter::Trad_PREP},
    {32, &EcrCmdInterpreter::Trad_PPLU},
    {33, &EcrCmdInterpreter::Trad_PIVA},
    {34, &EcrCmdInterpreter::Trad_PINT},
    {35, &EcrCmdInterpreter::Trad_PMOD},
    {36, &EcrCmdInterpreter::Trad_POPZ},
    {37, &EcrCmdInterpreter::Trad_PVAL},
    {38, &EcrCmdInterpreter::Trad_PGRU},
    {39, &EcrCmdInterpreter::Trad_PSTEN},
    {40, &EcrCmdInterpreter::Trad_PCONV},
    {41, &EcrCmdInterpreter::Trad_PPFATT},
    {43, &EcrCmdInterpreter::Trad_PTAST},
    {45, &EcrCmdInterpreter::Trad_PINIEM},
    {46, &EcrCmdInterpreter::Trad_PSYSF},
    {47, &EcrCmdInterpreter::Trad_CHIPC},
    {48, &EcrCmdInterpreter::Trad_SETP},
    {49, &EcrCmdInterpreter::Trad_GETP},
    {51, &EcrCmdInterpreter::Trad_PPLUEM},
    {52, &EcrCmdInterpreter::Trad_POFFEM},
    {53, &EcrCmdInterpreter::Trad_POPER},
    {54, &EcrCmdInterpreter::Trad_PTASTA},
    {55, &EcrCmdInterpreter::Trad_LDGRAF},
    {60, &EcrCmdInterpreter::Trad_FUEL},
    {71, &EcrCmdInterpreter::Trad_INFO},
    {72, &EcrCmdInterpreter::Trad_DGFE},
    {73, &EcrCmdInterpreter::Trad_CHKSUB},
    {74, &EcrCmdInterpreter::Trad_RESPRN},
    {75, &EcrCmdInterpreter::Trad_SCOSIC},
    {80, &EcrCmdInterpreter::Trad_MAGGIORAZIONE},
    {120, &EcrCmdInterpreter::Trad_ZREPORTEMAIL},
    {121, &EcrCmdInterpreter::Trad_RTEJ},
    {122, &EcrCmdInterpreter::Trad_SCOBMP},
    {123, &EcrCmdInterpreter::Trad_DIRECTIO},
    {124, &EcrCmdInterpreter::Trad_DOCANNULLO},
    {125, &EcrCmdInterpreter::Trad_FIRMWAREUPD},
    {126, &EcrCmdInterpreter::Trad_SENDLOTT},
    {127, &EcrCmdInterpreter::Trad_SAVELOTT},
};

}  // namespace

CommandHandler FindHandler(int opcode) {
  for (const Opcode& row : kOpcodes) {
    if (row.id == opcode) return row.handler;
  }
  return nullptr;
}
