// Which line of a document a correction means, where several could be meant.
#pragma once

#include <cstddef>
#include <optional>

#include "register/document/receipt.h"

namespace lorimat {

// Whether a line is what a correction names, as far as it does.
inline bool IsNamed(const Item& line, const Item& named) {
  return line.kind == named.kind && line.department == named.department && line.vat == named.vat &&
         line.special_tax == named.special_tax &&
         (named.article.empty() || line.article == named.article) &&
         (!named.description_given || line.description == named.description);
}

// How far a line is what a correction means, of those that it may name; the higher, the nearer.
enum Likeness { kUnlike, kNamed, kOfAmount, kSame };

// `amount` is what the line would come to.
inline Likeness LikenessOf(const Item& line, const Item& named, Amount amount) {
  if (!IsNamed(line, named)) return kUnlike;
  // What names no article means a line without one.
  if (line.article == named.article && line.description == named.description) return kSame;
  return amount == named.amount ? kOfAmount : kNamed;
}

// The latest of the nearest of `count` lines; none where all of them are unlike. `likeness_at`
// takes the index of a line.
template <typename LikenessAt>
std::optional<size_t> FindNearest(size_t count, const LikenessAt& likeness_at) {
  std::optional<size_t> found;
  Likeness nearest = kUnlike;
  for (size_t index = count; nearest != kSame && index-- > 0;) {
    const Likeness likeness = likeness_at(index);
    if (likeness <= nearest) continue;
    nearest = likeness;
    found = index;
  }
  return found;
}

}  // namespace lorimat
