#pragma once

#include <string>
#include <vector>

#include "Acting/Cleaner.hpp"
#include "Acting/History.hpp"

/// The text forms of what was done or would be.
namespace volbrin::cli {

/// A result in the engine's words; with what to type to put it back, where that can be.
[[nodiscard]] std::string resultText(const CleanResult& result, const Mac& mac);

/// What an undo came to.
[[nodiscard]] std::string undoText(const CleanResult& result);

/// What was done, and where everything went.
[[nodiscard]] std::string historyText(const std::vector<HistoryEntry>& entries, const Mac& mac);

}  // namespace volbrin::cli
