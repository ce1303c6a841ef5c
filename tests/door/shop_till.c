/* A till of a shop's day in C, on plain sockets: sells what shop_plan.py says, with a book of its
   own.

     shop_till PORT TILL SALES BOOK [TOKEN]

   An asking is in the book, on the disk, before its key is used, and the outcome when it is known;
   killed and begun again it goes on where the book ends. An answer that is not whole is none, and
   the request is sent again with its key. "needs KEY" on standard output calls the operator. */
#include <arpa/inet.h>
#include <errno.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

enum { kKeyRoom = 64, kStateRoom = 32, kWordRoom = 32, kAnswerRoom = 1 << 20, kMostSales = 10000 };

struct Sale {
  char key[kKeyRoom];     /* empty: none has been asked for */
  char state[kStateRoom]; /* empty until it is known */
};

static int port;
static int till;
static const char* token;
static int book;
static struct Sale sales[kMostSales + 1];
static char answer[kAnswerRoom];

static void Fail(const char* what) {
  fprintf(stderr, "shop_till: %s: %s\n", what, strerror(errno));
  exit(2);
}

/* On the disk when it returns. */
__attribute__((format(printf, 1, 2))) static void Write(const char* format, ...) {
  char line[256];
  va_list arguments;
  va_start(arguments, format);
  const int size = vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  if (size < 0 || (size_t)size >= sizeof line) Fail("a line for the book is too long");
  if (write(book, line, (size_t)size) != size || fsync(book) != 0) Fail("the book");
}

/* What a kill has cut goes: nothing was sent behind an asking that is not whole. */
static void OpenBook(const char* name) {
  book = open(name, O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (book < 0) Fail(name);
  FILE* file = fdopen(dup(book), "r");
  if (file == NULL) Fail(name);
  char line[256];
  off_t whole = 0;
  while (fgets(line, sizeof line, file) != NULL && strchr(line, '\n') != NULL) {
    whole += (off_t)strlen(line);
    char word[8], key[kKeyRoom], state[kStateRoom] = "";
    int sale = 0;
    if (sscanf(line, "%7s %d %63s %31s", word, &sale, key, state) < 3 || sale < 1 ||
        sale > kMostSales) {
      errno = EINVAL;
      Fail(name);
    }
    strcpy(sales[sale].key, key);
    strcpy(sales[sale].state, state);
  }
  fclose(file);
  if (ftruncate(book, whole) != 0) Fail(name);
}

/* The body that the door answered, and its status; -1 when none has come whole. */
static int Exchange(const char* key, const char* body, const char** text) {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  struct sockaddr_in address = {.sin_family = AF_INET, .sin_port = htons((uint16_t)port)};
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connection < 0) Fail("a socket");
  char request[4096];
  const int size =
      snprintf(request, sizeof request,
               "POST /v1/jobs?wait=30 HTTP/1.1\r\nHost: 127.0.0.1:%d\r\nConnection: close\r\n"
               "Content-Type: application/json\r\nIdempotency-Key: %s\r\n%s%s%sContent-Length: "
               "%zu\r\n\r\n%s",
               port, key, token == NULL ? "" : "Authorization: Bearer ", token == NULL ? "" : token,
               token == NULL ? "" : "\r\n", strlen(body), body);
  if (size < 0 || (size_t)size >= sizeof request) Fail("a request is too long");
  int status = -1;
  size_t length = 0;
  if (connect(connection, (struct sockaddr*)&address, sizeof address) == 0 &&
      send(connection, request, (size_t)size, MSG_NOSIGNAL) == size) {
    ssize_t got;
    while (length + 1 < sizeof answer &&
           (got = recv(connection, answer + length, sizeof answer - 1 - length, 0)) > 0) {
      length += (size_t)got;
    }
  }
  close(connection);
  answer[length] = '\0';
  char* end = strstr(answer, "\r\n\r\n");
  if (end == NULL) return -1;
  *end = '\0';
  *text = end + 4;
  const char* told = strstr(answer, "Content-Length: ");
  if (told == NULL || strtoul(told + 16, NULL, 10) != strlen(*text)) return -1;
  if (sscanf(answer, "HTTP/1.1 %d", &status) != 1) return -1;
  return status;
}

/* Behind a text of JSON that begins here. */
static const char* BehindText(const char* at) {
  for (++at; *at != '\0' && *at != '"'; ++at) {
    if (*at == '\\' && at[1] != '\0') ++at;
  }
  return *at == '"' ? at + 1 : at;
}

/* The value of a name of this object itself, not of one within; NULL where there is none. */
static const char* Find(const char* object, const char* name) {
  int depth = 0;
  for (const char* at = object; *at != '\0';) {
    if (*at == '"') {
      const char* behind = BehindText(at);
      const size_t size = (size_t)(behind - at) - 2;
      if (depth == 1 && *behind == ':' && size == strlen(name) && memcmp(at + 1, name, size) == 0) {
        return behind + 1 + strspn(behind + 1, " ");
      }
      at = behind;
      continue;
    }
    if (*at == '{' || *at == '[') ++depth;
    if (*at == '}' || *at == ']') --depth;
    if (depth == 0) break;
    ++at;
  }
  return NULL;
}

/* A text or a number as a word; "-" for null and what is not there. */
static void Word(const char* object, const char* name, char word[kWordRoom]) {
  const char* value = object == NULL ? NULL : Find(object, name);
  strcpy(word, "-");
  if (value == NULL || strncmp(value, "null", 4) == 0) return;
  if (*value == '"') ++value;
  const size_t size = strcspn(value, "\",}] ");
  if (size == 0 || size >= kWordRoom) return;
  memcpy(word, value, size);
  word[size] = '\0';
}

/* As lines_of of the plan. */
static void MakeBody(int sale, const char* key, char* body, size_t size) {
  const int cents = 100 + (till * 37 + sale * 11) % 900;
  char lines[512];
  if (sale % 10 == 7) {
    snprintf(lines, sizeof lines, "\"NOFIS INIZIO\", \"NOFIS MSG='%s'\", \"NOFIS FINE\"", key);
  } else {
    snprintf(lines, sizeof lines,
             "\"VEND REP=1, PRE=%d.%02d, DES='%s'\", %s%s\"CHIU TEND=CONTANTI\"", cents / 100,
             cents % 100, key, sale % 2 ? "\"SCONTO IMP=0.10\", " : "",
             sale % 10 == 3 ? "\"VEND REP=99, PRE=1.00\", " : "");
  }
  snprintf(body, size, "{\"lines\": [%s], \"desk\": \"t%d\"}", lines, till);
}

/* Until the outcome of the sale's key is known. */
static void Ask(int sale) {
  struct Sale* one = &sales[sale];
  char body[1024];
  MakeBody(sale, one->key, body, sizeof body);
  for (;;) {
    const char* text = "";
    const int status = Exchange(one->key, body, &text);
    const char* document = status < 0 ? NULL : Find(text, "document");
    char state[kWordRoom] = "-";
    if (document != NULL) Word(text, "state", state);
    if (strcmp(state, "confirmed") == 0 || strcmp(state, "rejected") == 0 ||
        strcmp(state, "expired") == 0) {
      char closure[kWordRoom], number[kWordRoom], total[kWordRoom];
      const char* object = document != NULL && *document == '{' ? document : NULL;
      Word(object, "closure", closure);
      Word(object, "number", number);
      Word(object, "total", total);
      Write("told %d %s %s %s %s %s\n", sale, one->key, state, closure, number, total);
      strcpy(one->state, state);
      return;
    }
    if (strcmp(state, "needs_operator") == 0) {
      printf("needs %s\n", one->key);
      fflush(stdout);
    } else if (document == NULL && status >= 400 && status < 500 && status != 429) {
      fprintf(stderr, "shop_till: %s: %d %s\n", one->key, status, text);
      exit(2);
    }
    const struct timespec pause = {0, 50000000};
    nanosleep(&pause, NULL);
  }
}

int main(int count, char** arguments) {
  if (count < 5) {
    fprintf(stderr, "usage: shop_till PORT TILL SALES BOOK [TOKEN]\n");
    return 2;
  }
  port = atoi(arguments[1]);
  till = atoi(arguments[2]);
  const int wanted = atoi(arguments[3]);
  if (wanted > kMostSales) return 2;
  OpenBook(arguments[4]);
  token = count > 5 ? arguments[5] : NULL;
  for (int sale = 1; sale <= wanted; ++sale) {
    struct Sale* one = &sales[sale];
    const char* end = sale % 10 == 3 ? "rejected" : "confirmed";
    while (strcmp(one->state, end) != 0) {
      if (one->key[0] == '\0' || one->state[0] != '\0') {
        unsigned chance = 0;
        if (getrandom(&chance, sizeof chance, 0) != sizeof chance) Fail("chance");
        snprintf(one->key, sizeof one->key, "t%d-%d-%08x", till, sale, chance);
        one->state[0] = '\0';
        Write("ask %d %s\n", sale, one->key);
      }
      Ask(sale);
    }
  }
  return 0;
}
