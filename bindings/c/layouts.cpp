// How the structs lie in memory that hosts and devices share with the libraries. Those who fill
// them were compiled elsewhere, in other languages too, so that a member that moves has to stop the
// build. Nothing of this is in a program.
//
// Pointers and size_t have 8 or 4 bytes. A 64-bit member lies at a multiple of 8, but in Linux on
// x86 of 32 bits at one of 4: there, and there alone, lorimat_register_totals is shorter than on
// 32-bit Windows.
#include <cstddef>
#include <cstdint>

#include "lorimatrt/device.h"
#include "lorimatrt/lorimat_register.h"
#include "lorimatrt/lorimatrt.h"

namespace {

struct Wide {
  char ahead;
  int64_t value;
};

// The one of the three that is this machine's.
constexpr size_t Here(size_t wide, size_t narrow, size_t narrow_and_packed) {
  if (sizeof(void*) == 8) return wide;
  return offsetof(Wide, value) == 8 ? narrow : narrow_and_packed;
}

static_assert(sizeof(void*) == sizeof(size_t) && (sizeof(void*) == 8 || sizeof(void*) == 4));
static_assert(sizeof(bool) == 1 && sizeof(int) == 4);
#if defined(_WIN32)
static_assert(sizeof(long) == 4 && offsetof(Wide, value) == 8);
#else
static_assert(sizeof(long) == sizeof(void*));
#endif

// SIZE(struct, 64 bits, 32 bits, 32 bits with 64-bit members at multiples of 4), and the same of a
// member's offset. Where the last two are one, it stands once.
#define SIZE3(Struct, ...) static_assert(sizeof(Struct) == Here(__VA_ARGS__), #Struct)
#define SIZE(Struct, Of64, Of32) SIZE3(Struct, Of64, Of32, Of32)
#define AT3(Struct, Member, ...) \
  static_assert(offsetof(Struct, Member) == Here(__VA_ARGS__), #Struct "." #Member)
#define AT(Struct, Member, Of64, Of32) AT3(Struct, Member, Of64, Of32, Of32)

SIZE(lorimat_bytes, 16, 8);
AT(lorimat_bytes, data, 0, 0);
AT(lorimat_bytes, size, 8, 4);

SIZE(lorimat_time, 24, 24);
AT(lorimat_time, year, 0, 0);
AT(lorimat_time, month, 4, 4);
AT(lorimat_time, day, 8, 8);
AT(lorimat_time, hour, 12, 12);
AT(lorimat_time, minute, 16, 16);
AT(lorimat_time, second, 20, 20);

SIZE(lorimat_register_settings, 120, 68);
AT(lorimat_register_settings, size, 0, 0);
AT(lorimat_register_settings, abi, 8, 4);
AT(lorimat_register_settings, not_in_service, 12, 8);
AT(lorimat_register_settings, file, 16, 12);
AT(lorimat_register_settings, serial_number, 24, 16);
AT(lorimat_register_settings, firmware_version, 32, 20);
AT(lorimat_register_settings, vat_number, 40, 24);
AT(lorimat_register_settings, outbox, 48, 28);
AT(lorimat_register_settings, header_lines, 56, 32);
AT(lorimat_register_settings, header_line_count, 64, 36);
AT(lorimat_register_settings, last_closure, 72, 40);
AT(lorimat_register_settings, last_invoice, 76, 44);
AT(lorimat_register_settings, clock, 80, 48);
AT(lorimat_register_settings, user_data, 88, 52);
AT(lorimat_register_settings, round_cash, 96, 56);
AT(lorimat_register_settings, vat, 104, 60);
AT(lorimat_register_settings, vat_count, 112, 64);

SIZE(lorimat_register_state, 64, 56);
AT(lorimat_register_state, size, 0, 0);
AT(lorimat_register_state, abi, 8, 4);
AT(lorimat_register_state, printer_state, 12, 8);
AT(lorimat_register_state, key_position, 16, 12);
AT(lorimat_register_state, training, 20, 16);
AT(lorimat_register_state, day_open, 21, 17);
AT(lorimat_register_state, drawer_openings, 24, 20);
AT(lorimat_register_state, last_closure, 28, 24);
AT(lorimat_register_state, next_invoice, 32, 28);
AT(lorimat_register_state, pending_summaries, 36, 32);
AT(lorimat_register_state, waiting_faults, 40, 36);
AT(lorimat_register_state, documents, 48, 40);
AT(lorimat_register_state, journal_entries, 56, 48);

SIZE3(lorimat_register_totals, 112, 112, 108);
AT(lorimat_register_totals, size, 0, 0);
AT(lorimat_register_totals, abi, 8, 4);
AT(lorimat_register_totals, receipts_number, 12, 8);
AT(lorimat_register_totals, sales, 16, 12);
AT(lorimat_register_totals, invoices, 20, 16);
AT(lorimat_register_totals, refunds, 24, 20);
AT(lorimat_register_totals, cancels, 28, 24);
AT(lorimat_register_totals, abandoned, 32, 28);
AT(lorimat_register_totals, non_fiscal, 36, 32);
AT3(lorimat_register_totals, receipts_amount, 40, 40, 36);
AT3(lorimat_register_totals, invoices_amount, 48, 48, 44);
AT3(lorimat_register_totals, refunds_amount, 56, 56, 52);
AT3(lorimat_register_totals, cancels_amount, 64, 64, 60);
AT3(lorimat_register_totals, not_paid_amount, 72, 72, 68);
AT3(lorimat_register_totals, discounts_amount, 80, 80, 76);
AT3(lorimat_register_totals, surcharges_amount, 88, 88, 84);
AT3(lorimat_register_totals, net_amount, 96, 96, 92);
AT3(lorimat_register_totals, grand_amount, 104, 104, 100);

SIZE(lorimat_tender_total, 16, 16);
AT(lorimat_tender_total, tender, 0, 0);
AT(lorimat_tender_total, amount, 8, 8);

// Behind its three first members come 149 functions, and nothing else.
SIZE(lorimat_device, 24 + 149 * 8, 12 + 149 * 4);
AT(lorimat_device, size, 0, 0);
AT(lorimat_device, abi, 8, 4);
AT(lorimat_device, user_data, 16, 8);
AT(lorimat_device, GetClaimed, 24, 12);
AT(lorimat_device, set_wait_result_code, 24 + 148 * 8, 12 + 148 * 4);

SIZE(lorimat_device_option, 16, 8);
AT(lorimat_device_option, key, 0, 0);
AT(lorimat_device_option, value, 8, 4);

SIZE(lorimat_device_plugin, 640, 584);
AT(lorimat_device_plugin, size, 0, 0);
AT(lorimat_device_plugin, abi, 8, 4);
AT(lorimat_device_plugin, purpose, 12, 8);
AT(lorimat_device_plugin, options, 16, 12);
AT(lorimat_device_plugin, option_count, 24, 16);
AT(lorimat_device_plugin, log, 32, 20);
AT(lorimat_device_plugin, log_data, 40, 24);
AT(lorimat_device_plugin, kind, 48, 28);
AT(lorimat_device_plugin, can, 52, 32);
AT(lorimat_device_plugin, name, 56, 36);
AT(lorimat_device_plugin, version, 64, 40);
AT(lorimat_device_plugin, callbacks, 72, 44);
AT(lorimat_device_plugin, client, 80, 48);
AT(lorimat_device_plugin, data, 88, 52);
AT(lorimat_device_plugin, paper_line, 96, 56);
AT(lorimat_device_plugin, picture, 104, 60);
AT(lorimat_device_plugin, fault, 112, 64);
AT(lorimat_device_plugin, training, 120, 68);
AT(lorimat_device_plugin, error, 128, 72);

SIZE(PROTINFO, 192, 112);
AT(PROTINFO, iTipo, 0, 0);
AT(PROTINFO, bModem, 4, 4);
AT(PROTINFO, iVerMajor, 8, 8);
AT(PROTINFO, iVerMinor, 12, 12);
AT(PROTINFO, iVerRelease, 16, 16);
AT(PROTINFO, bOpen, 20, 20);
AT(PROTINFO, iMaxEcr, 24, 24);
AT(PROTINFO, plLastErr, 32, 28);
AT(PROTINFO, plTotBytesTx, 40, 32);
AT(PROTINFO, plTotBytesRx, 48, 36);
AT(PROTINFO, pTbNet, 56, 40);
AT(PROTINFO, iTbNetSize, 64, 44);
AT(PROTINFO, pNetStatus, 72, 48);
AT(PROTINFO, pszPortName, 80, 52);
AT(PROTINFO, pszPortEcrProt, 88, 56);
AT(PROTINFO, pszPortNetDef, 96, 60);
AT(PROTINFO, pszECRIP, 104, 64);
AT(PROTINFO, pszECRPortNumber, 112, 68);
AT(PROTINFO, bExtDisplayEcho, 120, 72);
AT(PROTINFO, bOnLine, 121, 73);
AT(PROTINFO, bNoSync, 122, 74);
AT(PROTINFO, bNoCHKS, 123, 75);
AT(PROTINFO, bLongTmOut, 124, 76);
AT(PROTINFO, pEcrIO, 128, 80);
AT(PROTINFO, pEcrBrdcIO, 136, 84);
AT(PROTINFO, pSendStRq, 144, 88);
AT(PROTINFO, pSendStExRq, 152, 92);
AT(PROTINFO, pOutLog, 160, 96);
AT(PROTINFO, pFunzUF1, 168, 100);
AT(PROTINFO, pFunzUF2, 176, 104);
AT(PROTINFO, pFunzUF3, 184, 108);

}  // namespace
