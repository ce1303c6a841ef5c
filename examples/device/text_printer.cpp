// A device in C++: it prints receipts into a text file, and closes the day. Begin with a copy of
// it: what Printer does with a file becomes what your driver does with its printer.
//
// Its options are file=PATH, the file that is printed to, and training=1.
#include <fcntl.h>
#include <lorimatrt/client.h>
#include <lorimatrt/device.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr int64_t kMost = 99'999'999'900;  // 9999999.99 in ten-thousandths
constexpr int kDepartments = 40;

// The paper, which one process has at a time.
class Paper {
 public:
  ~Paper() {
    if (file_ >= 0) close(file_);
  }
  // LORIMAT_DEVICE_OK, or why not.
  int Open(const char* path, std::string* why) {
    file_ = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (file_ < 0) {
      *why = std::string(path) + ": " + std::strerror(errno);
      return LORIMAT_DEVICE_FAILED;
    }
    if (flock(file_, LOCK_EX | LOCK_NB) != 0) {
      *why = std::string(path) + " is printed to by another program";
      return LORIMAT_DEVICE_IN_USE;
    }
    return LORIMAT_DEVICE_OK;
  }
  bool Print(const std::string& line) {
    const std::string text = line + "\n";
    if (write(file_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) return false;
    lines_.push_back(line);
    return true;
  }
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  int file_ = -1;
  std::vector<std::string> lines_;
};

class Printer : public RtfClientBase {
 public:
  Paper& paper() { return paper_; }
  bool training = false;

  bool GetClaimed() override { return true; }
  bool GetDeviceEnabled() override { return true; }
  int GetState() override { return RTF_S_IDLE; }

  // What opens a receipt: the first sale asks for the state, and begins one in the monitor's alone.
  int GetIntProperty(int property, int* value) override {
    if (property != RTF_PIDXFptr_PrinterState) return RTF_E_ILLEGAL;
    *value = !open_       ? RTF_FPTR_PS_MONITOR
             : paid_ == 0 ? RTF_FPTR_PS_FISCAL_RECEIPT
                          : RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
    return RTF_SUCCESS;
  }
  int BeginFiscalReceipt(bool) override {
    if (open_) return RTF_EFPTR_WRONG_STATE;
    open_ = true;
    total_ = paid_ = 0;
    return RTF_SUCCESS;
  }
  // With a quantity the unit price counts, without one the price.
  int PrintRecItemEx(int type, const char* description, int64_t price, int quantity, int,
                     int64_t unit_price, const char*, int department, bool, const char*) override {
    if (!open_ || paid_ > 0) return RTF_EFPTR_WRONG_STATE;
    if (type != PflItemType::kPrintRecItem) return RTF_E_ILLEGAL;
    if (department < 1 || department > kDepartments) return RTF_EFPTR_BAD_VAT;
    if (quantity < 0 || quantity > 9'999'999) return RTF_EFPTR_BAD_ITEM_QUANTITY;
    int64_t amount = quantity > 0 ? unit_price : price;
    if (amount <= 0 || amount > kMost) return RTF_EFPTR_BAD_PRICE;
    if (quantity > 0) amount = amount * quantity / 1000;
    amount = (amount + 50) / 100 * 100;  // whole cents
    if (amount > kMost - total_) return RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW;
    const std::string text = description != nullptr && *description != 0
                                 ? description
                                 : "REPARTO " + std::to_string(department);
    if (!Print(text, amount)) return RTF_E_FAILURE;
    total_ += amount;
    return RTF_SUCCESS;
  }
  // What covers the total ends the receipt: the library does not call EndFiscalReceipt then.
  int PrintRecTotalEx(int64_t payment, const char* tender, bool rest) override {
    if (!open_ || total_ == 0) return RTF_EFPTR_WRONG_STATE;
    if (tender == nullptr || std::string(tender) != "0") return RTF_E_NOEXIST;  // cash alone
    if (rest) payment = total_ - paid_;
    if (payment <= 0 || payment > kMost) return RTF_EFPTR_BAD_ITEM_AMOUNT;
    if (!Print("CONTANTI", payment)) return RTF_E_FAILURE;
    paid_ += payment;
    if (paid_ < total_) return RTF_SUCCESS;
    open_ = false;
    day_ += total_;
    const bool printed = Print("TOTALE", total_) && Print("RESTO", paid_ - total_);
    return printed ? RTF_SUCCESS : RTF_E_FAILURE;
  }
  int PrintZReportEx(bool) override {
    if (open_) return RTF_EFPTR_WRONG_STATE;
    if (!Print("CHIUSURA", day_)) return RTF_E_FAILURE;
    day_ = 0;
    return RTF_SUCCESS;
  }
  // The way out, from any state.
  int ResetPrn() override {
    open_ = false;
    return RTF_SUCCESS;
  }

 private:
  bool Print(const std::string& text, int64_t amount) {
    char line[64];
    std::snprintf(line, sizeof line, "%-30.30s%9" PRId64 ",%02d", text.c_str(), amount / 10000,
                  static_cast<int>(amount / 100 % 100));
    return paper_.Print(training ? std::string(line) + " PROVA" : line);
  }

  Paper paper_;
  bool open_ = false;
  int64_t total_ = 0;  // of the receipt, its payments, and the day: ten-thousandths
  int64_t paid_ = 0;
  int64_t day_ = 0;
};

bool PaperLine(void* data, size_t number, char* text, size_t room) {
  const std::vector<std::string>& lines = static_cast<Printer*>(data)->paper().lines();
  if (number >= lines.size() || room == 0) return false;
  std::snprintf(text, room, "%s", lines[number].c_str());
  return true;
}

bool Training(void* data) { return static_cast<Printer*>(data)->training; }

int Refuse(lorimat_device_plugin* plugin, int result, const std::string& why) {
  std::snprintf(plugin->error, sizeof plugin->error, "%s", why.c_str());
  return result;
}

int Open(lorimat_device_plugin* plugin) {
  if (const int other = lorimat_device_begin(plugin)) return other;
  plugin->name = "text-printer";
  plugin->version = "1.0";
  const char* file = lorimat_device_find_option(plugin, "file");
  if (file == nullptr) {
    return Refuse(plugin, LORIMAT_DEVICE_BAD_OPTION, "which file? Name it with file=PATH");
  }
  for (size_t i = 0; i < plugin->option_count; ++i) {
    const std::string key = plugin->options[i].key;
    if (key != "file" && key != "training") {
      return Refuse(plugin, LORIMAT_DEVICE_BAD_OPTION, "there is no option " + key);
    }
  }
  auto printer = std::make_unique<Printer>();
  const char* training = lorimat_device_find_option(plugin, "training");
  printer->training = training != nullptr && std::string(training) == "1";
  std::string why;
  if (const int result = printer->paper().Open(file, &why)) return Refuse(plugin, result, why);
  plugin->kind = LORIMAT_DEVICE_CPP;
  plugin->can = LORIMAT_DEVICE_PAPER | LORIMAT_DEVICE_TRAINING;
  plugin->paper_line = &PaperLine;
  plugin->training = &Training;
  plugin->client = static_cast<RtfClientInterface*>(printer.get());
  plugin->data = printer.release();
  return LORIMAT_DEVICE_OK;
}

}  // namespace

int lorimat_device_open(lorimat_device_plugin* plugin) {
  try {
    return Open(plugin);
  } catch (const std::bad_alloc&) {
    return Refuse(plugin, LORIMAT_DEVICE_FAILED, "there is not enough memory");
  }
}

void lorimat_device_close(lorimat_device_plugin* plugin) {
  delete static_cast<Printer*>(plugin->data);
}
