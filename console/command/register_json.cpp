#include "console/command/register_json.h"

#include <string>

#include "console/command/shop_options.h"
#include "console/message/register_text.h"
#include "register/value/nature.h"
#include "register/value/row_encoding.h"

namespace lorimat::console {
namespace {

using lorimat::RegisterProfile;
using lorimat::RegisterStore;
using lorimat::Tables;

Json SettingsJson(const RegisterProfile& profile) {
  const lorimat::RegisterSettings& settings = profile.tables.settings();
  const lorimat::DeviceSetup& setup = profile.state.setup;
  Json rates = Json::array();
  for (const lorimat::VatRate& rate : settings.vat_rates) {
    const lorimat::Nature& nature = lorimat::NatureOf(rate.mark);
    // What loses its rate is exempt.
    const bool plain = rate.rate != 0 || &nature == &lorimat::kExempt;
    rates.push_back(plain ? VatOptionText(rate.rate) : std::string(nature.code));
  }
  Json departments = Json::array();
  int number = 0;
  for (const lorimat::Department& row : settings.departments) {
    departments.push_back(DepartmentOptionText(++number, row));
  }
  return {{"serial", settings.serial_number},
          {"vat_number", setup.fiscal_id},
          {"header", settings.header_lines},
          {"vat", std::move(rates)},
          {"departments", std::move(departments)},
          {"outbox", setup.outbox},
          {"round_cash", setup.round_cash},
          {"training", setup.training},
          {"not_in_service", setup.commissioning != lorimat::Commissioning::kInService}};
}

const char* CommissioningName(lorimat::Commissioning step) {
  switch (step) {
    case lorimat::Commissioning::kNew:
      return "new";
    case lorimat::Commissioning::kRegistered:
      return "registered";
    case lorimat::Commissioning::kActivated:
      return "activated";
    case lorimat::Commissioning::kInService:
      break;
  }
  return "in-service";
}

// What a host sets beyond the tables.
Json SetupJson(const RegisterProfile& profile) {
  const lorimat::RegisterState& state = profile.state;
  const lorimat::DeviceSetup& setup = state.setup;
  Json options = Json::array();
  for (const auto& [item, value] : state.device_options.values()) {
    options.push_back({{"item", item}, {"value", value}});
  }
  Json keys = Json::array();
  state.keyboards.ForEachChange(
      lorimat::Keyboards(), [&keys](int keyboard, int position, const lorimat::ProgrammedKey& key) {
        Json macro = Json::array();
        for (const char code : key.macro) macro.push_back(static_cast<unsigned char>(code));
        keys.push_back({{"keyboard", keyboard},
                        {"position", position},
                        {"code", key.code},
                        {"macro", std::move(macro)}});
      });
  return {{"commissioning", CommissioningName(setup.commissioning)},
          {"trailer", setup.trailer_lines},
          {"courtesy_text", state.options.courtesy_text},
          {"pos_id", setup.pos_id},
          {"cashier_id", setup.cashier_id},
          {"header_logo", setup.header_logo},
          {"trailer_logo", setup.trailer_logo},
          {"invoice_series", state.options.invoice_series},
          {"send_lottery", state.options.send_lottery},
          {"auto_close", state.options.auto_close},
          {"drawer_openings", state.drawer_count},
          {"power_losses", setup.power_losses},
          {"options", std::move(options)},
          {"keys", std::move(keys)}};
}

Json GroupJson(int number, const lorimat::GroupRow& row) {
  return {{"number", number},
          {"description", row.description},
          {"flags", row.flags},
          {"options", row.options}};
}

const char* TenderKindName(lorimat::TenderKind kind) {
  switch (kind) {
    case lorimat::TenderKind::kCash:
      return "cash";
    case lorimat::TenderKind::kElectronic:
      return "electronic";
    case lorimat::TenderKind::kTicket:
      return "ticket";
    case lorimat::TenderKind::kNotPaid:
      break;
  }
  return "not-paid";
}

Json TablesJson(const Tables& tables) {
  const lorimat::RegisterSettings& settings = tables.settings();
  Json rates = Json::array();
  int number = 0;
  for (const lorimat::VatRate& row : settings.vat_rates) {
    rates.push_back({{"entry", ++number}, {"rate", VatOptionText(row.rate)}, {"mark", row.mark}});
    if (row.rate == 0) rates.back()["nature"] = lorimat::NatureOf(row.mark).code;
  }
  Json departments = Json::array();
  number = 0;
  for (const lorimat::Department& row : settings.departments) {
    departments.push_back({{"number", ++number},
                           {"name", row.name},
                           {"vat", row.vat},
                           {"price_cents", AmountCents(row.price)},
                           {"max_price_cents", AmountCents(row.max_price)},
                           {"group", row.group},
                           {"quantity", row.quantity},
                           {"single_shoot", row.single_shoot},
                           {"allow_discount", row.allow_discount},
                           {"force_description", row.force_description},
                           {"service", row.is_service}});
  }
  Json groups = Json::array();
  Json operators = Json::array();
  number = 0;
  for (const lorimat::GroupRow& row : tables.groups()) {
    ++number;
    if (number <= settings.groups) {
      groups.push_back(GroupJson(number, row));
      continue;
    }
    // Passwords stay in the register.
    Json one = GroupJson(number - settings.groups, row);
    one["has_password"] = !row.password.empty();
    operators.push_back(std::move(one));
  }
  Json subtenders = Json::array();
  number = 0;
  for (const lorimat::Subtender& row : tables.subtenders()) {
    subtenders.push_back({{"number", ++number},
                          {"kind", TenderKindName(row.kind)},
                          {"description", row.description},
                          {"flags", row.flags},
                          {"preset_cents", row.preset_value},
                          {"max_digits", row.max_digits}});
  }
  Json articles = Json::array();
  for (const lorimat::Article& row : settings.articles) {
    articles.push_back({{"code", row.code},
                        {"description", row.description},
                        {"department", row.department},
                        {"price_cents", AmountCents(row.price)}});
  }
  Json logos = Json::array();
  for (const auto& [place, file] : tables.logos()) {
    logos.push_back({{"number", place}, {"file", file}});
  }
  return {{"vat", std::move(rates)},
          {"departments", std::move(departments)},
          {"groups", std::move(groups)},
          {"operators", std::move(operators)},
          {"subtenders", std::move(subtenders)},
          {"articles", std::move(articles)},
          {"logos", std::move(logos)}};
}

Json FillJson(uint64_t used, uint64_t most) { return {{"used", used}, {"most", most}}; }

uint64_t Count(int number) { return static_cast<uint64_t>(number < 0 ? 0 : number); }

Json MemoryJson(const RegisterProfile& profile, const lorimat::RegisterStatus& status) {
  return {
      {"closings", FillJson(Count(status.closures), RegisterStore::kLastNumber)},
      {"documents_of_day", FillJson(Count(status.counters.documents), RegisterStore::kLastNumber)},
      {"articles", FillJson(profile.tables.settings().articles.size(), Tables::kMaxArticles)},
      {"logos", FillJson(profile.tables.logos().size(), Tables::kMaxLogos)},
      {"roll_lines", profile.roll_lines},
      {"file_bytes", profile.file_bytes}};
}

Json TimeJson(int64_t time) {
  return time == 0 ? Json() : Json(TimeForPrograms(lorimat::NumberTime(time)));
}

Json ClockJson(const RegisterProfile& profile) {
  const lorimat::ClockSetBack& back = profile.state.setup.clock_set_back;
  return {
      {"now", TimeForPrograms(profile.clock)},
      {"ahead_of_computer_seconds", profile.state.setup.clock_offset},
      {"last_document", TimeJson(profile.last_document)},
      {"last_closing", TimeJson(profile.last_closing)},
      {"behind", profile.clock_behind.has_value()},
      {"set_back",
       back.to == 0 ? Json() : Json({{"from", TimeJson(back.from)}, {"to", TimeJson(back.to)}})}};
}

}  // namespace

Json DayTotalsJson(const lorimat::DailyTotals& day) {
  Json by_vat = Json::array();
  for (const auto& [entry, amount] : day.by_vat) {
    const auto found = day.counts_by_vat.find(entry);
    const lorimat::VatCounts counts =
        found != day.counts_by_vat.end() ? found->second : lorimat::VatCounts();
    const auto count = [&counts](lorimat::Counted what) {
      return counts[static_cast<size_t>(what)];
    };
    by_vat.push_back({{"entry", entry},
                      {"cents", AmountCents(amount)},
                      {"documents", count(lorimat::Counted::kDocuments)},
                      {"discounts", count(lorimat::Counted::kDiscounts)},
                      {"surcharges", count(lorimat::Counted::kSurcharges)},
                      {"refund_lines", count(lorimat::Counted::kRefundLines)}});
  }
  Json by_department = Json::array();
  for (const auto& [number, sum] : day.by_department) {
    by_department.push_back({{"number", number},
                             {"quantity_thousandths", sum.quantity},
                             {"cents", AmountCents(sum.amount)}});
  }
  Json by_tender = Json::array();
  for (const auto& [tender, amount] : day.by_tender) {
    const auto payments = day.payments.find(tender);
    by_tender.push_back({{"tender", tender},
                         {"cents", AmountCents(amount)},
                         {"payments", payments != day.payments.end() ? payments->second : 0}});
  }
  return {{"sales_cents", AmountCents(day.receipts)},
          {"invoices_cents", AmountCents(day.invoices)},
          {"credit_notes_cents", AmountCents(day.refunds)},
          {"voids_cents", AmountCents(day.cancels)},
          {"not_paid_cents", AmountCents(day.not_paid)},
          {"discounts_cents", AmountCents(day.discounts)},
          {"surcharges_cents", AmountCents(day.surcharges)},
          {"by_vat", std::move(by_vat)},
          {"by_department", std::move(by_department)},
          {"by_tender", std::move(by_tender)}};
}

Json RegisterProfileJson(const RegisterProfile& profile, const lorimat::RegisterStatus& status) {
  return {{"settings", SettingsJson(profile)},
          {"setup", SetupJson(profile)},
          {"tables", TablesJson(profile.tables)},
          {"memory", MemoryJson(profile, status)},
          {"clock", ClockJson(profile)}};
}

}  // namespace lorimat::console
