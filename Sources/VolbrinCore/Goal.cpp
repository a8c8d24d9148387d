#include "Goal.hpp"

#include <fmt/format.h>
#include <locale.h>

#include <array>
#include <cmath>
#include <cstdlib>

#include "ByteText.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

struct Unit {
  std::string_view suffix;
  double bytes;
};

/// In the order in which they are tried.
constexpr std::array units = {Unit{"tb", 1e12}, Unit{"gb", 1e9}, Unit{"mb", 1e6}, Unit{"t", 1e12},
                              Unit{"g", 1e9}};
constexpr double bytesWithoutUnit = 1e9;

/// What strtod(3) reads in the C locale, whatever the process's own is; the whole text or nothing.
std::optional<double> number(std::string_view text) {
  static const locale_t cLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string copy(text);
  if (copy.empty() || isWhiteSpace(static_cast<unsigned char>(copy.front()))) return std::nullopt;
  char* end = nullptr;
  const double value = ::strtod_l(copy.c_str(), &end, cLocale);
  return end == copy.c_str() + copy.size() ? std::optional(value) : std::nullopt;
}

/// A goal's text, read but not yet cut to whole bytes.
struct Amount {
  bool isShare;
  double value;  ///< a fraction, or bytes
};

std::optional<Amount> read(std::string_view text) {
  const std::string lower = lowercased(trimmed(text));
  std::string_view rest = lower;
  if (rest.ends_with('%')) {
    rest.remove_suffix(1);
    const auto percent = number(trimmed(rest));
    if (!percent || !(*percent > 0 && *percent < 100)) return std::nullopt;
    return Amount{true, *percent / 100};
  }
  double factor = bytesWithoutUnit;
  for (const auto& unit : units) {
    if (!rest.ends_with(unit.suffix)) continue;
    rest = trimmed(rest.substr(0, rest.size() - unit.suffix.size()));
    factor = unit.bytes;
    break;
  }
  const auto count = number(rest);
  if (!count || !(*count > 0)) return std::nullopt;
  return Amount{false, *count * factor};
}

}  // namespace

std::optional<Goal> Goal::parse(std::string_view text) {
  const auto amount = read(text);
  if (!amount) return std::nullopt;
  if (amount->isShare) return ofShare(amount->value);
  if (!fitsByteCount(amount->value)) overflowFault("the goal");
  return ofBytes(static_cast<ByteCount>(amount->value));
}

bool Goal::isTooLarge(std::string_view text) {
  const auto amount = read(text);
  return amount && !amount->isShare && !fitsByteCount(amount->value);
}

ByteCount Goal::bytesOf(ByteCount total) const {
  if (const auto* bytes = std::get_if<ByteCount>(&value_)) return *bytes;
  return scaledBytes(total, std::get<double>(value_), "the goal");
}

std::string Goal::description() const {
  if (const auto* bytes = std::get_if<ByteCount>(&value_)) return byteText(*bytes);
  return fmt::format("{:.0f}% of the drive", std::round(std::get<double>(value_) * 100));
}

}  // namespace volbrin
