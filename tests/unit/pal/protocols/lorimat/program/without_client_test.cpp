// What the handlers of programming answer without a client. No host sees it, since EcrCmd refuses a
// line ahead of them.

#include "unit/support/table_device.h"

namespace {

class ProgramWithoutClient : public TableTest {
 protected:
  // The handler's answer to the fields of the line.
  int Answer(const std::string& line, int (EcrCmdCommand::*handler)()) {
    translator->rtfClient_ = &device;
    Run(line);
    device.calls.clear();
    translator->rtfClient_ = nullptr;
    const int answer = (translator.get()->*handler)();
    EXPECT_TRUE(device.calls.empty());
    return answer;
  }
};

TEST_F(ProgramWithoutClient, CallsCountAsUnreachable) {
  EXPECT_EQ(512, Answer("PTAST POS=5, COD=75", &EcrCmdCommand::Trad_PTAST));
  EXPECT_EQ(512, Answer("LDGRAF LOGO=5, FILE='a'", &EcrCmdCommand::Trad_LDGRAF));
  EXPECT_EQ(512, Answer("PIVA IVA=3, ALIQ=22", &EcrCmdCommand::Trad_PIVA));
  EXPECT_EQ(512, Answer("PINT RIGA1='A'", &EcrCmdCommand::Trad_PINT));
  EXPECT_EQ(512, Answer("PPFATT NUM=120, SERIE='A'", &EcrCmdCommand::Trad_PPFATT));
  EXPECT_EQ(512, Answer("POPZ OPZ04", &EcrCmdCommand::Trad_POPZ));
}

TEST_F(ProgramWithoutClient, RecordsCountAsUnreachableTwice) {
  EXPECT_EQ(1536, Answer("PREP REP=1, PRE=1", &EcrCmdCommand::Trad_PREP));
  EXPECT_EQ(1536, Answer("PSTEN ST=1, DES='A'", &EcrCmdCommand::Trad_PSTEN));
}

TEST_F(ProgramWithoutClient, AGroupHasNoKnownNumber) {
  EXPECT_EQ(265, Answer("PGRU GRU=1, DES='A'", &EcrCmdCommand::Trad_PGRU));
}

TEST_F(ProgramWithoutClient, ASessionStillOpensAndCloses) {
  EXPECT_EQ(0, Answer("PROG", &EcrCmdCommand::Trad_PROG));
  EXPECT_EQ(0, Answer("ENDPROG", &EcrCmdCommand::Trad_ENDPROG));
}

}  // namespace
