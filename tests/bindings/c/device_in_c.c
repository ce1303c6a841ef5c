/* A device in plain C: its functions are the library's client, and lines run on it. Exits with 0
 * when every answer is as expected, else prints the ones that are not. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "lorimatrt/lorimat.h"
#include "lorimatrt/lorimatrt.h"

static int failures = 0;

static void expect(bool holds, const char* what) {
  if (!holds) {
    fprintf(stderr, "device_in_c: not so: %s\n", what);
    failures++;
  }
}

#define EXPECT(condition) expect((condition), #condition)

/* What the device has been told. */
typedef struct till {
  bool opens_drawer;
  int receipts;
  int lines;
  int64_t sold;
  int64_t paid;
  char last[64];
} till;

static lorimat_client* client;

static int get_state(void* user_data) {
  (void)user_data;
  return RTF_S_IDLE;
}

static int get_int_property(void* user_data, int property, int* value) {
  const till* mine = user_data;
  if (property != RTF_PIDXFptr_PrinterState) return RTF_E_ILLEGAL;
  *value = mine->receipts > 0 ? RTF_FPTR_PS_FISCAL_RECEIPT : RTF_FPTR_PS_MONITOR;
  return RTF_SUCCESS;
}

static int get_data_internal(void* user_data, int item, char* text, size_t text_room) {
  const till* mine = user_data;
  /* Every byte that there is room for, without an end. */
  memset(text, item == 459 && mine->opens_drawer ? '1' : '0', text_room);
  return RTF_SUCCESS;
}

static int begin(void* user_data, bool print_header) {
  till* mine = user_data;
  (void)print_header;
  mine->receipts++;
  return RTF_SUCCESS;
}

static int sell(void* user_data, int kind, const char* description, int64_t price, int quantity,
                int vat, int64_t unit_price, const char* unit, int department, bool now,
                const char* code) {
  till* mine = user_data;
  (void)kind, (void)price, (void)vat, (void)unit, (void)now, (void)code;
  if (department == 9) return RTF_EFPTR_BAD_VAT;
  mine->lines++;
  mine->sold += unit_price * quantity / 1000;
  snprintf(mine->last, sizeof mine->last, "%s", description);
  return RTF_SUCCESS;
}

static int pay(void* user_data, int64_t payment, const char* tender, bool rest) {
  till* mine = user_data;
  (void)tender, (void)rest;
  mine->paid += payment;
  mine->receipts = 0;
  return RTF_SUCCESS;
}

static char nested_answer[512];
static long nested_code;

/* What no device must do: it runs a line. */
static int open_drawer(void* user_data) {
  char line[] = "CHIAVE REG";
  (void)user_data;
  nested_code = EcrCmd(line, nested_answer);
  return RTF_SUCCESS;
}

static int key_code_input(void* user_data, const char* a, const char* b, const char* c, uint8_t d) {
  (void)user_data, (void)a, (void)b, (void)c, (void)d;
  return RTF_SUCCESS;
}

static long ecr_io(long code, long a, char* b, long c, char* d, long* e, long* out) {
  (void)a, (void)b, (void)c, (void)d, (void)e;
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *(void**)out = lorimat_client_interface(client);
  return 0;
}

static long run(const char* line) {
  char command[256];
  char result[512];
  snprintf(command, sizeof command, "%s", line);
  return EcrCmd(command, result);
}

int main(int argc, char** argv) {
  till mine = {false, 0, 0, 0, 0, ""};
  lorimat_device device;
  const char* operation = "";
  if (argc != 2) return 2;
  memset(&device, 0, sizeof device);
  device.size = sizeof device;
  device.abi = LORIMAT_ABI;
  device.user_data = &mine;
  device.GetState = get_state;
  device.GetIntProperty = get_int_property;
  device.GetDataInternal = get_data_internal;
  device.BeginFiscalReceipt = begin;
  device.PrintRecItemEx = sell;
  device.PrintRecTotalEx = pay;
  device.OpenDrawer = open_drawer;
  device.KeyCodeInput = key_code_input;
  EXPECT(lorimat_client_new(&device, &client) == LORIMAT_OK);
  EXPECT(TradInit(argv[1], 0, NULL, ecr_io) == 0);

  EXPECT(run("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'") == 0);
  EXPECT(mine.receipts == 1 && mine.lines == 1 && mine.sold == 24000);
  EXPECT(strcmp(mine.last, "CAFFE") == 0);
  EXPECT(run("VEND REP=9, PRE=1.20") == (RTF_EFPTR_BAD_VAT | 0x400));
  EXPECT(run("CHIU TEND=CONTANTI, IMP=5.00") == 0);
  EXPECT(mine.paid == 50000 && mine.receipts == 0);
  /* The device has not that one. */
  EXPECT(run("AZZGIO") == (RTF_E_ILLEGAL | 0x200));
  EXPECT(lorimat_client_take_fault(client, &operation) == LORIMAT_OK && operation == NULL);

  /* The line of the device's own is refused as busy, and the host is told. */
  mine.opens_drawer = true;
  EXPECT(run("VEND REP=2, PRE=1.20") == 0);
  EXPECT(run("CHIU TEND=CONTANTI") == 0);
  EXPECT(nested_code == (RTF_E_BUSY | 0x200));
  EXPECT(lorimat_client_take_fault(client, &operation) == LORIMAT_CALLBACK_ENTERED);
  EXPECT(operation != NULL && strcmp(operation, "OpenDrawer") == 0);

  EXPECT(TradClose() == 0);
  lorimat_client_free(client);
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
