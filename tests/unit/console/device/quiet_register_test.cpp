// Which registers are left alone by the commands that work on a quiet one, and what is told of
// them.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "console/device/register_device.h"
#include "console/message/failure.h"
#include "register/client/virtual_register.h"
#include "register/value/register_error.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::console {
namespace {

std::string RefusalOf(const std::string& file) {
  try {
    RequireQuietRegister(file);
  } catch (const Failure& failure) {
    return failure.what();
  } catch (const RegisterError& error) {
    return error.what();
  }
  return {};
}

// Who reads that a receipt has to be ended would begin a run, which is refused as well.
TEST(QuietRegisterTest, OneAtWorkIsInUseWhateverItHolds) {
  const std::string folder = testing::TempDir() + "quiet_register_test";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory(folder);
  RegisterSettings settings;
  settings.file = folder + "/shop.register";
  std::optional<VirtualRegister> device(settings);
  ASSERT_EQ(device->BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  EXPECT_EQ(RefusalOf(settings.file), settings.file + ": is in use by another program");
  ASSERT_EQ(device->PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  device.reset();
  EXPECT_TRUE(RefusalOf(settings.file).starts_with(settings.file + ": holds a receipt of "))
      << RefusalOf(settings.file);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace lorimat::console
