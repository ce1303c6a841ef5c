/* A host in C in its smallest form: it links the library and its C faces, opens a virtual register
 * and runs lines.
 *
 *   example_c_host merkelin.ini
 *
 * A host with a device of its own fills a lorimat_device with functions, has lorimat_client_new
 * make a client of it, and gives lorimat_client_interface of that to the library. */
#include <stdio.h>
#include <string.h>

#include "lorimatrt/lorimat_register.h"
#include "lorimatrt/lorimatrt.h"

static lorimat_register* device;

/* The library asks for the client once, from TradInit; the last argument is the address of the
 * pointer to fill. */
static long ecr_io(long code, long a, char* b, long c, char* d, long* e, long* out) {
  (void)a, (void)b, (void)c, (void)d, (void)e;
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *(void**)out = lorimat_register_interface(device);
  return 0;
}

/* Runs one line; false, with the answer shown, when it fails. */
static bool run(const char* line) {
  char command[256];
  char result[512]; /* the least that EcrCmd asks for */
  long code;
  snprintf(command, sizeof command, "%s", line);
  code = EcrCmd(command, result);
  if (code != 0) fprintf(stderr, "%s: code %ld: %s\n", line, code, result);
  return code == 0;
}

int main(int argc, char** argv) {
  bool good;
  lorimat_bytes paper = {NULL, 0};
  if (argc != 2) {
    fprintf(stderr, "usage: example_c_host DEFINITION_FILE\n");
    return 2;
  }
  if (lorimat_register_open(NULL, &device) != LORIMAT_OK) {
    fprintf(stderr, "%s\n", lorimat_register_error());
    return 2;
  }
  if (TradInit(argv[1], 0, NULL, ecr_io) != 0) {
    fprintf(stderr, "%s: the library cannot read this definition file\n", argv[1]);
    return 2;
  }
  good = run("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'");
  good = run("VEND REP=2, PRE=1.50, DES='CORNETTO'") && good;
  good = run("CHIU TEND=CONTANTI, IMP=5.00") && good;
  TradClose();
  if (lorimat_register_paper(device, &paper) == LORIMAT_OK) fputs(paper.data, stdout);
  lorimat_bytes_free(&paper);
  lorimat_register_close(device);
  return good ? 0 : 1;
}
