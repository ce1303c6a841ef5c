// What is asked of the device by the thread that speaks with it, and waited for as a job is.
#include <utility>

#include "door/http/job_request.h"

namespace lorimat::door {

Reply Api::Ask(std::function<void(FiscalDevice&)> ask, int seconds,
               std::function<Reply(bool answered)> finish) {
  auto question = std::make_shared<Question>();
  question->ask = std::move(ask);
  {
    const std::lock_guard<std::mutex> lock(asking_);
    question->id = --last_question_;
    questions_[question->id] = {question, finish};
  }
  bool is_asked = false;
  try {
    is_asked = parts_.ask && parts_.ask(question);
  } catch (...) {
    Drop(question->id);
    throw;
  }
  if (!is_asked) {
    Drop(question->id);
    return finish(false);
  }
  Reply reply;
  reply.status = 202;
  reply.wait_for = question->id;
  reply.wait_seconds = seconds;
  return reply;
}

void Api::Drop(int64_t id) noexcept {
  const std::lock_guard<std::mutex> lock(asking_);
  const auto found = questions_.find(id);
  if (found == questions_.end()) return;
  found->second.question->is_dropped = true;
  questions_.erase(found);
}

bool Api::IsAnswered(int64_t id) {
  const std::lock_guard<std::mutex> lock(asking_);
  const auto found = questions_.find(id);
  return found == questions_.end() || found->second.question->answered;
}

Reply Api::FinishQuestion(int64_t id) {
  Waiting mine;
  {
    const std::lock_guard<std::mutex> lock(asking_);
    const auto found = questions_.find(id);
    if (found == questions_.end()) return Problem(404, "not_found", "there is no such question");
    mine = std::move(found->second);
    questions_.erase(found);
  }
  mine.question->is_dropped = true;
  return mine.finish(mine.question->answered);
}

}  // namespace lorimat::door
