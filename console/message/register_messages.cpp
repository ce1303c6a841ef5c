#include "console/message/register_messages.h"

#include <cstddef>

#include "console/message/text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr std::string_view kColon = ": ";

// Why a file cannot be opened, read or written. In front of it the register puts the file.
constexpr std::string_view kCauses[] = {
    TR_TEXT("no regular file"),
    TR_TEXT("is a directory, not a register"),
    TR_TEXT("the file is empty"),
    TR_TEXT("the database of another program"),
    TR_TEXT("in use by another program"),
    TR_TEXT("has {} names (hard links), and its log goes by one of them: keep one name, that with "
            "the log beside it, and copy with lorimat copy"),
    TR_TEXT("has {} names (hard links), and no log lies beside this one: what was stored last may "
            "stand beside another; read it by that name, or keep one name"),
    TR_TEXT("was written by another program meanwhile; nothing more is stored until it is opened "
            "again"),
    TR_TEXT("another program has begun to work with it meanwhile; read it again"),
    TR_TEXT("has to be put in order by the program that writes it, before it is read"),
    TR_TEXT("cannot be kept here: its log cannot be shared between programs"),
    TR_TEXT("is not a register of this program: it is no SQLite database"),
    TR_TEXT("made by a newer version: its tables are of version {}, known are those up to {}"),
    TR_TEXT("the file is cut short: {} bytes are left of {}"),
    TR_TEXT("the file is damaged"),
    TR_TEXT("the register is damaged: its version makes no sense"),
    TR_TEXT("the register is damaged: {} makes no sense"),
    TR_TEXT("the register is damaged ({})"),
    TR_TEXT("cannot be opened"),
    TR_TEXT("cannot be opened: {}"),
    TR_TEXT("cannot be written"),
    TR_TEXT("cannot be written: {}"),
    TR_TEXT("its folder cannot be written: {}"),
    TR_TEXT("is not there, or empty, and {} is: what was stored last stands in it alone. Put the "
            "register back beside it, or move it away"),
    TR_TEXT("cannot be written here, and {} has to be taken over into it: copy both to a folder "
            "where they can be written"),
    TR_TEXT("the disk is full"),
    TR_TEXT("is there already, and is not overwritten"),
    TR_TEXT("is not there, and {} is, which would be taken for a part of it: put the register back "
            "beside it, or move it away"),
    TR_TEXT("cannot be made: {}"),
    TR_TEXT("is left of a register that was not finished, or another one is being made; remove it"),
    TR_TEXT("its log cannot be put in order after a failure, and nothing more is stored until it "
            "is"),
    TR_TEXT("was removed, moved or replaced while the register worked on it"),
    TR_TEXT("its log was removed, moved or replaced while the register worked on it"),
    TR_TEXT("cannot be read or written to its end"),
    TR_TEXT("cannot be read or written to its end: {}"),
    TR_TEXT("SQLite failed ({})"),
};

// A pattern stands in front of those that fit its messages, too.
constexpr std::string_view kMessages[] = {
    TR_TEXT("the register's file has no name"),
    // Why an operation was not carried out.
    TR_TEXT("there is not enough memory"),
    TR_TEXT("for an unknown cause"),
    // Faults.
    TR_TEXT("the register is at an operation"),
    TR_TEXT("{} faults wait already"),
    TR_TEXT("a result code is 1 to {}, not {}"),
    TR_TEXT("a number of operations is 1 to {}, not {}"),
    TR_TEXT("{} answers no result code"),
    TR_TEXT("{} cannot strike {}"),
    // Pictures.
    TR_TEXT("the picture cannot be drawn: {}"),
    TR_TEXT("there is no memory for the picture"),
    TR_TEXT("the paper is {} dots long, and a PNG takes {} at most; a PDF has pages"),
};

// Behind the cause of a failure.
constexpr std::string_view kNotKnown =
    TR_TEXT("; whether it is stored is not known until the next start");

}  // namespace

std::string RegisterMessage(std::string_view english) {
  if (english.ends_with(kNotKnown)) {
    english.remove_suffix(kNotKnown.size());
    return RegisterMessage(english).append(Translated(kNotKnown));
  }
  // What the system says comes last.
  const size_t last = english.rfind(kColon);
  std::string message(english);
  if (last != english.npos) {
    const size_t end = last + kColon.size();
    message.replace(end, message.npos, SystemMessage(english.substr(end)));
  }
  std::string found = TrFinished(message, kMessages);
  if (found != message) return found;
  found = TrFinished(message, kCauses);
  if (found != message) return found;
  // The name of a file may hold a colon, too.
  for (size_t at = message.find(kColon); at != message.npos; at = message.find(kColon, at + 1)) {
    const size_t end = at + kColon.size();
    const std::string cause = message.substr(end);
    found = TrFinished(cause, kCauses);
    if (found != cause) return message.substr(0, end) + found;
  }
  return message;
}

}  // namespace lorimat::console
