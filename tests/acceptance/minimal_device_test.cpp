// examples/minimal_device.cpp, the device of docs/devices.md, as the library works with it.
#include <gmock/gmock.h>

#include "program_run.h"

namespace lorimat {
namespace {

using testing::HasSubstr;

#ifdef LORIMAT_EXAMPLE_HOST
ProgramRun Play(const std::string& lines) {
  return RunProgram("example_minimal_device", {SourceFile("language/merkelin.ini")},
                    {.input = lines});
}

TEST(MinimalDevice, OpensSellsPaysAndCloses) {
  const ProgramRun run = Play(
      "VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'\n"
      "VEND REP=2, PRE=1.50\n"
      "CHIU TEND=CONTANTI, IMP=1.00\n"
      "CHIU TEND=CONTANTI, IMP=5.00\n"
      "VEND REP=1, PRE=0.10\n"
      "CHIU\n"
      "AZZGIO TIPO=0\n");
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output,
            "Load working...\n"  // of the library's own loading
            "CAFFE                                 2,40\n"
            "REPARTO 2                             1,50\n"
            "CONTANTI                              1,00\n"
            "CONTANTI                              5,00\n"
            "TOTALE                                3,90\n"
            "RESTO                                 2,10\n"
            "REPARTO 1                             0,10\n"
            "CONTANTI                              0,10\n"
            "TOTALE                                0,10\n"
            "RESTO                                 0,00\n"
            "CHIUSURA                              4,00\n"
            "Unload working...\n");
}

// 207 and 106 of the device: 1231 and 618 of the line.
TEST(MinimalDevice, RefusesWhatItsStateDoesNotAllowAndWhatItCannot) {
  const ProgramRun run = Play(
      "CHIU\n"
      "VEND REP=1, PRE=2.00\n"
      "AZZGIO TIPO=0\n"
      "VEND REP=1, PRE=2.00, STORNO\n"
      "VEND ART='8001'\n"
      "CHIU TEND=3\n"
      "CHIU TEND=CONTANTI, IMP=1.00\n"
      "VEND REP=1, PRE=3.00\n"
      "RESPRN\n"
      "AZZGIO TIPO=0\n");
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("CHIU: code 1231: "));
  EXPECT_THAT(run.output, HasSubstr("AZZGIO TIPO=0: code 1231: "));
  EXPECT_THAT(run.output, HasSubstr("STORNO: code 618: "));
  EXPECT_THAT(run.output, HasSubstr("'8001': code 1242: "));
  EXPECT_THAT(run.output, HasSubstr("TEND=3: code 621: "));
  EXPECT_THAT(run.output, HasSubstr("PRE=3.00: code 1231: "));
  EXPECT_THAT(run.output, HasSubstr("CHIUSURA                              0,00\n"));
}

TEST(MinimalDevice, TakesNoNumberThatItCannotAddUp) {
  const ProgramRun run = Play(
      "VEND REP=1, QTA=9999.999, PRE=9999999.99\n"
      "VEND REP=1, PRE=9999999.99\n"
      "VEND REP=1, PRE=9999999.99\n"
      "VEND REP=1, QTA=99999, PRE=1.00\n");
  // 216 twice, and 213.
  EXPECT_THAT(run.output, HasSubstr("QTA=9999.999, PRE=9999999.99: code 1240: "));
  EXPECT_THAT(run.output, HasSubstr("REPARTO 1                       9999999,99\n"
                                    "VEND REP=1, PRE=9999999.99: code 1240: "));
  EXPECT_THAT(run.output, HasSubstr("QTA=99999, PRE=1.00: code 1237: "));
}
#endif

}  // namespace
}  // namespace lorimat
