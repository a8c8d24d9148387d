#pragma once

#include <optional>
#include <string>

#include "../Files.hpp"
#include "../PrivacyFence.hpp"
#include "../ScanContext.hpp"

/// What several finders do alike.
namespace volbrin {

/// The size from which something counts: what the scan's options say, or else the catalog.
[[nodiscard]] inline ByteCount limitOr(ByteCount fromCatalog, const ScanContext& context) {
  return context.options.minimumBytes.value_or(fromCatalog);
}

/// The words that keep a finding back while an app is open; absent when none is.
[[nodiscard]] inline std::optional<std::string> blockedWhileOpen(
    const std::optional<std::string>& app) {
  return app ? std::optional(*app + " is open. Quit it first.") : std::nullopt;
}

/// Whether a folder itself stands at `path`, no link to one, and may be looked at.
[[nodiscard]] inline bool isPlainFolder(const std::string& path) {
  return isDirectory(path) && !isSymlink(path);
}

/// Whether a text from somebody else's file names something in a folder, and no way out of it.
[[nodiscard]] inline bool isFileName(const std::string& text) {
  return !text.empty() && text != "." && text != ".." && text.find('/') == std::string::npos;
}

}  // namespace volbrin
