// The roll of paper as rows, one for what each operation printed, or several.
#include <algorithm>
#include <utility>
#include <variant>

#include "register/paper/barcode.h"
#include "register/storage/store_rows.h"
#include "register/storage/store_tables.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

// So many lines at most stand in one piece: the roll is torn off between pieces, and a long report
// is one operation.
constexpr size_t kPieceLines = 1000;

enum RowKind { kCut, kSized, kBarcode, kLogo };

void PutRow(const CutRow&, RowEncoder* record) { record->Number(kCut); }
void PutRow(const SizedRow& row, RowEncoder* record) { record->Number(kSized).Text(row.sizes); }
void PutRow(const BarcodeRow& row, RowEncoder* record) {
  record->Number(kBarcode).Text(row.type).Text(row.data).Number(row.scale);
  record->Number(row.check_digit ? 1 : 0).Number(static_cast<int>(row.alignment));
}
void PutRow(const LogoRow& row, RowEncoder* record) { record->Number(kLogo).Text(row.file); }

bool TakeRow(RowDecoder* record, decltype(PaperRow::content)* content) {
  switch (record->Int()) {
    case kCut:
      *content = CutRow{};
      break;
    case kSized:
      *content = SizedRow{std::string(record->Text())};
      break;
    case kBarcode: {
      const BarcodeType* type = FindBarcode(record->Text());
      BarcodeRow row;
      if (type != nullptr) row.type = type->id;
      row.data = record->Text();
      row.scale = record->Int();
      row.check_digit = record->Int() != 0;
      const int alignment = record->Int();
      if (type == nullptr || row.scale < 1 || row.scale > 9 || alignment < 0 ||
          alignment > static_cast<int>(Alignment::kRight)) {
        return false;
      }
      row.alignment = static_cast<Alignment>(alignment);
      *content = std::move(row);
      break;
    }
    case kLogo:
      *content = LogoRow{std::string(record->Text())};
      break;
    default:
      return false;
  }
  return record->good();
}

}  // namespace

void StoreRoll(Database& database, const Paper& paper, const Paper::Extent& from) {
  auto row = paper.rows().begin() + static_cast<std::ptrdiff_t>(from.rows);
  for (size_t begin = from.lines, end = 0; begin < paper.lines().size(); begin = end) {
    end = std::min(begin + kPieceLines, paper.lines().size());
    RowEncoder rows;
    for (; row != paper.rows().end() && row->line < end; ++row) {
      rows.Number(static_cast<int64_t>(row->line - begin));
      rows.Number(static_cast<int64_t>(row->line_count));
      std::visit([&rows](const auto& content) { PutRow(content, &rows); }, row->content);
      // A barcode of several lines is not torn apart.
      end = std::max(end, row->line + row->line_count);
    }
    database.Prepare("INSERT INTO roll (first_line, lines, text, rows) VALUES (?, ?, ?, ?)")
        .With(paper.dropped() + begin, end - begin, JoinLines(paper.lines(), begin, end),
              rows.text())
        .Run();
  }
}

Paper LoadRoll(Database& database) {
  Paper paper;
  Statement pieces =
      database.Prepare("SELECT first_line, lines, text, rows FROM roll ORDER BY first_line");
  bool first = true;
  for (; pieces.Step(); first = false) {
    const int64_t at = pieces.Integer(0);
    if (first && at >= 0) paper.StartAt(static_cast<size_t>(at));
    const size_t begin = paper.lines().size();
    if (at != static_cast<int64_t>(paper.dropped() + begin)) database.Damaged("roll");
    for (std::string& line : SplitLines(pieces.Text(2))) paper.Line(std::move(line));
    const size_t lines = paper.lines().size() - begin;
    if (pieces.Integer(1) != static_cast<int64_t>(lines)) database.Damaged("roll");
    RowDecoder rows(pieces.Text(3));
    while (rows.good() && !rows.done()) {
      PaperRow row;
      const int64_t line = rows.Number();
      const int64_t count = rows.Number();
      if (!TakeRow(&rows, &row.content) || line < 0 || count < 1 ||
          line > static_cast<int64_t>(lines) || count > static_cast<int64_t>(lines) - line) {
        database.Damaged("roll");
      }
      const SizedRow* sized = std::get_if<SizedRow>(&row.content);
      row.line = begin + static_cast<size_t>(line);
      row.line_count = static_cast<size_t>(count);
      if (sized != nullptr && sized->sizes.size() > paper.lines()[row.line].size()) {
        database.Damaged("roll");
      }
      paper.Row(std::move(row));
    }
    if (!rows.done()) database.Damaged("roll");
  }
  return paper;
}

size_t TrimRoll(Database& database, const Paper& paper, size_t lines) {
  const size_t end = paper.dropped() + paper.lines().size();
  size_t first = paper.dropped();
  {
    Statement row = database.Prepare(
        "SELECT first_line FROM roll WHERE first_line <= ? ORDER BY first_line DESC LIMIT 1");
    row.With(end > lines ? end - lines : 0);
    if (row.Step()) first = std::max(first, static_cast<size_t>(row.Integer(0)));
  }
  database.Prepare("DELETE FROM roll WHERE first_line < ?").With(first).Run();
  return first;
}

}  // namespace lorimat
