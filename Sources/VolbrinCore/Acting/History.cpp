#include "History.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <unordered_set>

#include "../Descriptor.hpp"
#include "../Files.hpp"
#include "../JsonBytes.hpp"
#include "../Parallel.hpp"
#include "../Paths.hpp"
#include "../System.hpp"
#include "../Text.hpp"

namespace volbrin {
namespace {

std::string lineOf(const HistoryEntry& entry) {
  Json value = toJson(entry);
  escapeBytes(value);
  return jsonText(value) + "\n";
}

std::optional<HistoryEntry> entryOf(std::string_view line) {
  try {
    Json value = parseJson(line, "history");
    restoreBytes(value);
    return fromJson<HistoryEntry>(value, "history");
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

/// Whether the file ends in the middle of a line.
bool isTorn(const Descriptor& file) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0 || status.st_size == 0) return false;
  char last = '\n';
  return ::pread(file.get(), &last, 1, status.st_size - 1) == 1 && last != '\n';
}

bool writeWhole(const Descriptor& file, std::string_view text) {
  while (!text.empty()) {
    const auto count = ::write(file.get(), text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

std::string History::pathOn(const Mac& mac) {
  return mac.path("~/Library/Application Support/Volbrin/history.jsonl");
}

bool History::append(const HistoryEntry& entry, const Mac& mac) {
  const std::string path = pathOn(mac);
  const std::string folder(parentFolder(path));
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  // O_NONBLOCK: a pipe in the file's place must not hold us up.
  const Descriptor file(
      ::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0600));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  // Held until the file is closed: between the look at its end and the line nobody else writes.
  while (::flock(file.get(), LOCK_EX) != 0 && errno == EINTR) {
  }
  const std::string line = (isTorn(file) ? "\n" : "") + lineOf(entry);
  return writeWhole(file, line) && syncFile(file) && syncFolder(folder);
}

std::vector<HistoryEntry> History::load(const Mac& mac) {
  std::vector<HistoryEntry> entries;
  const auto text = readFileIfPossible(pathOn(mac));
  if (!text) return entries;
  const auto lines = split(*text, '\n');
  entries.reserve(lines.size());
  // Reading JSON is what takes long, and no line needs another.
  for (auto& entry : parallelMap(lines, entryOf)) {
    if (entry) entries.push_back(std::move(*entry));
  }
  // From the newest to the oldest: what is marked further on is undone.
  std::unordered_set<std::string_view> undoneIDs;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    const bool isMark = entry->undone.value_or(false);
    if (undoneIDs.contains(entry->id)) entry->undone = true;
    if (isMark) undoneIDs.insert(entry->id);
  }
  return entries;
}

}  // namespace volbrin
