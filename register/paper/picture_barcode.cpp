#include "register/paper/picture_barcode.h"

#include <zint.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "register/paper/picture.h"

namespace lorimat {
namespace {

struct Symbology {
  std::string_view type;
  int zint;
  int module;  // dots at scale 1
};

// EAN and UPC codes are read from afar and made larger; the squares of a matrix have to be
// larger than bars.
constexpr Symbology kSymbologies[] = {
    {"00", BARCODE_UPCA, 3},    {"01", BARCODE_UPCE, 3},   {"02", BARCODE_EANX, 3},
    {"03", BARCODE_EANX, 3},    {"04", BARCODE_CODE39, 2}, {"05", BARCODE_C25INTER, 2},
    {"06", BARCODE_CODABAR, 2}, {"07", BARCODE_CODE93, 2}, {"08", BARCODE_CODE128, 2},
    {"09", BARCODE_PDF417, 2},  {"10", BARCODE_QRCODE, 4}, {"11", BARCODE_DATAMATRIX, 4},
};

// The least that readers are promised, in modules (ISO/IEC 15438).
constexpr int kPdf417RowHeight = 3;

bool AllZeros(std::string_view digits) {
  return digits.find_first_not_of('0') == std::string_view::npos;
}

// The number system and the six digits of the UPC-E code that stands for a UPC-A code of eleven
// digits, by the four patterns of zeros that may be left out (ISO/IEC 15420). Empty for a code
// that has none.
std::string ShortenUpc(std::string_view upc) {
  const std::string_view maker = upc.substr(1, 5);
  const std::string_view product = upc.substr(6, 5);
  const std::string system(upc.substr(0, 1));
  const auto join = [&](size_t makers, size_t products, char last) {
    return system + std::string(maker.substr(0, makers)) +
           std::string(product.substr(5 - products)) + last;
  };
  if (maker[2] <= '2' && AllZeros(maker.substr(3)) && AllZeros(product.substr(0, 2))) {
    return join(2, 3, maker[2]);
  }
  if (AllZeros(maker.substr(3)) && AllZeros(product.substr(0, 3))) return join(3, 2, '3');
  if (maker[4] == '0' && AllZeros(product.substr(0, 4))) return join(4, 1, '4');
  if (AllZeros(product.substr(0, 4)) && product[4] >= '5') return join(5, 0, product[4]);
  return {};
}

// What the bars are made from: check digits, which the register has looked at, are left to
// the encoder. Empty for what the type cannot hold.
std::string Content(const BarcodeRow& barcode, int* zint) {
  const std::string& data = barcode.data;
  switch (*zint) {
    case BARCODE_UPCA:
      return data.substr(0, 11);
    case BARCODE_EANX:
      return data.substr(0, barcode.type == "03" ? 7 : 12);
    case BARCODE_UPCE: {
      if (data.size() == 6) return data;
      // Only the number systems 0 and 1 can be shortened.
      if (data.empty() || data[0] > '1') return {};
      if (data.size() == 7) return data;
      if (data.size() == 8) {
        *zint = BARCODE_UPCE_CHK;
        return data;
      }
      return data.size() >= 11 ? ShortenUpc(data) : std::string();
    }
    case BARCODE_CODABAR:
      // The letters at both ends are part of the bars; data without them gets them.
      return data.find_first_of("ABCD") == data.npos ? "A" + data + "A" : data;
    default:
      return data;
  }
}

int ModuleDots(int wanted, int modules) {
  return modules > 0 ? std::min(wanted, kPrintWidth / modules) : 0;
}

struct DeleteSymbol {
  void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
};

}  // namespace

int Bars::height_in_dots() const {
  if (!two_dimensional) return kBarHeight;
  return static_cast<int>(rows.size()) * row_height * module;
}

int Bars::light_space() const { return two_dimensional ? 4 * module : 8; }

std::optional<Bars> EncodeBars(const BarcodeRow& barcode) {
  const Symbology* symbology =
      std::find_if(std::begin(kSymbologies), std::end(kSymbologies),
                   [&](const Symbology& row) { return row.type == barcode.type; });
  if (symbology == std::end(kSymbologies)) return std::nullopt;
  int zint = symbology->zint;
  const std::string content = Content(barcode, &zint);
  if (content.empty()) return std::nullopt;

  const std::unique_ptr<zint_symbol, DeleteSymbol> symbol(ZBarcode_Create());
  if (symbol == nullptr) return std::nullopt;
  symbol->symbology = zint;
  symbol->input_mode = DATA_MODE;
  if (zint == BARCODE_CODE39 && barcode.check_digit) symbol->option_2 = 1;
  // The length is given, so no terminator is looked for; the source is only read.
  if (ZBarcode_Encode(symbol.get(), reinterpret_cast<const unsigned char*>(content.data()),
                      static_cast<int>(content.size())) >= ZINT_ERROR) {
    return std::nullopt;
  }

  Bars bars;
  bars.two_dimensional =
      zint == BARCODE_PDF417 || zint == BARCODE_QRCODE || zint == BARCODE_DATAMATRIX;
  bars.width = symbol->width;
  bars.module = ModuleDots(symbology->module * std::clamp(barcode.scale, 1, 9), symbol->width);
  if (bars.module == 0) return std::nullopt;
  if (zint == BARCODE_PDF417) bars.row_height = kPdf417RowHeight;
  for (int r = 0; r < symbol->rows; ++r) {
    std::vector<bool> row;
    row.reserve(static_cast<size_t>(symbol->width));
    for (int column = 0; column < symbol->width; ++column) {
      row.push_back((symbol->encoded_data[r][column / 8] >> (column % 8) & 1) != 0);
    }
    bars.rows.push_back(std::move(row));
  }
  return bars;
}

}  // namespace lorimat
