#include "console/host/register_following.h"

#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/follow.h"
#include "console/terminal/notices.h"
#include "register/storage/database.h"

namespace lorimat::console {

int FollowRegister(lorimat::RegisterFile& file, const std::string& name,
                   const std::function<Following()>& next, Streams& streams) {
  bool due = true;    // there is something to show without news
  bool more = false;  // the last look has not shown all of it
  return Follow(
      [&]() -> Following {
        // What a register did not let be read to its end is read again at the next look.
        try {
          if (!more) {
            const RegisterFile::News news = file.Look();
            if (news == RegisterFile::News::kGone) {
              TellNote(streams, Tr("{}: is not there any more, or is another file by now: nothing "
                                   "more can come",
                                   Shown(name)));
              return {.ended = true};
            }
            if (news == RegisterFile::News::kNone && !due) return {};
          }
          Following found = next();
          due = false;
          more = found.more;
          return found;
        } catch (const DisturbedError&) {
          due = true;
          more = false;
          return {};
        }
      },
      streams);
}

}  // namespace lorimat::console
