// The shipped definition file binds every command and every field that a handler reads,
// row by row, and every word in it finds what it names.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "language/handler_fields.h"
#include "pal/protocols/lorimat/lorimatutility.h"
#include "unit/language/key_codes.h"
#include "unit/language/shipped_language.h"

namespace {

using language::CommandFields;

const std::vector<CommandFields>& HandlerFields() { return language::handler_fields(); }

// The header lines: the command takes six, a dump writes as many as the device has.
constexpr int kHeaderLines = 34;
constexpr int kHeaderLinesTaken = 6;

class LanguageFile : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    sections_ = new std::map<std::string, shipped::Entries>(shipped::Sections());
    translator_ = shipped::Read(&result_).release();
  }
  static void TearDownTestSuite() {
    delete translator_;
    delete sections_;
  }

  static const shipped::Entries& Section(const std::string& name) {
    static const shipped::Entries none;
    const auto found = sections_->find(name);
    return found == sections_->end() ? none : found->second;
  }

  static EcrCmdCommand* translator_;
  static std::map<std::string, shipped::Entries>* sections_;
  static int result_;
};

EcrCmdCommand* LanguageFile::translator_ = nullptr;
std::map<std::string, shipped::Entries>* LanguageFile::sections_ = nullptr;
int LanguageFile::result_ = 0;

TEST_F(LanguageFile, IsReadToItsEnd) { EXPECT_EQ(1, result_); }

TEST_F(LanguageFile, IsPlainTextWithinTheLimitsOfTheReader) {
  int number = 0;
  for (const std::string& line : shipped::Lines(shipped::LanguageFile())) {
    SCOPED_TRACE(++number);
    EXPECT_LE(line.size(), 254u);
    EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; }));
    const std::string text = shipped::Trim(line.substr(0, line.find(';')));
    EXPECT_EQ(std::string::npos, text.find('\''));
    if (text.empty()) continue;
    if (text.front() == '[') {
      EXPECT_EQ(']', text.back());
      continue;
    }
    const size_t equals = text.find('=');
    ASSERT_NE(std::string::npos, equals);
    EXPECT_LE(shipped::Trim(text.substr(0, equals)).size(), 79u);
    EXPECT_LE(shipped::Trim(text.substr(equals + 1)).size(), 79u);
  }
  EXPECT_GT(number, 0);
}

TEST_F(LanguageFile, HasNoSectionThatNothingReads) {
  std::set<std::string> known = {"OPCOD", "EQU", "EQUTASTI", "INTMSG", "TOTG"};
  for (const CommandFields& command : HandlerFields()) {
    if (!command.fields.empty()) known.insert(std::to_string(command.id));
  }
  for (const auto& [name, entries] : *sections_) {
    EXPECT_TRUE(known.count(name)) << name;
    EXPECT_FALSE(entries.empty()) << name;
  }
}

// A section that is given twice starts its highest row anew, and a row given twice keeps
// its last name: neither may happen by accident.
TEST_F(LanguageFile, GivesNoSectionAndNoRowTwice) {
  std::set<std::string> headers;
  for (const std::string& line : shipped::Lines(shipped::LanguageFile())) {
    if (!line.empty() && line.front() == '[') {
      EXPECT_TRUE(headers.insert(shipped::Trim(line)).second) << line;
    }
  }
  for (const auto& [name, entries] : *sections_) {
    std::set<std::string> lefts;
    for (const auto& entry : entries) {
      EXPECT_TRUE(lefts.insert(entry.first).second) << name << ": " << entry.first;
    }
  }
}

TEST_F(LanguageFile, BindsEveryCommandInTheRowOfItsId) {
  std::set<int> ids;
  for (const CommandFields& command : HandlerFields()) {
    SCOPED_TRACE(command.id);
    ids.insert(command.id);
    EXPECT_STRNE("", translator_->szOpCodes[command.id]);
    EXPECT_EQ(command.id, translator_->iIdOpCodes[command.id]);
  }
  for (int row = 1; row < MAXOPCOD; ++row) {
    if (ids.count(row) == 0) {
      EXPECT_STREQ("", translator_->szOpCodes[row]) << row;
    }
  }
  EXPECT_EQ(127, translator_->iTotOpCodes);
}

TEST_F(LanguageFile, BindsEveryFieldThatAHandlerReadsInTheRowOfItsNumber) {
  for (const CommandFields& command : HandlerFields()) {
    for (const int field : command.fields) {
      SCOPED_TRACE(std::to_string(command.id) + "/" + std::to_string(field));
      EXPECT_STRNE("", translator_->szKeyI[command.id][field]);
      EXPECT_EQ(field, translator_->iNCI[command.id][field]);
      EXPECT_LE(field, translator_->iNumOper[command.id]);
    }
  }
}

TEST_F(LanguageFile, BindsNoFieldThatNothingReads) {
  for (const CommandFields& command : HandlerFields()) {
    const std::set<int> read(command.fields.begin(), command.fields.end());
    const int highest = read.empty() ? 0 : *read.rbegin();
    for (int row = 1; row <= MAXCAMPI; ++row) {
      SCOPED_TRACE(std::to_string(command.id) + "/" + std::to_string(row));
      const std::string name = translator_->szKeyI[command.id][row];
      if (name.empty() || read.count(row)) continue;
      if (command.id == kHeaderLines) {
        EXPECT_GT(row, kHeaderLinesTaken);
        EXPECT_EQ(row, translator_->iNCI[command.id][row]);
        continue;
      }
      // An alias stands behind the fields and names one of them.
      EXPECT_GT(row, highest);
      EXPECT_TRUE(read.count(translator_->iNCI[command.id][row]));
    }
  }
}

TEST_F(LanguageFile, GivesTheHeaderLinesOfEveryDeviceAWord) {
  for (int row = 1; row <= MAXCAMPI; ++row) {
    EXPECT_EQ("RIGA" + std::to_string(row), translator_->szKeyI[kHeaderLines][row]);
  }
}

// What the reader drops or cuts without a word would show here.
TEST_F(LanguageFile, ReachesTheTablesAsItStands) {
  for (const auto& [row, entry] : shipped::Rows(Section("OPCOD"))) {
    ASSERT_LT(row, MAXOPCOD);
    EXPECT_LE(entry.name.size(), static_cast<size_t>(MAXSIMBLN)) << entry.name;
    EXPECT_EQ(entry.name, translator_->szOpCodes[row]);
    EXPECT_EQ(entry.number, translator_->iIdOpCodes[row]);
  }
  for (const CommandFields& command : HandlerFields()) {
    const auto rows = shipped::Rows(Section(std::to_string(command.id)));
    for (const auto& [row, entry] : rows) {
      SCOPED_TRACE(std::to_string(command.id) + "/" + std::to_string(row));
      ASSERT_LE(row, MAXCAMPI);
      EXPECT_LE(entry.name.size(), static_cast<size_t>(MAXSIMBLN)) << entry.name;
      EXPECT_EQ(entry.name, translator_->szKeyI[command.id][row]);
      EXPECT_EQ(entry.number, translator_->iNCI[command.id][row]);
    }
    EXPECT_EQ(rows.empty() ? 0 : rows.rbegin()->first, translator_->iNumOper[command.id]);
  }
}

TEST_F(LanguageFile, MarksNoFieldAsMandatory) {
  // The handlers refuse a missing field themselves, each with its own code and in its
  // own order.
  for (int id = 0; id < MAXOPCOD; ++id) {
    for (int row = 0; row <= MAXCAMPI; ++row) {
      EXPECT_FALSE(translator_->bObl[id][row]) << id << "/" << row;
    }
  }
}

TEST_F(LanguageFile, EveryCommandWordFindsItsOwnCommand) {
  for (const CommandFields& command : HandlerFields()) {
    const std::string word = translator_->szOpCodes[command.id];
    SCOPED_TRACE(word);
    EXPECT_EQ(command.id, shipped::Command(*translator_, word));
    EXPECT_EQ(command.id, shipped::Command(*translator_, shipped::Lower(word)));
    EXPECT_EQ(command.id, shipped::Command(*translator_, word + " "));
    EXPECT_EQ(command.id, shipped::Command(*translator_, "#" + std::to_string(command.id)));
  }
}

// Words in full that people write and that are longer than the names.
TEST_F(LanguageFile, LongerWordsFindTheCommandThatTheyBeginWith) {
  EXPECT_EQ(10, shipped::Command(*translator_, "VENDITA"));
  EXPECT_EQ(11, shipped::Command(*translator_, "CHIUDI"));
  EXPECT_EQ(18, shipped::Command(*translator_, "SUBTOTALE"));
  EXPECT_EQ(80, shipped::Command(*translator_, "MAGGIORAZIONE"));
  EXPECT_EQ(120, shipped::Command(*translator_, "ZREPORTEMAIL"));
  EXPECT_EQ(125, shipped::Command(*translator_, "FIRMWAREUPD"));
}

TEST_F(LanguageFile, EveryFieldWordFindsItsOwnField) {
  for (const CommandFields& command : HandlerFields()) {
    const int highest = command.id == kHeaderLines ? MAXCAMPI : translator_->iNumOper[command.id];
    for (int row = 1; row <= highest; ++row) {
      const std::string word = translator_->szKeyI[command.id][row];
      if (word.empty()) continue;
      SCOPED_TRACE(std::to_string(command.id) + " " + word);
      const int number = translator_->iNCI[command.id][row];
      EXPECT_EQ(number, shipped::Field(*translator_, command.id, word));
      EXPECT_EQ(number, shipped::Field(*translator_, command.id, shipped::Lower(word)));
      if (number == row) {
        EXPECT_EQ(row, shipped::Field(*translator_, command.id, "#" + std::to_string(row)));
      }
    }
  }
}

// Then the order of the rows does not matter, and a shortened word is never taken for
// another field: it finds its own or is refused.
TEST_F(LanguageFile, NoFieldWordBeginsAnotherOfItsCommand) {
  for (const CommandFields& command : HandlerFields()) {
    if (command.id == kHeaderLines) continue;
    const auto rows = shipped::Rows(Section(std::to_string(command.id)));
    for (const auto& [row, entry] : rows) {
      for (const auto& [other, other_entry] : rows) {
        if (row != other) {
          EXPECT_NE(0u, other_entry.name.find(entry.name))
              << command.id << ": " << entry.name << ", " << other_entry.name;
        }
      }
    }
  }
}

TEST_F(LanguageFile, ShortenedFieldWordsFindTheirOwnFieldOrAreRefused) {
  for (const CommandFields& command : HandlerFields()) {
    for (const auto& [row, entry] : shipped::Rows(Section(std::to_string(command.id)))) {
      for (size_t length = 1; length < entry.name.size(); ++length) {
        const std::string word = entry.name.substr(0, length);
        const int number = shipped::Field(*translator_, command.id, word);
        // RIGA1 of the header lines is a name and the beginning of others.
        if (command.id == kHeaderLines && number > 0 && number < 10) continue;
        EXPECT_TRUE(number == entry.number || number == -5)
            << command.id << " " << word << ": " << number;
      }
    }
  }
}

TEST_F(LanguageFile, SymbolsAreFewEnoughAndUnique) {
  const size_t count = Section("EQU").size() + Section("EQUTASTI").size();
  EXPECT_LE(count, static_cast<size_t>(MAXSIMB - 1));
  EXPECT_EQ(static_cast<int>(count), translator_->iTotSimb);
  std::set<std::string> names;
  for (const char* section : {"EQU", "EQUTASTI"}) {
    for (const auto& [name, value] : Section(section)) {
      EXPECT_TRUE(names.insert(name).second) << name;
      EXPECT_LE(name.size(), static_cast<size_t>(MAXSIMBLN)) << name;
      EXPECT_EQ(std::string::npos, name.find_first_of(" \t,;=#'")) << name;
    }
  }
}

TEST_F(LanguageFile, EverySymbolStandsForItsValue) {
  for (const char* section : {"EQU", "EQUTASTI"}) {
    for (const auto& [name, value] : Section(section)) {
      std::string text = name;
      int found = -1;
      EXPECT_FALSE(lorimatutility::SeNum(text.data())) << name << " reads as a number";
      EXPECT_TRUE(translator_->TradSimb(text.data(), &found)) << name;
      EXPECT_EQ(std::atoi(value.c_str()), found) << name;
    }
  }
}

TEST_F(LanguageFile, EveryKeyHasExactlyOneSymbol) {
  ASSERT_EQ(214u, shipped::kKeys.size());
  std::map<int, std::vector<std::string>> symbols;
  for (const auto& [name, value] : Section("EQUTASTI")) {
    symbols[std::atoi(value.c_str())].push_back(name);
  }
  EXPECT_EQ(shipped::kKeys.size(), symbols.size());
  for (const int key : shipped::kKeys) {
    SCOPED_TRACE(key);
    ASSERT_EQ(1u, symbols[key].size());
    EXPECT_EQ(symbols[key].front(), translator_->szSimb[translator_->iInvTast[key]]);
  }
}

// A dump writes the keys of a macro with a blank behind each.
TEST_F(LanguageFile, TheSymbolsOfKeysReadAsMacros) {
  for (const auto& [name, value] : Section("EQUTASTI")) {
    std::string text = name + " " + name + " ";
    unsigned char keys[100] = {};
    EXPECT_EQ(2, translator_->GetMacro(text.data(), keys)) << name;
    EXPECT_EQ(std::atoi(value.c_str()), keys[0]) << name;
    EXPECT_EQ(std::atoi(value.c_str()), keys[1]) << name;
  }
}

TEST_F(LanguageFile, FlagsOfDumpsLoadBack) {
  const std::string yes = translator_->TabIntMsg[5];
  const std::string no = translator_->TabIntMsg[6];
  EXPECT_EQ("SI", yes);
  EXPECT_EQ("NO", no);
  // What the parser makes of the words is what the readers of flags see.
  EXPECT_EQ(31, shipped::Parse(*translator_, "PREP REP=1, SINGOLO=" + yes + ", SCONTO=" + no));
  EXPECT_STREQ("2", translator_->szCampi[4]);
  EXPECT_TRUE(lorimatutility::CheckTrue(translator_->szCampi[4]));
  EXPECT_STREQ("1", translator_->szCampi[16]);
  EXPECT_FALSE(lorimatutility::CheckTrue(translator_->szCampi[16]));
}

TEST_F(LanguageFile, TheTrueWordInFullSetsAFlagAsTheBareNameDoes) {
  EXPECT_EQ(48, shipped::Parse(*translator_, "SETP ABORT=VERO, ATTESA, INVIOAE=FALSO"));
  EXPECT_TRUE(lorimatutility::CheckTrue(translator_->szCampi[7]));
  EXPECT_TRUE(lorimatutility::CheckTrue(translator_->szCampi[9]));
  EXPECT_FALSE(lorimatutility::CheckTrue(translator_->szCampi[8]));
}

// Counters with a source in the device have a description in the work state, the others
// an empty one.
TEST_F(LanguageFile, DescribesEveryCounterThatTheDeviceHas) {
  std::set<int> counters = {1,  2,  3,  4,  5,  10, 11, 12, 22, 24, 25,
                            31, 33, 34, 35, 36, 37, 58, 64, 65, 66, 67};
  for (int counter = 41; counter <= 50; ++counter) counters.insert(counter);
  std::map<int, std::string> file;
  for (const auto& [left, right] : Section("TOTG")) file[std::atoi(left.c_str())] = right;
  for (int counter = 0; counter < MAXTOTG; ++counter) {
    SCOPED_TRACE(counter);
    const std::string text(translator_->TabDscTotG[counter],
                           strnlen(translator_->TabDscTotG[counter], 32));
    EXPECT_LE(file[counter].size(), 32u);
    EXPECT_EQ(file[counter], text);
    EXPECT_EQ(counters.count(counter) == 0, text.empty());
  }
}

}  // namespace
