/* A device as a file: what a shared object exports so that "lorimat --device FILE", or any other
 * program, sets its device to work. C99 and C++.
 *
 *   LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
 *     if (lorimat_device_begin(plugin) != LORIMAT_DEVICE_OK) return LORIMAT_DEVICE_OTHER_ABI;
 *     plugin->name = "drawer";
 *     plugin->version = "1.0";
 *     ...
 *     plugin->kind = LORIMAT_DEVICE_C;
 *     plugin->callbacks = &table;
 *     return LORIMAT_DEVICE_OK;
 *   }
 *   LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin* plugin) { ... }
 *
 * Texts are NUL-terminated UTF-8. The program opens a device twice: first in a process of its own,
 * a trial, where it is closed again, so that a plug-in that fails ends that process and not the
 * program; then to work. A program that goes on for long closes a device that does not answer, and
 * opens it again, on another thread perhaps. All functions are called on one thread, one at a time,
 * from the opening to the closing. No C++ exception may leave a function of C; one that leaves an
 * operation of a C++ client counts as RTF_E_FAILURE. The program does not unload a file that it has
 * opened. */
#ifndef LORIMATRT_DEVICE_H
#define LORIMATRT_DEVICE_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "lorimatrt/lorimat_device.h"

#if defined(_WIN32)
#define LORIMAT_DEVICE_API __declspec(dllexport)
#else
#define LORIMAT_DEVICE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The number of this contract. It grows when a struct would be misread; members that are added at
 * the end leave it: what the one side has not, by `size`, counts as null or zero. */
#define LORIMAT_DEVICE_ABI 1

/* What lorimat_device_open answers. */
typedef enum lorimat_device_result {
  LORIMAT_DEVICE_OK = 0,
  LORIMAT_DEVICE_FAILED = 1,     /* the device cannot be opened; `error` says why */
  LORIMAT_DEVICE_OTHER_ABI = 2,  /* the program was compiled for another contract */
  LORIMAT_DEVICE_BAD_OPTION = 3, /* an option is missing, unknown or wrong; `error` says which */
  LORIMAT_DEVICE_IN_USE = 4      /* another process has the device; `error` may say which */
} lorimat_device_result;

/* What the client of a device is. */
typedef enum lorimat_device_kind {
  LORIMAT_DEVICE_C = 1,  /* `callbacks`: a table of C functions */
  LORIMAT_DEVICE_CPP = 2 /* `client`: an RtfClientInterface of C++ (lorimatrt/client.h), made by a
                            compiler whose classes are laid out as the program's */
} lorimat_device_kind;

/* What a device can do beyond the operations of its client: bits of `can`. Each has its functions,
 * which must not be null then. */
typedef enum lorimat_device_ability {
  LORIMAT_DEVICE_PAPER = 1,    /* paper_line: shows what it prints */
  LORIMAT_DEVICE_PICTURES = 2, /* picture: draws it */
  LORIMAT_DEVICE_FAULTS = 4,   /* fault: fails when it is told to */
  LORIMAT_DEVICE_TRAINING = 8  /* training: says whether what it does counts */
} lorimat_device_ability;

/* What the device is opened for. */
typedef enum lorimat_device_purpose {
  LORIMAT_DEVICE_WORK = 0,
  LORIMAT_DEVICE_TRIAL = 1 /* to see what it is. It is opened, and closed, as for work; what cannot
                              be taken back, as paper, is left alone */
} lorimat_device_purpose;

/* What the pictures of `picture` are. */
typedef enum lorimat_device_format {
  LORIMAT_DEVICE_PNG = 1,
  LORIMAT_DEVICE_PDF = 2
} lorimat_device_format;

/* An option that the program's user gave: "--device-option port=/dev/ttyS0". Neither is null. */
typedef struct lorimat_device_option {
  const char* key;
  const char* value;
} lorimat_device_option;

/* The program makes one, all zero but for what it says, and keeps it from the opening to the
 * closing; `size` and `abi` are the first members of every contract. */
typedef struct lorimat_device_plugin {
  size_t size;  /* sizeof as the program was compiled; the plug-in writes nothing behind it */
  uint32_t abi; /* LORIMAT_DEVICE_ABI as the program was compiled; the plug-in puts its own there */

  /* --- What the program says */
  uint32_t purpose;                     /* one of lorimat_device_purpose */
  const lorimat_device_option* options; /* in their order; they live as long as the struct */
  size_t option_count;
  void (*log)(void* log_data, const char* line); /* a line for the program's trace, of any thread
                                                    and at any time until the closing returns. The
                                                    program keeps as much of it as it likes. A
                                                    plug-in leaves the standard streams alone */
  void* log_data;

  /* --- What the plug-in says. Texts stay as they are until the closing; name and version are
     there whatever the answer is */
  uint32_t kind;       /* one of lorimat_device_kind */
  uint32_t can;        /* bits of lorimat_device_ability */
  const char* name;    /* "acme-9000": at most 63 bytes count, without control characters */
  const char* version; /* "1.2.0": the same */
  const lorimat_device* callbacks; /* it is copied; its `size` and `abi` as lorimat.h has them */
  void* client;                    /* in C++: static_cast<RtfClientInterface*>(...) */
  void* data;                      /* the plug-in's own, handed to the functions below */

  /* The printed line of this number, from 0 for the first since the opening, without line end, into
     `text` of `room` bytes with its NUL. False when no such line has been printed yet. */
  bool (*paper_line)(void* data, size_t number, char* text, size_t room);
  /* Draws what was printed since the opening, and gives it to `write`, in as many parts as it
     likes. `write` answers false when no more is wanted; then so does this. False, with a cause in
     `error` of `room` bytes, when it cannot be drawn. */
  bool (*picture)(void* data, int format, bool (*write)(void* to, const void* bytes, size_t count),
                  void* to, char* error, size_t room);
  /* Plans the fault of these words, as a person types them behind ".fault" of the shell, or takes
     all away ("clear"); empty words change nothing. True with a text for the person in `answer` of
     `room` bytes, lines of what there is and what waits for empty words; false with a cause. */
  bool (*fault)(void* data, const char* words, char* answer, size_t room);
  /* Whether it is in training: what it does now has no effect beyond the device. */
  bool (*training)(void* data);

  char error[512]; /* why it could not be opened, for a person */
} lorimat_device_plugin;

/* Opens the device. Answers one of lorimat_device_result; where that is not LORIMAT_DEVICE_OK,
 * nothing is left open and lorimat_device_close is not called. */
LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin);

/* Closes it; no operation of its client is called any more. */
LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin* plugin);

/* The names of both, for programs that look for them. */
#define LORIMAT_DEVICE_OPEN "lorimat_device_open"
#define LORIMAT_DEVICE_CLOSE "lorimat_device_close"
typedef int (*lorimat_device_open_function)(lorimat_device_plugin* plugin);
typedef void (*lorimat_device_close_function)(lorimat_device_plugin* plugin);

/* The beginning of lorimat_device_open: whether the program's struct is one of this contract, with
 * the plug-in's number put into it. What a later header adds behind `error` is there where `size`
 * has it. */
static inline int lorimat_device_begin(lorimat_device_plugin* plugin) {
  const uint32_t abi = plugin->abi;
  plugin->abi = LORIMAT_DEVICE_ABI;
  if (abi != LORIMAT_DEVICE_ABI) return LORIMAT_DEVICE_OTHER_ABI;
  return plugin->size >= offsetof(lorimat_device_plugin, error) + sizeof plugin->error
             ? LORIMAT_DEVICE_OK
             : LORIMAT_DEVICE_OTHER_ABI;
}

/* The last value of an option; null when it was not given. */
static inline const char* lorimat_device_find_option(const lorimat_device_plugin* plugin,
                                                     const char* key) {
  size_t i = plugin->option_count;
  while (i-- > 0) {
    const char* a = plugin->options[i].key;
    const char* b = key;
    while (*a != 0 && *a == *b) ++a, ++b;
    if (*a == *b) return plugin->options[i].value;
  }
  return NULL;
}

#ifdef __cplusplus
}
#endif

#endif
