// Set-up of the device, and its way into service.
#include <optional>

#include "register/client/client_buffers.h"
#include "register/client/virtual_register.h"
#include "register/desk/setup_desk.h"
#include "register/desk/shop_setup.h"
#include "register/storage/part_file.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

int VirtualRegister::SetUp(const ShopSetup& setup, ShopRefusal* refused) {
  return Perform(std::nullopt, [&] { return SetUpShop(core_, setup, refused); });
}

int VirtualRegister::SaveAs(const std::string& file) {
  const CancellationDelay whole;
  PartFile part(file);
  core_.StoreOpen();
  core_.database.CopyTo(part, nullptr);
  return part.Finish();
}

// Double width is asked for inside the text, as in a header line.
int VirtualRegister::SetTrailerLine(int line, const char* text, bool) {
  return Perform(ClientOperation::kSetTrailerLine,
                 [&] { return SetupDesk(core_).SetTrailerLine(line, View(text)); });
}

int VirtualRegister::SetStoreFiscalID(const char* fiscal_id) {
  return Perform(ClientOperation::kSetStoreFiscalID,
                 [&] { return SetupDesk(core_).SetFiscalId(View(fiscal_id)); });
}

int VirtualRegister::SetPOSID(const char* pos_id, const char* cashier_id) {
  return Perform(ClientOperation::kSetPOSID,
                 [&] { return SetupDesk(core_).SetPosId(View(pos_id), View(cashier_id)); });
}

int VirtualRegister::SetDate(const char* date) {
  return Perform(ClientOperation::kSetDate, [&] { return SetupDesk(core_).SetDate(View(date)); });
}

int VirtualRegister::SelectBitmap(int number, int position) {
  return Perform(ClientOperation::kSelectBitmap,
                 [&] { return SetupDesk(core_).SelectLogo(number, position); });
}

int VirtualRegister::TelematicCensus() {
  return Perform(ClientOperation::kTelematicCensus, [&] { return SetupDesk(core_).Register(); });
}

int VirtualRegister::TelematicActivate(const char* vat_number, const char* tax_code,
                                       const char* user, const char* password, int32_t ateco,
                                       const char* date) {
  return Perform(ClientOperation::kTelematicActivate, [&] {
    return SetupDesk(core_).Activate(
        {View(vat_number), View(tax_code), View(user), View(password), ateco, View(date)});
  });
}

int VirtualRegister::TelematicCommissioning() {
  return Perform(ClientOperation::kTelematicCommissioning,
                 [&] { return SetupDesk(core_).PutIntoService(); });
}

}  // namespace lorimat
