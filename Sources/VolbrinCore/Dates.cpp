#include "Dates.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>

namespace volbrin {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

/// The dates that four digits can write.
constexpr std::chrono::sys_seconds firstDate = std::chrono::sys_days{std::chrono::year{0} / 1 / 1};
constexpr std::chrono::sys_seconds lastDate =
    std::chrono::sys_days{std::chrono::year{9999} / 12 / 31} + hours{23} + minutes{59} +
    seconds{59};

/// Reads a text from the left, piece by piece; once a piece does not fit, nothing fits any more.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : rest_(text) {}

  int digits(std::size_t count) {
    int value = 0;
    if (rest_.size() < count) return fail();
    for (std::size_t i = 0; i < count; ++i) {
      if (rest_[i] < '0' || rest_[i] > '9') return fail();
      value = value * 10 + (rest_[i] - '0');
    }
    rest_.remove_prefix(count);
    return value;
  }

  bool take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void require(char expected) {
    if (!take(expected)) fail();
  }

  microseconds fraction() {
    microseconds value{0};
    microseconds unit{100'000};
    bool any = false;
    while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') {
      value += unit * (rest_.front() - '0');
      unit /= 10;
      any = true;
      rest_.remove_prefix(1);
    }
    if (!any) fail();
    return value;
  }

  void reject() { good_ = false; }

  [[nodiscard]] bool atEnd() const { return good_ && rest_.empty(); }
  [[nodiscard]] bool good() const { return good_; }

 private:
  int fail() {
    reject();
    return 0;
  }

  std::string_view rest_;
  bool good_ = true;
};

/// "Z", "+01:00" or "-0730", as the minutes east of UTC.
minutes offset(Cursor& cursor) {
  if (cursor.take('Z') || cursor.take('z')) return minutes{0};
  const bool west = cursor.take('-');
  if (!west) cursor.require('+');
  const int hour = cursor.digits(2);
  cursor.take(':');
  const int minute = cursor.digits(2);
  if (hour > 23 || minute > 59) cursor.reject();
  return (hours{hour} + minutes{minute}) * (west ? -1 : 1);
}

}  // namespace

Date presentDate() {
  return std::chrono::time_point_cast<microseconds>(std::chrono::system_clock::now());
}

Date dateFrom(const std::timespec& time) {
  constexpr std::int64_t limit = INT64_MAX / 2'000'000;
  const auto whole = std::clamp<std::int64_t>(time.tv_sec, -limit, limit);
  return Date(seconds{whole} + microseconds{time.tv_nsec / 1000});
}

std::string iso8601(Date date) {
  const auto moment = std::clamp(std::chrono::floor<seconds>(date), firstDate, lastDate);
  const auto day = std::chrono::floor<days>(moment);
  const std::chrono::year_month_day calendar{day};
  const std::chrono::hh_mm_ss clock{moment - day};
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(calendar.year()),
                     static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                     clock.hours().count(), clock.minutes().count(), clock.seconds().count());
}

std::optional<Date> parseIso8601(std::string_view text) {
  Cursor cursor(text);
  const int year = cursor.digits(4);
  cursor.require('-');
  const int month = cursor.digits(2);
  cursor.require('-');
  const int day = cursor.digits(2);
  const std::chrono::year_month_day calendar{std::chrono::year{year},
                                             std::chrono::month{static_cast<unsigned>(month)},
                                             std::chrono::day{static_cast<unsigned>(day)}};
  if (!cursor.good() || !calendar.ok()) return std::nullopt;
  const Date midnight{std::chrono::sys_days{calendar}};
  if (cursor.atEnd()) return midnight;

  if (!cursor.take('T') && !cursor.take('t')) cursor.require(' ');
  const int hour = cursor.digits(2);
  cursor.require(':');
  const int minute = cursor.digits(2);
  const int second = cursor.take(':') ? cursor.digits(2) : 0;
  const microseconds fraction = cursor.take('.') ? cursor.fraction() : microseconds{0};
  const minutes east = offset(cursor);
  if (!cursor.atEnd() || hour > 23 || minute > 59 || second > 60) return std::nullopt;
  const Date moment = midnight + hours{hour} + minutes{minute} + seconds{second} + fraction - east;
  const bool isWritable = moment >= firstDate && moment < lastDate + seconds{1};
  return isWritable ? std::optional(moment) : std::nullopt;
}

}  // namespace volbrin
