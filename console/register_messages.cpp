#include "register_messages.h"

#include "translate.h"

namespace {

// A pattern stands in front of those that fit its messages, too. In front of most causes stands
// the register's file.
constexpr std::string_view kMessages[] = {
    // The file.
    TR_TEXT("the register's file has no name"),
    TR_TEXT("{}: no regular file"),
    TR_TEXT("{}: Is a directory"),
    TR_TEXT("{}: the file is empty"),
    TR_TEXT("{}: the database of another program"),
    TR_TEXT("{}: in use by another program"),
    TR_TEXT("{}: made by a newer version: its tables are of version {}, known are those up to {}"),
    TR_TEXT("{}: the file is cut short: {} bytes are left of {}"),
    TR_TEXT("{}: the register is damaged: {} makes no sense"),
    // SQLite's own.
    TR_TEXT("{}: file is not a database"),
    TR_TEXT("{}: unable to open database file"),
    TR_TEXT("{}: unable to open database file: {}"),
    TR_TEXT("{}: attempt to write a readonly database"),
    TR_TEXT("{}: disk I/O error"),
    TR_TEXT("{}: disk I/O error: {}"),
    TR_TEXT("{}: database or disk is full"),
    TR_TEXT("{}: database disk image is malformed"),
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
    // The check of the journal.
    TR_TEXT("file: a row of {} belongs to nothing"),
    TR_TEXT("entry {}: missing at the end"),
    TR_TEXT("entries {} to {}: missing at the end"),
    TR_TEXT("entry {}: missing"),
    TR_TEXT("entries {} to {}: missing"),
    TR_TEXT("entry {}: it cannot be read"),
    TR_TEXT("entry {}: behind the last one, which is {}"),
    TR_TEXT("entry {}: it is not the one that was made last"),
    TR_TEXT("entry {}, {}: its hash does not fit: the entry, or what it stands for, was changed"),
    TR_TEXT("entry {}, {}: its document has an entry already"),
    TR_TEXT("entry {}, {}: its document is missing"),
    TR_TEXT("entry {}, {}: its document cannot be read"),
    TR_TEXT("entry {}, {}: the closing cannot be read"),
    TR_TEXT("entry {}, {}: the closing is missing"),
    TR_TEXT("document {}: it has no entry in the journal"),
    TR_TEXT("document {}: it cannot be read"),
    TR_TEXT("closing {}: it has no entry in the journal"),
    TR_TEXT("documents: {} were registered, the last one there is the {}."),
    TR_TEXT("the day: its totals are not the sum of its documents"),
    TR_TEXT("the day: its counters are not those of its documents"),
    TR_TEXT("the day: the grand total is not that of the days before and this one"),
    TR_TEXT("{}: its totals are not the sum of its documents"),
    TR_TEXT("{}: its counters are not those of its documents"),
    TR_TEXT("{}: the grand total is not that of the days before and this one"),
    TR_TEXT("the totals of all days are not the sum of the closings"),
};

}  // namespace

std::string register_message(std::string_view english) { return tr_finished(english, kMessages); }
