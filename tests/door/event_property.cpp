// A reader that is cut wherever it stands, and comes again with the last number that it has read:
// it has seen each move of the log, in its order, once.
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "door/http/event_stream.h"
#include "properties/property.h"

namespace lorimat::door {
namespace {

using State = JobState;

// What a reader makes of the bytes that have come: whole events alone count.
struct Reader {
  void Take(const std::string& bytes) {
    rest += bytes;
    for (size_t end; (end = rest.find("\n\n")) != rest.npos; rest.erase(0, end + 2)) {
      const std::string block = rest.substr(0, end);
      if (block[0] == ':') continue;
      const size_t event = block.find("\nevent: ");
      const size_t data = block.find("\ndata: ");
      RC_ASSERT(block.rfind("id: ", 0) == 0 && event != block.npos && data != block.npos);
      last = std::stoll(block.substr(4, event - 4));
      if (block.substr(event + 8, data - event - 8) != "job") continue;
      const nlohmann::json json = nlohmann::json::parse(block.substr(data + 7));
      seen.push_back(std::to_string(json.at("id").get<int64_t>()) + " " +
                     json.at("state").get<std::string>());
    }
  }

  std::string rest;
  int64_t last = 0;
  std::vector<std::string> seen;
};

TEST(EventProperty, AReaderThatIsCutSeesEachMoveOnce) {
  Seen seen("events");
  const PropertyRun run = RunOf(60);
  Holds(run, [&] {
    int64_t now = 1000;
    JobLog log("", [&now] { return now; });
    std::vector<std::string> moves;
    std::vector<Job> jobs;
    Reader reader;
    EventStream stream(log, 0, {});
    auto* at = &stream;
    std::unique_ptr<EventStream> again;
    const auto note = [&](const Job& job) {
      moves.push_back(std::to_string(job.id) + " " + std::string(JobStateName(job.state)));
    };
    const int steps = *rc::gen::inRange(1, 200);
    for (int i = 0; i < steps; ++i) {
      switch (*rc::gen::inRange(0, 4)) {
        case 0: {
          NewJob job;
          job.desk = *rc::gen::element<std::string>("a", "b");
          job.key = std::to_string(i);
          job.expires = now + 1'000'000;
          bool was_there = false;
          jobs.push_back(log.Accept(job, &was_there));
          note(jobs.back());
          break;
        }
        case 1: {
          if (jobs.empty()) break;
          Job& job = jobs[*rc::gen::inRange<size_t>(0, jobs.size())];
          const auto to =
              static_cast<State>(*rc::gen::inRange(0, static_cast<int>(State::kLast) + 1));
          if (!MayMove(job.state, to)) break;
          const bool is_done = to == State::kConfirmed;
          JobNews news;
          if (is_done) news.document = JobDocument{1, i + 1, "s", "", 100};
          job = log.Move(job.id, to, Why::kAnswered, news);
          note(job);
          break;
        }
        case 2:
          log.NoteText(EventKind::kDevice, *rc::gen::element<std::string>("", "device_away"));
          break;
        default: {
          const std::string bytes = at->Next();
          const bool is_cut = *rc::gen::inRange(0, 3) == 0;
          const size_t come =
              is_cut ? *rc::gen::inRange<size_t>(0, bytes.size() + 1) : bytes.size();
          reader.Take(bytes.substr(0, come));
          seen.Add("bytes", static_cast<int64_t>(come));
          if (!is_cut) break;
          seen.Add("cuts");
          reader.rest.clear();
          again = std::make_unique<EventStream>(log, reader.last, std::nullopt);
          at = again.get();
        }
      }
    }
    for (std::string bytes; !(bytes = at->Next()).empty();) reader.Take(bytes);
    RC_ASSERT(reader.seen == moves);
    seen.Add("moves", static_cast<int64_t>(moves.size()));
  });
  seen.Require(run, {{"cuts", 40}, {"moves", 500}});
}

}  // namespace
}  // namespace lorimat::door
