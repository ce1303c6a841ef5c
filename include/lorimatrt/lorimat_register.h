/* The virtual register for C: a whole fiscal register in memory or in a file, as a device of the
 * translator. C99 and C++. The library is liblorimat-register-c, which stands beside liblorimat-c.
 *
 *   lorimat_register* device = NULL;
 *   if (lorimat_register_open(NULL, &device) != LORIMAT_OK) ... lorimat_register_error() tells why
 *   ... lorimat_register_interface(device) goes to the translator, which runs lines ...
 *   lorimat_bytes paper = {0};
 *   if (lorimat_register_paper(device, &paper) == LORIMAT_OK) fputs(paper.data, stdout);
 *   lorimat_bytes_free(&paper);
 *   lorimat_register_close(device);
 *
 * Functions that can fail answer one of lorimat_result: LORIMAT_NULL_ARGUMENT for a pointer that
 * must not be null, LORIMAT_OTHER_ABI and LORIMAT_TABLE_TOO_SHORT for a struct with a size and an
 * abi, LORIMAT_NO_MEMORY, LORIMAT_REGISTER_FAULT when a file or a picture fails, and what each says
 * besides. lorimat_register_error has more. No exception comes out.
 *
 * A register is one thread's at a time; operations of the device client alone may come from any,
 * and answer RTF_E_BUSY while another is at work. All functions here are called between operations.
 * Amounts are ten-thousandths of the currency. */
#ifndef LORIMATRT_LORIMAT_REGISTER_H
#define LORIMATRT_LORIMAT_REGISTER_H

#include "lorimatrt/lorimat.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct lorimat_register lorimat_register;

/* A local time, as a device's clock shows it. */
typedef struct lorimat_time {
  int year;   /* 2026 */
  int month;  /* 1 to 12 */
  int day;    /* 1 to 31 */
  int hour;   /* 0 to 23 */
  int minute; /* 0 to 59 */
  int second; /* 0 to 60 */
} lorimat_time;

/* What a register is made with. Null, zero and false are what a small shop has; a file that is
 * there goes before all but file, outbox and clock. Texts are UTF-8 and copied. */
typedef struct lorimat_register_settings {
  size_t size;                     /* sizeof(lorimat_register_settings) */
  uint32_t abi;                    /* LORIMAT_ABI */
  bool not_in_service;             /* with the revenue agency */
  const char* file;                /* made when it is not there; null: in memory */
  const char* serial_number;       /* at most 32 bytes */
  const char* firmware_version;    /* at most 20 bytes */
  const char* vat_number;          /* the shop's; at most 32 bytes */
  const char* outbox;              /* the folder of what is sent; null: no files are written */
  const char* const* header_lines; /* at most 6 of 50 bytes each, none of them null; null: those of
                                    * a test shop */
  size_t header_line_count;
  int last_closure; /* number of the last day closing, 0 to 9999 */
  int last_invoice; /* 0 or more */
  /* The device's clock: writes the time, answers true; false, or no time, fails the operation that
   * asks. Null: the computer's. It runs on the thread of the operation and must not call the
   * register. user_data is handed to it and stays the host's. */
  bool (*clock)(void* user_data, lorimat_time* now);
  void* user_data;
  /* As `lorimat set` has them. What is paid wholly in cash comes to five cents. */
  bool round_cash;
  /* The table of VAT, entry 1 first, at most 99 entries, none of them null: a rate of 0 to 99.99
   * with two decimals at most ("22", "5.5"), or the nature of sales without tax, "N1" to "N6".
   * Null: 22, 10, 5, 4 and exempt. */
  const char* const* vat;
  size_t vat_count;
} lorimat_register_settings;

/* Opens a register; `settings` may be null. *device is closed by lorimat_register_close; null on
 * failure. LORIMAT_BAD_VALUE for a text that is too long or a number out of range. Any thread. */
LORIMAT_C_API int lorimat_register_open(const lorimat_register_settings* settings,
                                        lorimat_register** device);

/* Switches the register off; null is none. The translator must not have it any more, as with
 * lorimat_client_free. */
LORIMAT_C_API void lorimat_register_close(lorimat_register* device);

/* The device client, as lorimat_client_interface gives one. It lives as long as the register. */
LORIMAT_C_API void* lorimat_register_interface(lorimat_register* device);

/* Why the last function of this library that failed in this thread did, as lorimat_error. */
LORIMAT_C_API const char* lorimat_register_error(void);

/* Bytes that the library has made: `size` of them, and a NUL behind them that does not count. They
 * are the host's, to be given back by lorimat_bytes_free. */
typedef struct lorimat_bytes {
  char* data;
  size_t size;
} lorimat_bytes;

/* Gives them back and empties the struct; null and an empty one are nothing. */
LORIMAT_C_API void lorimat_bytes_free(lorimat_bytes* bytes);

/* The paper: as text with a line feed behind each line, as a PNG file and as a PDF file. *bytes
 * need not be empty before, and what it held is not freed; it is empty on failure. The text is what
 * the host has sent, byte for byte. A picture takes some 256 MB of addresses; where there are none
 * it is LORIMAT_NO_MEMORY. */
LORIMAT_C_API int lorimat_register_paper(lorimat_register* device, lorimat_bytes* bytes);
LORIMAT_C_API int lorimat_register_png(lorimat_register* device, lorimat_bytes* bytes);
LORIMAT_C_API int lorimat_register_pdf(lorimat_register* device, lorimat_bytes* bytes);

/* What is to be known of the start, in English: a document that had been cut off, a clock that is
 * behind, a day that was left open. Empty when there is nothing to tell. And why the last operation
 * that failed could not be stored; empty as long as none has. */
LORIMAT_C_API int lorimat_register_start_notice(lorimat_register* device, lorimat_bytes* bytes);
LORIMAT_C_API int lorimat_register_failure(lorimat_register* device, lorimat_bytes* bytes);

/* --- Faults on demand */

/* When a fault strikes, of the operations that it can. */
typedef enum lorimat_fault_when {
  LORIMAT_FAULT_NEXT = 0,  /* the next one; count is not looked at */
  LORIMAT_FAULT_NTH = 1,   /* the one of that number, from 1 */
  LORIMAT_FAULT_EVERY = 2, /* each, until the faults are cleared */
  LORIMAT_FAULT_TIMES = 3  /* the next ones, count of them */
} lorimat_fault_when;

/* Lets a fault wait: `name` is "paper-end", "cover-open", "off-line" or another of
 * docs/register.md, or "code", whose struck operation answers `code`. `operation` names the one
 * that it strikes
 * ("PrintRecItemEx"); null: all that it can. LORIMAT_BAD_VALUE for an operation or a `when` that
 * there is not, LORIMAT_REGISTER_FAULT for a fault that cannot be; nothing is added then. */
LORIMAT_C_API int lorimat_register_add_fault(lorimat_register* device, const char* name, int code,
                                             const char* operation, int when, int count);
/* Takes all of them away. */
LORIMAT_C_API int lorimat_register_clear_faults(lorimat_register* device);

/* --- State and totals */

typedef struct lorimat_register_state {
  size_t size;             /* sizeof(lorimat_register_state), set by the host */
  uint32_t abi;            /* LORIMAT_ABI, set by the host */
  int printer_state;       /* one of RTF_FPTR_PS_* */
  int key_position;        /* 1 registering, 2 reading, 3 closing, 4 programming */
  bool training;           /* documents are for practice */
  bool day_open;           /* something has been registered since the last closing */
  int drawer_openings;     /* since the register was made */
  int last_closure;        /* number of the last day closing; 0 for none */
  int next_invoice;        /* number of the next one */
  int pending_summaries;   /* closings that wait to be sent */
  int waiting_faults;      /* faults that wait */
  int64_t documents;       /* registered, of all days */
  int64_t journal_entries; /* of all days */
} lorimat_register_state;

/* Fills the struct from `printer_state` on, as far as its size says. */
LORIMAT_C_API int lorimat_register_get_state(lorimat_register* device,
                                             lorimat_register_state* state);

typedef struct lorimat_register_totals {
  size_t size;         /* sizeof(lorimat_register_totals), set by the host */
  uint32_t abi;        /* LORIMAT_ABI, set by the host */
  int receipts_number; /* of the last receipt, credit note or void of the day */
  int sales;           /* counts of the day */
  int invoices;
  int refunds;
  int cancels;
  int abandoned;
  int non_fiscal;
  int64_t receipts_amount; /* sales and invoices */
  int64_t invoices_amount; /* the part of them that stands on invoices */
  int64_t refunds_amount;
  int64_t cancels_amount;
  int64_t not_paid_amount;
  int64_t discounts_amount;
  int64_t surcharges_amount;
  int64_t net_amount;   /* receipts less refunds and cancels */
  int64_t grand_amount; /* since the register began */
} lorimat_register_totals;

/* The day that is open; fills the struct from `receipts_number` on, as far as its
 * size says. */
LORIMAT_C_API int lorimat_register_get_totals(lorimat_register* device,
                                              lorimat_register_totals* totals);

/* What the day comes to by tender: its identifier as the client has it ("0" is cash), and the
 * amount. */
typedef struct lorimat_tender_total {
  char tender[8];
  int64_t amount;
} lorimat_tender_total;

/* Fills at most `room` elements and sets *count to how many there are; `totals` may be null where
 * room is 0. */
LORIMAT_C_API int lorimat_register_get_tenders(lorimat_register* device,
                                               lorimat_tender_total* totals, size_t room,
                                               size_t* count);

#ifdef __cplusplus
}
#endif

#endif
