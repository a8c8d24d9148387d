#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace volbrin::demo {

/// Seconds since 1970-01-01T00:00:00Z.
using Seconds = std::int64_t;

inline constexpr Seconds secondsPerDay = 86'400;

/// Reads an ISO 8601 date ("2026-03-01", midnight UTC) or moment ("2026-03-01T09:30:00Z").
/// Absent for any other form, for a date that the calendar doesn't have, and for years outside
/// 2001 to 2199: the machine's oldest files are decades younger than the file systems' epoch.
std::optional<Seconds> parseMoment(std::string_view text);

/// ISO 8601 in UTC with whole seconds and "Z".
std::string isoMoment(Seconds moment);

/// The moment `days` before `now`.
Seconds daysBefore(Seconds now, double days);

}  // namespace volbrin::demo
