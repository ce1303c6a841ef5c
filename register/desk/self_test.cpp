#include "register/desk/self_test.h"

#include <fmt/format.h>

#include "register/desk/clock_check.h"
#include "register/desk/layout.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr int kDisplays = 3;

}  // namespace

int TestMemory(const RegisterCore& core) {
  if (const int code = CheckClock(core)) return code;
  const std::optional<Closure> last = core.store.LastClosure();
  const Amount before = last ? last->grand_total : 0;
  if (core.store.grand_total() - before != core.store.daily().net()) {
    return RTF_EFPTR_FISCAL_TOTALS_ERROR;
  }
  return RTF_SUCCESS;
}

int TestPrinter(RegisterCore& core) {
  if (!core.Allows(Operation::kSelfTest)) return RTF_EFPTR_WRONG_STATE;
  const std::tm now = core.Now();
  Paper& paper = core.paper;
  paper.Centred("PROVA DI STAMPA - NON FISCALE");
  paper.Blank();
  std::string line;
  for (char c = '!'; c <= '~'; ++c) {
    line += c;
    if (line.size() < Paper::kColumns && c != '~') continue;
    paper.Text(line);
    line.clear();
  }
  paper.Blank();
  paper.Centred(FormatDateTime(now));
  paper.Centred("RT " + core.tables.settings().serial_number);
  paper.Cut();
  return RTF_SUCCESS;
}

int TestDisplays(RegisterCore& core, bool start) {
  core.displays.clear();
  if (!start) return RTF_SUCCESS;
  for (int number = 0; number < kDisplays; ++number) {
    for (std::string& row : core.displays[number].rows) row.assign(Display::kColumns, '8');
  }
  return RTF_SUCCESS;
}

int TestHealth(RegisterCore& core, int level) {
  int code = RTF_E_ILLEGAL;
  const char* name = "Interactive HCheck";
  if (level == RTF_CH_INTERNAL) {
    code = TestMemory(core);
    name = "Internal HCheck";
  } else if (level == RTF_CH_EXTERNAL) {
    code = TestPrinter(core);
    name = "External HCheck";
  } else if (level != RTF_CH_INTERACTIVE) {
    return RTF_E_ILLEGAL;  // leaves the text as it is
  }
  core.session.health = code == RTF_SUCCESS     ? fmt::format("{}: Successful", name)
                        : code == RTF_E_ILLEGAL ? fmt::format("{}: Not Supported", name)
                                                : fmt::format("{}: Error {}", name, code);
  return code;
}

}  // namespace lorimat
