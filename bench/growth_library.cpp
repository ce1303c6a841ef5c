// The library's costs and how they grow: lines by the size of the language, by their length and as
// an enemy would write them, batches, definition files, numbers, dates and the log.
#include <array>
#include <cstdint>
#include <ctime>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench_tools.h"
#include "growth.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/strptime.h"
#include "quiet_client.h"
#include "utility/log/log.h"
#include "utility/number.h"
#include "wide_language.h"

// The clock stands, so that the log costs the same at any moment.
extern "C" time_t time(time_t* moment) {
  constexpr time_t kMoment = 1795372801;
  if (moment != nullptr) *moment = kMoment;
  return kMoment;
}
extern "C" int clock_gettime(clockid_t, struct timespec* moment) {
  *moment = {time(nullptr), 123000000};
  return 0;
}

namespace {

using growth::Measure;

constexpr char kSaleLine[] = "VEND REP=1, QTA=1.5, PREUN=12.34, DES='Pane di casa', UM='kg'";

std::string Repeated(const std::string& text, size_t times) {
  std::string all;
  for (size_t i = 0; i < times; ++i) all += text;
  return all;
}

// A translator with a language of its own.
class Till {
 public:
  explicit Till(const std::string& language) : language_(language) {
    Require(translator_->TradInit(language_.path(), 0, &client_, true) == 0,
            "the definition file was refused");
  }

  EcrCmdCommand& translator() { return *translator_; }
  long Run(std::string line) {
    std::array<char, 512> result;
    return translator_->EcrCmd(line.data(), result.data());
  }
  // Measures a line that has this answer, which it has once ahead of the count too.
  void MeasureLine(const std::string& subject, const std::string& line, long expected,
                   int64_t units, int times) {
    Require(Run(line) == expected, (subject + " has another answer").c_str());
    Measure(subject, units * times, [&] {
      for (int i = 0; i < times; ++i) Run(line);
    });
  }

 private:
  TemporaryFile language_;
  QuietClient client_;
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
};

void LinesByLanguage() {
  constexpr int kTimes = 200;
  for (const int commands : {10, 50, 149}) {
    Till(WideLanguage(commands))
        .MeasureLine("line_by_commands/" + std::to_string(commands), kSaleLine, 0, 1, kTimes);
  }
  for (const int fields : {15, 40}) {
    Till(WideLanguage(149, fields))
        .MeasureLine("line_by_fields/" + std::to_string(fields), kSaleLine, 0, 1, kTimes);
  }
}

// A name looked up that stands in this row of its table.
void NamesByRow() {
  constexpr int kTimes = 200;
  Till till(WideLanguage());
  EcrCmdCommand& translator = till.translator();
  for (const int row : {1, 75, 149}) {
    std::string word = translator.szOpCodes[row];
    int found = 0;
    Measure("command_by_row/" + std::to_string(row), kTimes, [&] {
      for (int i = 0; i < kTimes; ++i) {
        int position = 1;
        translator.GetCodOp(word.data(), &position, &found);
      }
    });
    Require(found == row, "the command was not found");
  }
  constexpr int kOpcode = 20;
  for (const int row : {1, 20, 40}) {
    std::string word = translator.szKeyI[kOpcode][row];
    int found = 0;
    Measure("field_by_row/" + std::to_string(row), kTimes, [&] {
      for (int i = 0; i < kTimes; ++i) translator.GetNumOper(kOpcode, word.data(), &found);
    });
    Require(found == row, "the field was not found");
  }
}

// A line that is as long as it may be, a half and a quarter of that; a unit is a character.
struct LongLine {
  const char* family;
  std::string begin;
  std::string again;
  std::string end;
  long answer;
};

void LinesByLength() {
  constexpr int kTimes = 20;
  // Forty names for one field: to know that "A" is no other, all have to be looked at.
  std::string aliases = "[OPCOD]\n10=VEND\n[10]\n";
  for (int row = 1; row <= 40; ++row) {
    aliases += std::to_string(row) + "=AAAA" + std::to_string(row) + ",7\n";
  }
  Till wide(WideLanguage());
  Till alike(aliases);
  const std::vector<LongLine> lines = {
      {"length_of_text", "VEND REP=1, DES='", "a", "'", 0},
      {"length_of_number", "VEND REP=1, DES=", "1", "", 0},
      {"length_of_comment", "VEND REP=1;", "a", "", 0},
      {"enemy_quotes", "VEND REP=1, DES=", "''", "", 0},
      {"enemy_odd_quotes", "VEND REP=1, DES='", "''", "", 264},
      {"enemy_semicolons", "VEND REP=1, DES='", ";", "'", 0},
      {"enemy_hashes", "VEND REP=1, ", "#", "", 260},
      {"enemy_hash_word", "", "#", "", 257},
      {"enemy_equals", "VEND REP=1, DES", "= ", "", 0},
      {"enemy_fields", "VEND REP=1", ",REP=1", "", 0},
      {"enemy_blanks", "VEND REP=1, DES='", " ", "'", 0},
  };
  for (const size_t length : {511, 1023, 2046}) {
    for (const LongLine& line : lines) {
      const size_t room = length - line.begin.size() - line.end.size();
      const std::string text =
          line.begin + Repeated(line.again, room / line.again.size()) + line.end;
      wide.MeasureLine(std::string(line.family) + "/" + std::to_string(length), text, line.answer,
                       static_cast<int64_t>(text.size()), kTimes);
    }
    alike.MeasureLine("enemy_aliases/" + std::to_string(length),
                      "VEND " + Repeated("A,", (length - 6) / 2) + "A", 269,
                      static_cast<int64_t>(length), kTimes);
  }
  for (const size_t length : {256, 512, 1024}) {
    wide.MeasureLine("enemy_unknown_field/" + std::to_string(length),
                     "VEND REP=1, " + Repeated("Z", length), 260, static_cast<int64_t>(length),
                     kTimes);
  }
}

void Files() {
  Till till(WideLanguage());
  for (const size_t lines : {1000, 10000, 100000}) {
    const TemporaryFile file(Repeated(std::string(kSaleLine) + "\n", lines));
    long answer = -1;
    Measure("batch/" + std::to_string(lines), static_cast<int64_t>(lines),
            [&] { answer = till.Run(std::string("@'") + file.path() + "'"); });
    Require(answer == 0, "the batch was refused");
  }
  const std::string section = "[10]\n1=REP ; department\n2=ART\n3=QTA,3\n4=PRE,O\n";
  for (const size_t lines : {1000, 10000, 100000}) {
    TemporaryFile file("[OPCOD]\n10=VEND\n" + Repeated(section, lines / 5));
    int read = 0;
    Measure("definition/" + std::to_string(lines), static_cast<int64_t>(lines),
            [&] { read = till.translator().LeggiFileIni(file.path()); });
    Require(read == 1, "the definition file was refused");
  }
}

void Foundation() {
  constexpr int kTimes = 1000;
  const Number amount("1234.56");
  const Number price("12.34");
  Number result;
  const auto measure = [&](const char* subject, auto operation) {
    Measure(std::string("number_") + subject + "/" + std::to_string(kTimes), kTimes, [&] {
      for (int i = 0; i < kTimes; ++i) operation();
    });
  };
  measure("add", [&] { result = amount + price; });
  measure("mul", [&] { result = amount * price; });
  measure("div", [&] { result = amount / price; });
  measure("round", [&] { (result = amount).round(1, Number::RT_MATH); });
  const std::string text = "1234.56";
  measure("parse", [&] { result = Number(text); });
  std::ostringstream out;
  measure("print", [&] { out << amount; });
  Require(out.str().size() == text.size() * kTimes && result == amount, "the numbers are wrong");

  struct tm moment = {};
  Measure("strptime/" + std::to_string(kTimes), kTimes, [&] {
    for (int i = 0; i < kTimes; ++i) {
      pal::strptime("2026-11-22 18:20:01", "%Y-%m-%d %H:%M:%S", &moment);
    }
  });
  Require(moment.tm_year == 126 && moment.tm_sec == 1, "the date was not read");

  const TemporaryFile file("");
  class FileLog : public Log {};
  FileLog log;
  log.set_outputs(Log::LO_FILE);
  log.set_output_file_name(file.path());
  log.Start();
  for (const int lines : {100, 1000}) {
    Measure("log_line/" + std::to_string(lines), lines, [&] {
      for (int i = 0; i < lines; ++i) {
        log.Write(Log::LL_INFO, __LOG_LOCATION__, "RtfProxy.PrintRecRedeem() enter");
      }
    });
  }
}

}  // namespace

int main() {
  LinesByLanguage();
  NamesByRow();
  LinesByLength();
  Files();
  Foundation();
}
