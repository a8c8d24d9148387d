#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace volbrin {

/// Valve's text format ("KeyValues", developer.valvesoftware.com/wiki/KeyValues), in which Steam
/// describes its libraries and games: a text, or a block of keys in lower case with a value each.
/// Reading never fails on broken text and has no nesting limit: neither reading nor letting go of a
/// value takes more stack for deeper blocks.
class VDF {
 public:
  using Block = std::map<std::string, VDF, std::less<>>;

  VDF() = default;
  explicit VDF(std::string text) : value_(std::move(text)) {}
  explicit VDF(Block block) : value_(std::move(block)) {}
  ~VDF();
  VDF(VDF&&) noexcept = default;
  VDF& operator=(VDF&& other) noexcept;
  VDF(const VDF&) = delete;
  VDF& operator=(const VDF&) = delete;

  /// The file as a block. Absent only when it can't be read as UTF-8.
  [[nodiscard]] static std::optional<VDF> parse(const std::string& file);

  /// The text of a file as a block: what has been read when the text ends or a "}" is too many. Of
  /// two values for one key the later stays.
  [[nodiscard]] static VDF parseText(std::string_view text);

  /// Null when this is a block.
  [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&value_); }
  /// Null when this is a text.
  [[nodiscard]] const Block* block() const { return std::get_if<Block>(&value_); }

  /// What a block holds under `key` (lower case); null when there is no such key or this is a text.
  [[nodiscard]] const VDF* at(std::string_view key) const;
  /// The text under `key`; null when there is none or it is a block.
  [[nodiscard]] const std::string* textAt(std::string_view key) const;
  /// The block under `key`; null when there is none or it is a text.
  [[nodiscard]] const Block* blockAt(std::string_view key) const;

 private:
  std::variant<Block, std::string> value_;
};

}  // namespace volbrin
