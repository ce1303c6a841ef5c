// "lorimat shell --json": a program that drives the register line by line. docs/json.md has the
// protocol.
#pragma once

#include "console/check/language.h"
#include "console/device/device.h"
#include "console/host/library.h"
#include "console/host/output_guard.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

// Answers each line of standard input with one line of standard output, until the input ends or a
// signal of interrupt.h comes, for which a watch has to live. Returns one of ExitCode, or that of
// the signal. The library has been started. Throws Failure when the input cannot be read or an
// answer cannot be written.
int RunJson(const Language& language, Library& library, Device& device, OutputGuard& guard,
            Streams& streams);

}  // namespace lorimat::console
