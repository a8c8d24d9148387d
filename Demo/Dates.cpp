#include "Dates.hpp"

#include <fmt/format.h>

#include <charconv>
#include <chrono>

namespace volbrin::demo {

namespace {

/// Reads exactly `digits` decimal digits off the front of `text`.
std::optional<unsigned> takeNumber(std::string_view& text, std::size_t digits) {
  if (text.size() < digits) return std::nullopt;
  unsigned value = 0;
  const char* end = text.data() + digits;
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  text.remove_prefix(digits);
  return value;
}

bool takeChar(std::string_view& text, char expected) {
  if (text.empty() || text.front() != expected) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<Seconds> takeDate(std::string_view& text) {
  const auto year = takeNumber(text, 4);
  if (!year || !takeChar(text, '-')) return std::nullopt;
  const auto month = takeNumber(text, 2);
  if (!month || !takeChar(text, '-')) return std::nullopt;
  const auto day = takeNumber(text, 2);
  if (!day || *year < 2001 || *year > 2199) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year{static_cast<int>(*year)},
                                         std::chrono::month{*month}, std::chrono::day{*day}};
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days{date}.time_since_epoch().count() * secondsPerDay;
}

std::optional<Seconds> takeTime(std::string_view& text) {
  const auto hour = takeNumber(text, 2);
  if (!hour || *hour > 23 || !takeChar(text, ':')) return std::nullopt;
  const auto minute = takeNumber(text, 2);
  if (!minute || *minute > 59 || !takeChar(text, ':')) return std::nullopt;
  const auto second = takeNumber(text, 2);
  if (!second || *second > 59 || !takeChar(text, 'Z')) return std::nullopt;
  return (Seconds{*hour} * 60 + *minute) * 60 + *second;
}

}  // namespace

std::optional<Seconds> parseMoment(std::string_view text) {
  const auto date = takeDate(text);
  if (!date) return std::nullopt;
  if (text.empty()) return date;
  if (!takeChar(text, 'T')) return std::nullopt;
  const auto time = takeTime(text);
  if (!time || !text.empty()) return std::nullopt;
  return *date + *time;
}

std::string isoMoment(Seconds moment) {
  const std::chrono::sys_seconds point{std::chrono::seconds{moment}};
  const auto midnight = std::chrono::floor<std::chrono::days>(point);
  const std::chrono::year_month_day date{midnight};
  const std::chrono::hh_mm_ss time{point - midnight};
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                     time.hours().count(), time.minutes().count(), time.seconds().count());
}

Seconds daysBefore(Seconds now, double days) {
  return now - static_cast<Seconds>(days * static_cast<double>(secondsPerDay));
}

}  // namespace volbrin::demo
