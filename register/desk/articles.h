// The article table as rows of text, for a host that exchanges it with a file. A row reads
//
//   '8001','LATTE FRESCO',4,1.50
//
// code, description, department and price, in the currency with a point. The two texts stand
// in apostrophes, one within them is doubled; on the way in, apostrophes are needed only around
// blanks, commas and apostrophes. A price of 0 is none. Line ends behind a row do not count.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "register/core/core.h"

namespace lorimat {

class ArticleLink {
 public:
  static constexpr int kArticleTable = 1;
  // The longest row that the device gives out; with its NUL it fits a buffer of 401.
  static constexpr size_t kRowSize = 400;

  // How far a download has come. Whether an upload is open: HostSession::article_transfer.
  struct Transfer {
    size_t next = 0;       // where kNextRow goes on
    bool started = false;  // kFirst has been asked for
  };

  explicit ArticleLink(RegisterCore& core) : core_(core) {}

  // To go back to after an operation that could not be stored.
  const Transfer& Save() const { return transfer_; }
  void Restore(const Transfer& transfer) noexcept { transfer_ = transfer; }

  // selector: the table in bits 0 to 7, the selection in bits 8 to 15, the row's kind
  // (ManagerDownloadTableRowType) above. Selection 0 is the whole table, 1 to 40 the articles of
  // that department, 255 every article. index counts from 0 and goes with kRow alone.
  // RTF_E_NOEXIST behind the last row.
  int Download(int selector, int index, std::string* row);
  // step 0 opens the transfer, 1 carries a row, 2 closes it. A row outside of a transfer answers
  // RTF_EFPTR_WRONG_STATE, one that is no row RTF_E_ILLEGAL. The disk is waited for at the closing,
  // for all rows at once (RegisterCore::Keep).
  int Upload(int table, int step, std::string_view row);
  // Empties the table. 257 names the articles as 1 does: a host says so when it has fetched
  // them.
  int Erase(int table);

 private:
  RegisterCore& core_;
  Transfer transfer_;
};

std::string FormatArticleRow(const Article& article);
// False for a text that is no row.
bool ParseArticleRow(std::string_view text, Article* article);

}  // namespace lorimat
