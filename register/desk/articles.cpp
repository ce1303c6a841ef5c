#include "register/desk/articles.h"

#include <fmt/format.h>

#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "managermachine/managerdownloadtablerowtype.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

constexpr char kQuote = '\'';
constexpr int kEveryArticle = 255;
constexpr int kEraseBehindDownload = ArticleLink::kArticleTable | 0x100;

std::string Quoted(std::string_view text) {
  std::string quoted(1, kQuote);
  for (const char c : text) {
    if (c == kQuote) quoted += kQuote;
    quoted += c;
  }
  return quoted + kQuote;
}

// The columns of a row. Nothing when an apostrophe is left open, or when something follows a
// closed one.
std::optional<std::vector<std::string>> SplitRow(std::string_view text) {
  std::vector<std::string> columns(1);
  size_t at = 0;
  bool fresh = true;  // at the start of a column
  while (at < text.size()) {
    const char c = text[at];
    if (c == ',') {
      columns.emplace_back();
      fresh = true;
      ++at;
      continue;
    }
    if (c != kQuote || !fresh) {
      if (c == kQuote) return std::nullopt;
      columns.back() += c;
      fresh = false;
      ++at;
      continue;
    }
    for (++at;; ++at) {
      if (at >= text.size()) return std::nullopt;
      if (text[at] == kQuote) {
        if (at + 1 >= text.size() || text[at + 1] != kQuote) break;
        ++at;
      }
      columns.back() += text[at];
    }
    ++at;
    if (at < text.size() && text[at] != ',') return std::nullopt;
  }
  return columns;
}

int NoTable(int table) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kTable, {table});
}

}  // namespace

std::string FormatArticleRow(const Article& article) {
  return fmt::format("{},{},{},{}.{:02}", Quoted(article.code), Quoted(article.description),
                     article.department, article.price / kCurrencyUnit,
                     article.price % kCurrencyUnit / kCent);
}

bool ParseArticleRow(std::string_view text, Article* article) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
  const std::optional<std::vector<std::string>> columns = SplitRow(text);
  constexpr size_t kColumns = 4;
  if (!columns || columns->size() != kColumns) return false;
  const std::optional<int64_t> department = ParseDecimal((*columns)[2], 0, 0);
  const std::optional<int64_t> cents = ParseDecimal((*columns)[3], 2, 0);
  if (!department || *department > std::numeric_limits<int>::max()) return false;
  if (!cents || *cents > std::numeric_limits<Amount>::max() / kCent) return false;
  article->code = (*columns)[0];
  article->description = (*columns)[1];
  article->department = static_cast<int>(*department);
  article->price = *cents * kCent;
  return true;
}

int ArticleLink::Download(int selector, int index, std::string* row) {
  using RowType = ManagerDownloadTableRowType;
  if (selector < 0 || (selector & 0xFF) != kArticleTable) return NoTable(selector);
  const int selection = (selector >> 8) & 0xFF;
  const std::vector<Article>& articles = core_.tables.settings().articles;
  const bool every = selection == 0 || selection == kEveryArticle;
  const auto chosen = [every, selection](const Article& article) {
    return every || article.department == selection;
  };
  size_t at = 0;
  size_t skip = 0;  // chosen articles to pass over from there
  const int kind = selector >> 16;
  switch (kind) {
    case RowType::kRow:
      if (index < 0) {
        return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kTableRow, {index});
      }
      // A whole table is not counted through for each of its rows.
      (every ? at : skip) = static_cast<size_t>(index);
      break;
    case RowType::kFirst:
      transfer_.started = false;
      break;
    case RowType::kLast:
      at = articles.size();
      while (at > 0 && !chosen(articles[at - 1])) --at;
      if (at == 0) return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingInRange);
      --at;
      break;
    case RowType::kNextRow:
      if (!transfer_.started) return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingInRange);
      at = transfer_.next;
      break;
    default:
      return NoTable(selector);
  }
  for (; at < articles.size(); ++at) {
    if (!chosen(articles[at]) || skip-- > 0) continue;
    *row = FormatArticleRow(articles[at]);
    if (kind != RowType::kRow) {
      transfer_.next = at + 1;
      transfer_.started = true;
    }
    return RTF_SUCCESS;
  }
  return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingInRange);
}

int ArticleLink::Upload(int table, int step, std::string_view row) {
  enum Step { kOpen, kRow, kClose };
  if (table != kArticleTable) return NoTable(table);
  switch (step) {
    case kOpen:
      if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
      core_.session.article_transfer = true;
      return RTF_SUCCESS;
    case kRow: {
      if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
      if (!core_.session.article_transfer) {
        return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kUploadNotBegun);
      }
      Article article;
      if (!ParseArticleRow(row, &article)) {
        return Refuse(RTF_E_ILLEGAL, RefusalCause::kArticleRow, {}, row);
      }
      return core_.tables.SetArticle(std::move(article));
    }
    case kClose:
      if (!core_.session.article_transfer) {
        return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kUploadNotBegun);
      }
      core_.session.article_transfer = false;
      return RTF_SUCCESS;
    default:
      return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kTableRow, {step});
  }
}

int ArticleLink::Erase(int table) {
  if (table != kArticleTable && table != kEraseBehindDownload) return NoTable(table);
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  core_.tables.EraseArticles();
  transfer_.started = false;
  return RTF_SUCCESS;
}

}  // namespace lorimat
