/* A device in C, as small as one can be: a display for the customer. The operations that it has not
 * are null, and answer that they are not supported. */
#include <lorimatrt/device.h>
#include <lorimatrt/lorimat.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define MOST_TEXTS 100

struct display {
  lorimat_device_plugin* plugin;
  size_t shown;
  char texts[MOST_TEXTS][41];
};

static int get_state(void* user_data) {
  (void)user_data;
  return RTF_S_IDLE;
}

static int display_text(void* user_data, int row, int column, const char* text, int attribute,
                        int display, int timeout, bool clear) {
  struct display* own = user_data;
  (void)column, (void)attribute, (void)display, (void)timeout, (void)clear;
  if (own->shown == MOST_TEXTS) return RTF_E_FAILURE;
  snprintf(own->texts[own->shown++], sizeof own->texts[0], "%d: %s", row, text != NULL ? text : "");
  own->plugin->log(own->plugin->log_data, "display: a text is shown");
  return RTF_SUCCESS;
}

/* What it has shown stands for its paper. */
static bool paper_line(void* data, size_t number, char* text, size_t room) {
  const struct display* own = data;
  if (number >= own->shown) return false;
  snprintf(text, room, "%s", own->texts[number]);
  return true;
}

int lorimat_device_open(lorimat_device_plugin* plugin) {
  /* The program copies it. */
  static lorimat_device table;
  struct display* own;
  if (lorimat_device_begin(plugin) != LORIMAT_DEVICE_OK) return LORIMAT_DEVICE_OTHER_ABI;
  plugin->name = "display";
  plugin->version = "1.0";
  if (plugin->option_count != 0) {
    snprintf(plugin->error, sizeof plugin->error, "it has no options");
    return LORIMAT_DEVICE_BAD_OPTION;
  }
  own = calloc(1, sizeof *own);
  if (own == NULL) {
    snprintf(plugin->error, sizeof plugin->error, "there is not enough memory");
    return LORIMAT_DEVICE_FAILED;
  }
  own->plugin = plugin;
  memset(&table, 0, sizeof table);
  table.size = sizeof table;
  table.abi = LORIMAT_ABI;
  table.user_data = own;
  table.GetState = get_state;
  table.DisplayTextAtEx = display_text;
  plugin->kind = LORIMAT_DEVICE_C;
  plugin->callbacks = &table;
  plugin->can = LORIMAT_DEVICE_PAPER;
  plugin->paper_line = paper_line;
  plugin->data = own;
  return LORIMAT_DEVICE_OK;
}

void lorimat_device_close(lorimat_device_plugin* plugin) { free(plugin->data); }
