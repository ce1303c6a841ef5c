#include "door/judge/line_judge.h"

#include <gmock/gmock.h>

#include "language/shipped_language.h"

namespace lorimat::door {
namespace {

using testing::ElementsAre;

Judged Judge(const std::vector<std::string>& lines, bool is_operator = false) {
  static LineJudge judge(shipped::LanguageFile().string());
  return judge.Judge(lines, is_operator);
}

std::optional<LineFault> FaultOf(const std::vector<std::string>& lines, bool is_operator = false) {
  const Judged judged = Judge(lines, is_operator);
  return judged.fault ? std::optional(judged.fault->fault) : std::nullopt;
}

TEST(LineJudge, AReceiptIsADocumentAndItsPaymentIsKnown) {
  const Judged judged =
      Judge({"; a coffee", "VEND REP=1, PRE=1.20", "SCONTO IMP=0.20", "CHIU TEND=CONTANTI"});
  EXPECT_FALSE(judged.fault);
  EXPECT_FALSE(judged.refused);
  EXPECT_EQ(judged.effect, JobEffect::kDocument);
  EXPECT_THAT(judged.pays, ElementsAre(false, false, false, true));
}

TEST(LineJudge, WhatAClientMaySend) {
  for (const char* line : {"VEND REP=1, PRE=1",
                           "SCONTO IMP=1",
                           "MAGGIORAZ IMP=1",
                           "PERCA PERC=1",
                           "PERCB PERC=1",
                           "SUBT",
                           "CHKSUB IMP=1",
                           "CHIU",
                           "INP TASTO=LOTTERIA",
                           "INP ALFA='RSSMRA', TASTO=CLEAR",
                           "INP NUM=10, TASTO=ST01",
                           "CORT MSG='CIAO'",
                           "PRMSG MSG='CIAO'",
                           "ALLEG MSG='CIAO'",
                           "ALLEG BARCODE=QRCODE, MSG='A'",
                           "NOFIS INIZIO",
                           "FATTURA TIPO=2, RIGA1='A'",
                           "NOTACRED DOC=1, DATA=150124",
                           "DOCANNULLO DOC=1, DATA=150124, AUTO",
                           "CLEAR",
                           "RESPRN",
                           "",
                           "; a comment"}) {
    EXPECT_FALSE(FaultOf({line})) << line;
  }
}

TEST(LineJudge, WhatNobodyMaySend) {
  for (const char* line :
       {"@lines.txt", "@lines.txt,errors.txt", "SETP DIR='/tmp'", "DIRECTIO CMD=1, OPT=9",
        "EMLINK CMD='UA', FILE='a'", "LDGRAF CANC", "FIRMWARE FILE='a'", "LEGGI TAB=IVA, FILE='a'",
        "SAVELOTT FILE='a', TUTTO", "INP TASTO=TOTALE", "INP TASTO=ANNULLADOC",
        "INP TASTO=APRETRANS", "INP NUM=10, TASTO=REP01", "INFO TIPO=1", "GETP DIR", "SLAVE ON"}) {
    EXPECT_EQ(FaultOf({line}, true), LineFault::kNotAllowed) << line;
  }
}

TEST(LineJudge, WhatAnOperatorMaySend) {
  for (const char* line :
       {"REPORT", "AZZGIO", "DGFE DADATA=150124, ADATA=150124", "RTEJ INVIA", "PROG", "ENDPROG",
        "CHIAVE POS=4", "PREP REP=1, DES='A'", "PIVA IVA=1, ALIQ=22", "PINT RIGA1='A'",
        "POPZ CASSETTO=SI", "PGRU GRU=1, DES='A'", "PSTEN ST=1", "PPFATT NUM=1",
        "PTAST POS=50, COD=REP05", "POPER OPE=1", "PTASTA POS=50, COD=REP05"}) {
    EXPECT_FALSE(FaultOf({line}, true)) << line;
    EXPECT_EQ(FaultOf({line}), LineFault::kForOperator) << line;
  }
}

TEST(LineJudge, NoLineNamesAFile) {
  for (const char* line : {"REPORT TIPO=1, FILE='a'", "REPORT #10='a'", "#26 #10='a'",
                           "DGFE DAZETA=1, FILE='a'", "RTEJ INVIA, FILE='a'"}) {
    EXPECT_EQ(FaultOf({line}, true), LineFault::kNamesFile) << line;
  }
}

TEST(LineJudge, GoesByNumbersWhateverTheWords) {
  EXPECT_FALSE(FaultOf({"#10 #1=1, #4=1.50", "ve rep=1, p=1", "vendita reparto=1", "#11"}));
  EXPECT_EQ(FaultOf({"#48 #1='/tmp'"}), LineFault::kNotAllowed);
  EXPECT_EQ(FaultOf({"dire cmd=1"}), LineFault::kNotAllowed);
  EXPECT_EQ(FaultOf({"  @x"}), LineFault::kNotAllowed);
  // In a text it is a text.
  EXPECT_FALSE(FaultOf({"VEND REP=1, PRE=1, DES='@x; SETP'"}));
}

TEST(LineJudge, TellsWhatADocumentIsOpenedAs) {
  LineJudge judge(shipped::LanguageFile().string());
  const auto kind = [&judge](const char* line) {
    return judge.Judge({line, "VEND REP=1, PRE=1", "CHIU"}, false).kind;
  };
  EXPECT_EQ(kind("CORT MSG='A'"), DocumentKind::kSale);
  EXPECT_EQ(kind("FATTURA TIPO=2"), DocumentKind::kInvoice);
  EXPECT_EQ(kind("#24 #1=1"), DocumentKind::kRefund);
  EXPECT_EQ(kind("DOCANNULLO DOC=1"), DocumentKind::kCancel);
}

TEST(LineJudge, AJobIsOneDocument) {
  const std::string sale = "VEND REP=1, PRE=1";
  EXPECT_EQ(FaultOf({sale, "CHIU", sale}), LineFault::kSecondDocument);
  EXPECT_EQ(FaultOf({sale, "INP NUM=1, TASTO=ST01", sale}), LineFault::kSecondDocument);
  EXPECT_EQ(FaultOf({sale, "CHIU", "FATTURA TIPO=2"}), LineFault::kSecondDocument);
  EXPECT_EQ(FaultOf({"DOCANNULLO DOC=1, DATA=150124, AUTO", sale}), LineFault::kSecondDocument);
  EXPECT_FALSE(FaultOf({sale, "CHIU TEND=CARTA, IMP=0.50", "CHIU"}));
  EXPECT_FALSE(FaultOf({sale, "CHIU", "ALLEG MSG='CIAO'"}));
  const Judged judged = Judge({sale, "CHIU", sale});
  ASSERT_TRUE(judged.fault);
  EXPECT_EQ(judged.fault->line, 3);
  EXPECT_EQ(judged.fault->command, "VEND");
}

TEST(LineJudge, AJobHasOneEffect) {
  const std::string sale = "VEND REP=1, PRE=1";
  EXPECT_EQ(FaultOf({sale, "AZZGIO"}, true), LineFault::kSecondEffect);
  EXPECT_EQ(FaultOf({"REPORT", sale}, true), LineFault::kSecondEffect);
  EXPECT_EQ(FaultOf({sale, "NOFIS INIZIO"}), LineFault::kSecondEffect);
  EXPECT_EQ(Judge({"REPORT TIPO=1"}, true).effect, JobEffect::kOther);
  EXPECT_EQ(Judge({"REPORT TIPO=1, MODO=1"}, true).effect, JobEffect::kClosing);
  EXPECT_EQ(Judge({"AZZGIO"}, true).effect, JobEffect::kClosing);
  EXPECT_EQ(Judge({"#27 #1=0"}, true).effect, JobEffect::kClosing);
  EXPECT_EQ(Judge({"NOFIS INIZIO", "NOFIS MSG='A'", "NOFIS FINE"}).effect, JobEffect::kOther);
}

TEST(LineJudge, OnlyAReadingClosesTheDay) {
  for (const char* line : {"REPORT MODO=1", "#26 #1=4, #2=1", "#26 #1=1, #2=1"}) {
    EXPECT_EQ(Judge({line}, true).effect, JobEffect::kClosing) << line;
  }
  // A period's: no number tells that it was cleared.
  for (const char* line : {"#26 #1=10, #2=1", "#26 #1=17, #2=1", "#26 #1=206, #2=1", "#26 #2=0"}) {
    EXPECT_FALSE(FaultOf({line}, true)) << line;
    EXPECT_EQ(Judge({line}, true).effect, JobEffect::kOther) << line;
  }
}

TEST(LineJudge, AClosingIsAlone) {
  EXPECT_EQ(FaultOf({"AZZGIO", "AZZGIO"}, true), LineFault::kSecondEffect);
  EXPECT_EQ(FaultOf({"REPORT MODO=1", "AZZGIO"}, true), LineFault::kSecondEffect);
  EXPECT_EQ(FaultOf({"AZZGIO", "REPORT"}, true), LineFault::kSecondEffect);
  EXPECT_EQ(FaultOf({"PREP REP=1, DES='A'", "AZZGIO"}, true), LineFault::kSecondEffect);
  EXPECT_FALSE(FaultOf({"CLEAR", "AZZGIO"}, true));
  EXPECT_FALSE(FaultOf({"PREP REP=1, DES='A'", "REPORT"}, true));
}

TEST(LineJudge, TheTotalConfirmsACodeAndPaysByItselfNothing) {
  EXPECT_FALSE(FaultOf({"INP TASTO=LOTTERIA", "INP LOTTERIA='ABCD1234', TASTO=TOTALE"}));
  EXPECT_EQ(FaultOf({"INP TASTO=LOTTERIA", "SUBT", "INP TASTO=TOTALE"}), LineFault::kNotAllowed);
}

TEST(LineJudge, TheFirstLineThatIsNotUnderstoodIsTold) {
  const Judged judged = Judge({"VEND REP=1, PRE=1", "VNED REP=1", "CHIU XXXX=1"});
  EXPECT_FALSE(judged.fault);
  ASSERT_TRUE(judged.refused);
  EXPECT_EQ(judged.refused->line, 2);
  EXPECT_EQ(judged.refused->code, 257);
  EXPECT_FALSE(judged.refused->explanation.empty());
  EXPECT_EQ(Judge({"CHIU XXXX=1"}).refused->code, 260);
  EXPECT_EQ(Judge({"VEND REP='1"}).refused->code, 264);
}

TEST(LineJudge, TheSaleThatALineMakesVoidByItself) {
  struct Row {
    const char* line;
    std::optional<DocumentName> sale;
  };
  const Row rows[] = {{"DOCANNULLO AUTO", DocumentName{}},
                      {"DOCANNULLO DOC=00020013, DATA=150124, AUTO", DocumentName{2, 13}},
                      {"#124 #1=13, #2=150124, #3=2, #5", DocumentName{2, 13}},
                      {"DOCANNULLO DOC=00020013, DATA=150124, ZETA=3, AUTO", DocumentName{3, 13}},
                      // The device alone might know which one that is.
                      {"DOCANNULLO DOC=13, DATA=150124, AUTO", std::nullopt},
                      {"DOCANNULLO ZETA=3, AUTO", std::nullopt},
                      {"DOCANNULLO DOC=0002X013, DATA=150124, AUTO", std::nullopt},
                      {"DOCANNULLO DOC='-002-013', DATA=150124, AUTO", std::nullopt},
                      // It is marked as it is paid.
                      {"DOCANNULLO DOC=00020013, DATA=150124", std::nullopt},
                      {"VEND REP=1, PRE=1.20", std::nullopt}};
  for (const Row& row : rows) EXPECT_EQ(Judge({row.line}).voids_whole, row.sale) << row.line;
}

// However the device cuts a text into lines.
TEST(LineJudge, AMarkOfAJobIsFoundInAnyField) {
  const std::set<std::string> marks = {"R0123456789", "RABCDEFGHJK"};
  LineJudge judge(shipped::LanguageFile().string());
  const struct {
    const char* line;
    const char* field;
  } rows[] = {{"VEND REP=1, PRE=1, DES='R0123456789'", "DES"},
              {"ALLEG MSG='<<RABCDEFGHJK>>'", "MSG"},
              {"CORT MSG='XXXXXXXXXXXRABCDEFGHJKXXXXX'", "MSG"},
              {"CORT MSG='RRRRRRRR0123456789'", "MSG"},
              {"CORT MSG='rabcdefghjk'", "MSG"},
              {"#21 #3='R0123456789'", "MSG"}};
  for (const auto& row : rows) {
    EXPECT_TRUE(Judge({row.line}).may_hold_mark) << row.line;
    const auto found = judge.FindMark({"VEND REP=1, PRE=1", row.line}, marks);
    ASSERT_TRUE(found) << row.line;
    EXPECT_EQ(found->fault, LineFault::kMarkOfJob);
    EXPECT_EQ(found->line, 2);
    EXPECT_EQ(found->field, row.field);
  }
  for (const char* line : {"CORT MSG='R012345678'", "CORT MSG='R012345678 9'",
                           "CORT MSG='R0123I56789'", "CORT MSG='X0123456789'", "CHIU"}) {
    EXPECT_FALSE(Judge({line}).may_hold_mark) << line;
    EXPECT_FALSE(judge.FindMark({line}, marks)) << line;
  }
  EXPECT_TRUE(Judge({"CORT MSG='R9876543210'"}).may_hold_mark);
  EXPECT_FALSE(judge.FindMark({"CORT MSG='R9876543210'"}, marks));
}

}  // namespace
}  // namespace lorimat::door
