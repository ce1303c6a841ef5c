// The virtual register through its C face.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "lorimatrt/lorimat_register.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtffptrconst.h"

namespace {

bool FixedClock(void*, lorimat_time* now) {
  *now = {2026, 11, 20, 11, 3, 0};
  return true;
}

lorimat_register_settings Settings() {
  lorimat_register_settings settings = {};
  settings.size = sizeof settings;
  settings.abi = LORIMAT_ABI;
  settings.clock = FixedClock;
  return settings;
}

class Register {
 public:
  explicit Register(const lorimat_register_settings& settings = Settings()) {
    EXPECT_EQ(lorimat_register_open(&settings, &device_), LORIMAT_OK) << lorimat_register_error();
  }
  ~Register() { lorimat_register_close(device_); }
  Register(const Register&) = delete;
  Register& operator=(const Register&) = delete;
  RtfClientInterface* operator->() {
    return static_cast<RtfClientInterface*>(lorimat_register_interface(device_));
  }
  lorimat_register* get() { return device_; }

 private:
  lorimat_register* device_ = nullptr;
};

using Maker = int (*)(lorimat_register*, lorimat_bytes*);
constexpr Maker kMakers[] = {lorimat_register_paper, lorimat_register_png, lorimat_register_pdf,
                             lorimat_register_start_notice, lorimat_register_failure};

std::string Made(Register& device, Maker maker) {
  lorimat_bytes bytes = {};
  EXPECT_EQ(maker(device.get(), &bytes), LORIMAT_OK) << lorimat_register_error();
  if (bytes.data == nullptr) return "none";
  EXPECT_EQ(bytes.data[bytes.size], 0);
  std::string text(bytes.data, bytes.size);
  lorimat_bytes_free(&bytes);
  EXPECT_EQ(bytes.data, nullptr);
  return text;
}

void Sell(RtfClientInterface& device) {
  ASSERT_EQ(device.BeginFiscalReceipt(true), 0);
  ASSERT_EQ(device.PrintRecItemEx(0, "CAFFE", -1, 2000, -1, 12000, "", 2, true, ""), 0);
  ASSERT_EQ(device.PrintRecTotalEx(50000, "0", false), 0);
}

TEST(CFaceRegister, PrintsWhatTheRegisterPrints) {
  lorimat::RegisterSettings settings;
  settings.clock = [] {
    std::tm time = {};
    time.tm_year = 126;
    time.tm_mon = 10;
    time.tm_mday = 20;
    time.tm_hour = 11;
    time.tm_min = 3;
    return time;
  };
  lorimat::VirtualRegister expected(settings);
  Sell(expected);
  Register device;
  Sell(*device.operator->());
  EXPECT_EQ(Made(device, lorimat_register_paper), expected.paper_text());
  EXPECT_TRUE(Made(device, lorimat_register_png).starts_with("\x89PNG"));
  EXPECT_TRUE(Made(device, lorimat_register_pdf).starts_with("%PDF"));
  EXPECT_EQ(Made(device, lorimat_register_start_notice), "");
  EXPECT_EQ(Made(device, lorimat_register_failure), "");
}

TEST(CFaceRegister, CountsWhatItSells) {
  Register device;
  Sell(*device.operator->());
  lorimat_register_state state = {};
  state.size = sizeof state;
  state.abi = LORIMAT_ABI;
  ASSERT_EQ(lorimat_register_get_state(device.get(), &state), LORIMAT_OK);
  EXPECT_EQ(state.printer_state, RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(state.key_position, 1);
  EXPECT_TRUE(state.day_open);
  EXPECT_EQ(state.documents, 1);
  EXPECT_EQ(state.journal_entries, 1);
  EXPECT_EQ(state.next_invoice, 1);
  lorimat_register_totals totals = {};
  totals.size = sizeof totals;
  totals.abi = LORIMAT_ABI;
  ASSERT_EQ(lorimat_register_get_totals(device.get(), &totals), LORIMAT_OK);
  EXPECT_EQ(totals.receipts_number, 1);
  EXPECT_EQ(totals.sales, 1);
  EXPECT_EQ(totals.receipts_amount, 24000);
  EXPECT_EQ(totals.net_amount, 24000);
  EXPECT_EQ(totals.grand_amount, 24000);
  size_t count = 0;
  ASSERT_EQ(lorimat_register_get_tenders(device.get(), nullptr, 0, &count), LORIMAT_OK);
  ASSERT_EQ(count, 1u);
  lorimat_tender_total tender = {};
  ASSERT_EQ(lorimat_register_get_tenders(device.get(), &tender, 1, &count), LORIMAT_OK);
  EXPECT_STREQ(tender.tender, "0");
  EXPECT_EQ(tender.amount, 24000);
}

TEST(CFaceRegister, TakesWhatItIsMadeWith) {
  lorimat_register_settings settings = Settings();
  const char* lines[] = {"BAR SPORT", "Via Roma 1"};
  settings.serial_number = "99LRM0000077VR";
  settings.header_lines = lines;
  settings.header_line_count = 2;
  settings.last_closure = 41;
  settings.last_invoice = 7;
  Register device(settings);
  Sell(*device.operator->());
  const std::string paper = Made(device, lorimat_register_paper);
  for (const char* part :
       {"BAR SPORT", "Via Roma 1", "99LRM0000077VR", "0042-0001", "20/11/2026"}) {
    EXPECT_NE(paper.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(paper.find("NEGOZIO"), std::string::npos);
}

// 2,00 + 1,03 at 5,5 % + 0,50 out of scope: 3,53, in cash 3,55. Tax: 2,00 x 22/122 = 0,36 and
// 1,03 x 5,5/105,5 = 0,05.
TEST(CFaceRegister, TakesTheTableOfVatAndTheRoundingOfCash) {
  lorimat_register_settings settings = Settings();
  const char* vat[] = {"22", "5.5", "N2"};
  settings.vat = vat;
  settings.vat_count = 3;
  settings.round_cash = true;
  Register device(settings);
  ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
  constexpr int64_t kPrices[] = {20000, 10300, 5000};
  for (int department = 1; department <= 3; ++department) {
    ASSERT_EQ(
        device->PrintRecItemEx(0, "", kPrices[department - 1], 0, -1, 0, "", department, true, ""),
        RTF_SUCCESS);
  }
  ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  const std::string paper = Made(device, lorimat_register_paper);
  for (const char* part :
       {"   22%        2,00\n", "  5,5%        1,03\n", "   NS*        0,50\n",
        "di cui IVA                            0,41\n",
        "Pagamento contante                    3,55\n", "NS* = N2 non soggetto\n"}) {
    EXPECT_NE(paper.find(part), std::string::npos) << part << paper;
  }
  // A host that was built before there were these has neither.
  settings.size = offsetof(lorimat_register_settings, round_cash);
  Register before(settings);
  ASSERT_EQ(before->BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(before->PrintRecItemEx(0, "", 10300, 0, -1, 0, "", 2, true, ""), RTF_SUCCESS);
  ASSERT_EQ(before->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  const std::string plain = Made(before, lorimat_register_paper);
  EXPECT_NE(plain.find("   10%        1,03\n"), plain.npos) << plain;
  EXPECT_NE(plain.find("Pagamento contante                    1,03\n"), plain.npos);
}

TEST(CFaceRegister, NamesAnEntryOfVatThatIsNone) {
  lorimat_register* device = nullptr;
  for (const char* wrong : {"", "N0", "N7", "n4", "22%", "-1", "100", "5.555", "5,5", "1e1"}) {
    lorimat_register_settings settings = Settings();
    const char* vat[] = {"22", wrong};
    settings.vat = vat;
    settings.vat_count = 2;
    EXPECT_EQ(lorimat_register_open(&settings, &device), LORIMAT_BAD_VALUE) << wrong;
    EXPECT_STREQ(lorimat_register_error(), "entry 2 of vat is no rate and no nature");
    EXPECT_EQ(device, nullptr);
    vat[1] = nullptr;
    EXPECT_EQ(lorimat_register_open(&settings, &device), LORIMAT_NULL_ARGUMENT);
    for (const size_t count : {size_t{0}, size_t{100}}) {
      settings.vat_count = count;
      EXPECT_EQ(lorimat_register_open(&settings, &device), LORIMAT_BAD_VALUE);
    }
  }
}

// Six header lines of fifty bytes: each goes on below, in the middle, where the paper ends.
TEST(CFaceRegister, TakesTheLongestHeader) {
  const std::string longest(50, 'x');
  const std::vector<const char*> lines(6, longest.c_str());
  lorimat_register_settings settings = Settings();
  settings.header_lines = lines.data();
  settings.header_line_count = lines.size();
  Register device(settings);
  Sell(*device.operator->());
  std::string head;
  for (int line = 0; line < 6; ++line)
    head += std::string(42, 'x') + "\n" + std::string(17, ' ') + "xxxxxxxx\n";
  EXPECT_TRUE(Made(device, lorimat_register_paper).starts_with(head));
}

TEST(CFaceRegister, AFileKeepsIt) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                     ("lorimat-c-face-" + std::to_string(getpid()) + ".register");
  std::filesystem::remove(file);
  const std::string name = file.string();
  lorimat_register_settings settings = Settings();
  settings.file = name.c_str();
  {
    Register device(settings);
    Sell(*device.operator->());
    // It is at work there.
    lorimat_register* second = reinterpret_cast<lorimat_register*>(&second);
    EXPECT_EQ(lorimat_register_open(&settings, &second), LORIMAT_REGISTER_FAULT);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(std::string(lorimat_register_error()).find(name), std::string::npos);
  }
  Register device(settings);
  EXPECT_NE(Made(device, lorimat_register_paper).find("CAFFE"), std::string::npos);
  std::filesystem::remove(file);
}

TEST(CFaceRegister, AFaultStrikes) {
  Register device;
  EXPECT_EQ(lorimat_register_add_fault(device.get(), "paper-end", 0, nullptr, 0, 0), LORIMAT_OK);
  EXPECT_EQ(device->BeginFiscalReceipt(true), RTF_EFPTR_REC_EMPTY);
  EXPECT_EQ(device->BeginFiscalReceipt(true), 0);
  EXPECT_EQ(
      lorimat_register_add_fault(device.get(), "code", 777, "OpenDrawer", LORIMAT_FAULT_NTH, 2),
      LORIMAT_OK);
  EXPECT_EQ(device->OpenDrawer(), 0);
  EXPECT_EQ(device->OpenDrawer(), 777);
  EXPECT_EQ(lorimat_register_add_fault(device.get(), "code", 778, nullptr, LORIMAT_FAULT_EVERY, 0),
            LORIMAT_OK);
  EXPECT_EQ(device->OpenDrawer(), 778);
  EXPECT_EQ(lorimat_register_clear_faults(device.get()), LORIMAT_OK);
  EXPECT_EQ(device->OpenDrawer(), 0);
}

TEST(CFaceRegister, AFaultThatCannotBeIsNamed) {
  Register device;
  lorimat_register* one = device.get();
  EXPECT_EQ(lorimat_register_add_fault(one, nullptr, 0, nullptr, 0, 0), LORIMAT_NULL_ARGUMENT);
  EXPECT_EQ(lorimat_register_add_fault(one, "fire", 0, nullptr, 0, 0), LORIMAT_REGISTER_FAULT);
  EXPECT_NE(std::string(lorimat_register_error()).find("fire"), std::string::npos);
  EXPECT_EQ(lorimat_register_add_fault(one, "code", 1, "Sing", 0, 0), LORIMAT_BAD_VALUE);
  EXPECT_NE(std::string(lorimat_register_error()).find("Sing"), std::string::npos);
  const int extremes[] = {std::numeric_limits<int>::min(), -1, 4, std::numeric_limits<int>::max()};
  for (const int when : extremes) {
    EXPECT_EQ(lorimat_register_add_fault(one, "code", 1, nullptr, when, 1), LORIMAT_BAD_VALUE);
  }
  EXPECT_EQ(lorimat_register_add_fault(one, "code", 1, nullptr, LORIMAT_FAULT_NTH, 0),
            LORIMAT_REGISTER_FAULT);
}

TEST(CFaceRegister, SettingsThatCannotBeAreNamed) {
  const std::string longest(5000, 'x');
  const auto expect = [](const lorimat_register_settings& settings, int result) {
    lorimat_register* device = reinterpret_cast<lorimat_register*>(&device);
    EXPECT_EQ(lorimat_register_open(&settings, &device), result);
    EXPECT_EQ(device, nullptr);
  };
  using Setting = const char* lorimat_register_settings::*;
  for (const Setting text :
       {&lorimat_register_settings::file, &lorimat_register_settings::serial_number,
        &lorimat_register_settings::firmware_version, &lorimat_register_settings::vat_number,
        &lorimat_register_settings::outbox}) {
    lorimat_register_settings settings = Settings();
    settings.*text = longest.c_str();
    expect(settings, LORIMAT_BAD_VALUE);
  }
  lorimat_register_settings nameless = Settings();
  nameless.file = "";
  expect(nameless, LORIMAT_BAD_VALUE);
  const char* lines[7] = {"", "", nullptr, "", "", "", ""};
  lorimat_register_settings settings = Settings();
  settings.header_lines = lines;
  settings.header_line_count = 7;
  expect(settings, LORIMAT_BAD_VALUE);
  settings.header_line_count = 3;
  expect(settings, LORIMAT_NULL_ARGUMENT);
  lines[2] = longest.c_str();
  expect(settings, LORIMAT_BAD_VALUE);
  const std::string too_long(51, 'x');
  lines[2] = too_long.c_str();
  expect(settings, LORIMAT_BAD_VALUE);
  EXPECT_STREQ(lorimat_register_error(), "a header line has more than 50 bytes");
  for (const int number : {-1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    settings = Settings();
    settings.last_closure = number;
    expect(settings, LORIMAT_BAD_VALUE);
    settings = Settings();
    settings.last_invoice = number;
    expect(settings, LORIMAT_BAD_VALUE);
  }
  settings = Settings();
  settings.abi = LORIMAT_ABI + 1;
  expect(settings, LORIMAT_OTHER_ABI);
  settings.size = 3;
  expect(settings, LORIMAT_TABLE_TOO_SHORT);
  settings = Settings();
  settings.size = offsetof(lorimat_register_settings, user_data) + sizeof(void*) - 1;
  expect(settings, LORIMAT_TABLE_TOO_SHORT);
  settings = Settings();
  settings.file = "/nowhere/at/all/shop.register";
  expect(settings, LORIMAT_REGISTER_FAULT);
  EXPECT_EQ(lorimat_register_open(&settings, nullptr), LORIMAT_NULL_ARGUMENT);
}

TEST(CFaceRegister, OfALongerStructWhatIsBehindStays) {
  struct {
    lorimat_register_settings settings;
    const void* more;
  } settings = {Settings(), &settings};
  settings.settings.size = sizeof settings;
  settings.settings.last_closure = 7;
  lorimat_register* device = nullptr;
  ASSERT_EQ(lorimat_register_open(&settings.settings, &device), LORIMAT_OK);
  struct {
    lorimat_register_state state;
    int64_t more;
  } state = {{}, 99};
  state.state.size = sizeof state;
  state.state.abi = LORIMAT_ABI;
  EXPECT_EQ(lorimat_register_get_state(device, &state.state), LORIMAT_OK);
  EXPECT_EQ(state.state.last_closure, 7);
  EXPECT_EQ(state.state.size, sizeof state);
  EXPECT_EQ(state.more, 99);
  lorimat_register_close(device);
}

TEST(CFaceRegister, AClockWithoutATimeFailsTheOperation) {
  static lorimat_time shown;
  static bool has_time;
  shown = {2026, 11, 20, 11, 3, 0};
  has_time = true;
  lorimat_register_settings settings = Settings();
  settings.clock = [](void*, lorimat_time* now) {
    *now = shown;
    return has_time;
  };
  Register device(settings);
  EXPECT_EQ(device->BeginFiscalReceipt(true), 0);
  EXPECT_EQ(device->PrintRecItemEx(0, "CAFFE", -1, 2000, -1, 12000, "", 2, true, ""), 0);
  has_time = false;
  EXPECT_EQ(device->PrintRecTotalEx(50000, "0", false), RTF_E_FAILURE);
  EXPECT_NE(Made(device, lorimat_register_failure).find("no time"), std::string::npos);
  has_time = true;
  shown.month = 13;
  EXPECT_EQ(device->PrintRecTotalEx(50000, "0", false), RTF_E_FAILURE);
  shown.month = 11;
  EXPECT_EQ(device->PrintRecTotalEx(50000, "0", false), 0);
}

TEST(CFaceRegister, NullIsNoRegister) {
  lorimat_register_close(nullptr);
  lorimat_bytes_free(nullptr);
  EXPECT_EQ(lorimat_register_interface(nullptr), nullptr);
  Register device;
  lorimat_bytes bytes = {};
  for (const Maker maker : kMakers) {
    EXPECT_EQ(maker(nullptr, &bytes), LORIMAT_NULL_ARGUMENT);
    EXPECT_EQ(maker(device.get(), nullptr), LORIMAT_NULL_ARGUMENT);
  }
  EXPECT_EQ(lorimat_register_get_state(device.get(), nullptr), LORIMAT_NULL_ARGUMENT);
  EXPECT_EQ(lorimat_register_get_totals(device.get(), nullptr), LORIMAT_NULL_ARGUMENT);
  EXPECT_EQ(lorimat_register_get_tenders(device.get(), nullptr, 0, nullptr), LORIMAT_NULL_ARGUMENT);
  lorimat_register_state state = {};
  EXPECT_EQ(lorimat_register_get_state(device.get(), &state), LORIMAT_TABLE_TOO_SHORT);
  state.size = sizeof state;
  EXPECT_EQ(lorimat_register_get_state(device.get(), &state), LORIMAT_OTHER_ABI);
  state.abi = LORIMAT_ABI;
  EXPECT_EQ(lorimat_register_get_state(nullptr, &state), LORIMAT_NULL_ARGUMENT);
  state.size -= 1;
  EXPECT_EQ(lorimat_register_get_state(device.get(), &state), LORIMAT_TABLE_TOO_SHORT);
  EXPECT_EQ(lorimat_register_clear_faults(nullptr), LORIMAT_NULL_ARGUMENT);
}

}  // namespace
