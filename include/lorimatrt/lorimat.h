/* The C face of liblorimatrt: a device client made of C functions, and the
 * explanations of result codes. C99 and C++. The library is liblorimat-c; the nineteen functions
 * that run lines are those of liblorimatrt itself (lorimatrt.h).
 *
 *   static int open_drawer(void* user_data) { ... return RTF_SUCCESS; }
 *   ...
 *   lorimat_device device = {0};
 *   device.size = sizeof device;
 *   device.abi = LORIMAT_ABI;
 *   device.OpenDrawer = open_drawer;
 *   lorimat_client* client = NULL;
 *   if (lorimat_client_new(&device, &client) != LORIMAT_OK) ... lorimat_error() tells why
 *
 * and in the callback that TradInit asks for the client:
 *
 *   *(void**)out = lorimat_client_interface(client);
 *
 * Texts are NUL-terminated. No function lets an exception out. A function that can fail answers one
 * of lorimat_result and, in lorimat_error, says more. */
#ifndef LORIMATRT_LORIMAT_H
#define LORIMATRT_LORIMAT_H

#include "lorimatrt/lorimat_constants.h"
#include "lorimatrt/lorimat_device.h"

#if defined(_WIN32)
#if defined(LORIMAT_C_BUILDING)
#define LORIMAT_C_API __declspec(dllexport)
#else
#define LORIMAT_C_API
#endif
#else
#define LORIMAT_C_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The number of this contract. It grows when a table that a host was compiled with would be
 * misread; members that are added at a struct's end leave it: what a host's struct has not, by its
 * `size`, counts as null or zero. */
#define LORIMAT_ABI 1

/* What the functions answer. */
typedef enum lorimat_result {
  LORIMAT_OK = 0,
  LORIMAT_NULL_ARGUMENT = 1,   /* a pointer is null that must not be */
  LORIMAT_TABLE_TOO_SHORT = 2, /* a table's size is below what its abi began with */
  LORIMAT_OTHER_ABI = 3,       /* a table was compiled for another contract */
  LORIMAT_NO_MEMORY = 4,
  LORIMAT_BAD_VALUE = 5,      /* an argument is none of those that are allowed */
  LORIMAT_REGISTER_FAULT = 6, /* the register's file or its pictures */
  LORIMAT_FAILURE = 7,        /* anything else; lorimat_error says what */
  /* Faults of a device's functions, as lorimat_client_take_fault tells them */
  LORIMAT_CALLBACK_THREW = 20,  /* a C++ exception left it */
  LORIMAT_BUFFER_OVERRUN = 21,  /* it wrote behind the room that it was told */
  LORIMAT_CALLBACK_ENTERED = 22 /* it was at work, and another operation began: it had called the
                                   translator, or a second thread had */
} lorimat_result;

/* What a result means, in English, as "a table is too short for its abi"; also for numbers that are
 * none. The text is the library's and stays for good. Any thread. */
LORIMAT_C_API const char* lorimat_result_text(int result);

/* Why the last function that failed in this thread did, in English; empty as long as none has. The
 * text is the library's, at most 511 bytes, and stays until the thread's next failure. */
LORIMAT_C_API const char* lorimat_error(void);

/* LORIMAT_ABI of the library that is loaded. Any thread. */
LORIMAT_C_API uint32_t lorimat_abi(void);

/* --- A device client of C functions
 *
 * An entry of the table that is null answers as a device that has not the operation: RTF_E_ILLEGAL,
 * RTF_S_CLOSED for GetState, false for GetClaimed and GetDeviceEnabled.
 *
 * A function answers RTF_SUCCESS or another result, never -1, which the translator takes for a
 * device that is not there. Texts that come in may be null and hold any byte. Texts that it fills,
 * "char*", are followed by their room in bytes, the closing NUL among them: it may write all of
 * them and nothing behind. DirectIO's text and those of the Config operations that write are input
 * as well. A macro of ConfigKeyboard is no text: macro_size says how many of its bytes count.
 * Nothing that it is handed lives longer than the call.
 *
 * The functions run on the thread that called the translator, one at a time. They must not call the
 * translator; an operation that begins while one is at work answers RTF_E_BUSY. A C++ exception
 * counts as RTF_E_FAILURE (a C compiler has to be told -fexceptions to let one through its
 * functions). */
typedef struct lorimat_client lorimat_client;

/* Makes a client of a table, which is copied; its `user_data` and what that leads to stay the
 * host's and have to live as long as the client. *client is freed by lorimat_client_free; null on
 * failure. LORIMAT_NULL_ARGUMENT, LORIMAT_TABLE_TOO_SHORT, LORIMAT_OTHER_ABI, LORIMAT_NO_MEMORY. A
 * table that is longer than this library knows is taken, without what stands behind. Any thread. */
LORIMAT_C_API int lorimat_client_new(const lorimat_device* table, lorimat_client** client);

/* The client is gone; null is none. The translator must not have it any more: TradInit has been
 * given another, or no line runs after this. No operation is at work. */
LORIMAT_C_API void lorimat_client_free(lorimat_client* client);

/* The address that the callback of TradInit (ECRIOIC_GET_CLIENT_RT) writes to where its last
 * argument points: an RtfClientInterface of C++. It lives as long as the client. Null for null. */
LORIMAT_C_API void* lorimat_client_interface(lorimat_client* client);

/* Whether the client looks at what lies behind the rooms of texts: then a function fills a room of
 * the client's own, with a guard of 64 bytes behind it. One that has been written over answers
 * RTF_E_FAILURE, and nothing of the text comes through. On in builds for the debugger, off in
 * others. Between operations. Nothing for null. */
LORIMAT_C_API void lorimat_client_guard(lorimat_client* client, bool on);

/* The last fault of a function, LORIMAT_CALLBACK_THREW and the like, which is then forgotten;
 * LORIMAT_OK when there was none, LORIMAT_NULL_ARGUMENT for null. *operation, if it is not null,
 * gets the operation's name ("OpenDrawer"), which stays for good; null when there was no fault.
 * Between operations. */
LORIMAT_C_API int lorimat_client_take_fault(lorimat_client* client, const char** operation);

/* --- Result codes in words */

/* What a code of EcrCmd means, a line each for its class and for each way in which it comes about,
 * as the console tells of a line that failed. `language` is "en" or "it", or begins so
 * ("it_IT.UTF-8"); null is English. UTF-8; empty for a number that is no result code. Null for a
 * language that there is not (LORIMAT_BAD_VALUE in lorimat_error's words), or without memory. The
 * text is the library's, at most 4095 bytes, and stays until this thread's next call. */
LORIMAT_C_API const char* lorimat_explain(long code, const char* language);

#ifdef __cplusplus
}
#endif

#endif
