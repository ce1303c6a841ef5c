// The exchange of the article table with files.

#include "pal/protocols/lorimat/read/article_link.h"

#include "pal/threading/posix/thread.h"
#include "unit/support/table_device.h"

namespace {

std::vector<int> naps;

class ArticleLink : public TableTest {
 protected:
  ArticleLink() {
    naps.clear();
    before_ = Thread::set_sleep_function([](int milliseconds) { naps.push_back(milliseconds); });
  }
  ~ArticleLink() override { Thread::set_sleep_function(before_); }

 private:
  Thread::SleepFunction before_;
};

const std::string kOpen = "UploadTable(1,0,)";
const std::string kClose = "UploadTable(1,2,)";

std::string Row(const std::string& text) { return "UploadTable(1,1," + text + "\n\r)"; }

// --- Upload

TEST_F(ArticleLink, AnUploadSendsEveryLineWithItsEnding) {
  write_file("arts", "1;PANE\r\n  'A;B'\tX  \n\n;comment\n2 ; rest\r\nlast");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_EQ((Calls{kOpen, Row("1"), Row("'A;B' X"), Row("2"), Row("last"), kClose}), device.calls);
  EXPECT_EQ("OK.(4 Lines   0 msec)", answer_text);
  EXPECT_EQ(4, translator->Stat.lEMTotLines);
  EXPECT_EQ(6, translator->Stat.lEMCurLine);
}

TEST_F(ArticleLink, AnEmptyFileOpensAndClosesTheTransfer) {
  write_file("arts", "");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_EQ((Calls{kOpen, kClose}), device.calls);
  EXPECT_EQ("OK.(0 Lines   0 msec)", answer_text);
  write_file("arts", ";one\n\n ; two\n");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_EQ(4u, device.calls.size());
}

TEST_F(ArticleLink, TheDirectionIsItsFirstTwoLettersInAnyCase) {
  write_file("arts", "");
  for (const char* word : {"ua", "Ua", "UALL", "uA2"}) {
    device.calls.clear();
    EXPECT_EQ(0, run(std::string("EMLINK FILE='arts', CMD='") + word + "'"));
    EXPECT_EQ((Calls{kOpen, kClose}), device.calls) << word;
  }
  device.items[109] = "0";
  EXPECT_EQ(0, run("EMLINK FILE='arts', CMD='dato'"));
  EXPECT_EQ("GetDataInternal(109)", device.calls.back());
}

TEST_F(ArticleLink, FileNamesAreMadeSmall) {
  write_file("arts", "");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='ARTS', ERR='Errors'"));
  EXPECT_TRUE(exists("errors"));
  EXPECT_STREQ("arts", translator->szEM_FileIn);
  EXPECT_STREQ("errors", translator->szEM_FileErr);
}

TEST_F(ArticleLink, ARefusedRowDoesNotStopTheOthers) {
  write_file("arts", "1\n2\n;\n3\n");
  device.refuse("UploadTable(1,1,2", 107);
  device.refuse("UploadTable(1,1,3", 207);
  EXPECT_EQ(8193, run("EMLINK CMD='UA', FILE='arts', ERR='errors'"));
  EXPECT_EQ((Calls{kOpen, Row("1"), Row("2"), Row("3"), kClose}), device.calls);
  EXPECT_EQ("ERROR 32/1 : ERRORS DURING EXECUTION (2 Errors   2 ECR-Errors)", answer_text);
  EXPECT_EQ(
      "ERROR 2/107 in line 2 : I/O ERROR 107\r\n"
      "ERROR 4/207 in line 4 : ECR SIGNALS CRITICAL ERROR 207 : \r\n",
      file("errors"));
  EXPECT_EQ(3, translator->Stat.lEMTotLines);
}

TEST_F(ArticleLink, ARefusedRowWithoutErrorFileLeavesNone) {
  write_file("arts", "1\n");
  device.refuse("UploadTable(1,1", 107);
  EXPECT_EQ(8193, run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_FALSE(translator->Stat.bEMLineErr);  // the unseen text has taken the line's flag
  EXPECT_EQ("ERROR 32/1 : ERRORS DURING EXECUTION (1 Errors   1 ECR-Errors)", answer_text);
}

TEST_F(ArticleLink, ASyntaxCodeIsNoErrorOfTheDevice) {
  EXPECT_TRUE(is_device_error(619));
  EXPECT_TRUE(is_device_error(0x4000 | 0x200 | 5));
  EXPECT_FALSE(is_device_error(0x4000 | 5));
}

TEST_F(ArticleLink, OpeningAndClosingTheTransferMayFail) {
  write_file("arts", "1\n");
  device.refuse("UploadTable(1,0", 107);
  device.refuse("UploadTable(1,2", 107);
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_EQ((Calls{kOpen, Row("1"), kClose}), device.calls);
}

TEST_F(ArticleLink, LongLinesAreCutTo2047) {
  write_file("arts", std::string(5000, 'a') + "\n" + std::string(2047, 'b') + "\nc\n");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_EQ(
      (Calls{kOpen, Row(std::string(2047, 'a')), Row(std::string(2047, 'b')), Row("c"), kClose}),
      device.calls);
  EXPECT_EQ(7051, translator->dwEMFileInSize);
  EXPECT_EQ(1 + 2049 + 2049 + 3, translator->dwEMFileInRead);
}

TEST_F(ArticleLink, CountersStartAgainWithEveryUpload) {
  write_file("arts", "1\n2\n");
  device.refuse("UploadTable(1,1", 107);
  EXPECT_EQ(8193, run("EMLINK CMD='UA', FILE='arts'"));
  device.allow_all();
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_EQ("OK.(2 Lines   0 msec)", answer_text);
  EXPECT_EQ(0, translator->Stat.lEMTotErr);
  EXPECT_EQ(0, translator->Stat.lEMTotErrEcr);
}

TEST_F(ArticleLink, AFileThatIsNotThereIsTold) {
  EXPECT_EQ(8195, run("EMLINK CMD='UA', FILE='none', ERR='errors'"));
  EXPECT_EQ("ERROR 32/3 : EM_LINK ERROR  : FILE OPEN ", answer_text);
  EXPECT_EQ("ERROR 32/3 : EM_LINK ERROR  : FILE OPEN \r\n", file("errors"));
  EXPECT_EQ(8195, run("EMLINK CMD='UA'"));
  EXPECT_EQ(8195, run("EMLINK CMD='DA', FILE='none/none'"));
  EXPECT_EQ(8195, run("EMLINK CMD='DA', FILE='none', AGGIUNGI"));
  EXPECT_FALSE(exists("none"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ArticleLink, TheErrorFileIsJudgedFirstThenTheDataFileThenTheDirection) {
  EXPECT_EQ(8196, run("EMLINK CMD='X', FILE='none/d', ERR='none/e'"));
  EXPECT_EQ("ERROR 32/4 : EM_LINK ERROR  : ERR FILE OPEN ERROR ", answer_text);
  EXPECT_EQ(8195, run("EMLINK CMD='X', FILE='none/d'"));
  EXPECT_EQ(8194, run("EMLINK CMD='X', FILE='d', ERR='e'"));
  EXPECT_EQ("ERROR 32/2 : EM_LINK ERROR  : ILLEGAL COMMAND ", answer_text);
  EXPECT_EQ("ERROR 32/2 : EM_LINK ERROR  : ILLEGAL COMMAND \r\n", file("e"));
  EXPECT_TRUE(exists("d"));
  EXPECT_EQ(8194, run("EMLINK FILE='d'"));
  EXPECT_EQ(8194, run("EMLINK CMD='U', FILE='d'"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ArticleLink, OneNameForBothFilesIsRefusedWithItsRowsKept) {
  write_file("arts", "1\n");
  EXPECT_EQ(8196, run("EMLINK CMD='UA', FILE='arts', ERR='ARTS'"));
  EXPECT_EQ("1\n", file("arts"));
}

TEST_F(ArticleLink, NamesThatDoNotFitAreRefusedAndNotCut) {
  const std::string name(63, 'n');
  write_file(name, "1\n");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='" + name + "'"));
  EXPECT_EQ(8195, run("EMLINK CMD='UA', FILE='" + name + "n'"));
  EXPECT_EQ(8195, run("EMLINK CMD='DA', FILE='" + name + "n'"));
  EXPECT_EQ(8196, run("EMLINK CMD='UA', FILE='a', ERR='" + name + "n'"));
  EXPECT_EQ("1\n", file(name));
}

// --- Download

TEST_F(ArticleLink, ADownloadFetchesEveryRow) {
  device.items[109] = "3";
  device.rows = {"1;PANE", "2;L'ORTO", std::string(400, 'r'), "one too many"};
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', LISTA"));
  EXPECT_EQ((Calls{"GetDataInternal(109)", "DownloadTable(1,0)", "DownloadTable(1,1)",
                   "DownloadTable(1,2)"}),
            device.calls);
  EXPECT_EQ("1;PANE\r\n2;L'ORTO\r\n" + std::string(400, 'r') + "\r\n", file("arts"));
}

TEST_F(ArticleLink, ARowIsCutToItsLength) {
  device.items[109] = "1";
  device.rows = {std::string(450, 'r')};
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts'"));
  EXPECT_EQ(std::string(400, 'r') + "\r\n", file("arts"));
}

TEST_F(ArticleLink, ADownloadShowsTheLinesOfTheLastUpload) {
  write_file("up", "1\n2\n");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='up'"));
  device.items[109] = "0";
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='down'"));
  EXPECT_EQ("OK.(2 Lines   0 msec)", answer_text);
  EXPECT_EQ(0, run("CLEAR"));
  EXPECT_EQ("OK.", answer_text);
}

TEST_F(ArticleLink, ADownloadLeavesALongerTailAndAppendsWhenAsked) {
  device.items[109] = "1";
  device.rows = {"AB"};
  write_file("arts", "0123456789");
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts'"));
  EXPECT_EQ("AB\r\n456789", file("arts"));
  device.rewind();
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', AGGIUNGI"));
  EXPECT_EQ("AB\r\n456789AB\r\n", file("arts"));
}

TEST_F(ArticleLink, ARefusedRowEndsTheDownloadWithItsCode) {
  device.items[109] = "5";
  device.rows = {"1", "2", "3", "4", "5"};
  device.refuse("DownloadTable(1,2)", 107);
  EXPECT_EQ(619, run("EMLINK CMD='DA', FILE='arts', ERR='errors', SVUOTA"));
  EXPECT_EQ("1\r\n2\r\n", file("arts"));
  EXPECT_EQ("ERROR 2/107 : I/O ERROR 107\r\n", file("errors"));
  EXPECT_EQ("ERROR 2/107 : I/O ERROR 107", answer_text);
  EXPECT_TRUE(device.calls_of("EraseTable").empty());
  device.allow_all();
  EXPECT_EQ(111 | 0x200, run("EMLINK CMD='DA', FILE='arts'"));  // the rows have run out
}

TEST_F(ArticleLink, AFailingDownloadWithoutErrorFileMakesNone) {
  device.items[109] = "5";
  EXPECT_EQ(111 | 0x200, run("EMLINK CMD='DA', FILE='arts'"));
  size_t files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(".")) ++files;
  EXPECT_EQ(1u, files);
}

TEST_F(ArticleLink, ASelectionRunsUntilTheDeviceRefuses) {
  device.items[109] = "0";
  device.rows = {"A", "B"};
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', SELEZ=2"));
  // Table 1, selection 2, then row type first (1) and next (4).
  EXPECT_EQ((Calls{"GetDataInternal(109)", "DownloadTable(66049,0)", "DownloadTable(262657,0)",
                   "DownloadTable(262657,0)"}),
            device.calls);
  EXPECT_EQ("A\r\nB\r\n", file("arts"));
}

TEST_F(ArticleLink, ASelectionWithoutRowsLeavesAnEmptyFile) {
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', SELEZ=1"));
  EXPECT_EQ("", file("arts"));
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', SELEZ=1, SVUOTA"));
  EXPECT_EQ("EraseTable(257)", device.calls.back());
}

TEST_F(ArticleLink, SelectionsHaveEightBits) {
  EXPECT_EQ(66305, download_selector(1, 259, 1));
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', SELEZ=-1"));
  EXPECT_EQ("DownloadTable(130817,0)", device.calls.back());  // 1 + 255 * 256 + 65536
}

TEST_F(ArticleLink, ADownloadWithoutArticlesStillErases) {
  device.items[109] = "0";
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', SVUOTA"));
  EXPECT_EQ((Calls{"GetDataInternal(109)", "GetIntProperty(16020)", "EraseTable(257)"}),
            device.calls);
  EXPECT_EQ("", file("arts"));
}

TEST_F(ArticleLink, ADiskThatIsFullKeepsTheTable) {
  device.items[109] = "3";
  device.rows = {"A", "B", "C"};
  for (const char* selection : {"", ", SELEZ=1"}) {
    device.rewind();
    device.calls.clear();
    EXPECT_EQ(8195,
              run(std::string("EMLINK CMD='DA', FILE='/dev/full', AGGIUNGI, SVUOTA") + selection));
    EXPECT_EQ(1u, device.calls_of("DownloadTable").size());
    EXPECT_TRUE(device.calls_of("EraseTable").empty());
  }
}

// A device that says it has more articles than there can be, and delivers row after row. It ends
// by itself far behind the bound, so that a test without one ends too.
class EndlessArticles : public NullClient {
 public:
  explicit EndlessArticles(int rows) : rows_(rows) {}

  int GetDataInternal(int, char* value) override {
    std::strcpy(value, "2147483647");
    return 0;
  }
  int DownloadTable(int, int, char* row) override {
    if (asked++ == rows_) return 107;
    std::strcpy(row, "R");
    return 0;
  }
  int EraseTable(int) override {
    ++erased;
    return 0;
  }

  int asked = 0;
  int erased = 0;

 private:
  const int rows_;
};

constexpr int kMillion = 1000000;

TEST_F(ArticleLink, ADownloadWithoutEndIsOneThatCannotBeWritten) {
  for (const char* selection : {"", ", SELEZ=1"}) {
    EndlessArticles endless(kMillion + 100);
    translator->rtfClient_ = &endless;
    EXPECT_EQ(8195,
              run(std::string("EMLINK CMD='DA', FILE='arts', ERR='errors', SVUOTA") + selection));
    EXPECT_EQ("ERROR 32/3 : EM_LINK ERROR  : FILE OPEN ", answer_text);
    EXPECT_EQ("ERROR 32/3 : EM_LINK ERROR  : FILE OPEN \r\n", file("errors"));
    EXPECT_EQ(kMillion + 1, endless.asked);
    EXPECT_EQ(3u * kMillion, std::filesystem::file_size("arts"));  // "R", CR, LF a row
    EXPECT_EQ(0, endless.erased);
  }
}

TEST_F(ArticleLink, AMillionArticlesAreTaken) {
  // A selection ends where the device refuses: its rows are whole, and may be erased.
  EndlessArticles selected(kMillion);
  translator->rtfClient_ = &selected;
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts', SELEZ=1, SVUOTA"));
  EXPECT_EQ(3u * kMillion, std::filesystem::file_size("arts"));
  EXPECT_EQ(1, selected.erased);
  // Without a selection a refusal is an error, told with its code: 107 and the class 512.
  EndlessArticles refused(kMillion);
  translator->rtfClient_ = &refused;
  EXPECT_EQ(619, run("EMLINK CMD='DA', FILE='arts', SVUOTA"));
  EXPECT_EQ(0, refused.erased);
}

TEST_F(ArticleLink, AnUnknownNumberOfArticlesIsNone) {
  device.refuse("GetDataInternal(109)", 107);
  EXPECT_EQ(0, run("EMLINK CMD='DA', FILE='arts'"));
  EXPECT_EQ(1u, device.calls.size());
}

// --- Erase

TEST_F(ArticleLink, AnUploadMayEraseFirst) {
  write_file("arts", "1\n");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', AZZERA"));
  EXPECT_EQ((Calls{"GetIntProperty(16020)", "EraseTable(1)", kOpen, Row("1"), kClose}),
            device.calls);
  EXPECT_TRUE(naps.empty());
}

TEST_F(ArticleLink, ARefusedEraseIsNoErrorWhileTheDeviceAnswers) {
  write_file("arts", "");
  device.refuse("EraseTable", 107);
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', AZZERA"));
  EXPECT_EQ(
      (Calls{"GetIntProperty(16020)", "EraseTable(1)", "GetIntProperty(16020)", kOpen, kClose}),
      device.calls);
  EXPECT_TRUE(naps.empty());
}

TEST_F(ArticleLink, AnUnreachableDeviceEndsTheRunAheadOfTheErase) {
  write_file("arts", "1\n");
  device.refuse("GetIntProperty", -1);
  EXPECT_EQ(1280, run("EMLINK CMD='UA', FILE='arts', ERR='errors', AZZERA"));
  EXPECT_EQ((Calls{"GetIntProperty(16020)"}), device.calls);
  EXPECT_EQ("ERROR 5/0 : ", answer_text);
  EXPECT_EQ("ERROR 5/0 : \r\n", file("errors"));
}

TEST_F(ArticleLink, OnlyMinusOneCountsAsUnreachable) {
  write_file("arts", "");
  device.refuse("GetIntProperty", 107);
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', AZZERA"));
  EXPECT_EQ((Calls{"GetIntProperty(16020)", "EraseTable(1)", kOpen, kClose}), device.calls);
}

class ArticleLinkLost : public ArticleLink {
 protected:
  // Unreachable for that many reads behind the first, with the erase refused.
  class Client : public TableDevice {
   public:
    int GetIntProperty(int property, int* value) override {
      TableDevice::GetIntProperty(property, value);
      const int read = reads++;
      return read >= 1 && read <= failures ? -1 : 0;
    }
    int reads = 0;
    int failures = 0;
  };
  Client client;
};

TEST_F(ArticleLinkLost, TheWaitBehindARefusedEraseEndsWithTheFirstAnswer) {
  translator->rtfClient_ = &client;
  client.refuse("EraseTable", 107);
  client.failures = 89;
  write_file("arts", "");
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', AZZERA"));
  EXPECT_EQ(91, client.reads);
  EXPECT_EQ(std::vector<int>(89, 1000), naps);
}

TEST_F(ArticleLinkLost, TheWaitBehindARefusedEraseHas90Reads) {
  translator->rtfClient_ = &client;
  client.refuse("EraseTable", 107);
  client.failures = 90;
  write_file("arts", "");
  EXPECT_EQ(1280, run("EMLINK CMD='UA', FILE='arts', AZZERA"));
  EXPECT_EQ(91, client.reads);
  EXPECT_EQ(std::vector<int>(90, 1000), naps);
  EXPECT_TRUE(client.calls_of("UploadTable").empty());
}

TEST_F(ArticleLinkLost, ADownloadEndsWithTheSameCode) {
  translator->rtfClient_ = &client;
  client.refuse("EraseTable", 107);
  client.failures = 1000;
  client.items[109] = "1";
  client.rows = {"A"};
  EXPECT_EQ(1280, run("EMLINK CMD='DA', FILE='arts', SVUOTA"));
  EXPECT_EQ("A\r\n", file("arts"));
}

// --- Fields that are stored

TEST_F(ArticleLink, FieldsGoToTheLinksMembers) {
  write_file("arts", "");
  translator->bFlgFlush = true;
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', BLOCCO, INFO, SELEZ=3, REP=4, FILTRO=7, LIVELLO,"
                   " OFFLINE, FLUSH, LISTA, SVUOTA, AGGIUNGI"));
  EXPECT_EQ(2, translator->iEM_Cmd);
  EXPECT_FALSE(translator->bEM_FlgReset);
  EXPECT_TRUE(translator->bEM_FlgClear);
  EXPECT_EQ(1, translator->iEM_FlgBlock);
  EXPECT_TRUE(translator->bEM_FlgAppend);
  EXPECT_TRUE(translator->bEM_FlgInfo);
  EXPECT_EQ(3, translator->iEM_SelezFlg);
  EXPECT_EQ(4, translator->iEM_SelezDpt);
  EXPECT_EQ(1, translator->iEM_FiltroMov);
  EXPECT_EQ(1, translator->iEM_LivTradDC);
  EXPECT_TRUE(translator->bEM_FlgOffLine);
  EXPECT_TRUE(translator->bEM_FlgFlush);
  EXPECT_TRUE(translator->bEM_List);
  EXPECT_TRUE(translator->bFlgFlush);
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', BLOCCO=5, LIVELLO=2, FILTRO=0"));
  EXPECT_EQ(5, translator->iEM_FlgBlock);
  EXPECT_EQ(2, translator->iEM_LivTradDC);
  EXPECT_EQ(0, translator->iEM_FiltroMov);
  EXPECT_FALSE(translator->bEM_FlgFlush);
  EXPECT_TRUE(translator->bFlgFlush);  // as it was before the line
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', LIVELLO=3, MOVIM='12345'"));
  EXPECT_EQ(0, translator->iEM_LivTradDC);
  EXPECT_EQ(-1, translator->iEM_FiltroMov);
  EXPECT_EQ(0, translator->iEM_SelezFlg);
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', FILTRO=0, MOVIM='123456'"));
  EXPECT_EQ(1, translator->iEM_FiltroMov);
  EXPECT_EQ(0, run("EMLINK CMD='UA', FILE='arts', LIVELLO=1, MOVIM='1234567'"));
  EXPECT_EQ(1, translator->iEM_LivTradDC);
  EXPECT_EQ(-1, translator->iEM_FiltroMov);
}

TEST_F(ArticleLink, AFailingRunRestoresTheFlushFlagToo) {
  EXPECT_EQ(8195, run("EMLINK CMD='UA', FILE='none', FLUSH"));
  EXPECT_FALSE(translator->bFlgFlush);
}

}  // namespace
