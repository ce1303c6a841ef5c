// A device that fails at each of its calls in turn, with every kind of result: the command
// comes back with a code of the device's or of its own, and a file never ends within a line.

#include <set>

#include "pal/threading/posix/thread.h"
#include "unit/support/table_device.h"

namespace {

class TableFaults : public TableTest {
 protected:
  TableFaults() {
    before_ = Thread::SetSleepFunction([](int) {});
  }
  ~TableFaults() override { Thread::SetSleepFunction(before_); }

  // Serves calls until one, which gets the result.
  class Client : public TableDevice {
   public:
    int fail_at = -1;
    int result = 0;
    int served = 0;

    Client() {
      items = {{60, "A"},    {75, "2"},    {77, "2"},  {78, "2"},  {104, "1"}, {105, "1,2"},
               {106, "A,B"}, {107, "2,2"}, {108, "2"}, {109, "2"}, {110, "2"}, {121, "1"},
               {154, "1"},   {204, "80"},  {317, "1"}, {372, "1"}, {373, "1"}};
      for (int i = 1; i <= 4; ++i) {
        departments[i] = {};
        groups[i] = {};
        subtenders[i] = {};
        keys[i] = {200, 0, "\x01\x02"};
      }
      for (int i = 1; i <= 8; ++i) vat_rates[i] = 220000;
      rows = {"A", "B"};
      date = "010120261200";
    }

    int GetDataInternal(int item, char* value) override {
      return fails() ? result : TableDevice::GetDataInternal(item, value);
    }
    int SetDataInternal(int item, const char* value) override {
      return fails() ? result : TableDevice::SetDataInternal(item, value);
    }
    int GetIntProperty(int property, int* value) override {
      return fails() ? result : TableDevice::GetIntProperty(property, value);
    }
    int SetIntProperty(int property, int value) override {
      return fails() ? result : TableDevice::SetIntProperty(property, value);
    }
    int SetStringProperty(int property, const char* value) override {
      return fails() ? result : TableDevice::SetStringProperty(property, value);
    }
    int ConfigDepartment(bool write, int32_t id, char* description, int64_t* price,
                         int64_t* max_price, int32_t* quantity, int32_t* vat, uint8_t* group,
                         bool* single, bool* discount, bool* force) override {
      if (fails()) return result;
      return TableDevice::ConfigDepartment(write, id, description, price, max_price, quantity, vat,
                                           group, single, discount, force);
    }
    int ConfigDepartmentEx(bool write, int32_t id, char* description, int64_t* price,
                           int64_t* max_price, int32_t* quantity, int32_t* vat, uint8_t* group,
                           bool* single, bool* discount, bool* force, bool* service) override {
      if (fails()) return result;
      return TableDevice::ConfigDepartmentEx(write, id, description, price, max_price, quantity,
                                             vat, group, single, discount, force, service);
    }
    int ConfigGroup(bool write, int index, char* description, char* password, int* flags,
                    int* options) override {
      if (fails()) return result;
      return TableDevice::ConfigGroup(write, index, description, password, flags, options);
    }
    int ConfigSubtender(bool write, int32_t id, uint8_t* type, char* description, uint8_t* flags,
                        uint32_t* preset, uint8_t* digits) override {
      if (fails()) return result;
      return TableDevice::ConfigSubtender(write, id, type, description, flags, preset, digits);
    }
    int ConfigKeyboard(bool write, uint8_t position, uint8_t* code, int8_t* type, char* macro,
                       uint16_t* size) override {
      if (fails()) return result;
      return TableDevice::ConfigKeyboard(write, position, code, type, macro, size);
    }
    int SetVatValue(int entry, const char* rate) override {
      return fails() ? result : TableDevice::SetVatValue(entry, rate);
    }
    int SetVatTable() override { return fails() ? result : TableDevice::SetVatTable(); }
    int GetVatEntry(int entry, int arguments, int* rate) override {
      return fails() ? result : TableDevice::GetVatEntry(entry, arguments, rate);
    }
    int SetHeaderLine(int line, const char* value, bool doubled) override {
      return fails() ? result : TableDevice::SetHeaderLine(line, value, doubled);
    }
    int GetHeaderLine(int line, char* value) override {
      return fails() ? result : TableDevice::GetHeaderLine(line, value);
    }
    int EraseLogoArchive() override { return fails() ? result : 0; }
    int ProgramGRC(uint8_t, const char*, bool) override { return fails() ? result : 0; }
    int GetTotalizerExtend(int, int, int, char* value) override {
      if (fails()) return result;
      std::strcpy(value, "12345");
      return 0;
    }
    int GetDate(char* value) override { return fails() ? result : TableDevice::GetDate(value); }
    int EraseTable(int) override { return fails() ? result : 0; }
    int UploadTable(int, int, const char*) override { return fails() ? result : 0; }
    int DownloadTable(int selector, int index, char* row) override {
      return fails() ? result : TableDevice::DownloadTable(selector, index, row);
    }

   private:
    bool fails() { return served++ == fail_at; }
  };

  // Codes that a result may come back as, once and twice through the mapping, and the
  // translator's own.
  static std::set<long> Codes(int result) {
    std::set<long> allowed = {0, 265, 1280, 8193};
    for (int times = 0, code = result; times < 3; ++times) {
      code = TranslatorCode(code);
      allowed.insert(code);
    }
    return allowed;
  }
  static int TranslatorCode(int result) {
    if (result == -1) return 512;
    return result | (result < 200 ? 0x200 : 0x400);
  }

 private:
  Thread::SleepFunction before_;
};

TEST_F(TableFaults, NoCallOfNoCommandDoesHarm) {
  WriteFile("rows", "1\n2\n");
  const std::vector<std::string> lines = {
      "PREP REP=1, DES='A'",
      "PGRU GRU=1, DES='A'",
      "POPER OPE=1, DES='A', PASS='1'",
      "PSTEN ST=1, DES='A'",
      "PIVA IVA=1, ALIQ=22",
      "PINT RIGA1='A', RIGA2='B'",
      "PPFATT NUM=1, SERIE='A'",
      "POPZ OPZ01='A', OPZ04, CONTRASTO=1",
      "PTAST POS=1, COD=200, MACRO='1 2 '",
      "LDGRAF CANC, NUM=1, FILE='a'",
      "LEGGI TAB=1, FILE='d', PROG",
      "LEGGI TAB=3, FILE='d', PROG",
      "LEGGI TAB=4, FILE='d', PROG",
      "LEGGI TAB=6, FILE='d', PROG",
      "LEGGI TAB=8, FILE='d', PROG",
      "LEGGI TAB=9, FILE='d', PROG",
      "LEGGI TAB=10, FILE='d', PROG",
      "LEGGI TAB=12, FILE='d', PROG",
      "LEGGI TAB=20, FILE='d', PROG",
      "LEGGI TAB=22, FILE='d', PROG",
      "LEGGI TAB=100, FILE='d', PROG",
      "EMLINK CMD='UA', FILE='rows', ERR='e', AZZERA",
      "EMLINK CMD='DA', FILE='d2', ERR='e', SVUOTA",
  };
  for (const std::string& line : lines) {
    for (const int result : {107, 207, 212, 1213, -1}) {
      for (int call = 0;; ++call) {
        SCOPED_TRACE(line + " " + std::to_string(result) + " at " + std::to_string(call));
        Client client;
        client.fail_at = call;
        client.result = result;
        translator->rtfClient_ = &client;
        translator->pCurConf->iNumSTEN = 2;
        translator->pCurConf->iNumTOTG = 2;
        const long code = Run(line);
        EXPECT_EQ(1u, Codes(result).count(code)) << code;
        if (line.rfind("LEGGI", 0) == 0) {
          const std::string content = File("d");
          EXPECT_EQ("PROG INIZIO\r\n", content.substr(0, 13));
          EXPECT_EQ("\r\nENDPROG\r\n", content.substr(content.size() - 11));
        }
        if (client.served <= call) {
          // Every call has failed once; this run was whole.
          EXPECT_EQ(0, code);
          EXPECT_GT(client.served, 0);
          break;
        }
      }
    }
  }
}

TEST_F(TableFaults, AClientThatThrowsIsAFailureOfTheDevice) {
  class Throws : public TableDevice {
    int ConfigSubtender(bool, int32_t, uint8_t*, char*, uint8_t*, uint32_t*, uint8_t*) override {
      throw 1;
    }
  };
  Throws client;
  translator->rtfClient_ = &client;
  EXPECT_EQ(111 | 0x600, Run("PSTEN ST=1"));
}

}  // namespace
