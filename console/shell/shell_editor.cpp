#include "console/shell/shell_editor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cwchar>
#include <vector>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/shell_text.h"

namespace lorimat::console {
namespace {

constexpr wchar_t kRawByte = 0xDC00;  // and the byte: a code point that is no character
constexpr size_t kMostListed = 200;

volatile std::sig_atomic_t ended_by = 0;
volatile std::sig_atomic_t resized = 0;
volatile std::sig_atomic_t suspended = 0;

void NoteSignal(int signal) {
  switch (signal) {
    case SIGINT:
      interrupted = signal;
      break;
    case SIGWINCH:
      resized = 1;
      break;
    case SIGTSTP:
      suspended = 1;
      break;
    default:
      ended_by = signal;
      break;
  }
}

constexpr std::array<int, 5> kSignals = {SIGINT, SIGTERM, SIGHUP, SIGWINCH, SIGTSTP};

sigset_t NotedSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kSignals) sigaddset(&set, signal);
  return set;
}

bool IsRawByte(wchar_t c) { return c >= kRawByte + 0x80 && c <= kRawByte + 0xFF; }

bool IsWord(wchar_t c) { return c >= L' ' && c != 0x7F; }

ShellEditor* Owner(EditLine* edit) {
  void* data = nullptr;
  el_wget(edit, EL_CLIENTDATA, &data);
  return static_cast<ShellEditor*>(data);
}

std::FILE* OpenCopy(int descriptor, const char* mode) {
  const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
  return copy < 0 ? nullptr : fdopen(copy, mode);
}

}  // namespace

struct TerminalSignals::Before {
  std::array<struct sigaction, kSignals.size()> actions;
};

TerminalSignals::TerminalSignals() : before_(std::make_unique<Before>()) {
  interrupted = 0;
  struct sigaction action {};
  action.sa_handler = &NoteSignal;
  // What the library is reading or writing goes on; the editor's own wait ends all the same.
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &action, &before_->actions[i]);
  }
}

TerminalSignals::~TerminalSignals() {
  for (size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &before_->actions[i], nullptr);
  }
}

// --- Characters and bytes.

std::wstring ToWide(std::string_view text) {
  std::wstring wide;
  for (size_t at = 0; at < text.size();) {
    wchar_t c = 0;
    std::mbstate_t state{};
    const size_t size = std::mbrtowc(&c, text.data() + at, text.size() - at, &state);
    if (size == 0) {
      wide += L'\0';
      ++at;
    } else if (size > text.size() - at || IsRawByte(c)) {
      wide += static_cast<wchar_t>(kRawByte + static_cast<unsigned char>(text[at]));
      ++at;
    } else {
      wide += c;
      at += size;
    }
  }
  return wide;
}

std::string ToBytes(std::wstring_view text) {
  std::string bytes;
  for (const wchar_t c : text) {
    std::array<char, 16> buffer;
    std::mbstate_t state{};
    if (IsRawByte(c)) {
      bytes += static_cast<char>(c - kRawByte);
      continue;
    }
    const size_t size = std::wcrtomb(buffer.data(), c, &state);
    if (size != static_cast<size_t>(-1)) bytes.append(buffer.data(), size);
  }
  return bytes;
}

// --- The editor.

ShellEditor::ShellEditor(int input, int output, const ShellHistory& history, Completer completer)
    : input_(input),
      output_(output),
      completer_(std::move(completer)),
      input_file_(OpenCopy(input, "r"), &std::fclose),
      output_file_(OpenCopy(output, "w"), &std::fclose),
      edit_(nullptr, &el_end),
      history_(history_winit(), &history_wend) {
  if (input_file_ && output_file_ && history_) {
    edit_.reset(el_init_fd("lorimat", input_file_.get(), output_file_.get(), output_file_.get(),
                           input_, output_, output_));
  }
  if (!edit_) throw Failure(Tr("the line editor cannot start: {}", SystemMessage(errno)));
  EditLine* edit = edit_.get();
  el_wset(edit, EL_CLIENTDATA, this);
  el_wset(edit, EL_PROMPT, &ShellEditor::PromptOf);
  el_wset(edit, EL_EDITOR, L"emacs");
  el_wset(edit, EL_GETCFN, &ShellEditor::ReadCharacter);
  HistEventW event;
  history_w(history_.get(), &event, H_SETSIZE, static_cast<int>(ShellHistory::kMostLines));
  history_w(history_.get(), &event, H_SETUNIQUE, 1);
  el_wset(edit, EL_HIST, &history_w, history_.get());
  for (const std::string& line : history.lines()) Remember(line);
  el_wset(edit, EL_ADDFN, L"lorimat-complete", L"Complete a word of the language",
          &ShellEditor::Complete);
  constexpr std::array<const wchar_t*, 2> kKeys[] = {
      {L"^I", L"lorimat-complete"},           {L"^R", L"em-inc-search-prev"},
      {L"\\e[5~", L"ed-search-prev-history"}, {L"\\e[6~", L"ed-search-next-history"},
      {L"\\e[3~", L"ed-delete-next-char"},    {L"\\e[1~", L"ed-move-to-beg"},
      {L"\\e[4~", L"ed-move-to-end"},         {L"\\e[1;5C", L"em-next-word"},
      {L"\\e[1;5D", L"ed-prev-word"},
  };
  for (const auto& [key, function] : kKeys) {
    el_wset(edit, EL_BIND, key, function, static_cast<const wchar_t*>(nullptr));
  }
  // What the user has set for all programs of this kind.
  el_source(edit, nullptr);
}

ShellEditor::~ShellEditor() = default;

void ShellEditor::Remember(const std::string& line) {
  HistEventW event;
  history_w(history_.get(), &event, H_ENTER, ToWide(line).c_str());
}

size_t ShellEditor::columns() const {
  winsize size{};
  return ioctl(output_, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

wchar_t* ShellEditor::PromptOf(EditLine* edit) { return Owner(edit)->prompt_.data(); }

ShellEditor::Event ShellEditor::Read(const std::string& prompt, std::string* line) {
  prompt_ = ToWide(prompt);
  event_ = Event::kEnd;
  // Signals are let in during the wait for a key alone, so that none slips between test and wait.
  const sigset_t noted = NotedSignals();
  sigset_t before;
  sigprocmask(SIG_BLOCK, &noted, &before);
  // Before the prompt: what is typed as soon as it is seen must not be echoed by the terminal.
  el_wset(edit_.get(), EL_PREP_TERM, 1);
  int count = 0;
  const wchar_t* typed = el_wgets(edit_.get(), &count);
  sigprocmask(SIG_SETMASK, &before, nullptr);
  line->clear();
  if (typed == nullptr || count <= 0) return event_;
  if (event_ == Event::kInterrupt || event_ == Event::kSignal) return event_;
  *line = ToBytes({typed, static_cast<size_t>(count)});
  if (!line->empty() && line->back() == '\n') line->pop_back();
  return Event::kLine;
}

int ShellEditor::ReadCharacter(EditLine* edit, wchar_t* character) {
  ShellEditor* self = Owner(edit);
  for (;;) {
    const int got = self->NextCharacter(character);
    if (got != 1 || !IsWord(*character)) return got;
    const LineInfoW* line = el_wline(edit);
    if (static_cast<size_t>(line->lastchar - line->buffer) < kLongestTyped) return got;
  }
}

// 1 with a character, 0 at the end, -1 when a signal ends the line.
int ShellEditor::NextCharacter(wchar_t* character) {
  for (;;) {
    if (!pending_.empty()) {
      std::mbstate_t state{};
      const size_t size = std::mbrtowc(character, pending_.data(), pending_.size(), &state);
      if (size == 0) {
        // What Ctrl-D leaves that was typed while a line was at work; no key of its own.
        pending_.erase(0, 1);
        continue;
      }
      if (size <= pending_.size() && !IsRawByte(*character)) {
        pending_.erase(0, size);
        return 1;
      }
      if (size != static_cast<size_t>(-2)) {
        *character = static_cast<wchar_t>(kRawByte + static_cast<unsigned char>(pending_.front()));
        pending_.erase(0, 1);
        return 1;
      }
    }
    if (!WaitForKey()) {
      errno = EINTR;
      return -1;
    }
    char byte = 0;
    const ssize_t got = ::read(input_, &byte, 1);
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (got <= 0) return 0;
    pending_ += byte;
  }
}

bool ShellEditor::WaitForKey() {
  sigset_t open;
  sigprocmask(SIG_SETMASK, nullptr, &open);
  for (const int signal : kSignals) sigdelset(&open, signal);
  for (;;) {
    pollfd input = {input_, POLLIN, 0};
    const int ready = ppoll(&input, 1, nullptr, &open);
    if (ended_by != 0) {
      signal_ = ended_by;
      event_ = Event::kSignal;
      return false;
    }
    if (interrupted != 0) {
      interrupted = 0;
      pending_.clear();
      event_ = Event::kInterrupt;
      return false;
    }
    if (suspended != 0) {
      suspended = 0;
      Suspend();
    }
    if (resized != 0) {
      resized = 0;
      el_resize(edit_.get());
    }
    if (ready > 0 || (ready < 0 && errno != EINTR)) return true;
  }
}

// Ctrl-Z: the terminal goes back as it was found, and is taken again when the shell goes on.
void ShellEditor::Suspend() {
  el_wset(edit_.get(), EL_PREP_TERM, 0);
  struct sigaction before {};
  struct sigaction stop {};
  stop.sa_handler = SIG_DFL;
  sigemptyset(&stop.sa_mask);
  sigaction(SIGTSTP, &stop, &before);
  sigset_t let_in;
  sigset_t mask;
  sigemptyset(&let_in);
  sigaddset(&let_in, SIGTSTP);
  raise(SIGTSTP);
  sigprocmask(SIG_UNBLOCK, &let_in, &mask);  // stops here
  sigprocmask(SIG_SETMASK, &mask, nullptr);
  sigaction(SIGTSTP, &before, nullptr);
  el_wset(edit_.get(), EL_PREP_TERM, 1);
  el_wset(edit_.get(), EL_REFRESH);
}

// --- Completion.

unsigned char ShellEditor::Complete(EditLine* edit, wint_t) {
  try {
    return Owner(edit)->CompleteWord();
  } catch (const std::exception&) {
    return CC_ERROR;
  }
}

unsigned char ShellEditor::CompleteWord() {
  EditLine* edit = edit_.get();
  const LineInfoW* info = el_wline(edit);
  const std::string before =
      ToBytes({info->buffer, static_cast<size_t>(info->cursor - info->buffer)});
  const Completion completion = completer_(before, before.size());
  if (completion.candidates.empty()) return CC_ERROR;
  const std::string typed = before.substr(completion.begin);
  const bool one = completion.candidates.size() == 1;
  const std::string text = completion.common_beginning();
  if (one || (text.size() >= typed.size() && text != typed)) {
    el_wdeletestr(edit, static_cast<int>(ToWide(typed).size()));
    if (el_winsertstr(edit, ToWide(text).c_str()) != 0) return CC_ERROR;
  }
  if (one) return CC_REFRESH;
  List(completion);
  return CC_REDISPLAY;
}

void ShellEditor::List(const Completion& completion) {
  std::vector<std::string> labels;
  for (const Completion::Candidate& candidate : completion.candidates) {
    if (labels.size() == kMostListed) break;
    labels.push_back(Shown(candidate.label));
  }
  const size_t more = completion.candidates.size() - labels.size();
  std::string text = "\n" + InColumns(labels, columns());
  if (more != 0) text += Tr("and {} more", more) + "\n";
  std::fflush(output_file_.get());
  WriteAll(output_, text);
}

}  // namespace lorimat::console
