// A sale line of five fields beside the same order as JSON: what a desk would send to a service
// that has no language of its own. Each reads the text, makes the same integers of the values and
// hands them to the same call of the same device, which counts what it gets.
#include <benchmark/benchmark.h>
#include <rapidjson/reader.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "bench_tools.h"
#include "managermachine/managerparams.h"
#include "managermachine/pflitemtype.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "quiet_client.h"
#include "wide_language.h"

namespace {

constexpr char kSaleLine[] = "VEND REP=1, QTA=1.5, PREUN=12.34, DES='Pane di casa', UM='kg'";
constexpr char kSaleJson[] =
    R"({"command":"VEND","REP":1,"QTA":1.5,"PREUN":12.34,"DES":"Pane di casa","UM":"kg"})";
constexpr QuietClient::Sale kExpected = {1, 1500, 123400, "Pane di casa", "kg"};

void SaleLine(benchmark::State& state) {
  TemporaryFile language(WideLanguage());
  QuietClient client;
  const auto translator = std::make_unique<EcrCmdCommand>();
  Require(translator->TradInit(language.path(), 0, &client, true) == 0,
          "the definition file was refused");
  std::string line = kSaleLine;
  char result[512];
  for (auto _ : state) {
    benchmark::DoNotOptimize(line.data());
    benchmark::ClobberMemory();
    Require(translator->EcrCmd(line.data(), result) == 0, result);
  }
  client.RequireSales(state.iterations(), kExpected);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SaleLine)->Name("sale_line/ours");

// What a reader of either library gathers, and the call that it makes of it.
struct Order {
  int department = 0;
  double quantity = 0;
  double unit_price = 0;
  std::array<char, 64> description{};
  std::array<char, 16> unit{};
  bool is_sale = false;

  int Sell(RtfClientInterface& client) const {
    constexpr double kThousandths = 1000;
    constexpr double kTenThousandths = 10000;
    return client.PrintRecItemEx(
        PflItemType::kPrintRecItem, description.data(), 0,
        static_cast<int>(std::lround(quantity * kThousandths)), ManagerParams::kUnsetVatInfo,
        std::llround(unit_price * kTenThousandths), unit.data(), department, true, "");
  }
};

template <size_t kSize>
void Keep(std::array<char, kSize>& to, const char* text, size_t length) {
  const size_t kept = std::min(length, kSize - 1);
  std::memcpy(to.data(), text, kept);
  to[kept] = 0;
}

class OrderReader : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, OrderReader> {
 public:
  bool Key(const char* name, rapidjson::SizeType, bool) {
    static constexpr std::array<const char*, 6> kNames = {"command", "REP", "QTA",
                                                          "PREUN",   "DES", "UM"};
    for (field_ = 0; field_ < kNames.size(); ++field_) {
      if (std::strcmp(name, kNames[field_]) == 0) return true;
    }
    return false;
  }
  bool Uint(unsigned number) {
    if (field_ == 1) {
      order_.department = static_cast<int>(number);
      return true;
    }
    return Double(number);
  }
  bool Double(double number) {
    if (field_ != 2 && field_ != 3) return false;
    (field_ == 2 ? order_.quantity : order_.unit_price) = number;
    return true;
  }
  bool String(const char* text, rapidjson::SizeType length, bool) {
    switch (field_) {
      case 0:
        return order_.is_sale = std::strcmp(text, "VEND") == 0;
      case 4:
        Keep(order_.description, text, length);
        return true;
      case 5:
        Keep(order_.unit, text, length);
        return true;
      default:
        return false;
    }
  }
  const Order& order() const { return order_; }

 private:
  Order order_;
  size_t field_ = 0;
};

void SaleByRapidJson(benchmark::State& state) {
  QuietClient client;
  const std::string text = kSaleJson;
  for (auto _ : state) {
    // Reading in place writes into the text.
    std::array<char, sizeof kSaleJson> buffer;
    benchmark::DoNotOptimize(text.data());
    std::memcpy(buffer.data(), text.c_str(), buffer.size());
    rapidjson::Reader reader;
    rapidjson::InsituStringStream stream(buffer.data());
    OrderReader handler;
    const bool read = !reader.Parse<rapidjson::kParseInsituFlag>(stream, handler).IsError();
    Require(read && handler.order().is_sale && handler.order().Sell(client) == 0, "not read");
  }
  client.RequireSales(state.iterations(), kExpected);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SaleByRapidJson)->Name("sale_line/rapidjson");

void SaleByNlohmann(benchmark::State& state) {
  QuietClient client;
  const std::string text = kSaleJson;
  for (auto _ : state) {
    benchmark::DoNotOptimize(text.data());
    benchmark::ClobberMemory();
    const nlohmann::json json = nlohmann::json::parse(text);
    Require(json.at("command").get_ref<const std::string&>() == "VEND", "not read");
    Order order;
    order.department = json.at("REP").get<int>();
    order.quantity = json.at("QTA").get<double>();
    order.unit_price = json.at("PREUN").get<double>();
    const auto& description = json.at("DES").get_ref<const std::string&>();
    Keep(order.description, description.data(), description.size());
    const auto& unit = json.at("UM").get_ref<const std::string&>();
    Keep(order.unit, unit.data(), unit.size());
    Require(order.Sell(client) == 0, "refused");
  }
  client.RequireSales(state.iterations(), kExpected);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SaleByNlohmann)->Name("sale_line/nlohmann");

}  // namespace
