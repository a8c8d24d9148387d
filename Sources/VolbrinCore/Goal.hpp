#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "Bytes.hpp"

namespace volbrin {

/// How much free space the user wants on a drive: a number of bytes, or a share of the drive.
class Goal {
 public:
  [[nodiscard]] static Goal ofBytes(ByteCount bytes) { return Goal(bytes); }
  /// `fraction` of the drive's size: 0.1 is ten per cent.
  [[nodiscard]] static Goal ofShare(double fraction) { return Goal(fraction); }

  /// Reads "50GB", "1.5 tb", "500mb", "50" (gigabytes), "10%", in any case, with blanks around.
  /// Absent for any other text, and for what isn't above 0 (a share: above 0 and below 100). A goal
  /// of more bytes than fit 64 bits is a fatal fault; `isTooLarge` tells beforehand.
  [[nodiscard]] static std::optional<Goal> parse(std::string_view text);

  /// Whether `text` is a goal of more bytes than fit 64 bits.
  [[nodiscard]] static bool isTooLarge(std::string_view text);

  /// The goal in bytes on a drive of `total` bytes, cut towards zero.
  [[nodiscard]] ByteCount bytesOf(ByteCount total) const;

  /// For people: "50 GB", "10% of the drive".
  [[nodiscard]] std::string description() const;

  bool operator==(const Goal&) const = default;

 private:
  explicit Goal(ByteCount bytes) : value_(bytes) {}
  explicit Goal(double fraction) : value_(fraction) {}

  std::variant<ByteCount, double> value_;
};

}  // namespace volbrin
