#pragma once

#include <string>
#include <vector>

#include "Acting/Cleaner.hpp"
#include "Acting/History.hpp"

/// The text forms of what was done or would be.
namespace volbrin::cli {

/// A result in the engine's words.
[[nodiscard]] std::string resultText(const CleanResult& result);

/// What to type to put it back; empty when that can't be.
[[nodiscard]] std::string undoHint(const CleanResult& result, const Mac& mac);

/// What was done, and where everything went.
[[nodiscard]] std::string historyText(const std::vector<HistoryEntry>& entries, const Mac& mac);

}  // namespace volbrin::cli
