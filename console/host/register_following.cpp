#include "console/host/register_following.h"

#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/follow.h"
#include "console/terminal/notices.h"
#include "register/storage/database.h"

namespace lorimat::console {

int FollowRegister(lorimat::RegisterFile& file, const std::string& name,
                   const std::function<std::string()>& next, Streams& streams) {
  bool first = true;
  return Follow(
      [&]() -> Following {
        // What a register did not let be read to its end is read again at the next look.
        try {
          const RegisterFile::News news = file.Look();
          if (news == RegisterFile::News::kGone) {
            tell_note(streams, tr("{}: is not there any more, or is another file by now: nothing "
                                  "more can come",
                                  shown(name)));
            return {{}, true};
          }
          if (news == RegisterFile::News::kNone && !first) return {};
          Following found = {next(), false};
          first = false;
          return found;
        } catch (const DisturbedError&) {
          first = true;
          return {};
        }
      },
      streams);
}

}  // namespace lorimat::console
