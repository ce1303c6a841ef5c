// The translator beside which the model is put: its own definition file, and handlers that tell
// that they were reached, so that a line ends at their door.
#pragma once

#include <filesystem>
#include <string>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "support/null_client.h"

// What the handler of an opcode id answers.
constexpr int kReached = 100000;

class TranslatorUnderTest : public EcrCmdCommand {
 public:
  // With the default messages, ready for lines.
  TranslatorUnderTest();
  // Reads a file of these bytes, through file, which is written over.
  bool Read(const std::string& bytes, const std::filesystem::path& file);

#define DOOR(Name, id) \
  int Trad_##Name() override { return kReached + (id); }
  DOOR(PROG, 1)
  DOOR(ENDPROG, 2)
  DOOR(LEGGI, 3)
  DOOR(IDLE, 4) DOOR(SELEZ, 5) DOOR(CLEAR, 8) DOOR(INP, 9) DOOR(VEND, 10) DOOR(CHIU, 11)
      DOOR(SCONTO, 12) DOOR(VIS, 14) DOOR(CHIAVE, 15) DOOR(PERCA, 16) DOOR(PERCB, 17) DOOR(SUBT, 18)
          DOOR(CORT, 19) DOOR(PRMSG, 20) DOOR(ALLEG, 21) DOOR(NOFIS, 22) DOOR(FATTURA, 23)
              DOOR(NOTACRED, 24) DOOR(TAVOLO, 25) DOOR(REPORT, 26) DOOR(AZZGIO, 27) DOOR(SETCOM, 28)
                  DOOR(SLAVE, 29) DOOR(EMLINK, 30) DOOR(PREP, 31) DOOR(PPLU, 32) DOOR(PIVA, 33)
                      DOOR(PINT, 34) DOOR(PMOD, 35) DOOR(POPZ, 36) DOOR(PVAL, 37) DOOR(PGRU, 38)
                          DOOR(PSTEN, 39) DOOR(PCONV, 40) DOOR(PPFATT, 41) DOOR(PTAST,
                                                                                43) DOOR(PINIEM, 45)
                              DOOR(PSYSF, 46) DOOR(CHIPC, 47) DOOR(SETP, 48) DOOR(GETP, 49)
                                  DOOR(PPLUEM, 51) DOOR(POFFEM, 52) DOOR(POPER, 53) DOOR(PTASTA, 54)
                                      DOOR(LDGRAF, 55) DOOR(FUEL, 60) DOOR(INFO, 71) DOOR(DGFE, 72)
                                          DOOR(CHKSUB, 73) DOOR(RESPRN, 74) DOOR(SCOSIC, 75)
                                              DOOR(MAGGIORAZIONE, 80) DOOR(ZREPORTEMAIL, 120)
                                                  DOOR(RTEJ, 121) DOOR(SCOBMP, 122)
                                                      DOOR(DIRECTIO, 123) DOOR(DOCANNULLO, 124)
                                                          DOOR(FIRMWAREUPD, 125) DOOR(SENDLOTT, 126)
                                                              DOOR(SAVELOTT, 127)
#undef DOOR

                                                                  private : NullClient client_;
};
