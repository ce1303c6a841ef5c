// A device for conversations that answers as they are written, until a fault strikes one of its
// calls. Behind the fault lines may go another way: a call is then answered as the line has it
// somewhere, and one that it does not have with success.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "recording/conversation/recording_client.h"
#include "recording/conversation/script.h"
#include "strike.h"

namespace lorimat {

// How a client call fails.
enum class CallFault {
  kNone,
  kRefused,    // answers one of five codes, by turns, and fills nothing
  kException,  // throws a std::exception,
  kInteger,    // an int,
  kNoMemory,   // std::bad_alloc
  kNoResult,   // -1, which no device may answer
  kBeyond,     // a number that is in no list of results
  kFullText,   // succeeds, with its texts full to the end of their room and without an end
  kBadNumber,  // succeeds, with all numbers and texts out of any range
};

// A call that the library made.
struct MadeCall {
  size_t step = 0;  // of the conversation
  ClientOperation operation{};
  std::string shown;  // with its arguments
  bool struck = false;
  bool accepted = false;  // the answer was success
};

// Whether the operation does something to the device, so that doing it twice is another thing.
bool HasEffect(ClientOperation operation);

class ScriptDevice : public conversation::CallBook {
 public:
  // The conversation outlives the device. Place 0 strikes nothing; the calls of a trace are counted
  // with the others only when `traces`.
  ScriptDevice(const conversation::Conversation& conversation, CallFault fault, long place,
               bool traces);

  RtfClientInterface* client() { return &client_; }
  // Ahead of each step that talks to the library.
  void Open(const conversation::Step& step);
  int Answer(ClientOperation operation, const conversation::CallSlip& slip,
             const conversation::Forward& forward) override;

  // Those that can be struck, so far.
  long count() const { return count_; }
  long struck_at_step() const { return struck_at_step_; }  // -1 for none
  // The line of the file where the struck call was made, and the call itself.
  const std::string& struck_call() const { return struck_call_; }
  int struck_answer() const { return struck_answer_; }
  const std::vector<MadeCall>& made() const { return made_; }

 private:
  int Strike(const conversation::CallSlip& slip);
  int AnswerByScript(ClientOperation operation, const conversation::CallSlip& slip);
  const conversation::Call* FindScripted(ClientOperation operation,
                                         const conversation::CallSlip& slip);

  const conversation::Conversation& conversation_;
  const CallFault fault_;
  const long place_;
  const bool traces_;
  conversation::RecordingClient client_;
  const conversation::Step* step_ = nullptr;
  size_t next_ = 0;  // of the step's calls
  std::map<long long, std::string> items_;
  long count_ = 0;
  long struck_at_step_ = -1;
  std::string struck_call_;
  int struck_answer_ = 0;
  std::vector<MadeCall> made_;
};

}  // namespace lorimat
