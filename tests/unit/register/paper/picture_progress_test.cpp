// The drawing of a long paper: how far it has come, stopping it, and what it costs.
#include <utility>
#include <vector>

#include "picture_fixture.h"

namespace lorimat {
namespace {

using Calls = std::vector<std::pair<size_t, size_t>>;
using Render = std::string (*)(const Paper&, const PictureProgress&);

constexpr Render kRenders[] = {&RenderPng, &RenderPdf};

// Four lines, two of them rows of their own.
Paper FourLines() {
  Paper paper;
  paper.Text("A");
  paper.Barcode({"02", "8001234567897", 1, false, Alignment::kCentre}, "EAN13");
  paper.Text("B");
  paper.Cut();
  return paper;
}

// Both rows are laid out first; then the lines are drawn.
const Calls kCalls = {{0, 4}, {0, 4}, {0, 4}, {1, 4}, {2, 4}, {3, 4}, {4, 4}};

TEST(PictureProgress, TellsTheLinesAheadOfEachAndAtTheEnd) {
  for (const Render render : kRenders) {
    Calls calls;
    const std::string with = render(FourLines(), [&](size_t done, size_t all) {
      calls.emplace_back(done, all);
      return true;
    });
    EXPECT_EQ(calls, kCalls);
    EXPECT_TRUE(with == render(FourLines(), nullptr));
  }
}

TEST(PictureProgress, StopsWhereItIsTold) {
  for (const Render render : kRenders) {
    for (size_t at = 1; at <= kCalls.size(); ++at) {
      size_t calls = 0;
      EXPECT_THROW(
          static_cast<void>(render(FourLines(), [&](size_t, size_t) { return ++calls != at; })),
          PictureStopped)
          << at;
      EXPECT_EQ(calls, at);
    }
  }
}

// A line is drawn once, and at the edge of a band again.
TEST(PictureProgress, ALongPaperCostsAsMuchPerLineAsAShortOne) {
  for (const size_t lines : {100, 1000, 4000}) {
    Paper paper;
    for (size_t line = 0; line < lines; ++line) paper.Text(line % 20 == 0 ? "A" : "");
    for (const Render render : kRenders) {
      size_t drawn = 0;
      static_cast<void>(render(paper, [&](size_t, size_t) { return ++drawn != 0; }));
      const size_t bands = (2 * kEndMargin + lines * kRowHeight) / 1024 + 1;
      EXPECT_GT(drawn, lines);
      EXPECT_LE(drawn, lines + 2 * bands + 1);
    }
  }
}

}  // namespace
}  // namespace lorimat
