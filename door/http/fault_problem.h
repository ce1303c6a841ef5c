// What a job may not hold, as its client is told.
#pragma once

#include "door/http/api.h"
#include "door/judge/line_judge.h"

namespace lorimat::door {

Reply FaultProblem(const JudgedFault& fault);

}  // namespace lorimat::door
