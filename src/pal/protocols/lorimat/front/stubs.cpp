// Commands that do nothing. They are kept so that old batch files run through.

#include "pal/protocols/lorimat/ecrcmdcommand.h"

// "SO NOT OPEN ": there is no second device to select.
int EcrCmdCommand::Trad_SELEZ() { return 1; }

int EcrCmdCommand::Trad_PVAL() { return 0; }
int EcrCmdCommand::Trad_PCONV() { return 0; }
int EcrCmdCommand::Trad_PINIEM() { return 0; }
int EcrCmdCommand::Trad_PSYSF() { return 0; }
int EcrCmdCommand::Trad_CHIPC() { return 0; }
int EcrCmdCommand::Trad_PPLUEM() { return 0; }
int EcrCmdCommand::Trad_POFFEM() { return 0; }
int EcrCmdCommand::Trad_FUEL() { return 0; }
int EcrCmdCommand::Trad_TAVOLO() { return 0; }
int EcrCmdCommand::Trad_SCOSIC() { return 0; }
int EcrCmdCommand::Trad_SETCOM() { return 0; }
int EcrCmdCommand::Trad_ZREPORTEMAIL() { return 0; }
int EcrCmdCommand::Trad_SCOBMP() { return 0; }
int EcrCmdCommand::Trad_PPLU() { return 0; }
int EcrCmdCommand::Trad_PMOD() { return 0; }

// No opcode reaches it.
int EcrCmdCommand::Trad_IOCONTO() { return 0; }
