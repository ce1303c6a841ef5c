// Exceptions of others in an operation: of the clock that a host gives.
#include <cerrno>
#include <ios>
#include <system_error>

#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

// What the register says of a clock that fails so.
RegisterFailure FailureBy(const std::error_code& code) {
  bool fails = false;
  RegisterSettings settings = TestSettings();
  settings.clock = [&]() -> std::tm {
    if (fails) throw std::system_error(code, "clock");
    return FixedTime();
  };
  VirtualRegister device(settings);
  fails = true;
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_E_FAILURE);
  return device.failure();
}

TEST(ForeignFailure, HasTheNumberOfAnErrorOfTheSystemAlone) {
  for (const std::error_category* category : {&std::generic_category(), &std::system_category()}) {
    const RegisterFailure failure = FailureBy({EIO, *category});
    EXPECT_EQ(failure.cause, FailureCause::kForeign) << category->name();
    EXPECT_EQ(failure.numbers[0], EIO) << category->name();
  }
  // Numbers of other categories are none of the system's.
  const RegisterFailure failure = FailureBy(std::io_errc::stream);
  EXPECT_EQ(failure.cause, FailureCause::kForeign);
  EXPECT_EQ(failure.numbers[0], 0);
}

}  // namespace
}  // namespace lorimat
