// Articles as rows of text: their form, the transfer, selections, and what is refused.
#include "register/desk/articles.h"

#include <cstring>
#include <random>

#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

constexpr int kFirst = 1 << 16;
constexpr int kLast = 2 << 16;
constexpr int kNext = 4 << 16;

constexpr int Selection(int number) { return 1 | number << 8; }

class ArticlesTest : public RegisterTest {
 protected:
  std::string Download(int selector, int index = 0) {
    char row[401];
    std::memset(row, '#', sizeof row);
    const int code = device.DownloadTable(selector, index, row);
    return code == RTF_SUCCESS ? row : "refused " + std::to_string(code);
  }
  int Upload(const std::string& row) { return device.UploadTable(1, 1, row.c_str()); }
  void Open() { ASSERT_EQ(device.UploadTable(1, 0, ""), RTF_SUCCESS); }
};

TEST_F(ArticlesTest, RowsByIndex) {
  EXPECT_EQ(Download(1, 0), "'8001','LATTE',4,1.50");
  EXPECT_EQ(Download(1, 1), "'FREE','SENZA PREZZO',1,0.00");
  EXPECT_EQ(Download(1, 2), "refused 109");
  EXPECT_EQ(Download(1, INT32_MAX), "refused 109");
  EXPECT_EQ(Download(1, -1), "refused 106");
  for (const int selector : {0, 2, 256, -1, INT32_MIN, 1 | 3 << 16, 1 | 5 << 16}) {
    EXPECT_EQ(Download(selector, 0), "refused 106") << selector;
  }
  EXPECT_EQ(device.DownloadTable(1, 0, nullptr), RTF_E_ILLEGAL);
}

TEST_F(ArticlesTest, ATransferAddsAndReplaces) {
  EXPECT_EQ(Upload("'9','X',1,1.00"), RTF_EFPTR_WRONG_STATE);  // not open
  EXPECT_EQ(device.UploadTable(1, 2, ""), RTF_EFPTR_WRONG_STATE);
  Open();
  // With the line end as a host sends it.
  EXPECT_EQ(Upload("'8001','LATTE \"FRESCO\", L''ORO',2,2.35\n\r"), RTF_SUCCESS);
  EXPECT_EQ(Upload("77,PANE,1,3"), RTF_SUCCESS);
  EXPECT_EQ(Upload("78,,1,.5\r\n"), RTF_SUCCESS);
  EXPECT_EQ(device.UploadTable(1, 2, ""), RTF_SUCCESS);
  EXPECT_EQ(Upload("'9','X',1,1.00"), RTF_EFPTR_WRONG_STATE);  // closed
  EXPECT_EQ(Download(1, 0), "'8001','LATTE \"FRESCO\", L''ORO',2,2.35");
  EXPECT_EQ(Download(1, 2), "'77','PANE',1,3.00");
  EXPECT_EQ(Download(1, 3), "'78','',1,0.50");
  EXPECT_EQ(Item(109), "4");
  // And they sell.
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(device.PrintRecItemEx(0, "", -1, 0, -1, 0, "", -1, true, "8001"), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().by_vat(), (std::map<int, Amount>{{2, 23500}}));
}

TEST_F(ArticlesTest, RowsThatAreNoneAreRefused) {
  Open();
  const char* rows[] = {"",
                        "\n\r",
                        "'9'",
                        "'9','X',1",
                        "'9','X',1,1.00,",
                        "'9','X,1,1.00",
                        "'9'9,'X',1,1.00",
                        "9'9,'X',1,1.00",
                        "'','X',1,1.00",
                        "'9','X','1',-1",
                        "'9','X',1,1.005",
                        "'9','X',1,1,00",
                        "'9','X',,1.00",
                        "'9','X',1,",
                        "'9','X',x,1.00",
                        "'9','X',99999999999,1.00",
                        "'9','X',1,99999999999999999999"};
  for (const char* row : rows) EXPECT_EQ(Upload(row), RTF_E_ILLEGAL) << row;
  EXPECT_EQ(Upload("'9','X',41,1.00"), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(Upload("'9','X',0,1.00"), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(Upload("'9','X',1,100000.00"), RTF_EFPTR_BAD_PRICE);
  EXPECT_EQ(Upload("'" + std::string(21, '9') + "','X',1,1"), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(Upload("9," + std::string(33, 'X') + ",1,1"), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(Upload(std::string(5000, 'X')), RTF_E_ILLEGAL);
  EXPECT_EQ(device.UploadTable(1, 1, nullptr), RTF_E_ILLEGAL);
  for (const int table : {0, 2, -1, 257}) {
    EXPECT_EQ(device.UploadTable(table, 0, ""), RTF_E_ILLEGAL);
    EXPECT_EQ(device.UploadTable(table, 1, "9,X,1,1"), RTF_E_ILLEGAL);
  }
  EXPECT_EQ(device.UploadTable(1, 3, ""), RTF_E_ILLEGAL);
  EXPECT_EQ(device.UploadTable(1, -1, ""), RTF_E_ILLEGAL);
  EXPECT_EQ(Item(109), "2");
  // At their limits they are taken.
  EXPECT_EQ(Upload(std::string(20, '9') + "," + std::string(32, 'X') + ",40,99999.99"),
            RTF_SUCCESS);
  EXPECT_EQ(Download(1, 2),
            "'" + std::string(20, '9') + "','" + std::string(32, 'X') + "',40,99999.99");
}

TEST_F(ArticlesTest, SelectionsGoByDepartment) {
  Open();
  ASSERT_EQ(Upload("A,UNO,4,1"), RTF_SUCCESS);
  ASSERT_EQ(Upload("B,DUE,1,2"), RTF_SUCCESS);
  ASSERT_EQ(Upload("C,TRE,4,3"), RTF_SUCCESS);
  EXPECT_EQ(Download(Selection(4) | kNext), "refused 109");  // before the first
  EXPECT_EQ(Download(Selection(4) | kFirst), "'8001','LATTE',4,1.50");
  EXPECT_EQ(Download(Selection(4) | kNext), "'A','UNO',4,1.00");
  EXPECT_EQ(Download(Selection(4) | kNext), "'C','TRE',4,3.00");
  EXPECT_EQ(Download(Selection(4) | kNext), "refused 109");
  EXPECT_EQ(Download(Selection(4) | kLast), "'C','TRE',4,3.00");
  EXPECT_EQ(Download(Selection(4), 1), "'A','UNO',4,1.00");
  EXPECT_EQ(Download(Selection(4), 3), "refused 109");
  EXPECT_EQ(Download(Selection(2) | kFirst), "refused 109");
  EXPECT_EQ(Download(Selection(2) | kNext), "refused 109");
  EXPECT_EQ(Download(Selection(2) | kLast), "refused 109");
  EXPECT_EQ(Download(Selection(255) | kFirst), "'8001','LATTE',4,1.50");
  EXPECT_EQ(Download(Selection(255) | kNext), "'FREE','SENZA PREZZO',1,0.00");
  EXPECT_EQ(Download(Selection(255) | kLast), "'C','TRE',4,3.00");
  EXPECT_EQ(Download(Selection(255) | kNext), "refused 109");
  EXPECT_EQ(Download(1 | kFirst), "'8001','LATTE',4,1.50");
  EXPECT_EQ(Download(1 | kNext), "'FREE','SENZA PREZZO',1,0.00");
}

TEST_F(ArticlesTest, ErasingEmptiesTheTable) {
  ASSERT_EQ(Download(1 | kFirst), "'8001','LATTE',4,1.50");
  for (const int table : {0, 2, 256, 513, -1}) EXPECT_EQ(device.EraseTable(table), RTF_E_ILLEGAL);
  EXPECT_EQ(Item(109), "2");
  EXPECT_EQ(device.EraseTable(1), RTF_SUCCESS);
  EXPECT_EQ(Item(109), "0");
  EXPECT_EQ(Download(1, 0), "refused 109");
  EXPECT_EQ(Download(1 | kNext), "refused 109");
  EXPECT_EQ(Download(1 | kLast), "refused 109");
  Open();
  ASSERT_EQ(Upload("A,UNO,4,1"), RTF_SUCCESS);
  EXPECT_EQ(device.EraseTable(257), RTF_SUCCESS);
  EXPECT_EQ(Item(109), "0");
}

TEST_F(ArticlesTest, AnOpenReceiptHoldsTheTransferUp) {
  Open();
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(Upload("A,UNO,4,1"), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.EraseTable(1), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Download(1, 0), "'8001','LATTE',4,1.50");
  device.ResetPrn();
  EXPECT_EQ(Upload("A,UNO,4,1"), RTF_SUCCESS);
}

TEST_F(ArticlesTest, TheTableHasAnEnd) {
  RegisterSettings settings = TestSettings();
  settings.articles.clear();
  for (int number = 0; number < 61000; ++number) {
    settings.articles.push_back({std::to_string(number), "X", 1, 0});
  }
  VirtualRegister full(settings);
  char count[50];
  full.GetDataInternal(109, count);
  EXPECT_STREQ(count, "60000");
  ASSERT_EQ(full.UploadTable(1, 0, ""), RTF_SUCCESS);
  EXPECT_EQ(full.UploadTable(1, 1, "NUOVO,X,1,1"), RTF_E_FAILURE);
  EXPECT_EQ(full.UploadTable(1, 1, "59999,Y,1,1"), RTF_SUCCESS);  // replaces
}

TEST_F(ArticlesTest, SettingsAreBroughtIntoForm) {
  RegisterSettings settings = TestSettings();
  settings.articles = {{std::string(30, 'c'), std::string(40, 'd'), 99, -5},
                       {"", "NESSUNO", 1, 100},
                       {"A", "PRIMO", 0, 149},
                       {"A", "SECONDO", 1, 100}};
  VirtualRegister other(settings);
  char row[401], count[50];
  ASSERT_EQ(other.DownloadTable(1, 0, row), RTF_SUCCESS);
  EXPECT_EQ(row, "'" + std::string(20, 'c') + "','" + std::string(32, 'd') + "',40,0.00");
  ASSERT_EQ(other.DownloadTable(1, 1, row), RTF_SUCCESS);
  EXPECT_STREQ(row, "'A','PRIMO',1,0.01");
  other.GetDataInternal(109, count);
  EXPECT_STREQ(count, "2");
}

// Whatever an article holds, its row brings the same article back, and fits a host's buffer.
TEST_F(ArticlesTest, EveryArticleComesBackFromItsRow) {
  std::mt19937 random(20240115);
  const auto text = [&random](size_t most) {
    std::string made(random() % (most + 1), ' ');
    for (char& c : made) {
      // Quotes and commas often, any printable byte else.
      const unsigned pick = static_cast<unsigned>(random()) % 4;
      c = pick == 0 ? '\'' : pick == 1 ? ',' : static_cast<char>(0x20 + random() % 0xE0);
      if (c == '\x7f') c = ' ';
    }
    return made;
  };
  for (int round = 0; round < 20000; ++round) {
    Article article;
    article.code = text(Tables::kArticleCodeSize);
    article.description = text(Tables::kDescriptionSize);
    article.department = static_cast<int>(random() % 40) + 1;
    article.price = static_cast<Amount>(random() % 10000000) * kCent;
    const std::string row = FormatArticleRow(article);
    ASSERT_LE(row.size(), ArticleLink::kRowSize);
    Article back;
    ASSERT_TRUE(ParseArticleRow(row, &back)) << row;
    ASSERT_EQ(back.code, article.code);
    ASSERT_EQ(back.description, article.description);
    ASSERT_EQ(back.department, article.department);
    ASSERT_EQ(back.price, article.price);
  }
}

}  // namespace
}  // namespace lorimat
