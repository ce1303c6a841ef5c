#include "register/tables/tables.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "register/value/device_text.h"

namespace lorimat {
namespace {

std::vector<Tender> BuildTenders() {
  std::vector<Tender> tenders;
  for (const TenderRow& row : kTenders) {
    tenders.push_back({std::string(row.id), std::string(row.name), row.kind, row.gives_change,
                       row.not_paid, row.element, row.by_register});
  }
  for (int number = 1; number <= Tables::kSubtenders; ++number) {
    tenders.push_back({Tables::SubtenderId(number), Tables::SubtenderName(number),
                       TenderKind::kElectronic, false});
  }
  return tenders;
}

template <typename Row>
const Row* At(const std::vector<Row>& rows, int number) {
  if (number < 1 || static_cast<size_t>(number) > rows.size()) return nullptr;
  return &rows[static_cast<size_t>(number) - 1];
}

}  // namespace

Tables::Tables(RegisterSettings settings)
    : settings_(std::move(settings)), tenders_(BuildTenders()), subtenders_(kSubtenders) {
  if (settings_.departments.empty()) {
    for (int number = 1; number <= kMaxDepartments; ++number) {
      const int vat = static_cast<size_t>(number) <= settings_.vat_rates.size() ? number : 1;
      settings_.departments.push_back({fmt::format("REPARTO {}", number), vat});
    }
  }
  Repair();
  for (int number = 1; number <= settings_.groups; ++number) {
    groups_.push_back({fmt::format("GRUPPO {}", number)});
  }
  for (int number = 1; number <= settings_.operators; ++number) {
    groups_.push_back({fmt::format("OPERATORE {}", number)});
  }
}

Tables::Tables(RegisterSettings settings, std::vector<GroupRow> groups,
               const std::vector<Subtender>& subtenders, std::map<int, std::string> logos)
    : Tables(std::move(settings)) {
  groups_ = std::move(groups);
  logos_ = std::move(logos);
  for (int number = 1; number <= kSubtenders; ++number) {
    const size_t index = static_cast<size_t>(number) - 1;
    if (index < subtenders.size()) PlaceSubtender(number, subtenders[index]);
  }
}

void Tables::TakeBack() noexcept {
  // A change may fail before it is made; its undo does no harm then.
  for (; !changes_.empty(); changes_.pop_back()) changes_.back().undo(*this);
}

void Tables::Repair() {
  const auto cut = [](std::string* text, size_t size) {
    if (text->size() > size) text->resize(size);
    *text = DeviceText(*text);
  };
  const auto price = [](Amount* amount) {
    *amount = RoundToCents(std::clamp<Amount>(*amount, 0, kMaxPresetPrice)).value_or(0);
  };
  cut(&settings_.serial_number, kSerialNumberSize);
  cut(&settings_.firmware_version, kFirmwareVersionSize);
  if (settings_.header_lines.size() > kHeaderLines) settings_.header_lines.resize(kHeaderLines);
  for (std::string& line : settings_.header_lines) cut(&line, kHeaderLineSize);
  for (VatRate& rate : settings_.vat_rates) cut(&rate.mark, 32);
  settings_.groups = std::clamp(settings_.groups, 0, kMaxGroups);
  settings_.operators = std::clamp(settings_.operators, 0, kMaxGroups);
  if (settings_.departments.size() > kMaxDepartments) {
    settings_.departments.resize(kMaxDepartments);
  }
  for (Department& department : settings_.departments) {
    cut(&department.name, kDescriptionSize);
    price(&department.price);
    price(&department.max_price);
    department.group = std::clamp(department.group, 0, settings_.groups);
  }
  const int departments = static_cast<int>(settings_.departments.size());
  std::vector<Article> articles;
  for (Article& article : settings_.articles) {
    cut(&article.code, kArticleCodeSize);
    cut(&article.description, kDescriptionSize);
    price(&article.price);
    article.department = std::clamp(article.department, 1, departments);
    if (article.code.empty() || articles.size() >= kMaxArticles) continue;
    // Of two with one code the first is the one that sells.
    if (article_places_.try_emplace(article.code, articles.size()).second) {
      articles.push_back(std::move(article));
    }
  }
  settings_.articles = std::move(articles);
  settings_.last_closure = std::clamp(settings_.last_closure, 0, 9999);
  settings_.last_invoice = std::clamp(settings_.last_invoice, 0, 999999);
}

const Department* Tables::FindDepartment(int number) const {
  return At(settings_.departments, number);
}

const VatRate* Tables::FindVat(int number) const { return VatEntry(settings_.vat_rates, number); }

const Article* Tables::FindArticle(std::string_view code) const {
  const auto found = article_places_.find(code);
  return found != article_places_.end() ? &settings_.articles[found->second] : nullptr;
}

const Tender* Tables::FindTender(std::string_view id) const {
  for (const Tender& tender : tenders_) {
    if (tender.id == id) return &tender;
  }
  return nullptr;
}

std::string Tables::SubtenderId(int number) { return std::to_string(9 + number); }

std::string Tables::SubtenderName(int number) {
  return fmt::format("Pagamento elettronico {:02}", number);
}

const GroupRow* Tables::FindGroup(int index) const { return At(groups_, index); }

const Subtender* Tables::FindSubtender(int number) const { return At(subtenders_, number); }

const Subtender* Tables::SubtenderOf(std::string_view tender_id) const {
  for (int number = 1; number <= kSubtenders; ++number) {
    if (tender_id == SubtenderId(number)) return FindSubtender(number);
  }
  return nullptr;
}

const std::string* Tables::FindLogo(int number) const {
  const auto found = logos_.find(number);
  return found != logos_.end() ? &found->second : nullptr;
}

const VatRate* VatEntry(const std::vector<VatRate>& rates, int vat) { return At(rates, vat); }

std::string VatName(const std::vector<VatRate>& rates, int vat) {
  const VatRate* rate = VatEntry(rates, vat);
  if (rate == nullptr) return std::to_string(vat);
  return rate->mark.empty() ? FormatRate(rate->rate) : rate->mark;
}

}  // namespace lorimat
