#include "console/terminal/suggestion.h"

#include <algorithm>

#include "pal/protocols/lorimat/ascii.h"

namespace lorimat::console {
namespace {

// Longer words are no misspelt names of at most 10 characters.
constexpr size_t kLongestWord = 24;

// The slips between two words.
size_t Slips(std::string_view a, std::string_view b) {
  std::vector<size_t> before_last(b.size() + 1);
  std::vector<size_t> last(b.size() + 1);
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const bool same = Lower(a[i - 1]) == Lower(b[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      const bool swapped = i > 1 && j > 1 && Lower(a[i - 1]) == Lower(b[j - 2]) &&
                           Lower(a[i - 2]) == Lower(b[j - 1]);
      if (swapped) row[j] = std::min(row[j], before_last[j - 2] + 1);
    }
    before_last.swap(last);
    last.swap(row);
  }
  return last[b.size()];
}

}  // namespace

std::string NearestWord(std::string_view word, const std::vector<std::string>& candidates) {
  if (word.empty() || word.size() > kLongestWord) return {};
  std::string nearest;
  size_t fewest = 0;
  for (const std::string& candidate : candidates) {
    // One slip in three letters: with more, the words have little in common.
    const size_t allowed = std::max(word.size(), candidate.size()) / 3;
    const size_t count = Slips(word, candidate);
    if (count <= allowed && (nearest.empty() || count < fewest)) {
      nearest = candidate;
      fewest = count;
    }
  }
  return nearest;
}

}  // namespace lorimat::console
