#include "register_work.h"

#include <fmt/format.h>

#include <ctime>

#include "bench_tools.h"
#include "register/desk/articles.h"

lorimat::RegisterSettings WorkSettings(const std::string& file) {
  lorimat::RegisterSettings settings;
  settings.file = file;
  settings.clock = [] {
    std::tm morning{};
    morning.tm_year = 2024 - 1900;
    morning.tm_mday = 15;
    morning.tm_hour = 10;
    return morning;
  };
  return settings;
}

void SellFiveLines(RtfClientInterface& device) {
  struct Line {
    const char* description;
    long price;
    int department;
  };
  static constexpr Line kLines[] = {{"CAFFE MACCHIATO", 12000, 2},
                                    {"PANE DI CASA", 29300, 4},
                                    {"LATTE FRESCO", 15000, 4},
                                    {"GIORNALE", 17000, 1},
                                    {"ACQUA MINERALE", 9900, 3}};
  bool sold = device.BeginFiscalReceipt(true) == 0;
  for (const Line& line : kLines) {
    sold = sold && device.PrintRecItemEx(0, line.description, line.price, 0, -1, 0, "",
                                         line.department, true, "") == 0;
  }
  Require(sold && device.PrintRecTotalEx(0, "0", true) == 0, "the register refuses a sale");
}

std::vector<lorimat::Article> Articles(int count) {
  std::vector<lorimat::Article> articles;
  for (int number = 0; number < count; ++number) {
    // As a shop has them: in no order.
    const int64_t mixed = int64_t{number} * 48271 % 2147483647;
    articles.push_back({fmt::format("800{:010}", mixed), fmt::format("ARTICOLO NUMERO {}", number),
                        1 + number % 40, (1 + number % 9999) * lorimat::kCent});
  }
  return articles;
}

std::vector<std::string> ArticleRows(int count) {
  std::vector<std::string> rows;
  for (const lorimat::Article& article : Articles(count)) {
    rows.push_back(lorimat::FormatArticleRow(article));
  }
  return rows;
}

void UploadArticles(RtfClientInterface& device, const std::vector<std::string>& rows) {
  enum Step { kOpen, kRow, kClose };
  constexpr int kTable = lorimat::ArticleLink::kArticleTable;
  Require(device.UploadTable(kTable, kOpen, "") == 0, "the register opens no transfer");
  for (const std::string& row : rows) {
    Require(device.UploadTable(kTable, kRow, row.c_str()) == 0, "the register refuses an article");
  }
  Require(device.UploadTable(kTable, kClose, "") == 0, "the register does not end the transfer");
}
