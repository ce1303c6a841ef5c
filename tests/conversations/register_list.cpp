#include "register_list.h"

#include <fstream>

#include "recording/conversation/script_text.h"

namespace conversation {
namespace {

class ListReader {
 public:
  RegisterList Read(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw Failure(0, "the list cannot be read");
    for (std::string line; std::getline(file, line);) {
      ++line_;
      if (line.empty() || line[0] == '#') continue;
      if (line[0] == ' ') {
        ReadEntry(std::string(Trimmed(line)));
      } else {
        ReadHeading(line);
      }
    }
    return std::move(list_);
  }

 private:
  // "set-up NAME:", "same:", "codes: REASON", "differs: REASON".
  void ReadHeading(const std::string& line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) throw Failure(line_, "a heading ends in a colon");
    const std::string head = line.substr(0, colon);
    const std::string mark = "set-up ";
    set_up_ = nullptr;
    placing_ = Placing{};
    placing_.reason = Trimmed(line.substr(colon + 1));
    if (head.compare(0, mark.size(), mark) == 0) {
      const auto [entry, added] = list_.set_ups.try_emplace(head.substr(mark.size()));
      if (!added) throw Failure(line_, "a second set-up of this name");
      set_up_ = &entry->second;
      return;
    }
    if (head == "same") {
      placing_.reach = Reach::kSame;
    } else if (head == "codes") {
      placing_.reach = Reach::kCodes;
    } else if (head == "differs") {
      placing_.reach = Reach::kDiffers;
    } else {
      throw Failure(line_, "\"" + head + "\" is no heading");
    }
    if (head != "same" && placing_.reason.empty()) throw Failure(line_, "the reason is missing");
    placed_ = true;
  }

  // A line of the set-up, or "folder/name [with faults] [after SET-UP], [LINE after SET-UP]".
  void ReadEntry(const std::string& entry) {
    if (set_up_ != nullptr) {
      set_up_->push_back(entry);
      return;
    }
    if (!placed_) throw Failure(line_, "an entry stands under no heading");
    Placing placing = placing_;
    placing.line = line_;
    const std::size_t blank = entry.find(' ');
    const std::string name = entry.substr(0, blank);
    std::string_view rest = entry;
    rest = blank == std::string::npos ? "" : Trimmed(rest.substr(blank));
    constexpr std::string_view kFaults = "with faults";
    if (rest.substr(0, kFaults.size()) == kFaults) {
      placing.faults = true;
      rest = Trimmed(rest.substr(kFaults.size()));
    }
    while (!rest.empty()) {
      const std::size_t comma = rest.find(',');
      placing.starts.push_back(ReadStart(rest.substr(0, comma)));
      rest = comma == std::string_view::npos ? "" : Trimmed(rest.substr(comma + 1));
    }
    if (!list_.conversations.emplace(name, placing).second) {
      throw Failure(line_, "the conversation is listed twice");
    }
  }

  // "after SET-UP", "LINE after SET-UP", "LINE anew".
  Start ReadStart(std::string_view written) const {
    Start start;
    const std::size_t after = written.find("after ");
    const std::string_view line =
        Trimmed(written.substr(0, after == std::string_view::npos ? written.find("anew") : after));
    if (!line.empty()) start.line = static_cast<int>(ReadNumber(line));
    if (after != std::string_view::npos) {
      start.set_up = Trimmed(written.substr(after + 6));
    } else if (written.find("anew") == std::string_view::npos) {
      throw Failure(line_, "\"" + std::string(written) + "\" tells no start");
    }
    if (!start.set_up.empty() && list_.set_ups.count(start.set_up) == 0) {
      throw Failure(line_, "there is no set-up \"" + start.set_up + "\"");
    }
    return start;
  }

  RegisterList list_;
  std::vector<std::string>* set_up_ = nullptr;
  Placing placing_;
  bool placed_ = false;
  int line_ = 0;
};

}  // namespace

RegisterList ReadRegisterList(const std::string& path) { return ListReader().Read(path); }

}  // namespace conversation
