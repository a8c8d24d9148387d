#include "PatternOverlap.hpp"

#include <fnmatch.h>

#include <algorithm>

#include "Text.hpp"

namespace volbrin {
namespace {

/// Whether one component of each can stand for the same name.
bool canMeet(const std::string& a, const std::string& b) {
  if (!hasStar(a) && !hasStar(b)) return a == b;
  if (!hasStar(a)) return ::fnmatch(b.c_str(), a.c_str(), 0) == 0 && !a.starts_with('.');
  if (!hasStar(b)) return canMeet(b, a);
  const auto headA = a.substr(0, a.find('*')), headB = b.substr(0, b.find('*'));
  const auto tailA = a.substr(a.rfind('*') + 1), tailB = b.substr(b.rfind('*') + 1);
  return (headA.starts_with(headB) || headB.starts_with(headA)) &&
         (tailA.ends_with(tailB) || tailB.ends_with(tailA));
}

}  // namespace

PatternComponents patternComponents(std::string_view written) {
  PatternComponents components;
  for (const auto piece : split(written, '/')) components.emplace_back(piece);
  return components;
}

bool hasStar(std::string_view text) { return text.find('*') != std::string_view::npos; }

bool canTouch(const PatternComponents& a, const PatternComponents& b) {
  const std::size_t common = std::min(a.size(), b.size());
  return std::equal(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(common), b.begin(), canMeet);
}

}  // namespace volbrin
