// "lorimat journal": the journal of a register's file, as a list, entry by entry, and checked
// against its chain of hashes.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/command/subcommand.h"
#include "console/command/usage_error.h"
#include "console/device/clock_text.h"
#include "console/host/journal_checking.h"
#include "console/host/register_following.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/journal_finding.h"
#include "console/message/json_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/follow.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "console/terminal/styles.h"
#include "console/terminal/suggestion.h"
#include "register/inspect/register_file.h"

namespace lorimat::console {
namespace {

struct JournalOptions {
  std::string register_file;
  bool json = false;
  // The list.
  std::string from;  // a closure, or a date of clock_text.h; empty: the first
  std::string to;    // the same; empty: the last
  std::vector<std::string> kinds;
  bool follow = false;
  // "show" and "verify" have --register and --json of their own.
  bool show = false;
  uint64_t place = 0;
  bool verify = false;
  std::string nested_register_file;
  size_t outer_registers = 0;  // --register in front of their names
};

constexpr std::string_view kJournalExamples = TR_TEXT(R"(Examples:
  lorimat journal --register shop.register
      The entries of the journal, one a line.
  lorimat journal --register shop.register --from 12 --to 14 --kind closing
      By the number of the closing; kinds: receipt, invoice, credit-note, void, abandoned,
      closing, non-fiscal.
  lorimat journal --register shop.register --from 2026-11-01 --to "2026-11-20 18:00" --json
      By date, for a program.
  lorimat journal show 42 --register shop.register
      An entry as it was printed.
  lorimat journal verify --register shop.register
      Whether anything in it was changed.
  lorimat journal --register shop.register --follow
      The entries, and those that come, until Ctrl-C; with --json an object a line.

A program may be selling on the register meanwhile.

Exit codes:
  0  the entries were shown
  2  wrong use, or the file cannot be read
)");

const char* const kShowExamples = TR_TEXT(R"(Examples:
  lorimat journal show 42 --register shop.register
      The entry in place 42, which "lorimat journal" lists.

Exit codes:
  0  the entry was shown
  1  there is no such entry
  2  wrong use, or the file cannot be read
)");

const char* const kVerifyExamples = TR_TEXT(R"(Examples:
  lorimat journal verify --register shop.register
      Follows the chain of hashes from the first entry to the last, and compares the journal with
      the registered documents and the totals.

Exit codes:
  0  the journal is good
  1  something was changed or is damaged; each finding stands on standard output
  2  wrong use, or the file cannot be read
  130  stopped by Ctrl-C
)");

// --- What is selected.

std::optional<int> AsClosure(const std::string& text) {
  const bool digits = !text.empty() && text.size() <= 4 &&
                      text.find_first_not_of("0123456789") == std::string::npos;
  if (!digits) return std::nullopt;
  return std::stoi(text);
}

enum class DayEnd { kFirstMinute, kLastMinute };

// A date, with this end of the day where the time is left out.
std::tm AsDate(const char* option, const std::string& text, DayEnd end) {
  std::optional<GivenDate> date = ParseDate(text);
  if (!date) {
    throw Failure(Tr(
        "{} {}: is neither the number of a closing nor a date, such as YYYY-MM-DD or DD/MM/YYYY, "
        "with or without the time: \"YYYY-MM-DD HH:MM\"",
        option, Shown(text)));
  }
  if (!date->has_time && end == DayEnd::kLastMinute) {
    date->time.tm_hour = 23;
    date->time.tm_min = 59;
  }
  return date->time;
}

int32_t KindsFilter(const std::vector<std::string>& kinds) {
  if (kinds.empty()) return lorimat::kJournalAll;
  int32_t filter = 0;
  for (const std::string& word : kinds) {
    int32_t found = 0;
    std::vector<std::string> names;
    for (const JournalKindName& row : JournalKindNames()) {
      names.emplace_back(row.name);
      if (word == row.name) found = row.kind;
    }
    if (found == 0) {
      const std::string near = NearestWord(word, names);
      throw Failure(near.empty() ? Tr("--kind {}: no entries have this kind; the kinds are {}",
                                      Shown(word), fmt::format("{}", fmt::join(names, ", ")))
                                 : Tr("--kind {}: no entries have this kind; did you mean {}?",
                                      Shown(word), near));
    }
    filter |= found;
  }
  return filter;
}

// In an order of its own: what the clock of a computer makes of a time is no matter.
std::array<int, 5> MinutesOf(const std::tm& time) {
  return {time.tm_year, time.tm_mon, time.tm_mday, time.tm_hour, time.tm_min};
}

[[noreturn]] void RefuseReversed(const JournalOptions& options) {
  throw Failure(Tr("--from {} --to {}: the range ends before it begins", Shown(options.from),
                   Shown(options.to)));
}

lorimat::JournalSelection SelectionOf(const JournalOptions& options) {
  lorimat::JournalSelection selection;
  selection.filter = KindsFilter(options.kinds);
  selection.from_closure = 0;
  selection.to_closure = std::numeric_limits<int>::max();
  const std::optional<int> from = AsClosure(options.from);
  const std::optional<int> to = AsClosure(options.to);
  const bool from_date = !options.from.empty() && !from;
  const bool to_date = !options.to.empty() && !to;
  if ((from_date && to) || (from && to_date)) {
    throw Failure(Tr("--from {} --to {}: both are closings, or both are dates", Shown(options.from),
                     Shown(options.to)));
  }
  if (from) selection.from_closure = *from;
  if (to) selection.to_closure = *to;
  if (from && to && *from > *to) RefuseReversed(options);
  if (!from_date && !to_date) return selection;
  selection.by_date = true;
  selection.from =
      AsDate("--from", options.from.empty() ? "0001-01-01" : options.from, DayEnd::kFirstMinute);
  selection.to =
      AsDate("--to", options.to.empty() ? "9999-12-31" : options.to, DayEnd::kLastMinute);
  if (MinutesOf(selection.from) > MinutesOf(selection.to)) RefuseReversed(options);
  return selection;
}

// --- How it is shown.

// The first words behind the shop's name and address, which all entries begin with.
std::string FirstWords(const lorimat::JournalEntry& entry) {
  const auto is_blank = [](const std::string& line) {
    return line.find_first_not_of(' ') == std::string::npos;
  };
  const auto& lines = entry.lines;
  auto line = std::find_if_not(lines.begin(), lines.end(), is_blank);
  const auto gap = std::find_if(line, lines.end(), is_blank);
  const auto behind = std::find_if_not(gap, lines.end(), is_blank);
  if (behind != lines.end()) line = behind;
  if (line == lines.end()) return {};
  const std::string_view words = WithoutTrailingBlanks(*line);
  return Shown(words.substr(std::min(words.find_first_not_of(' '), words.size())));
}

Json EntryJson(uint64_t place, const lorimat::JournalEntry& entry) {
  Json json = {{"place", place},
               {"kind", NameOfKind(entry.kind)},
               {"closure", entry.closure},
               {"number", nullptr},
               {"time", TimeForPrograms(entry.time)}};
  if (entry.number != 0) json["number"] = entry.number;
  return json;
}

void ListAsJson(const lorimat::RegisterFile& file, const lorimat::JournalSelection& selection,
                Streams& streams) {
  // An object a line, so that a long journal is never in memory as a whole.
  bool first = true;
  file.ReadJournal(selection, [&](uint64_t place, const lorimat::JournalEntry& entry) {
    Json json = EntryJson(place, entry);
    json["first_words"] = FirstWords(entry);
    streams.Output((first ? "[\n  " : ",\n  ") +
                   json.dump(-1, ' ', false, Json::error_handler_t::replace));
    first = false;
    return true;
  });
  streams.Output(first ? "[]\n" : "\n]\n");
}

// The lines of a list. The first one comes with the heads of the columns.
class ListText {
 public:
  ListText()
      : place_width_(std::max<size_t>(8, ColumnCount(Tr("Place")))),
        kind_width_(ColumnCount(Tr("Kind"))),
        number_width_(std::max<size_t>(9, ColumnCount(Tr("Number")))),
        time_width_(std::max<size_t>(16, ColumnCount(Tr("Time")))) {
    for (const JournalKindName& row : JournalKindNames()) {
      kind_width_ = std::max(kind_width_, ColumnCount(JournalKindText(row.kind)));
    }
  }
  bool any() const { return any_; }
  std::string Line(uint64_t place, const lorimat::JournalEntry& entry) {
    std::string text;
    if (!any_) text = Row(Tr("Place"), Tr("Kind"), Tr("Number"), Tr("Time"), Tr("First words"));
    any_ = true;
    return text + Row(std::to_string(place), JournalKindText(entry.kind),
                      DocumentNumberText(entry.closure, entry.number), TimeText(entry.time),
                      FirstWords(entry));
  }

 private:
  std::string Row(const std::string& place, const std::string& kind, const std::string& number,
                  const std::string& time, const std::string& words) const {
    const std::string text =
        fmt::format("{:>{}}  {:<{}}  {:<{}}  {:<{}}  {}", place, place_width_, kind, kind_width_,
                    number, number_width_, time, time_width_, words);
    return std::string(WithoutTrailingBlanks(text)) + "\n";
  }

  // As wide as the language needs for the heads, and no less than what stands below them.
  size_t place_width_;
  size_t kind_width_;
  size_t number_width_;
  size_t time_width_;
  bool any_ = false;
};

void ListAsText(const lorimat::RegisterFile& file, const lorimat::JournalSelection& selection,
                Streams& streams) {
  ListText list;
  file.ReadJournal(selection, [&](uint64_t place, const lorimat::JournalEntry& entry) {
    streams.OutputText(list.Line(place, entry));
    return true;
  });
  if (!list.any()) TellNote(streams, Tr("the journal has no such entries"));
}

// A long journal is shown in parts: it is never in memory as a whole, and Ctrl-C ends it in
// between.
constexpr size_t kEntriesOfLook = 1000;

int FollowList(const JournalOptions& options, lorimat::RegisterFile& file, const std::string& name,
               const lorimat::JournalSelection& selection, Streams& streams) {
  ListText list;
  uint64_t behind = 0;  // all up to this place was shown, or is not selected
  const auto next = [&]() -> Following {
    const uint64_t last = file.Status().journal_entries;
    uint64_t shown = behind;
    Following found;
    // What is not read to its end is read again, with the heads.
    ListText lines = list;
    const auto add = [&](uint64_t place, const lorimat::JournalEntry& entry) {
      if (options.json) {
        Json json = EntryJson(place, entry);
        json["first_words"] = FirstWords(entry);
        found.text += JsonLine(json);
      } else {
        found.text += lines.Line(place, entry);
      }
      shown = place;
    };
    const std::optional<uint64_t> more =
        file.ReadJournalPart(selection, behind, kEntriesOfLook, add);
    list = lines;
    behind = more.value_or(std::max(last, shown));
    found.more = more.has_value();
    return found;
  };
  return FollowRegister(file, name, next, streams);
}

int Show(const JournalOptions& options, const lorimat::RegisterFile& file, Streams& streams) {
  const std::optional<lorimat::JournalEntry> found = file.Entry(options.place);
  if (!found) {
    TellError(streams, Tr("the journal has no entry {}; it has {}", options.place,
                          file.Status().journal_entries));
    return kExitFaults;
  }
  if (options.json) {
    Json json = EntryJson(options.place, *found);
    json["lines"] = found->lines;
    streams.Output(JsonText(json));
    return kExitGood;
  }
  std::string text;
  for (const std::string& line : found->lines) text += line + "\n";
  streams.OutputText(text);
  return kExitGood;
}

// The texts of findings and their kinds, which stay when the words change.
std::pair<Json, Json> FindingsJson(const std::vector<lorimat::Finding>& findings) {
  const EnglishMessages english;
  std::pair<Json, Json> json = {Json::array(), Json::array()};
  for (const lorimat::Finding& finding : findings) {
    json.first.push_back(JournalFindingText(finding));
    json.second.push_back(JournalFindingCode(finding));
  }
  return json;
}

int Verify(const JournalOptions& options, const std::string& name, Streams& streams) {
  std::optional<Progress> progress;
  uint64_t read = 0;
  std::optional<InterruptWatch> watch(std::in_place);
  const lorimat::JournalCheck check = CheckJournalOf(name, [&](uint64_t done, uint64_t all) {
    read = done;
    if (!progress) progress.emplace(streams, true, all);
    progress->Update(done);
    return interrupted == 0;
  });
  progress.reset();
  watch.reset();
  if (check.stopped) {
    TellError(streams, Tr("stopped by {} behind entry {}", InterruptName(), read));
    return InterruptExit();
  }
  if (options.json) {
    const auto [texts, codes] = FindingsJson(check.findings);
    const auto [notes, note_codes] = FindingsJson(check.notes);
    streams.Output(JsonText({{"file", name},
                             {"good", check.good()},
                             {"entries", check.entries},
                             {"documents", check.documents},
                             {"findings", texts},
                             {"finding_codes", codes},
                             {"findings_left_out", check.findings_left_out},
                             {"notes", notes},
                             {"note_codes", note_codes},
                             {"notes_left_out", check.notes_left_out}}));
    return check.good() ? kExitGood : kExitFaults;
  }
  const bool colours = streams.output_has_colours();
  std::string text;
  for (const lorimat::Finding& finding : check.findings) {
    text += fmt::format("{}: {}\n", Shown(name),
                        Styled(Shown(JournalFindingText(finding)), Style::kError, colours));
  }
  if (check.findings_left_out != 0) {
    text += Tr("{}: {} more findings are not shown\n", Shown(name), check.findings_left_out);
  }
  for (const lorimat::Finding& finding : check.notes) {
    text += fmt::format("{}: {}: {}\n", Shown(name), Styled(Tr("note"), Style::kNote, colours),
                        Shown(JournalFindingText(finding)));
  }
  if (check.notes_left_out != 0) {
    text += Tr("{}: {} more notes are not shown\n", Shown(name), check.notes_left_out);
  }
  const std::string entries = TrCount(check.entries, "{} entry", "{} entries");
  const std::string documents = TrCount(check.documents, "{} document", "{} documents");
  const std::string findings =
      TrCount(check.findings.size() + check.findings_left_out, "{} finding", "{} findings");
  if (check.good()) {
    text += fmt::format(
        "{}: {}\n", Shown(name),
        Styled(Tr("the journal is good: {}, {}", entries, documents), Style::kGood, colours));
  } else {
    text += fmt::format(
        "{}: {}\n", Shown(name),
        check.damaged ? Tr("the file is damaged: {}, {}, {}", entries, documents, findings)
                      : Tr("the journal was changed: {}, {}, {}", entries, documents, findings));
  }
  streams.Output(text);
  return check.good() ? kExitGood : kExitFaults;
}

// "show" takes a place alone, and "verify" the whole journal.
void RefuseSelection(const char* command, const JournalOptions& options) {
  const std::pair<const char*, bool> selecting[] = {{"--from", !options.from.empty()},
                                                    {"--to", !options.to.empty()},
                                                    {"--follow", options.follow},
                                                    {"--kind", !options.kinds.empty()}};
  for (const auto& [option, given] : selecting) {
    if (!given) continue;
    throw Failure(
        Tr("{}: selects entries of the list, and \"journal {}\" shows no list", option, command));
  }
}

// Options that the commands below "journal" take behind their own names. The variable is read by
// the option of "journal" itself: here it would hide what was given there.
void AddSharedOptions(CLI::App* command, JournalOptions* options) {
  command->add_option("--register", options->nested_register_file, Tr("The register's file"))
      ->option_text(fmt::format("FILE ({}:LORIMAT_REGISTER)", Tr("Env")));
  command->add_flag("--json", options->json, Tr("Write JSON"));
  // What stands in front of the command's name has been read by then, and the variable has not.
  const CLI::Option* outer = command->get_parent()->get_option("--register");
  command->preparse_callback(
      [outer, options](size_t) { options->outer_registers = outer->count(); });
}

// A register that is named in front of the command's name and behind it is named twice.
void RequireOneRegister(const JournalOptions& options) {
  const size_t count = options.outer_registers + (options.nested_register_file.empty() ? 0 : 1);
  if (count > 1) throw GivenTooOften("--register", 1, count);
}

void AddOptions(CLI::App* journal, JournalOptions* options) {
  AddRegisterOption(journal, &options->register_file);
  journal->add_option("--from", options->from, Tr("From this closing or date on"))
      ->type_name("N|DATE");
  journal->add_option("--to", options->to, Tr("Up to this closing or date"))->type_name("N|DATE");
  journal
      ->add_option("--kind", options->kinds, Tr("Entries of this kind alone; may be given again"))
      ->type_name("KIND")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  journal->add_flag("--json", options->json, Tr("Write JSON"));
  journal->add_flag("--follow", options->follow,
                    Tr("Go on with what comes, until Ctrl-C or the file is gone"));
  journal->require_subcommand(0, 1);

  CLI::App* show_entry = journal->add_subcommand("show", Tr("Show an entry as it was printed"));
  show_entry->add_option("PLACE", options->place, Tr("Its place in the list"))
      ->required()
      ->check(WholeNumberIn(1, 999999999));
  AddSharedOptions(show_entry, options);
  show_entry->callback([options] {
    options->show = true;
    RequireOneRegister(*options);
  });
  show_entry->footer(std::string(Translated(kShowExamples)));

  CLI::App* verify_all =
      journal->add_subcommand("verify", Tr("Look whether anything in the journal was changed"));
  AddSharedOptions(verify_all, options);
  verify_all->callback([options] {
    options->verify = true;
    RequireOneRegister(*options);
  });
  verify_all->footer(std::string(Translated(kVerifyExamples)));
}

// Returns one of ExitCode. Throws Failure or RegisterError.
int JournalCommand(const JournalOptions& options, Streams& streams) {
  const std::string& named =
      options.nested_register_file.empty() ? options.register_file : options.nested_register_file;
  if (options.show) RefuseSelection("show", options);
  if (options.verify) RefuseSelection("verify", options);
  const std::string& name = RequireRegister(named);
  const lorimat::JournalSelection selection = SelectionOf(options);
  if (options.verify) return Verify(options, name, streams);
  lorimat::RegisterFile file(name);
  if (options.show) return Show(options, file, streams);
  if (options.follow) return FollowList(options, file, name, selection, streams);
  if (options.json) {
    ListAsJson(file, selection, streams);
  } else {
    ListAsText(file, selection, streams);
  }
  return kExitGood;
}

}  // namespace

const Subcommand kJournalSubcommand = {
    "journal", HelpGroup::kLookAtRegister, TR_TEXT("List, show and verify a register's journal"),
    kJournalExamples, &Prepare<JournalOptions, AddOptions, JournalCommand>};

}  // namespace lorimat::console
