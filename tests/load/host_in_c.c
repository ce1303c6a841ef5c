/* A host in plain C: links the library, and calls each of its functions through the header.
 * Exits with 0 when every answer is as expected, else prints the ones that are not. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "lorimatrt/lorimatrt.h"

static int failures = 0;

static void expect(bool holds, const char* what) {
  if (!holds) {
    fprintf(stderr, "host_in_c: not so: %s\n", what);
    failures++;
  }
}

#define EXPECT(condition) expect((condition), #condition)

static int io_calls = 0;

/* Delivers no client. */
static long io(long code, long a, char* b, long c, char* d, long* e, long* client) {
  (void)a, (void)b, (void)c, (void)d, (void)e;
  io_calls++;
  EXPECT(code == ECRIOIC_GET_CLIENT_RT);
  EXPECT(client != NULL);
  return 0;
}

int main(void) {
  char file[] = "/nowhere/at/all/words.ini";
  char line[] = "SELL";
  char code[] = "ABC";
  char text[] = "text";
  char result[512] = "";
  long kind = 1;
  int kind_of_update = 1;
  int length = 1;
  double quantity = 1.5;
  double value = 1.5;

  EXPECT(GetQuoteChar() == '\'');
  SetQuoteChar('"');
  EXPECT(GetQuoteChar() == '"');
  EXPECT(GetSeparatorChar() == ',');
  SetSeparatorChar(';');
  EXPECT(GetSeparatorChar() == ';');
  EXPECT(GetOutEditOptions() == 0);
  SetOutEditOptions(3);
  EXPECT(GetOutEditOptions() == 3);
  EXPECT(!GetEnableTradDC());
  SetEnableTradDC(true);
  EXPECT(GetEnableTradDC());

  /* There is no definition file: the host asks for its client all the same. */
  EXPECT(TradInit(file, 0, NULL, io) == 2);
  EXPECT(io_calls == 1);
  EXPECT(EcrCmd(line, result) == 256);
  EXPECT(GetEcrConfVal(0) == 3001011);
  EXPECT(GetEcrConfVal(5) == -1);
  EXPECT(GetEcrConfStr(5) == NULL);
  EXPECT(TradClose() == 0);

  EXPECT(strcmp(Trad_DCYEvent(1, NULL, 0), "") == 0);
  EXPECT(strcmp(Trad_DCXEvent(1, NULL, 0), "") == 0);
  EXPECT(strcmp(Trad_IEvent(1, NULL, 0), "") == 0);
  Trad_FileExtUpd(1, NULL, 0, &kind_of_update, code, &quantity, &value);
  EXPECT(kind_of_update == 0 && quantity == 0 && value == 0 && strcmp(code, "ABC") == 0);
  quantity = 1.5;
  Trad_FileExtEnq(1, NULL, 0, &kind, code, &quantity);
  EXPECT(kind == 0 && quantity == 0 && code[0] == '\0');
  EXPECT(Trad_RispExtEnq(1, 0, 0, NULL, text, &length) == 0);
  EXPECT(length == 0 && strcmp(text, "text") == 0);

  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
