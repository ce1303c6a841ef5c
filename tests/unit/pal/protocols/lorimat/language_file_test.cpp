// The reader of the definition file, with files of the test's own.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace {

namespace fs = std::filesystem;

class DefinitionFile : public ::testing::Test {
 protected:
  void SetUp() override {
    old_directory_ = fs::current_path();
    directory_ = fs::temp_directory_path() / ("language_file_test." + std::to_string(getpid()));
    fs::create_directories(directory_);
    fs::current_path(directory_);
    WriteDefaultMessages(t());
  }
  void TearDown() override {
    fs::current_path(old_directory_);
    fs::remove_all(directory_);
  }

  void Write(const std::string& name, const std::string& text) {
    std::ofstream(directory_ / name, std::ios::binary) << text;
  }
  int ReadFile(std::string path) { return t().LeggiFileIni(path.data()); }
  int Read(const std::string& text) {
    Write("words.ini", text);
    return ReadFile("words.ini");
  }
  // A row of a message table, which may have no closing NUL.
  template <size_t N>
  static std::string Row(const char (&text)[N]) {
    return std::string(text, strnlen(text, N));
  }

  EcrCmdCommand& t() { return *translator_; }

  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
  fs::path directory_;
  fs::path old_directory_;
};

TEST_F(DefinitionFile, BindsCommandsFieldsAndSymbols) {
  EXPECT_EQ(Read("; words\r\n"
                 "[OPCOD]\r\n"
                 "10 = VEND\r\n"
                 "11=CHIUDI,9\r\n"
                 "[10]\n"
                 "1=REP,O\n"
                 "2=ARTICOLO , 2\n"
                 "3=QTA,7\n"
                 "[EQU]\n"
                 "CASH=1\n"
                 "[EQUTASTI]\n"
                 "TOT = 49 ; a key"),
            1);
  EXPECT_STREQ(t().szOpCodes[10], "VEND");
  EXPECT_EQ(t().iIdOpCodes[10], 10);
  EXPECT_STREQ(t().szOpCodes[11], "CHIUDI");
  EXPECT_EQ(t().iIdOpCodes[11], 9);
  EXPECT_EQ(t().iTotOpCodes, 11);
  EXPECT_STREQ(t().szKeyI[10][1], "REP");
  EXPECT_TRUE(t().bObl[10][1]);
  EXPECT_EQ(t().iNCI[10][1], 1);
  EXPECT_STREQ(t().szKeyI[10][2], "ARTICOLO");
  EXPECT_EQ(t().iNCI[10][3], 7);
  EXPECT_EQ(t().iNumOper[10], 3);
  EXPECT_EQ(t().iTotSimb, 2);
  EXPECT_STREQ(t().szSimb[2], "TOT");
  EXPECT_EQ(t().iInvTast[49], 2);
}

TEST_F(DefinitionFile, MissingFilesFallBackToTheCurrentDirectory) {
  EXPECT_EQ(ReadFile("none.ini"), 0);
  Write("merkelin.ini", "[OPCOD]\n3=LEGGI\n");
  EXPECT_EQ(ReadFile("none.ini"), 1);
  EXPECT_STREQ(t().szOpCodes[3], "LEGGI");
  EXPECT_STREQ(t().filename_, "none.ini");
}

TEST_F(DefinitionFile, ADirectoryIsNoFile) {
  fs::create_directory(directory_ / "words.ini");
  EXPECT_EQ(ReadFile("words.ini"), 0);
}

TEST_F(DefinitionFile, ThePathIsCutAtSeventyNineCharacters) {
  const std::string name(100, 'p');
  Write(std::string(79, 'p'), "[OPCOD]\n5=CUT\n");
  EXPECT_EQ(ReadFile(name), 1);
  EXPECT_STREQ(t().szOpCodes[5], "CUT");
  EXPECT_EQ(std::strlen(t().filename_), 79u);
}

TEST_F(DefinitionFile, ALineWithoutEqualsEndsTheReading) {
  EXPECT_EQ(Read("[OPCOD]\n1=PROG\nnonsense\n2=FINE\n"), 0);
  EXPECT_STREQ(t().szOpCodes[1], "PROG");
  EXPECT_STREQ(t().szOpCodes[2], "");
  EXPECT_EQ(Read("[EQU]\n=5\n"), 0);
  EXPECT_EQ(Read("[INTMSG]\nnonsense\n"), 0);
}

TEST_F(DefinitionFile, RowsThatAreNoNumberEndTheReading) {
  EXPECT_EQ(Read("[OPCOD]\n0=X\n"), 0);
  EXPECT_EQ(Read("[OPCOD]\nabc=X\n"), 0);
  EXPECT_EQ(Read("[OPCOD]\n151=X\n"), 0);
  EXPECT_EQ(Read("[OPCOD]\n99999999999999999999=X\n"), 0);
  EXPECT_EQ(Read("[10]\n0=X\n"), 0);
  EXPECT_EQ(Read("[10]\nabc=X\n"), 0);
  EXPECT_EQ(Read("[999]\n0=X\n"), 0);
}

TEST_F(DefinitionFile, RowsOutsideTheTablesAreRefusedAlone) {
  EXPECT_EQ(Read("[OPCOD]\n-1=X\n150=LAST\n[10]\n41=X\n-7=Y\n2=GOOD\n[150]\n1=A\n[-1]\n1=B\n"), 1);
  EXPECT_EQ(t().iTotOpCodes, 150);
  EXPECT_EQ(t().iNumOper[10], 2);
  EXPECT_STREQ(t().szKeyI[10][2], "GOOD");
}

TEST_F(DefinitionFile, Row150IsTakenAndNeverFound) {
  EXPECT_EQ(Read("[OPCOD]\n150=LAST\n"), 1);
  char line[] = "LAST";
  int place = 1;
  int id = 0;
  EXPECT_EQ(t().GetCodOp(line, &place, &id), 1);
  char number[] = "#150";
  place = 1;
  EXPECT_EQ(t().GetCodOp(number, &place, &id), 0);
  EXPECT_EQ(id, 150);
}

TEST_F(DefinitionFile, HeadersNameTheSectionUpToTheirLastCharacter) {
  EXPECT_EQ(Read("[OPCOD\n1=A\n"), 1);  // section OPCO, which counts as number 0
  EXPECT_EQ(t().iTotOpCodes, 0);
  EXPECT_STREQ(t().szKeyI[0][1], "A");
  EXPECT_EQ(Read("[OPCOD ]\n2=B\n"), 1);
  EXPECT_EQ(t().iTotOpCodes, 0);
  EXPECT_EQ(Read("[opcod]\n2=B\n"), 1);
  EXPECT_EQ(t().iTotOpCodes, 0);
  EXPECT_EQ(Read("[\n3=C\n"), 1);
  EXPECT_STREQ(t().szKeyI[0][3], "C");
}

TEST_F(DefinitionFile, LinesAheadOfTheFirstHeaderBelongToNoSection) {
  EXPECT_EQ(Read("7=LOST\n[OPCOD]\n1=PROG\n"), 1);
  EXPECT_STREQ(t().szKeyI[0][7], "LOST");
  EXPECT_EQ(Read("nonsense=X\n"), 0);
}

TEST_F(DefinitionFile, NumbersAndMarksOfARow) {
  EXPECT_EQ(Read("[OPCOD]\n5=NAME,\n6=,O\n7=ZERO,0\n8=MARK,O\n9=BIG,200\n"
                 "[10]\n1=A,OBL\n2=B,5\n3=C, O\n4=,O\n5=D,0\n"),
            1);
  EXPECT_EQ(t().iIdOpCodes[5], 5);
  EXPECT_STREQ(t().szOpCodes[5], "NAME");
  EXPECT_STREQ(t().szOpCodes[6], ",O");
  EXPECT_EQ(t().iIdOpCodes[7], 7);
  EXPECT_EQ(t().iIdOpCodes[8], 8);
  EXPECT_EQ(t().iIdOpCodes[9], 200);
  EXPECT_TRUE(t().bObl[10][1]);
  EXPECT_FALSE(t().bObl[10][2]);
  EXPECT_EQ(t().iNCI[10][2], 5);
  EXPECT_FALSE(t().bObl[10][3]);
  EXPECT_STREQ(t().szKeyI[10][4], ",O");
  EXPECT_FALSE(t().bObl[10][4]);
  EXPECT_EQ(t().iNCI[10][5], 5);
}

TEST_F(DefinitionFile, TheHighestRowStartsAgainAtEachHeader) {
  EXPECT_EQ(Read("[OPCOD]\n20=A\n[10]\n5=X\n[OPCOD]\n3=B\n[10]\n2=Y\n"), 1);
  EXPECT_EQ(t().iTotOpCodes, 3);
  EXPECT_EQ(t().iNumOper[10], 2);
  EXPECT_STREQ(t().szOpCodes[20], "A");
}

TEST_F(DefinitionFile, NamesAreCutAtTenCharacters) {
  EXPECT_EQ(Read("[OPCOD]\n1=ABCDEFGHIJKLM,7\n[EQU]\nABCDEFGHIJKLM=5\n"), 1);
  EXPECT_STREQ(t().szOpCodes[1], "ABCDEFGHIJ");
  EXPECT_EQ(t().iIdOpCodes[1], 7);
  EXPECT_STREQ(t().szSimb[1], "ABCDEFGHIJ");
}

TEST_F(DefinitionFile, ThreeHundredSymbolsLeaveTheFirst299) {
  std::string text = "[EQU]\n";
  for (int i = 1; i <= 400; ++i) text += "S" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  EXPECT_EQ(Read(text), 1);
  EXPECT_EQ(t().iTotSimb, 299);
  EXPECT_STREQ(t().szSimb[299], "S299");
}

TEST_F(DefinitionFile, AKeyCodeOutsideTheTableOfKeysKeepsItsName) {
  EXPECT_EQ(Read("[EQUTASTI]\nA=5000\nB=-1\nC=299\nD=300\nE=0\nF=-2147483648\nG=2147483647\n"), 1);
  EXPECT_EQ(t().iTotSimb, 7);
  const std::pair<const char*, int> symbols[] = {
      {"A", 5000}, {"B", -1}, {"C", 299}, {"D", 300}, {"E", 0}, {"F", INT32_MIN}, {"G", INT32_MAX}};
  for (const auto& [name, code] : symbols) {
    std::string word = name;
    int value = 7;
    EXPECT_TRUE(t().TradSimb(word.data(), &value)) << name;
    EXPECT_EQ(value, code) << name;
  }
  // The way back has a place for C and E alone.
  EXPECT_EQ(t().iInvTast[299], 3);
  EXPECT_EQ(t().iInvTast[0], 5);
  EXPECT_EQ(std::count(std::begin(t().iInvTast), std::end(t().iInvTast), 0), 298);
}

TEST_F(DefinitionFile, ASecondSymbolOfANameAddsARow) {
  EXPECT_EQ(Read("[EQU]\nA=1\nA=2\n"), 1);
  EXPECT_EQ(t().iTotSimb, 2);
  int value = 0;
  char name[] = "A";
  EXPECT_TRUE(t().TradSimb(name, &value));
  EXPECT_EQ(value, 1);
}

TEST_F(DefinitionFile, TextsAreBareOrQuoted) {
  EXPECT_EQ(Read("[INTMSG]\n1=BENE\n2=' NO '\n3='it''s'\n4='a;b' ; comment\n"), 1);
  EXPECT_EQ(Row(t().TabIntMsg[1]), "BENE");
  EXPECT_EQ(Row(t().TabIntMsg[2]), " NO ");
  EXPECT_EQ(Row(t().TabIntMsg[3]), "it's");
  EXPECT_EQ(Row(t().TabIntMsg[4]), "a;b");
}

TEST_F(DefinitionFile, BadTextsAndKeysLeaveTheDefaults) {
  EXPECT_EQ(Read("[INTMSG]\n1='open\n2=" + std::string(33, 'x') +
                 "\n40=X\n-1=X\n999999999999=X\nabc=ZERO\n"),
            1);
  EXPECT_EQ(Row(t().TabIntMsg[1]), "OK.");
  EXPECT_EQ(Row(t().TabIntMsg[2]), "NON OK. ");
  EXPECT_EQ(Row(t().TabIntMsg[40]), "");
  EXPECT_EQ(Row(t().TabIntMsg[0]), "ZERO");
}

TEST_F(DefinitionFile, ATextMayFillItsRow) {
  EXPECT_EQ(Read("[TOTG]\n99=" + std::string(32, 'x') + "\n100=X\n0=Y\n"), 1);
  EXPECT_EQ(Row(t().TabDscTotG[99]), std::string(32, 'x'));
  EXPECT_EQ(Row(t().TabDscTotG[0]), "Y");
}

TEST_F(DefinitionFile, EachErrorSectionHasItsTable) {
  EXPECT_EQ(Read("[ERRMSG]\n1=base\n[ERRMSG0]\n2=base2\n[ERRMSG1]\n1=one\n[ERRMSG4]\n0=four\n"
                 "[ERRMSG5]\n9=five\n[ERRMSG6]\n19=six\n[ERRMSG7]\n19=seven\n[ERRMSG8]\n9=eight\n"
                 "[ERRMSG9]\n9=nine\n[ERRMSG10]\n1=none\n[ERRMSG0]\n50=none\n[ERRMSG4]\n10=none\n"),
            1);
  EXPECT_EQ(Row(t().TabErrTradBase[1]), "base");
  EXPECT_EQ(Row(t().TabErrTradBase[2]), "base2");
  EXPECT_EQ(Row(t().TabErrTrad1[1]), "one");
  EXPECT_EQ(Row(t().TabErrTrad4[0]), "four");
  EXPECT_EQ(Row(t().TabErrTrad5[9]), "five");
  EXPECT_EQ(Row(t().TabErrTrad6[19]), "six");
  EXPECT_EQ(Row(t().TabErrTrad7[19]), "seven");
  EXPECT_EQ(Row(t().TabErrTrad8[9]), "eight");
  EXPECT_EQ(Row(t().TabErrTrad9[9]), "nine");
}

TEST_F(DefinitionFile, ClientResultTextsAreFoundByTheirKeys) {
  EXPECT_EQ(Read("[ERRMSG2]\n0=zero\n7=seven\n19=nineteen\n20=none\n107=none\n"
                 "[ERRMSG3]\n0=zero3\n29=twentynine\n30=none\n212=none\n"),
            1);
  EXPECT_EQ(Row(t().TabErrTrad2[0]), "I/O ERROR ");
  EXPECT_EQ(Row(t().TabErrTrad2[7]), "");
  char text[512];
  const auto shown = [&](long code) {
    t().SetStringErr(text, code);
    return std::string(text);
  };
  EXPECT_EQ(shown(512), "ERROR 2/0 : I/O ERROR 0zero");
  EXPECT_EQ(shown(512 + 7), "ERROR 2/7 : I/O ERROR 7seven");
  EXPECT_EQ(shown(512 + 19), "ERROR 2/19 : I/O ERROR 19nineteen");
  EXPECT_EQ(shown(512 + 20), "ERROR 2/20 : I/O ERROR 20");
  EXPECT_EQ(shown(512 + 99), "ERROR 2/99 : I/O ERROR 99");
  EXPECT_EQ(shown(512 + 100), "ERROR 2/100 : I/O ERROR 100I/O ERROR ");
  EXPECT_EQ(shown(512 + 107), "ERROR 2/107 : I/O ERROR 107");
  EXPECT_EQ(shown(512 + 255), "ERROR 2/255 : I/O ERROR 255");
  EXPECT_EQ(shown(1024), "ERROR 4/0 : ECR SIGNALS CRITICAL ERROR 0 : zero3");
  EXPECT_EQ(shown(1024 + 29), "ERROR 4/29 : ECR SIGNALS CRITICAL ERROR 29 : twentynine");
  EXPECT_EQ(shown(1024 + 200),
            "ERROR 4/200 : ECR SIGNALS CRITICAL ERROR 200 : ECR SIGNALS CRITICAL ERROR ");
  EXPECT_EQ(shown(1024 + 212), "ERROR 4/212 : ECR SIGNALS CRITICAL ERROR 212 : ");
}

TEST_F(DefinitionFile, LongLinesAndPartsAreCut) {
  // The line ends at 254 characters: the comment's end is gone, the entry stays.
  EXPECT_EQ(Read("[OPCOD]\n1=A;" + std::string(10000, 'x') + "\n2=B\n"), 1);
  EXPECT_STREQ(t().szOpCodes[2], "B");
  // The left part is cut at 79 characters, which leaves its number.
  EXPECT_EQ(Read("[OPCOD]\n" + std::string(90, '0') + "3=C\n"), 0);
}

TEST_F(DefinitionFile, AnErrorTextOfEightyCharactersIsTheLongest) {
  const std::string before = Row(t().TabErrTradBase[5]);
  for (const size_t length : {size_t{81}, size_t{85}, size_t{240}}) {
    EXPECT_EQ(Read("[ERRMSG]\n5=" + std::string(length, 'x') + "\n"), 1);
    EXPECT_EQ(Row(t().TabErrTradBase[5]), before) << length;
    EXPECT_EQ(Read("[ERRMSG]\n5='" + std::string(length, 'x') + "'\n"), 1);
    EXPECT_EQ(Row(t().TabErrTradBase[5]), before) << length;
  }
  EXPECT_EQ(Read("[ERRMSG]\n5=" + std::string(80, 'x') + "\n"), 1);
  EXPECT_EQ(Row(t().TabErrTradBase[5]), std::string(80, 'x'));
  EXPECT_EQ(Read("[ERRMSG]\n5=' " + std::string(78, 'y') + " '\n"), 1);
  EXPECT_EQ(Row(t().TabErrTradBase[5]), " " + std::string(78, 'y') + " ");
}

TEST_F(DefinitionFile, AnyBytesAreSafe) {
  std::string bytes;
  for (int round = 0; round < 20; ++round) {
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>((i * 7 + round * 13) & 0xFF);
  }
  Read(bytes);
  EXPECT_EQ(Read(std::string("[OPCOD]\n1=A\0B\n2=C\n", 18)), 1);
  EXPECT_STREQ(t().szOpCodes[1], "A");
  EXPECT_STREQ(t().szOpCodes[2], "C");
  EXPECT_EQ(Read("[OPCOD]\n1=\xFF\xFE\n"), 1);
  EXPECT_STREQ(t().szOpCodes[1], "\xFF\xFE");
}

TEST_F(DefinitionFile, TheQuoteCharacterInForceCounts) {
  t().SetQuoteChar('"');
  EXPECT_EQ(Read("[INTMSG]\n1=\" OK \"\n2=it's\n"), 1);
  EXPECT_EQ(Row(t().TabIntMsg[1]), " OK ");
  EXPECT_EQ(Row(t().TabIntMsg[2]), "it's");
}

// --- Line files

class LineFile : public DefinitionFile {
 protected:
  // The lines of a text, with the code that ended them.
  std::vector<std::string> ReadLines(const std::string& text, unsigned long limit) {
    Write("lines", text);
    fs_file_t file;
    EXPECT_NE(fs_open(&file, "lines", FS_RDONLY), FS_BADF);
    std::vector<std::string> result;
    std::vector<char> line(limit + 1);
    int length;
    while ((length = t().SeqFileRead(&file, line.data(), limit)) >= 0) {
      result.emplace_back(line.data(), static_cast<size_t>(length));
    }
    end_ = length;
    fs_close(&file);
    return result;
  }
  int end_ = 0;
};

using Lines = std::vector<std::string>;

TEST_F(LineFile, EndInLineFeedOrCarriageReturnAndLineFeed) {
  EXPECT_EQ(ReadLines("a\nb\r\n\nc", 10), (Lines{"a", "b", "", "c"}));
  EXPECT_EQ(end_, -1);
  EXPECT_EQ(ReadLines("", 10), Lines{});
  EXPECT_EQ(ReadLines("\r\n", 10), Lines{""});
  EXPECT_EQ(ReadLines("a\r\r\n", 10), Lines{"a\r"});
  EXPECT_EQ(ReadLines("a\r", 10), Lines{"a"});
}

TEST_F(LineFile, DropWhatPassesTheLimit) {
  EXPECT_EQ(ReadLines("abcdefg\nhi\n", 5), (Lines{"abcde", "hi"}));
  EXPECT_EQ(ReadLines("abcd\r\nx\n", 5), (Lines{"abcd", "x"}));
  EXPECT_EQ(ReadLines("abcde\r\nx\n", 5), (Lines{"abcde", "x"}));
}

TEST_F(LineFile, LongLinesKeepTheNextLineWhole) {
  for (const size_t size : {1022u, 1023u, 1024u, 1025u, 2048u, 5000u, 1048576u}) {
    const std::string long_line(size, 'x');
    const Lines got = ReadLines(long_line + "\nnext\r\nlast", 2047);
    ASSERT_EQ(got.size(), 3u) << size;
    EXPECT_EQ(got[0], long_line.substr(0, 2047)) << size;
    EXPECT_EQ(got[1], "next") << size;
    EXPECT_EQ(got[2], "last") << size;
  }
}

TEST_F(LineFile, LeaveTheFileBehindTheLine) {
  Write("lines", "one\ntwo\n");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, "lines", FS_RDONLY), FS_BADF);
  char line[16];
  EXPECT_EQ(t().SeqFileRead(&file, line, 15), 3);
  EXPECT_EQ(fs_lseek(&file, 0, FS_SEEK_CUR), 4);
  fs_close(&file);
}

TEST_F(LineFile, ReadErrorsAreNoEnd) {
  Write("lines", "x");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, "lines", FS_WRONLY), FS_BADF);
  char line[16] = "old";
  EXPECT_EQ(t().SeqFileRead(&file, line, 15), -2);
  EXPECT_STREQ(line, "");
  fs_close(&file);
}

TEST_F(LineFile, PipesAreReadByteByByte) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(::write(ends[1], "first\r\nsecond\n", 14), 14);
  close(ends[1]);
  fs_file_t file = ends[0];
  char line[16];
  EXPECT_EQ(t().SeqFileRead(&file, line, 15), 5);
  EXPECT_STREQ(line, "first");
  EXPECT_EQ(t().SeqFileRead(&file, line, 15), 6);
  EXPECT_STREQ(line, "second");
  EXPECT_EQ(t().SeqFileRead(&file, line, 15), -1);
  close(ends[0]);
}

TEST_F(LineFile, AreWrittenWithCarriageReturnAndLineFeed) {
  fs_file_t file;
  ASSERT_NE(fs_open_binary(&file, "out", FS_CREATE_TRUNC), FS_BADF);
  char line[] = "a line";
  EXPECT_TRUE(t().SeqFileWrite(&file, line));
  char empty[] = "";
  EXPECT_TRUE(t().SeqFileWrite(&file, empty));
  fs_close(&file);
  std::ifstream in("out", std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "a line\r\n\r\n");
  fs_file_t bad = -1;
  EXPECT_FALSE(t().SeqFileWrite(&bad, line));
}

TEST_F(LineFile, AFullDiskShows) {
  fs_file_t file;
  ASSERT_NE(fs_open_binary(&file, "/dev/full", FS_WRONLY), FS_BADF);
  char line[] = "a line";
  EXPECT_FALSE(t().SeqFileWrite(&file, line));
  fs_close(&file);
}

}  // namespace
