// The fault sweep: every client call of a conversation fails in turn, with several codes,
// and the line that made it has to end as the conversation's sweep rules say.
#pragma once

#include "player.h"
#include "recording/conversation/script.h"

namespace conversation {

// Plays the conversation once for every call and code. Returns the number of faults.
// Throws Failure at the first difference, at a call without a rule, and at a rule that no
// call meets.
int Sweep(const Conversation& conversation, const Stage& stage);

}  // namespace conversation
