// The setters of the tables: what each record may hold. The limits are those of a small shop's
// register; a host's longer text is refused, not cut, so that nobody sells under half a name.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "register/tables/tables.h"
#include "register/value/device_text.h"
#include "register/value/nature.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

bool IsPrice(Amount amount) { return amount >= 0 && amount <= Tables::kMaxPresetPrice; }

bool IsSerialCharacter(char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z'); }

bool IsKind(TenderKind kind) { return kind >= TenderKind::kCash && kind <= TenderKind::kNotPaid; }

// A rate in ten-thousandths of a percent, of at most two decimals. Nothing for other texts.
std::optional<int32_t> ReadRate(std::string_view text) {
  constexpr int32_t kHundredth = 100;
  const std::optional<int64_t> rate = ParseDecimal(text, 0, 0);
  if (!rate || *rate > Tables::kMaxVatRate || *rate % kHundredth != 0) return std::nullopt;
  return static_cast<int32_t>(*rate);
}

int TooLong(Subject subject, std::string_view text, size_t longest) {
  return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, subject,
                     {static_cast<int64_t>(text.size()), static_cast<int64_t>(longest)});
}

int NoPrice(Subject subject, Amount price) {
  return RefuseValue(RTF_EFPTR_BAD_PRICE, RefusalCause::kAmountOutOfRange, subject,
                     {price, 0, Tables::kMaxPresetPrice});
}

int NotOneOf(Subject subject, int number) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, subject, {number});
}

int NoVatEntry(const Tables& tables, int entry) {
  return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoVatEntry,
                {entry, static_cast<int64_t>(tables.settings().vat_rates.size())});
}

}  // namespace

int Tables::CheckDepartment(const Department& department) const {
  if (department.name.size() > kDescriptionSize) {
    return TooLong(Subject::kDepartmentName, department.name, kDescriptionSize);
  }
  if (FindVat(department.vat) == nullptr) return NoVatEntry(*this, department.vat);
  if (!IsPrice(department.price)) return NoPrice(Subject::kPrice, department.price);
  if (!IsPrice(department.max_price)) return NoPrice(Subject::kPriceLimit, department.max_price);
  // A preset price above the limit could never be sold.
  if (department.max_price > 0 && department.price > department.max_price) {
    return Refuse(RTF_EFPTR_BAD_PRICE, RefusalCause::kPresetAboveLimit,
                  {department.price, department.max_price});
  }
  if (department.group < 0 || department.group > settings_.groups) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kGroup,
                       {department.group, 0, settings_.groups});
  }
  if (department.quantity < 0) {
    return Refuse(RTF_EFPTR_BAD_ITEM_QUANTITY, RefusalCause::kNegativeQuantity,
                  {department.quantity});
  }
  return RTF_SUCCESS;
}

int Tables::SetDepartment(int number, Department department) {
  if (FindDepartment(number) == nullptr) return NotOneOf(Subject::kDepartment, number);
  if (const int code = CheckDepartment(department)) return code;
  department.name = DeviceText(department.name);
  department.price = RoundToCents(department.price).value_or(0);
  department.max_price = RoundToCents(department.max_price).value_or(0);
  Department& row = settings_.departments[static_cast<size_t>(number) - 1];
  Note(Part::kDepartment, number, [number, old = row](Tables& tables) mutable {
    std::swap(tables.settings_.departments[static_cast<size_t>(number) - 1], old);
  });
  row = std::move(department);
  return RTF_SUCCESS;
}

int Tables::SetGroup(int index, GroupRow row) {
  if (FindGroup(index) == nullptr) return NotOneOf(Subject::kGroup, index);
  if (row.description.size() > kDescriptionSize) {
    return TooLong(Subject::kGroupText, row.description, kDescriptionSize);
  }
  if (row.password.size() > kPasswordSize) {
    return TooLong(Subject::kCredential, row.password, kPasswordSize);
  }
  row.description = DeviceText(row.description);
  row.password = DeviceText(row.password);
  GroupRow& kept = groups_[static_cast<size_t>(index) - 1];
  Note(Part::kGroup, index, [index, old = kept](Tables& tables) mutable {
    std::swap(tables.groups_[static_cast<size_t>(index) - 1], old);
  });
  kept = std::move(row);
  return RTF_SUCCESS;
}

int Tables::SetSubtender(int number, Subtender subtender) {
  if (FindSubtender(number) == nullptr) return NotOneOf(Subject::kSubtender, number);
  if (!IsKind(subtender.kind)) {
    return RefuseValue(
        RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kSubtenderKind,
        {static_cast<int64_t>(subtender.kind), static_cast<int64_t>(TenderKind::kCash),
         static_cast<int64_t>(TenderKind::kNotPaid)});
  }
  if (subtender.description.size() > kSubtenderDescriptionSize) {
    return TooLong(Subject::kSubtenderText, subtender.description, kSubtenderDescriptionSize);
  }
  if (subtender.flags > (Subtender::kGivesChange | Subtender::kKeepsRest)) {
    return NotOneOf(Subject::kSubtenderFlags, subtender.flags);
  }
  if (subtender.preset_value > kMaxPresetValue) {
    return RefuseValue(RTF_EFPTR_BAD_PRICE, RefusalCause::kAmountOutOfRange, Subject::kPresetValue,
                       {subtender.preset_value * kCent, 0, kMaxPresetValue * kCent});
  }
  subtender.description = DeviceText(subtender.description);
  const size_t tender = static_cast<size_t>(FindTender(SubtenderId(number)) - tenders_.data());
  Note(Part::kSubtender, number,
       [number, tender, old = *FindSubtender(number),
        old_tender = tenders_[tender]](Tables& tables) mutable {
         std::swap(tables.subtenders_[static_cast<size_t>(number) - 1], old);
         std::swap(tables.tenders_[tender], old_tender);
       });
  PlaceSubtender(number, std::move(subtender));
  return RTF_SUCCESS;
}

// A subtender and its tender, which keeps its place. What is not paid gives no change, whatever
// its flags say.
void Tables::PlaceSubtender(int number, Subtender subtender) {
  const bool gives_change = (subtender.flags & Subtender::kGivesChange) != 0;
  Tender made = {SubtenderId(number),
                 subtender.description.empty() ? SubtenderName(number) : subtender.description,
                 subtender.kind, gives_change && subtender.kind != TenderKind::kNotPaid};
  made.keeps_rest = (subtender.flags & Subtender::kKeepsRest) != 0 && !made.gives_change &&
                    subtender.kind == TenderKind::kTicket;
  for (Tender& tender : tenders_) {
    if (tender.id == made.id) std::swap(tender, made);
  }
  subtenders_[static_cast<size_t>(number) - 1] = std::move(subtender);
}

int Tables::SetHeaderLine(int line, std::string_view text) {
  if (line < 1 || line > kHeaderLines) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kHeaderLine,
                       {line, 1, kHeaderLines});
  }
  if (text.size() > kHeaderLineSize) return TooLong(Subject::kHeaderText, text, kHeaderLineSize);
  const size_t index = static_cast<size_t>(line) - 1;
  std::string kept = DeviceText(text);
  Note(Part::kHeader, 0, [old = settings_.header_lines](Tables& tables) mutable {
    tables.settings_.header_lines.swap(old);
  });
  if (settings_.header_lines.size() <= index) settings_.header_lines.resize(index + 1);
  settings_.header_lines[index] = std::move(kept);
  return RTF_SUCCESS;
}

int Tables::SetHeaderLines(const std::vector<std::string>& lines) {
  if (lines.size() > kHeaderLines) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kHeaderLine,
                       {static_cast<int64_t>(lines.size()), 1, kHeaderLines});
  }
  std::vector<std::string> kept;
  for (const std::string& line : lines) {
    if (line.size() > kHeaderLineSize) return TooLong(Subject::kHeaderText, line, kHeaderLineSize);
    kept.push_back(DeviceText(line));
  }
  Note(Part::kHeader, 0, [old = settings_.header_lines](Tables& tables) mutable {
    tables.settings_.header_lines.swap(old);
  });
  settings_.header_lines = std::move(kept);
  return RTF_SUCCESS;
}

int Tables::SetSerialNumber(std::string_view number) {
  if (number.size() < kShortestSerialNumber || number.size() > kSerialNumberSize) {
    return RefuseValue(
        RTF_EFPTR_BAD_LENGTH, RefusalCause::kWrongLength, Subject::kSerialNumber,
        {static_cast<int64_t>(number.size()), static_cast<int64_t>(kShortestSerialNumber),
         static_cast<int64_t>(kSerialNumberSize)});
  }
  if (!std::all_of(number.begin(), number.end(), IsSerialCharacter)) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kSerialNumber, {},
                       number);
  }
  std::string kept(number);
  Note(Part::kSerialNumber, 0, [old = settings_.serial_number](Tables& tables) mutable {
    tables.settings_.serial_number.swap(old);
  });
  settings_.serial_number = std::move(kept);
  return RTF_SUCCESS;
}

int Tables::NoteVatRate(int entry, std::string_view rate) {
  if (FindVat(entry) == nullptr) return NoVatEntry(*this, entry);
  const std::optional<int32_t> value = ReadRate(rate);
  if (!value) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotANumber, Subject::kVatRate, {}, rate);
  }
  Note(Part::kNotes, 0,
       [old = noted_rates_](Tables& tables) mutable { tables.noted_rates_.swap(old); });
  noted_rates_[entry] = *value;
  return RTF_SUCCESS;
}

int Tables::CommitVat(bool day_open) {
  Note(Part::kNotes, 0,
       [old = noted_rates_](Tables& tables) mutable { tables.noted_rates_.swap(old); });
  const std::map<int, int32_t> rates = std::exchange(noted_rates_, {});
  for (const auto& [entry, rate] : rates) {
    // The totals of the day stand by entry: a rate that changed under them would make them lie.
    if (day_open && FindVat(entry)->rate != rate) {
      return Refuse(RTF_EFPTR_DAY_END_REQUIRED, RefusalCause::kDayOpen);
    }
  }
  Note(Part::kVat, 0, [old = settings_.vat_rates](Tables& tables) mutable {
    tables.settings_.vat_rates.swap(old);
  });
  for (const auto& [entry, rate] : rates) {
    VatRate& row = settings_.vat_rates[static_cast<size_t>(entry) - 1];
    row.rate = rate;
    if (rate != 0) row.mark.clear();
    if (rate == 0 && row.mark.empty()) row.mark = kExempt.mark;
  }
  return RTF_SUCCESS;
}

int Tables::SetVatNature(int entry, const Nature& nature, bool day_open) {
  const VatRate* const before = FindVat(entry);
  if (before == nullptr) return NoVatEntry(*this, entry);
  if (before->rate == 0 && before->mark == nature.mark) return RTF_SUCCESS;
  if (day_open) return Refuse(RTF_EFPTR_DAY_END_REQUIRED, RefusalCause::kDayOpen);
  VatRate& row = settings_.vat_rates[static_cast<size_t>(entry) - 1];
  Note(Part::kVat, 0, [old = settings_.vat_rates](Tables& tables) mutable {
    tables.settings_.vat_rates.swap(old);
  });
  row = {0, std::string(nature.mark)};
  return RTF_SUCCESS;
}

int Tables::SetArticle(Article article) {
  if (article.code.empty()) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kMissing, Subject::kArticleCode);
  }
  if (article.code.size() > kArticleCodeSize) {
    return TooLong(Subject::kArticleCode, article.code, kArticleCodeSize);
  }
  if (article.description.size() > kDescriptionSize) {
    return TooLong(Subject::kArticleText, article.description, kDescriptionSize);
  }
  if (FindDepartment(article.department) == nullptr) {
    return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoDepartment,
                  {article.department, static_cast<int64_t>(settings_.departments.size())});
  }
  if (!IsPrice(article.price)) return NoPrice(Subject::kPrice, article.price);
  article.code = DeviceText(article.code);
  article.description = DeviceText(article.description);
  article.price = RoundToCents(article.price).value_or(0);
  std::vector<Article>& articles = settings_.articles;
  if (const auto found = article_places_.find(article.code); found != article_places_.end()) {
    const size_t index = found->second;
    Note(Part::kArticle, static_cast<int>(index) + 1,
         [index, old = articles[index]](Tables& tables) mutable {
           std::swap(tables.settings_.articles[index], old);
         });
    articles[index] = std::move(article);
    return RTF_SUCCESS;
  }
  if (articles.size() >= kMaxArticles) {
    return Refuse(RTF_E_FAILURE, RefusalCause::kTableFull, {static_cast<int64_t>(kMaxArticles)});
  }
  Note(Part::kArticle, static_cast<int>(articles.size()) + 1,
       [size = articles.size()](Tables& tables) {
         std::vector<Article>& rows = tables.settings_.articles;
         if (rows.size() == size) return;
         const auto place = tables.article_places_.find(rows.back().code);
         if (place != tables.article_places_.end()) tables.article_places_.erase(place);
         rows.pop_back();
       });
  articles.push_back(std::move(article));
  article_places_.emplace(articles.back().code, articles.size() - 1);
  return RTF_SUCCESS;
}

void Tables::EraseArticles() {
  // Empty until the change is made, which exchanges it as its undoing does.
  struct Rest {
    std::vector<Article> articles;
    decltype(article_places_) places;
  };
  const auto rest = std::make_shared<Rest>();
  const auto exchange = [rest](Tables& tables) noexcept {
    tables.settings_.articles.swap(rest->articles);
    tables.article_places_.swap(rest->places);
  };
  Note(Part::kArticles, 0, exchange);
  exchange(*this);
}

int Tables::SetLogo(int number, std::string_view file) {
  if (number < 1 || number > kMaxLogos) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kLogo,
                       {number, 1, kMaxLogos});
  }
  if (file.size() > kLogoNameSize) return TooLong(Subject::kLogoFile, file, kLogoNameSize);
  std::error_code none;
  if (!std::filesystem::is_regular_file(std::filesystem::path(file), none)) {
    return Refuse(RTF_E_NOEXIST, RefusalCause::kNoFile, {}, file);
  }
  Note(Part::kLogos, 0, [old = logos_](Tables& tables) mutable { tables.logos_.swap(old); });
  logos_[number] = std::string(file);
  return RTF_SUCCESS;
}

void Tables::EraseLogos() {
  Note(Part::kLogos, 0, [old = logos_](Tables& tables) mutable { tables.logos_.swap(old); });
  logos_.clear();
}

}  // namespace lorimat
