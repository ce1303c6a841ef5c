// Values that no row of a table has: each is refused with its cause, and changes nothing.
#include "unit/register/refused_calls.h"

namespace lorimat {
namespace {

class RefusedValues : public RegisterTest {};

TEST_F(RefusedValues, AreNamedWithWhatTheyStandFor) {
  using C = RefusalCause;
  using R = VirtualRegister;
  const auto program_key = [](R& r, uint8_t position, size_t length) {
    uint8_t code = 0;
    int8_t keyboard = 0;
    std::string macro(length, '\x01');
    auto size = static_cast<uint16_t>(length);
    return r.ConfigKeyboard(true, position, &code, &keyboard, macro.data(), &size);
  };
  ASSERT_EQ(device.BeginNonFiscal(), RTF_SUCCESS);
  Check(device, {{"total",
                  [](R& r) {
                    char text[50] = "as before";
                    int number = 0;
                    const int code = r.GetData(77, &number, text);
                    EXPECT_STREQ(text, "as before");
                    return code;
                  },
                  RTF_E_ILLEGAL,
                  C::kNotOneOf,
                  {Of(Subject::kTotal), 77}},
                 {"station",
                  [](R& r) { return r.PrintNormal(99, "TEXT"); },
                  RTF_E_ILLEGAL,
                  C::kNotOneOf,
                  {Of(Subject::kStation), 99}}});
  ASSERT_EQ(device.EndNonFiscal(), RTF_SUCCESS);
  Check(device, {{"item that is only read",
                  [](R& r) {
                    int item = 371;  // the state words
                    char text[64] = "1";
                    return r.DirectIO(2, &item, text);
                  },
                  RTF_E_ILLEGAL,
                  C::kReadOnly,
                  {371}},
                 {"place of a key",
                  [&](R& r) { return program_key(r, 255, 0); },
                  RTF_E_ILLEGAL,
                  C::kNotOneOf,
                  {Of(Subject::kKeyPlace), 255}}});
}

}  // namespace
}  // namespace lorimat
