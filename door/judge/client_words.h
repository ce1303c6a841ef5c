// What the register says, for the door's clients.
#pragma once

#include "console/message/register_text.h"
#include "console/message/translate.h"
#include "register/value/refusal.h"

namespace lorimat::door {

// While one of these lives, what this thread says is English, and amounts have a point.
class ClientWords {
 private:
  console::EnglishMessages english_;
  console::PointedNumbers pointed_;
};

// The texts of a client have been put into the device's code page: in UTF-8 again, as the answers
// are. One that has no room stays as it is.
Refusal InUtf8(Refusal refusal);

}  // namespace lorimat::door
