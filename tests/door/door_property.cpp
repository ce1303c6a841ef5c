// Desks that send, repeat and change jobs, a device that loses answers, and a process that is
// killed wherever it stands: at most one effect for each job, and in the end every outcome known.
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "door/job/kept_documents.h"
#include "door_shop.h"
#include "properties/property.h"

namespace lorimat::door {
namespace {

using State = JobState;

const std::vector<std::vector<std::string>> kBodies = {
    {"VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"},
    {"VEND REP=1, PRE=1.20", "VEND REP=2, QTA=2, PRE=0.50", "SCONTO IMP=0.20", "CHIU TEND=CARTA"},
    {"VEND REP=1, PRE=5.00", "CHIU TEND=CARTA, IMP=2.00", "CHIU TEND=CONTANTI"},
    {"VEND REP=1, PRE=1.20", "VEND REP=99, PRE=1.00", "CHIU"},
    {"VEND REP=1, PRE=1.20"},
    {"VEND REP=1, PRE=1.20", "CHIU", "SCONTO IMP=0.10"},
    {"VEND REP=1, PRE=1.20", "CHKSUB IMP=9.99", "CHIU"},
    {"FATTURA TIPO=2, RIGA1='ROSSI SRL'", "VEND REP=1, PRE=9.00", "CHIU TEND=CONTANTI"},
    {"AZZGIO"},
};

// What a device loses: on the way there, or back.
struct Loss {
  const char* name;
  ClientOperation operation;
};
constexpr Loss kLosses[] = {{"lost-answer", ClientOperation::kPrintRecTotalEx},
                            {"no-answer", ClientOperation::kPrintRecTotalEx},
                            {"lost-answer", ClientOperation::kPrintRecItemEx},
                            {"no-answer", ClientOperation::kBeginFiscalReceipt},
                            {"lost-answer", ClientOperation::kBeginFiscalReceipt},
                            {"lost-answer", ClientOperation::kPrintZReportEx},
                            {"no-answer", ClientOperation::kPrintZReportEx},
                            {"lost-answer", ClientOperation::kPrintRecMessage},
                            {"lost-answer", ClientOperation::kResetPrn}};

class Street {
 public:
  explicit Street(Seen* seen) : seen_(seen) {}

  void Send() {
    const std::string desk = *rc::gen::element<std::string>("a", "b");
    const std::string key = "k" + std::to_string(*rc::gen::inRange(0, 8));
    const auto body =
        static_cast<size_t>(*rc::gen::inRange<int>(0, static_cast<int>(kBodies.size())));
    const std::optional<Job> before = shop_.log->FindKey(desk, key);
    const Job job = shop_.Submit(key, kBodies[body], desk);
    if (before) {
      seen_->Add("keys sent again");
      RC_ASSERT(job.id == before->id);
    } else {
      bodies_[job.id] = body;
      seen_->Add("jobs");
    }
  }
  void PlanKill() {
    const auto step = static_cast<Step>(*rc::gen::inRange(0, static_cast<int>(Step::kLast) + 1));
    shop_.KillAt(step, *rc::gen::inRange(1, 4));
  }
  void PlanLoss() {
    const int count = static_cast<int>(std::size(kLosses));
    const Loss& loss = kLosses[*rc::gen::inRange(0, count)];
    shop_.device->device().AddFault({.name = loss.name, .operation = loss.operation});
  }
  void Work() {
    try {
      shop_.worker->Work();
    } catch (const Killed&) {
      seen_->Add("kills");
      shop_.Restart();
    }
  }

  void End() {
    // No trouble any more; what waits for a device or a process is done.
    shop_.device->device().ClearFaults();
    RC_ASSERT(shop_.DrainWithRestarts() == Worker::Did::kNothing);
    int64_t documents = 0;
    int closings = 0;
    std::set<std::pair<int, int>> numbers;
    Facts sold;
    for (const auto& [id, body] : bodies_) {
      const Job job = shop_.Get(id);
      seen_->Add(std::string(JobStateName(job.state)));
      // Asking tells of all of these.
      RC_ASSERT(IsFinal(job.state));
      const bool confirmed = job.state == State::kConfirmed;
      if (job.effect == JobEffect::kClosing) {
        closings += confirmed ? 1 : 0;
        continue;
      }
      RC_ASSERT(shop_.WithMark(job.mark) == (confirmed ? 1 : 0));
      if (!confirmed) continue;
      ++documents;
      RC_ASSERT(job.document.has_value());
      if (body != 7) {
        RC_ASSERT(numbers.emplace(job.document->closure, job.document->number).second);
      }
      RC_ASSERT(CheckWay(job));
      sold.insert(*job.document);
    }
    RC_ASSERT(Listed() == sold);
    RC_ASSERT(shop_.documents() == documents);
    RC_ASSERT(shop_.device->Ask()->numbers.closure == closings);
    RC_ASSERT(!shop_.device->Ask()->is_open);
  }

 private:
  // By what a client knows a document; a job that was found by asking knows its document by that
  // too.
  struct Order {
    bool operator()(const JobDocument& one, const JobDocument& other) const {
      return std::tie(one.closure, one.number, one.kind, one.serial, one.total) <
             std::tie(other.closure, other.number, other.kind, other.serial, other.total);
    }
  };
  using Facts = std::multiset<JobDocument, Order>;

  // What a client lists part by part; each can be found by its numbers and its kind.
  Facts Listed() {
    KeptDocuments documents(shop_.register_file());
    Facts listed;
    DocumentSpan span;
    span.most = *rc::gen::inRange<size_t>(1, 7);
    for (;;) {
      const std::vector<StoredDocument> part = documents.List(span);
      for (const StoredDocument& one : part) {
        listed.insert(FactsOf(one, shop_.log->serial()));
        const std::vector<KeptDocument> found = documents.Find(one.closure, one.number);
        RC_ASSERT(std::any_of(found.begin(), found.end(), [&](const KeptDocument& kept) {
          return kept.document.id == one.id && kept.document.kind == one.kind;
        }));
      }
      if (part.size() < span.most) return listed;
      span.behind = part.back().id;
    }
  }

  // Each step of a history is one that the table has, and no job has begun too often.
  bool CheckWay(const Job& job) {
    for (size_t i = 1; i < job.history.size(); ++i) {
      if (!MayMove(job.history[i - 1].state, job.history[i].state)) return false;
      if (job.history[i].state == State::kUnknown) seen_->Add("unknown and confirmed");
    }
    return job.attempts <= Worker::kMostAttempts;
  }

  DoorShop shop_;
  Seen* seen_;
  std::map<int64_t, size_t> bodies_;
};

TEST(DoorProperty, EachJobHasItsEffectOnceAtMostAndEveryOutcomeIsKnown) {
  Seen seen("door");
  const PropertyRun run = RunOf(60);
  Holds(run, [&seen] {
    Street street(&seen);
    const int length = *rc::gen::inRange(5, 60);
    for (int i = 0; i < length; ++i) {
      const int what = *rc::gen::inRange(0, 10);
      if (what < 3) {
        street.Send();
      } else if (what < 5) {
        street.PlanKill();
      } else if (what < 6) {
        street.PlanLoss();
      } else {
        street.Work();
      }
    }
    street.End();
  });
  seen.Require(run, {{"jobs", 100},
                     {"keys sent again", 20},
                     {"kills", 20},
                     {"confirmed", 50},
                     {"rejected", 20},
                     {"unknown and confirmed", 10}});
}

}  // namespace
}  // namespace lorimat::door
