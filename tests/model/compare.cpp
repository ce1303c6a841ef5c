// The model beside the translator: the program that compares them.
//
//   model_comparison [COUNT [SEED]]
//
// COUNT is about how many comparisons it makes, beside those of all result codes; SEED is where
// chance begins. The exit status is 1 when the two differ.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "model/comparison.h"
#include "model/scratch_file.h"
#include "model/translator_under_test.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "support/count.h"
#include "support/temporary_folder.h"

namespace {

class ScratchFolder {
 public:
  ScratchFolder() : folder_(MakeTemporaryFolder()), file_(folder_ / "words.ini") {}
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  const std::filesystem::path& file() const { return file_; }

 private:
  const std::filesystem::path folder_;
  const std::filesystem::path file_;
};

int Run(uint64_t count, uint64_t seed) {
  Comparison comparison(seed);
  CompareResultTexts(comparison);
  CompareCleaning(comparison, count / 32);
  CompareEveryLine(comparison, count / 2);
  CompareChanceLines(comparison, count / 4);
  CompareDefinitions(comparison, count / 16);
  CompareNumbers(comparison, count / 4);
  std::printf("%llu comparisons, %llu of them different\n",
              static_cast<unsigned long long>(comparison.count()),
              static_cast<unsigned long long>(comparison.differences()));
  PrintCount("model", comparison.count(), count);
  return comparison.differences() == 0 ? 0 : 1;
}

}  // namespace

const std::filesystem::path& ScratchFile() {
  static const ScratchFolder folder;
  return folder.file();
}

TranslatorUnderTest::TranslatorUnderTest() {
  WriteDefaultMessages(*this);
  rtfClient_ = &client_;
  TStato.bInitOK = true;
}

bool TranslatorUnderTest::Read(const std::string& bytes, const std::filesystem::path& file) {
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  stream.close();
  if (!stream) throw std::runtime_error("the definition file cannot be written");
  std::string name = file.string();
  return LeggiFileIni(name.data()) == 1;
}

size_t EveryText(std::string_view alphabet, uint64_t most,
                 const std::function<void(const std::string&)>& f) {
  uint64_t given = 0;
  for (size_t length = 0;; ++length) {
    std::string text(length, alphabet[0]);
    std::vector<size_t> letters(length, 0);
    while (true) {
      if (given++ >= most) return length == 0 ? 0 : length - 1;
      f(text);
      // The next one, as a counter counts.
      size_t place = 0;
      while (place < length && ++letters[place] == alphabet.size()) {
        letters[place] = 0;
        text[place] = alphabet[0];
        ++place;
      }
      if (place == length) break;
      text[place] = alphabet[letters[place]];
    }
  }
}

std::string Shown(std::string_view text) {
  std::string shown = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    char code[8];
    std::snprintf(code, sizeof code,
                  c == '"'                  ? "\\%c"
                  : byte < 32 || byte > 126 ? "\\x%02X"
                                            : "%c",
                  byte);
    shown += c == '\n' ? "\\n" : c == '\t' ? "\\t" : code;
  }
  return shown + "\"";
}

int main(int count, char** arguments) {
  const uint64_t comparisons = count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 1000000;
  const uint64_t seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 1;
  if (comparisons == 0) {
    std::fprintf(stderr, "usage: model_comparison [COUNT [SEED]]\n");
    return 2;
  }
  try {
    return Run(comparisons, seed);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "model_comparison: %s\n", error.what());
    return 2;
  }
}
