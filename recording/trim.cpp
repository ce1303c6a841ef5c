#include "recording/trim.h"

#include <algorithm>
#include <map>
#include <optional>

#include "recording/doing.h"
#include "recording/recorder.h"
#include "rpccommon/services/rtffptrconst.h"

namespace recording {
namespace {

using conversation::Call;
using conversation::Step;
using conversation::Value;
using Operation = ClientOperation;

// Documents that are not fiscal begin with these.
constexpr Operation kOtherBegins[] = {Operation::kBeginNonFiscal, Operation::kBeginNonFiscalJournal,
                                      Operation::kBeginFixedOutput};
constexpr Operation kEnds[] = {Operation::kEndFiscalReceipt, Operation::kEndFiscalDocument,
                               Operation::kEndNonFiscal,     Operation::kEndFixedOutput,
                               Operation::kPrintRecVoid,     Operation::kResetPrn,
                               Operation::kPrintZReport,     Operation::kPrintZReportEx};

template <size_t size>
bool IsOneOf(Operation operation, const Operation (&operations)[size]) {
  return std::find(std::begin(operations), std::end(operations), operation) != std::end(operations);
}

bool Begins(Operation operation) {
  return DoingOf(operation) == Doing::kOpens || IsOneOf(operation, kOtherBegins);
}

// A printer that says it has no document open: a payment may have ended one.
bool TellsNoDocument(const Call& call) {
  return call.operation == Operation::kGetIntProperty && !call.arguments.empty() &&
         call.arguments[0].text == std::to_string(RTF_PIDXFptr_PrinterState) &&
         !call.outs.empty() && call.outs[0].text == std::to_string(RTF_FPTR_PS_MONITOR);
}

bool Succeeded(const Call& call) {
  return !call.has_answer || (call.answer.kind == Value::kWord && call.answer.text == "0");
}

bool IsRemark(const std::string& line) {
  const size_t first = line.find_first_not_of(" \t");
  return first == std::string::npos || line[first] == ';';
}

std::string Written(const Call& call) {
  std::string text = "< " + call.Shown();
  if (call.has_answer || call.has_outs) text += " -> " + call.ShownAnswer();
  return text + "\n";
}

class Trimming {
 public:
  explicit Trimming(const Recording& recording)
      : recording_(recording),
        steps_(recording.script.steps),
        matters_(steps_.size(), false),
        document_(steps_.size(), kNoDocument) {}

  Trimmed Run(const std::vector<int>& named) {
    Trimmed result;
    FindDocuments();
    for (const Step& step : steps_) result.all += IsLine(step) ? 1 : 0;
    if (named.empty()) {
      for (size_t i = 0; i < steps_.size(); ++i) {
        if (IsLine(steps_[i]) && steps_[i].code != 0) Keep(i);
      }
      if (last_ == kNoDocument) return {.cause = TrimCause::kNothingFailed};
    }
    for (const int line : named) {
      const std::optional<size_t> found = LineAt(line);
      if (!found) return {.cause = TrimCause::kNoLine, .number = line};
      Keep(*found);
    }
    KeepSettings();
    for (size_t i = 0; i < steps_.size(); ++i) {
      result.kept += IsLine(steps_[i]) && matters_[i] ? 1 : 0;
    }
    result.text = Text(result);
    return result;
  }

 private:
  static constexpr size_t kNoDocument = static_cast<size_t>(-1);

  static bool IsLine(const Step& step) { return step.kind == Step::kSend && !step.cut; }

  std::optional<size_t> LineAt(int line) const {
    for (size_t i = 0; i < steps_.size(); ++i) {
      if (IsLine(steps_[i]) && LineInFile(recording_.script, steps_[i].line) == line) return i;
    }
    return std::nullopt;
  }

  // The step that began the document in which each step stands.
  void FindDocuments() {
    size_t begun = kNoDocument;
    for (size_t i = 0; i < steps_.size(); ++i) {
      size_t own = begun;
      for (const Call& call : steps_[i].calls) {
        if (!call.operation || !Succeeded(call)) continue;
        if (Begins(*call.operation)) {
          begun = i;
          own = i;
        } else if (TellsNoDocument(call) || IsOneOf(*call.operation, kEnds)) {
          begun = kNoDocument;
        }
      }
      document_[i] = own;
    }
  }

  void Keep(size_t step) {
    const size_t first = document_[step] == kNoDocument ? step : document_[step];
    for (size_t i = first; i <= step; ++i) {
      if (IsLine(steps_[i]) && !IsRemark(steps_[i].text)) matters_[i] = true;
    }
    matters_[step] = true;
    last_ = last_ == kNoDocument ? step : std::max(last_, step);
  }

  void KeepSettings() {
    for (size_t i = 0; i < last_; ++i) {
      const Step& step = steps_[i];
      if (IsLine(step) && step.calls.empty() && step.code == 0 && !IsRemark(step.text)) {
        matters_[i] = true;
      }
    }
  }

  std::string Text(const Trimmed& result) const {
    std::string text =
        "# " + std::to_string(result.kept) + " of " + std::to_string(result.all) + " lines";
    if (!recording_.device.empty())
      text += " recorded from " + conversation::Escape(recording_.device);
    if (!recording_.first_time.empty()) text += ", " + conversation::Escape(recording_.first_time);
    if (!recording_.made_by.empty()) text += ", by " + conversation::Escape(recording_.made_by);
    text += recording_.blanked ? "; secrets are blanked.\n" : ".\n";
    const std::optional<size_t> start = OnlyStart();
    for (size_t i = 0; i <= last_ && i < steps_.size(); ++i) {
      const Step& step = steps_[i];
      if (IsLine(step)) {
        if (matters_[i]) text += LineText(step);
      } else if (step.kind == Step::kInit) {
        text += start == i && IsPlain(step) ? Items(step) : InitText(step);
      } else if (step.kind == Step::kLanguageText) {
        text += Block("language", step.text);
      } else if (step.kind == Step::kLanguageName) {
        text += "language: " + conversation::Escape(step.text) + "\n";
      } else if (step.kind == Step::kItem) {
        text += "item " + step.name + ": " + conversation::Quote(step.text) + "\n";
      }
    }
    return text;
  }

  // The start ahead of the first line that is kept, which a conversation makes by itself; none when
  // there are several.
  std::optional<size_t> OnlyStart() const {
    std::optional<size_t> start;
    for (size_t i = 0; i < steps_.size() && !(IsLine(steps_[i]) && matters_[i]); ++i) {
      if (steps_[i].kind != Step::kInit) continue;
      if (start) return std::nullopt;
      start = i;
    }
    return start;
  }

  static std::string LineText(const Step& step) {
    const std::string line = conversation::Escape(step.text);
    std::string text = line.empty() ? ">\n" : "> " + line + "\n";
    for (const Call& call : step.calls) text += Written(call);
    return text + "= " + std::to_string(step.code) + " " + step.answer.Shown() + "\n";
  }

  static std::string InitText(const Step& step) {
    std::string text = "init: " + std::to_string(step.code) + "\n";
    for (const Call& call : step.calls) text += Written(call);
    return text;
  }

  // What a start reads, as data of the device.
  static std::string Items(const Step& step) {
    std::string text;
    for (const auto& [item, value] : ItemsOf(step)) {
      text += "item " + item + ": " + conversation::Quote(value) + "\n";
    }
    return text;
  }

  static std::map<std::string, std::string> ItemsOf(const Step& step) {
    std::map<std::string, std::string> items;
    for (const Call& call : step.calls) {
      if (call.operation == Operation::kGetDataInternal && call.arguments.size() == 1 &&
          call.outs.size() == 1) {
        items.emplace(call.arguments[0].text, call.outs[0].text);
      }
    }
    return items;
  }

  // Whether a device that has the items and answers all else with success starts in the same way.
  static bool IsPlain(const Step& step) {
    if (step.code != 0) return false;
    const std::map<std::string, std::string> items = ItemsOf(step);
    return std::all_of(step.calls.begin(), step.calls.end(), [&](const Call& call) {
      if (!Succeeded(call)) return false;
      if (call.operation != Operation::kGetDataInternal) return call.outs.empty();
      return call.arguments.size() == 1 && call.outs.size() == 1 &&
             call.outs[0].kind == Value::kText &&
             items.at(call.arguments[0].text) == call.outs[0].text;
    });
  }

  const Recording& recording_;
  const std::vector<Step>& steps_;
  std::vector<bool> matters_;
  std::vector<size_t> document_;
  size_t last_ = kNoDocument;  // step that is kept
};

}  // namespace

Trimmed Trim(const Recording& recording, const std::vector<int>& named) {
  return Trimming(recording).Run(named);
}

}  // namespace recording
