// Pieces of the article exchange link that stand for themselves.
#pragma once

#include "pal/protocols/lorimat/front/messages.h"

// Whether the code of a refused row counts as an error of the device: one of an article
// line's syntax does not.
constexpr bool IsDeviceError(int code) { return (code & 0xffff00) != CLASS_EM_SYNTAX; }

// The first argument of DownloadTable: the table in bits 0 to 7, the selection in 8 to 15,
// the row type of ManagerDownloadTableRowType above.
constexpr int DownloadSelector(int table, int selection, int row_type) {
  return (table & 0xff) | (selection & 0xff) << 8 | row_type << 16;
}
