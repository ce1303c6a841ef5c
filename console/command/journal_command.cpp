#include "console/command/journal_command.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "console/host/clock_text.h"
#include "console/host/register_following.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/journal_finding.h"
#include "console/message/json_text.h"
#include "console/message/register_text.h"
#include "console/message/text.h"
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

const char* const kJournalExamples = TR_TEXT(R"(Examples:
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

std::optional<int> as_closure(const std::string& text) {
  const bool digits = !text.empty() && text.size() <= 4 &&
                      text.find_first_not_of("0123456789") == std::string::npos;
  if (!digits) return std::nullopt;
  return std::stoi(text);
}

enum class DayEnd { kFirstMinute, kLastMinute };

// A date, with this end of the day where the time is left out.
std::tm as_date(const char* option, const std::string& text, DayEnd end) {
  std::optional<GivenDate> date = parse_date(text);
  if (!date) {
    throw Failure(tr(
        "{} {}: is neither the number of a closing nor a date, such as YYYY-MM-DD or DD/MM/YYYY, "
        "with or without the time: \"YYYY-MM-DD HH:MM\"",
        option, shown(text)));
  }
  if (!date->has_time && end == DayEnd::kLastMinute) {
    date->time.tm_hour = 23;
    date->time.tm_min = 59;
  }
  return date->time;
}

int32_t kinds_filter(const std::vector<std::string>& kinds) {
  if (kinds.empty()) return lorimat::kJournalAll;
  int32_t filter = 0;
  for (const std::string& word : kinds) {
    int32_t found = 0;
    std::vector<std::string> names;
    for (const JournalKindName& row : journal_kind_names()) {
      names.emplace_back(row.name);
      if (word == row.name) found = row.kind;
    }
    if (found == 0) {
      const std::string near = nearest_word(word, names);
      throw Failure(near.empty() ? tr("--kind {}: no entries have this kind; the kinds are {}",
                                      shown(word), fmt::format("{}", fmt::join(names, ", ")))
                                 : tr("--kind {}: no entries have this kind; did you mean {}?",
                                      shown(word), near));
    }
    filter |= found;
  }
  return filter;
}

// In an order of its own: what the clock of a computer makes of a time is no matter.
std::array<int, 5> minutes_of(const std::tm& time) {
  return {time.tm_year, time.tm_mon, time.tm_mday, time.tm_hour, time.tm_min};
}

[[noreturn]] void refuse_reversed(const JournalOptions& options) {
  throw Failure(tr("--from {} --to {}: the range ends before it begins", shown(options.from),
                   shown(options.to)));
}

lorimat::JournalSelection selection_of(const JournalOptions& options) {
  lorimat::JournalSelection selection;
  selection.filter = kinds_filter(options.kinds);
  selection.from_closure = 0;
  selection.to_closure = std::numeric_limits<int>::max();
  const std::optional<int> from = as_closure(options.from);
  const std::optional<int> to = as_closure(options.to);
  const bool from_date = !options.from.empty() && !from;
  const bool to_date = !options.to.empty() && !to;
  if ((from_date && to) || (from && to_date)) {
    throw Failure(tr("--from {} --to {}: both are closings, or both are dates", shown(options.from),
                     shown(options.to)));
  }
  if (from) selection.from_closure = *from;
  if (to) selection.to_closure = *to;
  if (from && to && *from > *to) refuse_reversed(options);
  if (!from_date && !to_date) return selection;
  selection.by_date = true;
  selection.from =
      as_date("--from", options.from.empty() ? "0001-01-01" : options.from, DayEnd::kFirstMinute);
  selection.to =
      as_date("--to", options.to.empty() ? "9999-12-31" : options.to, DayEnd::kLastMinute);
  if (minutes_of(selection.from) > minutes_of(selection.to)) refuse_reversed(options);
  return selection;
}

// --- How it is shown.

// The first words behind the shop's name and address, which all entries begin with.
std::string first_words(const lorimat::JournalEntry& entry) {
  const auto is_blank = [](const std::string& line) {
    return line.find_first_not_of(' ') == std::string::npos;
  };
  const auto& lines = entry.lines;
  auto line = std::find_if_not(lines.begin(), lines.end(), is_blank);
  const auto gap = std::find_if(line, lines.end(), is_blank);
  const auto behind = std::find_if_not(gap, lines.end(), is_blank);
  if (behind != lines.end()) line = behind;
  if (line == lines.end()) return {};
  const std::string_view words = without_trailing_blanks(*line);
  return shown(words.substr(std::min(words.find_first_not_of(' '), words.size())));
}

Json entry_json(uint64_t place, const lorimat::JournalEntry& entry) {
  Json json = {{"place", place},
               {"kind", journal_kind_name(entry.kind)},
               {"closure", entry.closure},
               {"number", nullptr},
               {"time", time_for_programs(entry.time)}};
  if (entry.number != 0) json["number"] = entry.number;
  return json;
}

void list_as_json(const lorimat::RegisterFile& file, const lorimat::JournalSelection& selection,
                  Streams& streams) {
  // An object a line, so that a long journal is never in memory as a whole.
  bool first = true;
  file.ReadJournal(selection, [&](uint64_t place, const lorimat::JournalEntry& entry) {
    Json json = entry_json(place, entry);
    json["first_words"] = first_words(entry);
    streams.output((first ? "[\n  " : ",\n  ") +
                   json.dump(-1, ' ', false, Json::error_handler_t::replace));
    first = false;
    return true;
  });
  streams.output(first ? "[]\n" : "\n]\n");
}

// The lines of a list. The first one comes with the heads of the columns.
class ListText {
 public:
  ListText() : kind_width_(column_count(tr("Kind"))) {
    for (const JournalKindName& row : journal_kind_names()) {
      kind_width_ = std::max(kind_width_, column_count(journal_kind_text(row.kind)));
    }
  }
  bool any() const { return any_; }
  std::string Line(uint64_t place, const lorimat::JournalEntry& entry) {
    std::string text;
    if (!any_) text = Row(tr("Place"), tr("Kind"), tr("Number"), tr("Time"), tr("First words"));
    any_ = true;
    return text + Row(std::to_string(place), journal_kind_text(entry.kind),
                      document_number_text(entry.closure, entry.number), time_text(entry.time),
                      first_words(entry));
  }

 private:
  std::string Row(const std::string& place, const std::string& kind, const std::string& number,
                  const std::string& time, const std::string& words) const {
    const std::string text =
        fmt::format("{:>8}  {}{}  {:<9}  {:<16}  {}", place, kind,
                    std::string(kind_width_ - std::min(kind_width_, column_count(kind)), ' '),
                    number, time, words);
    return std::string(without_trailing_blanks(text)) + "\n";
  }

  size_t kind_width_;
  bool any_ = false;
};

void list_as_text(const lorimat::RegisterFile& file, const lorimat::JournalSelection& selection,
                  Streams& streams) {
  ListText list;
  file.ReadJournal(selection, [&](uint64_t place, const lorimat::JournalEntry& entry) {
    streams.output(list.Line(place, entry));
    return true;
  });
  if (!list.any()) tell_note(streams, tr("the journal has no such entries"));
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
        Json json = entry_json(place, entry);
        json["first_words"] = first_words(entry);
        found.text += json_line(json);
      } else {
        found.text += lines.Line(place, entry);
      }
      shown = place;
    };
    const std::optional<uint64_t> more =
        file.ReadJournalPart(selection, behind, kEntriesOfLook, add);
    list = std::move(lines);
    behind = more.value_or(std::max(last, shown));
    found.more = more.has_value();
    return found;
  };
  return FollowRegister(file, name, next, streams);
}

int show(const JournalOptions& options, const lorimat::RegisterFile& file, Streams& streams) {
  const std::optional<lorimat::JournalEntry> found = file.Entry(options.place);
  if (!found) {
    tell_error(streams, tr("the journal has no entry {}; it has {}", options.place,
                           file.Status().journal_entries));
    return kExitFaults;
  }
  if (options.json) {
    Json json = entry_json(options.place, *found);
    json["lines"] = found->lines;
    streams.output(json_text(json));
    return kExitGood;
  }
  std::string text;
  for (const std::string& line : found->lines) text += line + "\n";
  streams.output(text);
  return kExitGood;
}

// The texts of findings and their kinds, which stay when the words change.
std::pair<Json, Json> findings_json(const std::vector<lorimat::Finding>& findings) {
  const EnglishMessages english;
  std::pair<Json, Json> json = {Json::array(), Json::array()};
  for (const lorimat::Finding& finding : findings) {
    json.first.push_back(journal_finding_text(finding));
    json.second.push_back(journal_finding_code(finding));
  }
  return json;
}

int verify(const JournalOptions& options, const lorimat::RegisterFile& file,
           const std::string& name, Streams& streams) {
  std::optional<Progress> progress;
  uint64_t read = 0;
  std::optional<InterruptWatch> watch(std::in_place);
  const lorimat::JournalCheck check = file.VerifyJournal([&](uint64_t done, uint64_t all) {
    read = done;
    if (!progress) progress.emplace(streams, true, all);
    progress->update(done);
    return interrupted == 0;
  });
  progress.reset();
  watch.reset();
  if (check.stopped) {
    tell_error(streams, tr("stopped by {} behind entry {}", interrupt_name(), read));
    return interrupt_exit();
  }
  if (options.json) {
    const auto [texts, codes] = findings_json(check.findings);
    const auto [notes, note_codes] = findings_json(check.notes);
    streams.output(json_text({{"file", name},
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
    text += fmt::format("{}: {}\n", shown(name),
                        styled(shown(journal_finding_text(finding)), Style::kError, colours));
  }
  if (check.findings_left_out != 0) {
    text += tr("{}: {} more findings are not shown\n", shown(name), check.findings_left_out);
  }
  for (const lorimat::Finding& finding : check.notes) {
    text += fmt::format("{}: {}: {}\n", shown(name), styled(tr("note"), Style::kNote, colours),
                        shown(journal_finding_text(finding)));
  }
  if (check.notes_left_out != 0) {
    text += tr("{}: {} more notes are not shown\n", shown(name), check.notes_left_out);
  }
  const std::string entries = tr_count(check.entries, TR_TEXT("{} entry"), TR_TEXT("{} entries"));
  const std::string documents =
      tr_count(check.documents, TR_TEXT("{} document"), TR_TEXT("{} documents"));
  const std::string findings = tr_count(check.findings.size() + check.findings_left_out,
                                        TR_TEXT("{} finding"), TR_TEXT("{} findings"));
  if (check.good()) {
    text += fmt::format(
        "{}: {}\n", shown(name),
        styled(tr("the journal is good: {}, {}", entries, documents), Style::kGood, colours));
  } else {
    text += fmt::format(
        "{}: {}\n", shown(name),
        check.damaged ? tr("the file is damaged: {}, {}, {}", entries, documents, findings)
                      : tr("the journal was changed: {}, {}, {}", entries, documents, findings));
  }
  streams.output(text);
  return check.good() ? kExitGood : kExitFaults;
}

// "show" takes a place alone, and "verify" the whole journal.
void refuse_selection(const char* command, const JournalOptions& options) {
  const std::pair<const char*, bool> selecting[] = {{"--from", !options.from.empty()},
                                                    {"--to", !options.to.empty()},
                                                    {"--follow", options.follow},
                                                    {"--kind", !options.kinds.empty()}};
  for (const auto& [option, given] : selecting) {
    if (!given) continue;
    throw Failure(
        tr("{}: selects entries of the list, and \"journal {}\" shows no list", option, command));
  }
}

// Options that the commands below "journal" take behind their own names. The variable is read by
// the option of "journal" itself: here it would hide what was given there.
void add_shared_options(CLI::App* command, JournalOptions* options) {
  command->add_option("--register", options->nested_register_file, tr("The register's file"))
      ->option_text(fmt::format("FILE ({}:LORIMAT_REGISTER)", tr("Env")));
  command->add_flag("--json", options->json, tr("Write JSON"));
  // What stands in front of the command's name has been read by then, and the variable has not.
  const CLI::Option* outer = command->get_parent()->get_option("--register");
  command->preparse_callback(
      [outer, options](size_t) { options->outer_registers = outer->count(); });
}

// A register that is named in front of the command's name and behind it is named twice.
void require_one_register(const JournalOptions& options) {
  const size_t count = options.outer_registers + (options.nested_register_file.empty() ? 0 : 1);
  if (count > 1) throw CLI::ArgumentMismatch::AtMost("--register", 1, count);
}

}  // namespace

void add_journal(CLI::App& app, JournalOptions* options) {
  CLI::App* journal =
      app.add_subcommand("journal", tr("List, show and verify a register's journal"));
  add_register_option(journal, &options->register_file);
  journal->add_option("--from", options->from, tr("From this closing or date on"))
      ->type_name("N|DATE");
  journal->add_option("--to", options->to, tr("Up to this closing or date"))->type_name("N|DATE");
  journal
      ->add_option("--kind", options->kinds, tr("Entries of this kind alone; may be given again"))
      ->type_name("KIND")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  journal->add_flag("--json", options->json, tr("Write JSON"));
  journal->add_flag("--follow", options->follow,
                    tr("Go on with what comes, until Ctrl-C or the file is gone"));
  journal->require_subcommand(0, 1);
  journal->footer(std::string(translated(kJournalExamples)));

  CLI::App* show_entry = journal->add_subcommand("show", tr("Show an entry as it was printed"));
  show_entry->add_option("PLACE", options->place, tr("Its place in the list"))
      ->required()
      ->check(CLI::Range(uint64_t{1}, uint64_t{999999999}).description(""));
  add_shared_options(show_entry, options);
  show_entry->callback([options] {
    options->show = true;
    require_one_register(*options);
  });
  show_entry->footer(std::string(translated(kShowExamples)));

  CLI::App* verify_all =
      journal->add_subcommand("verify", tr("Look whether anything in the journal was changed"));
  add_shared_options(verify_all, options);
  verify_all->callback([options] {
    options->verify = true;
    require_one_register(*options);
  });
  verify_all->footer(std::string(translated(kVerifyExamples)));

  for (CLI::App* command : {journal, show_entry, verify_all}) refuse_empty_texts(command);
}

int journal_command(const JournalOptions& options, Streams& streams) {
  const std::string& named =
      options.nested_register_file.empty() ? options.register_file : options.nested_register_file;
  if (options.show) refuse_selection("show", options);
  if (options.verify) refuse_selection("verify", options);
  const std::string& name = require_register(named);
  const lorimat::JournalSelection selection = selection_of(options);
  lorimat::RegisterFile file(name);
  if (options.show) return show(options, file, streams);
  if (options.verify) return verify(options, file, name, streams);
  if (options.follow) return FollowList(options, file, name, selection, streams);
  if (options.json) {
    list_as_json(file, selection, streams);
  } else {
    list_as_text(file, selection, streams);
  }
  return kExitGood;
}

}  // namespace lorimat::console
