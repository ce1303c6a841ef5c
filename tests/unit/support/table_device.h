// A device client that keeps tables, writes down every call, and refuses what a test asks it
// to refuse; and a translator with the shipped words beside it, in a folder of its own.
#pragma once

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/dfltmsg.h"
#include "unit/language/shipped_language.h"
#include "unit/support/null_client.h"
#include "unit/support/temporary_folder.h"

class TableDevice : public NullClient {
 public:
  struct Department {
    std::string description;
    int64_t price = 0;
    int64_t max_price = 0;
    int32_t quantity = 0;
    int32_t vat_id = 0;
    int group_id = 0;
    bool single_shoot = false;
    bool allow_discount = false;
    bool force_description = false;
    bool is_service = false;
    bool operator==(const Department&) const = default;
  };
  struct Group {
    std::string description;
    std::string password;
    int flags = 0;
    int options = 0;
    bool operator==(const Group&) const = default;
  };
  struct Subtender {
    int type = 0;
    std::string description;
    int flags = 0;
    uint32_t preset_value = 0;
    int max_digits = 0;
    bool operator==(const Subtender&) const = default;
  };
  struct Key {
    int code = 0;
    int type = 0;
    std::string macro;
    bool operator==(const Key&) const = default;
  };

  std::vector<std::string> calls;
  std::map<int, std::string> items;  // data items; the others are refused with 106
  std::map<int, Department> departments;
  std::map<int, Group> groups;  // operators behind the groups
  std::map<int, Subtender> subtenders;
  std::map<int, int> vat_rates;  // ten-thousandths of a percent
  std::map<int, std::string> headers;
  std::map<int, Key> keys;                    // of the keyboard in hand, by position
  std::map<std::string, std::string> totals;  // "vat,type,kind" to text
  std::vector<std::string> rows;              // of the article table, for a download
  std::string date;

  // A call whose text begins with this gets the code instead of being served.
  void Refuse(const std::string& beginning, int code) { refusals_.emplace_back(beginning, code); }

  // The calls whose text begins with this.
  std::vector<std::string> CallsOf(const std::string& beginning) const {
    std::vector<std::string> found;
    for (const std::string& call : calls) {
      if (call.rfind(beginning, 0) == 0) found.push_back(call);
    }
    return found;
  }

  int GetIntProperty(int property, int* value) override {
    *value = 1;
    return Answer(Text("GetIntProperty(%d)", property));
  }
  int SetIntProperty(int property, int value) override {
    return Answer(Text("SetIntProperty(%d,%d)", property, value));
  }
  int SetStringProperty(int property, const char* value) override {
    return Answer(Text("SetStringProperty(%d,%s)", property, value));
  }
  int GetDataInternal(int item, char* value) override {
    if (const int code = Answer(Text("GetDataInternal(%d)", item))) return code;
    const auto found = items.find(item);
    if (found == items.end()) return 106;
    Put(value, found->second);
    return 0;
  }
  int SetDataInternal(int item, const char* value) override {
    if (const int code = Answer(Text("SetDataInternal(%d,%s)", item, value))) return code;
    items[item] = value;
    return 0;
  }
  int KeyCodeInput(const char* numbers, const char* printer, const char* display,
                   uint8_t terminator) override {
    std::string digits;
    for (const char* c = numbers; *c != 0; ++c) digits += Text("<%d>", *c);
    return Answer(Text("KeyCodeInput(%s,%s,%s,%d)", digits.c_str(), printer, display, terminator));
  }
  int ConfigDepartment(bool write, int32_t id, char* description, int64_t* price,
                       int64_t* max_price, int32_t* quantity, int32_t* vat, uint8_t* group,
                       bool* single, bool* discount, bool* force) override {
    return ProgramDepartment("ConfigDepartment", write, id, description, price, max_price, quantity,
                             vat, group, single, discount, force, nullptr);
  }
  int ConfigDepartmentEx(bool write, int32_t id, char* description, int64_t* price,
                         int64_t* max_price, int32_t* quantity, int32_t* vat, uint8_t* group,
                         bool* single, bool* discount, bool* force, bool* service) override {
    return ProgramDepartment("ConfigDepartmentEx", write, id, description, price, max_price,
                             quantity, vat, group, single, discount, force, service);
  }
  int ConfigGroup(bool write, int index, char* description, char* password, int* flags,
                  int* options) override {
    if (!write) {
      if (const int code = Answer(Text("ConfigGroup(read %d)", index))) return code;
      const auto found = groups.find(index);
      if (found == groups.end()) return 106;
      Put(description, found->second.description);
      Put(password, found->second.password);
      *flags = found->second.flags;
      *options = found->second.options;
      return 0;
    }
    if (const int code = Answer(Text("ConfigGroup(write %d,%s,%s,%d,%d)", index, description,
                                     password, *flags, *options))) {
      return code;
    }
    groups[index] = {description, password, *flags, *options};
    return 0;
  }
  int ConfigSubtender(bool write, int32_t id, uint8_t* type, char* description, uint8_t* flags,
                      uint32_t* preset, uint8_t* digits) override {
    if (!write) {
      if (const int code = Answer(Text("ConfigSubtender(read %d)", id))) return code;
      const auto found = subtenders.find(id);
      if (found == subtenders.end()) return 106;
      *type = static_cast<uint8_t>(found->second.type);
      Put(description, found->second.description);
      *flags = static_cast<uint8_t>(found->second.flags);
      *preset = found->second.preset_value;
      *digits = static_cast<uint8_t>(found->second.max_digits);
      return 0;
    }
    if (const int code = Answer(Text("ConfigSubtender(write %d,%d,%s,%d,%u,%d)", id, *type,
                                     description, *flags, *preset, *digits))) {
      return code;
    }
    subtenders[id] = {*type, description, *flags, *preset, *digits};
    return 0;
  }
  int ConfigKeyboard(bool write, uint8_t position, uint8_t* code, int8_t* type, char* macro,
                     uint16_t* size) override {
    if (!write) {
      if (const int refusal = Answer(Text("ConfigKeyboard(read %d,%d)", position, *type))) {
        return refusal;
      }
      const auto found = keys.find(position);
      if (found == keys.end()) return 106;
      *code = static_cast<uint8_t>(found->second.code);
      std::memcpy(macro, found->second.macro.data(), found->second.macro.size());
      *size = static_cast<uint16_t>(found->second.macro.size());
      return 0;
    }
    std::string bytes;
    for (int i = 0; i < *size; ++i) bytes += Text("<%d>", static_cast<unsigned char>(macro[i]));
    if (macro[*size] != 0) bytes += "unclosed";
    if (const int refusal = Answer(
            Text("ConfigKeyboard(write %d,%d,%d,%s)", position, *code, *type, bytes.c_str()))) {
      return refusal;
    }
    keys[position] = {*code, *type, std::string(macro, *size)};
    return 0;
  }
  int SetVatValue(int entry, const char* rate) override {
    if (const int code = Answer(Text("SetVatValue(%d,%s)", entry, rate))) return code;
    pending_rates_[entry] = std::atoi(rate);
    return 0;
  }
  int SetVatTable() override {
    if (const int code = Answer("SetVatTable()")) return code;
    for (const auto& [entry, rate] : pending_rates_) vat_rates[entry] = rate;
    pending_rates_.clear();
    return 0;
  }
  int GetVatEntry(int entry, int arguments, int* rate) override {
    if (const int code = Answer(Text("GetVatEntry(%d,%d)", entry, arguments))) return code;
    const auto found = vat_rates.find(entry);
    if (found == vat_rates.end()) return 106;
    *rate = found->second;
    return 0;
  }
  int SetHeaderLine(int line, const char* value, bool doubled) override {
    if (const int code = Answer(Text("SetHeaderLine(%d,%s,%d)", line, value, doubled))) return code;
    headers[line] = value;
    return 0;
  }
  int GetHeaderLine(int line, char* value) override {
    if (const int code = Answer(Text("GetHeaderLine(%d)", line))) return code;
    Put(value, headers[line]);
    return 0;
  }
  int EraseLogoArchive() override { return Answer("EraseLogoArchive()"); }
  int ProgramGRC(uint8_t number, const char* file, bool flag) override {
    return Answer(Text("ProgramGRC(%d,%s,%d)", number, file, flag));
  }
  int GetTotalizerExtend(int vat, int type, int kind, char* value) override {
    const std::string name = Text("%d,%d,%d", vat, type, kind);
    if (const int code = Answer("GetTotalizerExtend(" + name + ")")) return code;
    const auto found = totals.find(name);
    if (found == totals.end()) return 106;
    Put(value, found->second);
    return 0;
  }
  int GetDate(char* value) override {
    if (const int code = Answer("GetDate()")) return code;
    Put(value, date);
    return 0;
  }
  int EraseTable(int table) override { return Answer(Text("EraseTable(%d)", table)); }
  int UploadTable(int table, int type, const char* row) override {
    return Answer(Text("UploadTable(%d,%d,%s)", table, type, row));
  }
  int DownloadTable(int selector, int index, char* row) override {
    if (const int code = Answer(Text("DownloadTable(%d,%d)", selector, index))) return code;
    if (next_row_ >= rows.size()) return 111;
    Put(row, rows[next_row_++]);
    return 0;
  }

  __attribute__((format(printf, 1, 2))) static std::string Text(const char* format, ...) {
    char buffer[4096];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return buffer;
  }

 private:
  static void Put(char* buffer, const std::string& value) {
    std::memcpy(buffer, value.c_str(), value.size() + 1);
  }

  int Answer(const std::string& call) {
    calls.push_back(call);
    for (const auto& [beginning, code] : refusals_) {
      if (call.rfind(beginning, 0) == 0) return code;
    }
    return 0;
  }

  int ProgramDepartment(const char* name, bool write, int32_t id, char* description, int64_t* price,
                        int64_t* max_price, int32_t* quantity, int32_t* vat, uint8_t* group,
                        bool* single, bool* discount, bool* force, bool* service) {
    if (!write) {
      if (const int code = Answer(Text("%s(read %d)", name, id))) return code;
      const auto found = departments.find(id);
      if (found == departments.end()) return 106;
      const Department& d = found->second;
      Put(description, d.description);
      *price = d.price;
      *max_price = d.max_price;
      *quantity = d.quantity;
      *vat = d.vat_id;
      *group = static_cast<uint8_t>(d.group_id);
      *single = d.single_shoot;
      *discount = d.allow_discount;
      *force = d.force_description;
      if (service != nullptr) *service = d.is_service;
      return 0;
    }
    std::string call = Text("%s(write %d,%s,%lld,%lld,%d,%d,%d,%d%d%d", name, id, description,
                            static_cast<long long>(*price), static_cast<long long>(*max_price),
                            *quantity, *vat, *group, *single, *discount, *force);
    if (service != nullptr) call += Text("%d", *service);
    if (const int code = Answer(call + ")")) return code;
    const bool kept = departments[id].is_service;
    departments[id] = {
        description, *price,  *max_price, *quantity, *vat,
        *group,      *single, *discount,  *force,    service != nullptr ? *service : kept};
    return 0;
  }

  std::vector<std::pair<std::string, int>> refusals_;
  std::map<int, int> pending_rates_;
  size_t next_row_ = 0;
};

// Lines run through the translator as a host's do. File names are lower-cased by the
// commands, so the files live in the current folder, which is the test's own.
class TableTest : public testing::Test {
 protected:
  TableTest() : before_(std::filesystem::current_path()) {
    int result = 0;
    translator = shipped::Read(&result);
    EXPECT_EQ(1, result);
    WriteDefaultMessages(*translator);
    translator->TStato.bInitOK = true;
    translator->rtfClient_ = &device;
    translator->iCurEcrNum = 1;
    translator->iEcrSelected = 1;
    translator->pCurConf = &translator->EcrConfArray[1];
    folder_ = MakeTemporaryFolder().string();
    std::filesystem::current_path(folder_);
  }
  ~TableTest() override {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  // The code of a line; its answer is then in answer_text.
  long Run(const std::string& line) {
    std::string copy = line;
    std::vector<char> result(1024);
    const long code = translator->EcrCmd(copy.data(), result.data());
    answer_text = result.data();
    return code;
  }

  static std::string File(const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
  static void WriteFile(const std::string& name, const std::string& content) {
    std::ofstream(name, std::ios::binary) << content;
  }
  static bool Exists(const std::string& name) { return std::filesystem::exists(name); }

  using Calls = std::vector<std::string>;

  TableDevice device;
  std::unique_ptr<EcrCmdCommand> translator;
  std::string answer_text;

 private:
  std::filesystem::path before_;
  std::filesystem::path folder_;
};
