#pragma once

#include <chrono>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace volbrin {

/// A moment, UTC, without leap seconds. Microseconds reach ±290,000 years: no file date overflows.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// The present moment.
[[nodiscard]] Date presentDate();

/// The moment of a time stamp as stat(2) gives it; one beyond what `Date` holds is cut to its ends.
[[nodiscard]] Date dateFrom(const std::timespec& time);

/// ISO 8601, UTC, whole seconds: "2026-03-01T12:00:00Z". Years beyond 0…9999 are cut to these.
[[nodiscard]] std::string iso8601(Date date);

/// Reads "2026-03-01T12:00:00Z", an offset in place of "Z" ("+01:00", "+0100"), a fraction of a
/// second, no seconds at all, and a date alone, which means its midnight in UTC. Absent for any
/// other text and for dates that no calendar has.
[[nodiscard]] std::optional<Date> parseIso8601(std::string_view text);

}  // namespace volbrin
