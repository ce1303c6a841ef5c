#include "console/shell/shell_json.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "console/check/finding.h"
#include "console/check/password_mask.h"
#include "console/host/answer_causes.h"
#include "console/host/answer_text.h"
#include "console/host/batch_request.h"
#include "console/host/line_run.h"
#include "console/host/memory_watch.h"
#include "console/message/failure.h"
#include "console/message/finding_text.h"
#include "console/message/json_text.h"
#include "console/message/translate.h"
#include "console/shell/json_request.h"
#include "console/shell/shell_status.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/notices.h"

namespace lorimat::console {
namespace {

// Of a batch: more are counted, so that a file of the wrong kind fills no answer.
constexpr size_t kMostFailures = 100;

Json ClassJson(long code) { return code < 0 ? Json() : Json((code & kCodeClassMask) >> 8); }

// The words behind ".fault", if the line is that one of the shell's own.
std::optional<std::string_view> FaultWordsOf(std::string_view line) {
  constexpr std::string_view kFault = ".fault";
  constexpr std::string_view kBlanks = " \t";
  line.remove_prefix(std::min(line.size(), line.find_first_not_of(kBlanks)));
  if (line.substr(0, kFault.size()) != kFault) return std::nullopt;
  line.remove_prefix(kFault.size());
  if (!line.empty() && kBlanks.find(line.front()) == kBlanks.npos) return std::nullopt;
  line.remove_prefix(std::min(line.size(), line.find_first_not_of(kBlanks)));
  while (!line.empty() && kBlanks.find(line.back()) != kBlanks.npos) line.remove_suffix(1);
  return line;
}

class JsonShell {
 public:
  JsonShell(const Language& language, Library& library, Device& device, OutputGuard& guard,
            Streams& streams)
      : language_(language),
        library_(library),
        device_(device),
        guard_(guard),
        streams_(streams),
        memory_(language, device) {}

  // One line in, one line out.
  void Answer(const SourceLine& source) {
    streams_.Output(AnswerTo(source));
    device_.TellFailure(streams_);
    device_.TellNotes(streams_);
  }

 private:
  std::string AnswerTo(const SourceLine& source) {
    const EnglishMessages english;
    JsonRequest request = ReadRequest(source);
    Json out = {
        {"id", std::move(request.id)}, {"code", nullptr},        {"class", nullptr}, {"text", ""},
        {"explanation", ""},           {"paper", Json::array()}, {"state", nullptr}};
    if (!request.error) request.error = Run(request.line, &out);
    out["paper"] = NewPaper();
    out["state"] = StateJson(device_.state(), memory_.next_sale());
    if (const std::optional<RequestError>& error = request.error) {
      out["error"] = {{"kind", RequestErrorName(error->kind)},
                      {"cause", error->cause},
                      {"column", error->column == 0 ? Json() : Json(error->column)}};
    }
    return JsonLine(out);
  }

  std::optional<RequestError> Run(const std::string& line, Json* out) {
    if (const std::optional<std::string_view> words = FaultWordsOf(line)) {
      DeviceFaults* faults = device_.faults();
      if (faults == nullptr) {
        return RequestError{RequestError::kFault,
                            Tr("the device '{}' takes no orders for faults", device_.name()), 0};
      }
      try {
        if (!words->empty()) faults->Plan(*words);
      } catch (const Failure& failure) {
        return RequestError{RequestError::kFault, failure.what(), 0};
      }
      Put(0, "", "", "", out);
    } else {
      SourceLine source;
      source.text = line;
      const LineAnswer answer = RunLine(source, {library_, device_, memory_, guard_});
      if (!answer.not_run.empty()) {
        return RequestError{IsBatchLine(line) ? RequestError::kBatch : RequestError::kOutput,
                            answer.not_run, 0};
      }
      Put(answer.code, answer.answer, line, answer.reason, out);
      if (answer.batch) PutBatch(*answer.batch, out);
    }
    return std::nullopt;
  }

  void PutBatch(const BatchRun& batch, Json* out) {
    Json failures = Json::array();
    for (const FailedLine& failed : batch.failures) {
      if (failures.size() == kMostFailures) break;
      Json one = {{"place", failed.place}, {"line", WithoutPasswords(&language_, failed.text)},
                  {"code", nullptr},       {"class", nullptr},
                  {"text", failed.answer}, {"explanation", ""}};
      // A text that belongs to no line has no code.
      if (failed.code != 0) Put(failed.code, failed.answer, failed.text, failed.reason, &one);
      failures.push_back(std::move(one));
    }
    (*out)["batch"] = {
        {"lines", batch.lines ? Json(*batch.lines) : Json()},
        {"failed", batch.failures.size()},
        {"failures", std::move(failures)},
        {"not_known", batch.unknown.empty() ? Json() : Json(batch.unknown)},
        {"stopped_behind", batch.stop ? Json(batch.stop->ran) : Json()},
        {"stopped_ahead_of",
         batch.stop && batch.stop->refused != 0 ? Json(batch.stop->refused) : Json()}};
  }

  void Put(long code, const std::string& text, const std::string& line, const std::string& reason,
           Json* out) {
    (*out)["code"] = code;
    (*out)["class"] = ClassJson(code);
    (*out)["text"] = text;
    (*out)["explanation"] = Explanation(code, line, reason);
  }

  // What is wrong in the line, why the register refused it, and what causes the code.
  std::string Explanation(long code, const std::string& line, const std::string& reason) const {
    if (code == 0) return {};
    std::vector<std::string> sentences;
    if (const std::optional<Finding> found = ParserFinding(language_, line, code)) {
      const std::string words = WhatAndBetterWord(*found);
      sentences.push_back(found->column == 0 ? words
                                             : fmt::format("column {}: {}", found->column, words));
    }
    if (!reason.empty()) sentences.push_back(reason);
    for (std::string& cause : Causes(code)) sentences.push_back(std::move(cause));
    return fmt::format("{}", fmt::join(sentences, "\n"));
  }

  // What was printed since the answer before, and ahead of the first one when the register started.
  Json NewPaper() {
    Json paper = Json::array();
    if (device_.paper() == nullptr) return paper;
    const std::vector<std::string>& lines = device_.paper()->printed();
    for (; paper_shown_ < lines.size(); ++paper_shown_) paper.push_back(lines[paper_shown_]);
    return paper;
  }

  const Language& language_;
  Library& library_;
  Device& device_;
  OutputGuard& guard_;
  Streams& streams_;
  MemoryWatch memory_;
  size_t paper_shown_ = 0;  // lines
};

}  // namespace

int RunJson(const Language& language, Library& library, Device& device, OutputGuard& guard,
            Streams& streams) {
  JsonShell shell(language, library, device, guard, streams);
  LineReader reader("-", &interrupted, kLongestRequest);
  SourceLine line;
  uint64_t answered = 0;
  // What a signal leaves of a request that was being sent is not run.
  while (interrupted == 0 && reader.Next(&line) && interrupted == 0) {
    shell.Answer(line);
    answered = line.number;
  }
  if (interrupted == 0) return kExitGood;
  Tell(streams, Tr("stopped by {} behind line {}", InterruptName(), answered));
  return InterruptExit();
}

}  // namespace lorimat::console
