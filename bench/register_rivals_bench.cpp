// The register beside what the same work costs by the bare means that it is made of: a receipt
// beside one durable commit, an upload of articles beside the rows alone, the paper as PDF beside
// cairo, a receipt in the process beside one by HTTP. Names are SUBJECT/SIDE; bench/goals.tsv has
// the goals.
//
// Files lie in the folder for temporary files, all on one file system.
#include <benchmark/benchmark.h>
#include <cairo-pdf.h>
#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench_tools.h"
#include "register/client/virtual_register.h"
#include "register/paper/picture.h"
#include "register_work.h"

namespace {

using lorimat::VirtualRegister;

// Fewer than a day has numbers.
constexpr int kReceipts = 400;

// SQLite as it is, with the settings of the register's file.
class Bare {
 public:
  explicit Bare(const std::string& file) {
    Require(sqlite3_open(file.c_str(), &handle_) == SQLITE_OK, "the database does not open");
    Run("PRAGMA journal_mode = WAL");
    Run("PRAGMA synchronous = FULL");
  }
  ~Bare() {
    sqlite3_finalize(statement_);
    sqlite3_close(handle_);
  }
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;

  void Run(const char* sql) {
    Require(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
  }
  void Prepare(const char* sql) {
    Require(sqlite3_prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr) ==
                SQLITE_OK,
            sql);
  }
  sqlite3_stmt* statement() { return statement_; }
  void Text(int parameter, const std::string& text) {
    sqlite3_bind_text(statement_, parameter, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
  }
  void Step() {
    Require(sqlite3_step(statement_) == SQLITE_DONE, "the row is refused");
    sqlite3_reset(statement_);
  }

 private:
  sqlite3* handle_ = nullptr;
  sqlite3_stmt* statement_ = nullptr;
};

// --- A receipt of five lines, in the register's file

void ReceiptStored(benchmark::State& state) {
  const TemporaryFolder folder;
  VirtualRegister device(WorkSettings(folder.File("register")));
  for (auto _ : state) SellFiveLines(device);
}
BENCHMARK(ReceiptStored)->Name("receipt_stored/ours")->Iterations(kReceipts)->UseRealTime();

void BareCommit(benchmark::State& state) {
  const TemporaryFolder folder;
  Bare bare(folder.File("bare"));
  bare.Run("CREATE TABLE receipt (id INTEGER PRIMARY KEY, total INTEGER, time INTEGER)");
  bare.Prepare("INSERT INTO receipt (total, time) VALUES (?, ?)");
  int64_t count = 0;
  for (auto _ : state) {
    sqlite3_bind_int64(bare.statement(), 1, 100 * ++count);
    sqlite3_bind_int64(bare.statement(), 2, 20240115103000 + count);
    bare.Step();
  }
}
BENCHMARK(BareCommit)->Name("receipt_stored/bare_commit")->Iterations(kReceipts)->UseRealTime();

// --- Lines of one receipt, in the register's file

void ReceiptLines(benchmark::State& state) {
  const TemporaryFolder folder;
  VirtualRegister device(WorkSettings(folder.File("register")));
  SellFiveLines(device);  // so that nothing of the first is measured
  for (auto _ : state) {
    bool sold = device.BeginFiscalReceipt(true) == 0;
    for (int64_t line = 0; line < state.range(0); ++line) {
      sold = sold && device.PrintRecItemEx(0, "PANE DI CASA", 100, 0, -1, 0, "", 4, true, "") == 0;
    }
    Require(sold && device.PrintRecTotalEx(0, "0", true) == 0, "the register refuses a sale");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ReceiptLines)
    ->Name("receipt_lines/ours")
    ->RangeMultiplier(10)
    ->Range(10, 10000)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// --- Articles, answered one by one

void ArticleUpload(benchmark::State& state) {
  const std::vector<std::string> rows = ArticleRows(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    const auto folder = std::make_unique<TemporaryFolder>();
    auto device = std::make_unique<VirtualRegister>(WorkSettings(folder->File("register")));
    state.ResumeTiming();
    UploadArticles(*device, rows);
    state.PauseTiming();
    device.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ArticleUpload)
    ->Name("article_upload/ours")
    ->Arg(6000)
    ->Arg(60000)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// The same rows with the same keys, each a commit of its own that is not waited for, and one that
// is at the end.
void BareRows(benchmark::State& state) {
  const std::vector<lorimat::Article> articles = Articles(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    const auto folder = std::make_unique<TemporaryFolder>();
    auto bare = std::make_unique<Bare>(folder->File("bare"));
    bare->Run("PRAGMA synchronous = NORMAL");
    bare->Run(
        "CREATE TABLE article (place INTEGER PRIMARY KEY, code TEXT NOT NULL UNIQUE, "
        "description TEXT NOT NULL, department INTEGER NOT NULL, price INTEGER NOT NULL)");
    bare->Prepare("REPLACE INTO article VALUES (?, ?, ?, ?, ?)");
    state.ResumeTiming();
    int place = 0;
    for (const lorimat::Article& article : articles) {
      sqlite3_bind_int(bare->statement(), 1, ++place);
      bare->Text(2, article.code);
      bare->Text(3, article.description);
      sqlite3_bind_int(bare->statement(), 4, article.department);
      sqlite3_bind_int64(bare->statement(), 5, article.price);
      bare->Step();
    }
    bare->Run("PRAGMA synchronous = FULL");
    bare->Run("UPDATE article SET price = price + 1 WHERE place = 1");
    state.PauseTiming();
    bare.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BareRows)
    ->Name("article_upload/bare_rows")
    ->Arg(6000)
    ->Arg(60000)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// --- The paper as PDF, a page for each receipt

// script/bench leaves these out where it is not asked for them.
constexpr int64_t kMostPapers = 100000;

// So many times the receipt of five lines.
lorimat::Paper PaperOf(int64_t receipts) {
  VirtualRegister device(WorkSettings());
  SellFiveLines(device);
  const lorimat::Paper one = device.paper();
  lorimat::Paper paper;
  for (int64_t receipt = 0; receipt < receipts; ++receipt) paper.Append(one);
  return paper;
}

void PaperPdf(benchmark::State& state) {
  const lorimat::Paper paper = PaperOf(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(RenderPdf(paper));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The same lines on the same pages, each line a text of one font.
void CairoPdf(benchmark::State& state) {
  const lorimat::Paper paper = PaperOf(state.range(0));
  const size_t page = paper.lines().size() / static_cast<size_t>(state.range(0));
  constexpr double kPoints = 72.0 / 25.4 / lorimat::kDotsPerMillimetre;
  for (auto _ : state) {
    std::string file;
    const auto append = [](void* to, const unsigned char* data, unsigned size) {
      static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(data), size);
      return CAIRO_STATUS_SUCCESS;
    };
    const double height =
        static_cast<double>(page) * lorimat::kRowHeight + 2.0 * lorimat::kEndMargin;
    cairo_surface_t* const surface = cairo_pdf_surface_create_for_stream(
        append, &file, lorimat::kPictureWidth * kPoints, height * kPoints);
    cairo_t* const drawing = cairo_create(surface);
    cairo_scale(drawing, kPoints, kPoints);
    cairo_select_font_face(drawing, "DejaVu Sans Mono", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(drawing, 23);
    size_t row = 0;
    for (const std::string& line : paper.lines()) {
      cairo_move_to(drawing, lorimat::kSideMargin,
                    lorimat::kEndMargin + static_cast<double>(++row) * lorimat::kRowHeight);
      cairo_show_text(drawing, line.c_str());
      if (row < page) continue;
      cairo_show_page(drawing);
      row = 0;
    }
    Require(cairo_status(drawing) == CAIRO_STATUS_SUCCESS, "cairo does not draw");
    cairo_destroy(drawing);
    cairo_surface_finish(surface);
    cairo_surface_destroy(surface);
    benchmark::DoNotOptimize(file);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(PaperPdf)
    ->Name("paper_pdf/ours")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(kMostPapers)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(CairoPdf)
    ->Name("paper_pdf/cairo")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(kMostPapers)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
