#include "register/report/item_list.h"

#include "register/report/report_sections.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

namespace {

int NoVatEntry(const Tables& tables, int entry) {
  return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoVatEntry,
                {entry, static_cast<int64_t>(tables.settings().vat_rates.size())});
}

}  // namespace

int ItemList::Begin(int vat) {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  if (core_.tables.FindVat(vat) == nullptr) return NoVatEntry(core_.tables, vat);
  layout_.Header();
  core_.paper.Centred("VERIFICA ARTICOLI");
  core_.paper.Centred("IVA " + VatName(core_.tables.settings().vat_rates, vat));
  core_.paper.Centred("non fiscale");
  core_.paper.Blank();
  core_.session.item_list_vat = vat;
  core_.state = PrinterState::kItemList;
  return RTF_SUCCESS;
}

// The VAT entry of an item; 0 when there is none of that name.
int ItemList::FindVatOf(std::string_view name) const {
  const RegisterSettings& settings = core_.tables.settings();
  for (const Article& article : settings.articles) {
    if (article.code != name && article.description != name) continue;
    const Department* department = core_.tables.FindDepartment(article.department);
    return department != nullptr ? department->vat : 0;
  }
  for (const Department& department : settings.departments) {
    if (department.name == name) return department.vat;
  }
  return 0;
}

int ItemList::Verify(std::string_view name, int vat) {
  if (!core_.Allows(Operation::kItemList)) return RTF_EFPTR_WRONG_STATE;
  if (name.empty() || name.size() > Tables::kDescriptionSize) {
    return RefuseValue(RTF_EFPTR_BAD_ITEM_DESCRIPTION, RefusalCause::kWrongLength,
                       Subject::kDescription,
                       {static_cast<int64_t>(name.size()), 1, Tables::kDescriptionSize});
  }
  if (core_.tables.FindVat(vat) == nullptr) return NoVatEntry(core_.tables, vat);
  const int known = FindVatOf(name);
  if (known == 0) return Refuse(RTF_E_NOEXIST, RefusalCause::kNoArticle, {}, name);
  if (known != vat || vat != core_.session.item_list_vat) {
    return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kOtherVatEntry, {known});
  }
  core_.paper.Pair(ReadHostText(name).text, VatName(core_.tables.settings().vat_rates, vat));
  return RTF_SUCCESS;
}

int ItemList::End() {
  if (!core_.Allows(Operation::kItemList)) return RTF_EFPTR_WRONG_STATE;
  const std::tm now = core_.Now();
  core_.paper.Blank();
  core_.paper.Centred(FormatDateTime(now));
  core_.paper.Centred("RT " + core_.tables.settings().serial_number);
  core_.paper.Cut();
  core_.state = PrinterState::kMonitor;
  return RTF_SUCCESS;
}

}  // namespace lorimat
