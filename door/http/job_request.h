// What the requests of jobs have in common: the key, and how long they wait.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "door/http/api.h"

namespace lorimat::door {

// A job as the answer to a request.
Reply JobReply(int status, const Job& job, bool replayed);

// What is wrong with a key; nothing with a good one.
std::optional<Reply> KeyProblem(const std::optional<std::string>& key);

// Seconds; nothing for what is no such number.
std::optional<int> WaitOf(const std::map<std::string, std::string>& query);
Reply WaitProblem();

}  // namespace lorimat::door
