// A libcurl for the console that speaks with nobody: what its requests end with stands in
// SCRIPTED_CURL, as "CODE/BYTES CODE/BYTES ...", of which the last is for ever: CODE as libcurl has
// it, BYTES what of the request left. An option of SCRIPTED_CURL_REFUSES it does not know. What it
// was given it writes to standard error.
#define CURL_DISABLE_TYPECHECK
#include <curl/curl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

#undef curl_easy_setopt
#undef curl_easy_getinfo

static const char* rest;
static long code;
static long bytes;

CURLcode curl_global_init(long flags) {
  (void)flags;
  rest = getenv("SCRIPTED_CURL");
  return rest == NULL ? CURLE_FAILED_INIT : CURLE_OK;
}

CURL* curl_easy_init(void) { return (CURL*)&rest; }
void curl_easy_cleanup(CURL* handle) { (void)handle; }
const char* curl_easy_strerror(CURLcode of) {
  static char text[32];
  snprintf(text, sizeof(text), "scripted %d", (int)of);
  return text;
}

CURLcode curl_easy_setopt(CURL* handle, CURLoption option, ...) {
  (void)handle;
  const char* refused = getenv("SCRIPTED_CURL_REFUSES");
  if (refused != NULL && atoi(refused) == (int)option) return CURLE_UNKNOWN_OPTION;
  va_list values;
  va_start(values, option);
  if (option == CURLOPT_CAINFO || option == CURLOPT_CAPATH) {
    const char* text = va_arg(values, const char*);
    fprintf(stderr, "%s=%s\n", option == CURLOPT_CAINFO ? "CAINFO" : "CAPATH",
            text == NULL ? "none" : text);
  }
  va_end(values);
  return CURLE_OK;
}

CURLcode curl_easy_perform(CURL* handle) {
  (void)handle;
  char* end = NULL;
  code = strtol(rest, &end, 10);
  bytes = strtol(end + 1, &end, 10);
  if (*end == ' ') rest = end + 1;
  fprintf(stderr, "asked\n");
  return (CURLcode)code;
}

CURLcode curl_easy_getinfo(CURL* handle, CURLINFO info, ...) {
  (void)handle;
  va_list values;
  va_start(values, info);
  if (info == CURLINFO_REQUEST_SIZE) *va_arg(values, long*) = bytes;
  va_end(values);
  return CURLE_OK;
}

struct curl_slist* curl_slist_append(struct curl_slist* list, const char* text) {
  (void)text;
  static struct curl_slist all;
  return list == NULL ? &all : list;
}
void curl_slist_free_all(struct curl_slist* list) { (void)list; }
