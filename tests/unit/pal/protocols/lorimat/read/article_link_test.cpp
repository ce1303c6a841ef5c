// The exchange of the article table with files where a conversation does not reach: the waits,
// tables without end, and the fields that are only stored.

#include "pal/protocols/lorimat/read/article_link.h"

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

#include "pal/threading/posix/thread.h"
#include "unit/support/table_device.h"

namespace {

std::vector<int> naps;

class ArticleLink : public TableTest {
 protected:
  ArticleLink() {
    naps.clear();
    before_ = Thread::SetSleepFunction([](int milliseconds) { naps.push_back(milliseconds); });
  }
  ~ArticleLink() override { Thread::SetSleepFunction(before_); }

 private:
  Thread::SleepFunction before_;
};

const std::string kOpen = "UploadTable(1,0,)";
const std::string kClose = "UploadTable(1,2,)";

TEST_F(ArticleLink, ASyntaxCodeIsNoErrorOfTheDevice) {
  EXPECT_TRUE(IsDeviceError(619));
  EXPECT_TRUE(IsDeviceError(0x4000 | 0x200 | 5));
  EXPECT_FALSE(IsDeviceError(0x4000 | 5));
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
              Run(std::string("EMLINK CMD='DA', FILE='arts', ERR='errors', SVUOTA") + selection));
    EXPECT_EQ("ERROR 32/3 : EM_LINK ERROR  : FILE OPEN ", answer_text);
    EXPECT_EQ("ERROR 32/3 : EM_LINK ERROR  : FILE OPEN \r\n", File("errors"));
    EXPECT_EQ(kMillion + 1, endless.asked);
    EXPECT_EQ(3u * kMillion, std::filesystem::file_size("arts"));  // "R", CR, LF a row
    EXPECT_EQ(0, endless.erased);
  }
}

TEST_F(ArticleLink, AMillionArticlesAreTaken) {
  // A selection ends where the device refuses: its rows are whole, and may be erased.
  EndlessArticles selected(kMillion);
  translator->rtfClient_ = &selected;
  EXPECT_EQ(0, Run("EMLINK CMD='DA', FILE='arts', SELEZ=1, SVUOTA"));
  EXPECT_EQ(3u * kMillion, std::filesystem::file_size("arts"));
  EXPECT_EQ(1, selected.erased);
  // Without a selection a refusal is an error, told with its code: 107 and the class 512.
  EndlessArticles refused(kMillion);
  translator->rtfClient_ = &refused;
  EXPECT_EQ(619, Run("EMLINK CMD='DA', FILE='arts', SVUOTA"));
  EXPECT_EQ(0, refused.erased);
}

// --- Erase

TEST_F(ArticleLink, OnlyMinusOneCountsAsUnreachable) {
  WriteFile("arts", "");
  device.Refuse("GetIntProperty", 107);
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts', AZZERA"));
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
  client.Refuse("EraseTable", 107);
  client.failures = 89;
  WriteFile("arts", "");
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts', AZZERA"));
  EXPECT_EQ(91, client.reads);
  EXPECT_EQ(std::vector<int>(89, 1000), naps);
}

TEST_F(ArticleLinkLost, TheWaitBehindARefusedEraseHas90Reads) {
  translator->rtfClient_ = &client;
  client.Refuse("EraseTable", 107);
  client.failures = 90;
  WriteFile("arts", "");
  EXPECT_EQ(1280, Run("EMLINK CMD='UA', FILE='arts', AZZERA"));
  EXPECT_EQ(91, client.reads);
  EXPECT_EQ(std::vector<int>(90, 1000), naps);
  EXPECT_TRUE(client.CallsOf("UploadTable").empty());
}

TEST_F(ArticleLinkLost, ADownloadEndsWithTheSameCode) {
  translator->rtfClient_ = &client;
  client.Refuse("EraseTable", 107);
  client.failures = 1000;
  client.items[109] = "1";
  client.rows = {"A"};
  EXPECT_EQ(1280, Run("EMLINK CMD='DA', FILE='arts', SVUOTA"));
  EXPECT_EQ("A\r\n", File("arts"));
}

// --- Fields that are stored

TEST_F(ArticleLink, FieldsGoToTheLinksMembers) {
  WriteFile("arts", "");
  translator->bFlgFlush = true;
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts', BLOCCO, INFO, SELEZ=3, REP=4, FILTRO=7, LIVELLO,"
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
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts', BLOCCO=5, LIVELLO=2, FILTRO=0"));
  EXPECT_EQ(5, translator->iEM_FlgBlock);
  EXPECT_EQ(2, translator->iEM_LivTradDC);
  EXPECT_EQ(0, translator->iEM_FiltroMov);
  EXPECT_FALSE(translator->bEM_FlgFlush);
  EXPECT_TRUE(translator->bFlgFlush);  // as it was before the line
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts', LIVELLO=3, MOVIM='12345'"));
  EXPECT_EQ(0, translator->iEM_LivTradDC);
  EXPECT_EQ(-1, translator->iEM_FiltroMov);
  EXPECT_EQ(0, translator->iEM_SelezFlg);
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts', FILTRO=0, MOVIM='123456'"));
  EXPECT_EQ(1, translator->iEM_FiltroMov);
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts', LIVELLO=1, MOVIM='1234567'"));
  EXPECT_EQ(1, translator->iEM_LivTradDC);
  EXPECT_EQ(-1, translator->iEM_FiltroMov);
}

TEST_F(ArticleLink, AnUploadCountsWhatItHasRead) {
  WriteFile("arts", "1;A\r\n\r\n; two\r\n2;BC\r\n");
  EXPECT_EQ(0, Run("EMLINK CMD='UA', FILE='arts'"));
  EXPECT_EQ(20, translator->dwEMFileInSize);
  EXPECT_EQ(21, translator->dwEMFileInRead);  // beginning with 1
}

#ifndef _WIN32
// Windows has no such names, and numbers files in its own way.
TEST_F(ArticleLink, AnErrorFileOfAnyNameIsClosed) {
  WriteFile("arts", "1;A\r\n");
  const int probe = open("/dev/null", O_RDONLY);
  close(probe);
  for (const char* name : {"errors", "\x01", "\xff"}) {
    EXPECT_EQ(0, Run(std::string("EMLINK CMD='UA', FILE='arts', ERR='") + name + "'"));
    EXPECT_TRUE(Exists(name));
  }
  const int again = open("/dev/null", O_RDONLY);
  EXPECT_EQ(again, probe);
  close(again);
}
#endif

TEST_F(ArticleLink, AFailingRunRestoresTheFlushFlagToo) {
  EXPECT_EQ(8195, Run("EMLINK CMD='UA', FILE='none', FLUSH"));
  EXPECT_FALSE(translator->bFlgFlush);
}

}  // namespace
