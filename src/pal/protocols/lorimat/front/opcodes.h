// The commands of the language: opcode ids and their handlers.
#pragma once

#include "pal/protocols/lorimat/ecrcmdinterpreter.h"

typedef int (EcrCmdInterpreter::*CommandHandler)();

// The handler of an opcode id; null for an id without one.
CommandHandler FindHandler(int opcode);
