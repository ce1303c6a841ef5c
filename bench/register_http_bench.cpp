// A receipt on a register in the process beside the same receipt by HTTP and JSON on the loopback
// interface, on the same kind of register: one request for each operation, over a connection for
// each, as the library does it by itself, and over one that is kept. Processor time is that of both
// sides.
#include <benchmark/benchmark.h>
#include <httplib.h>

#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "bench_tools.h"
#include "register/client/virtual_register.h"
#include "register_work.h"
#include "rpccommon/client/rtfclientbase.h"

namespace {

using lorimat::VirtualRegister;
using nlohmann::json;

// Fewer than a day has numbers.
constexpr int kReceipts = 2000;

void ReceiptInProcess(benchmark::State& state) {
  VirtualRegister device(WorkSettings());
  for (auto _ : state) SellFiveLines(device);
}
BENCHMARK(ReceiptInProcess)
    ->Name("receipt_in_process/ours")
    ->Iterations(kReceipts)
    ->MeasureProcessCPUTime();

int Carry(VirtualRegister& device, const json& call) {
  const std::string name = call.at("operation");
  if (name == "BeginFiscalReceipt") return device.BeginFiscalReceipt(call.at("header"));
  if (name == "PrintRecItemEx") {
    return device.PrintRecItemEx(
        call.at("type"), call.at("description").get<std::string>().c_str(), call.at("price"),
        call.at("quantity"), call.at("vat"), call.at("unit_price"),
        call.at("unit_name").get<std::string>().c_str(), call.at("department"), call.at("print"),
        call.at("article").get<std::string>().c_str());
  }
  if (name == "PrintRecTotalEx") {
    return device.PrintRecTotalEx(call.at("payment"), call.at("tender").get<std::string>().c_str(),
                                  call.at("automatic"));
  }
  return RTF_E_ILLEGAL;
}

class Server {
 public:
  Server() : device_(WorkSettings()) {
    server_.Post("/operation", [this](const httplib::Request& request, httplib::Response& answer) {
      const int code = Carry(device_, json::parse(request.body));
      answer.set_content(json{{"code", code}}.dump(), "application/json");
    });
    server_.set_keep_alive_max_count(1000000);
    server_.set_tcp_nodelay(true);
    port_ = server_.bind_to_any_port("127.0.0.1");
    Require(port_ > 0, "no port for the server");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running()) std::this_thread::yield();
  }
  ~Server() {
    server_.stop();
    thread_.join();
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  int port() const { return port_; }

 private:
  VirtualRegister device_;
  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
};

// What SellFiveLines calls goes to the server.
class RemoteRegister : public RtfClientBase {
 public:
  RemoteRegister(int port, bool keeps) : client_("127.0.0.1", port) {
    client_.set_keep_alive(keeps);
    client_.set_tcp_nodelay(true);
  }

  int BeginFiscalReceipt(bool header) override {
    return Send({{"operation", "BeginFiscalReceipt"}, {"header", header}});
  }
  int PrintRecItemEx(int type, const char* description, int64_t price, int quantity, int vat,
                     int64_t unit_price, const char* unit_name, int department, bool print,
                     const char* article) override {
    return Send({{"operation", "PrintRecItemEx"},
                 {"type", type},
                 {"description", description},
                 {"price", price},
                 {"quantity", quantity},
                 {"vat", vat},
                 {"unit_price", unit_price},
                 {"unit_name", unit_name},
                 {"department", department},
                 {"print", print},
                 {"article", article}});
  }
  int PrintRecTotalEx(int64_t payment, const char* tender, bool automatic) override {
    return Send({{"operation", "PrintRecTotalEx"},
                 {"payment", payment},
                 {"tender", tender},
                 {"automatic", automatic}});
  }

 private:
  int Send(const json& call) {
    const httplib::Result answer = client_.Post("/operation", call.dump(), "application/json");
    Require(answer && answer->status == 200, "the server does not answer");
    return json::parse(answer->body).at("code");
  }

  httplib::Client client_;
};

void ReceiptByHttp(benchmark::State& state, bool keeps) {
  const Server server;
  RemoteRegister device(server.port(), keeps);
  for (auto _ : state) SellFiveLines(device);
}
BENCHMARK_CAPTURE(ReceiptByHttp, each, false)
    ->Name("receipt_in_process/http_json")
    ->Iterations(kReceipts)
    ->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(ReceiptByHttp, kept, true)
    ->Name("receipt_in_process/http_json_kept")
    ->Iterations(kReceipts)
    ->MeasureProcessCPUTime();

}  // namespace
