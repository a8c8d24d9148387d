#include "OwnFiles.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "Paths.hpp"
#include "Text.hpp"
#include "TreeWalk.hpp"

namespace volbrin {
namespace {

class ContentVisitor final : public TreeVisitor {
 public:
  ContentVisitor(const FileMarkers& markers, std::int64_t limit)
      : search_(markers), limit_(limit) {}

  Onward visit(const WalkEntry& entry) override {
    if (entry.folder == nullptr) return Onward::into;
    if (++entries_ > limit_) return Onward::end;
    if (search_.counts(entry)) OwnFileSearch::add(entry, found);
    return Onward::into;
  }
  unsigned mark(const WalkEntry& folder) override { return search_.mark(folder); }
  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override {}

  OwnFiles found;

 private:
  OwnFileSearch search_;
  std::int64_t limit_;
  std::int64_t entries_ = 0;
};

}  // namespace

std::optional<std::string> OwnFiles::text() const {
  if (count == 0) return std::nullopt;
  if (count == 1) return "1 file that looks like your own, " + first;
  return fmt::format("{} files that look like your own, such as {}", count, first);
}

OwnFileSearch::OwnFileSearch(const FileMarkers& markers)
    : folders_(markers.folders.begin(), markers.folders.end()),
      extensions_(markers.extensions.begin(), markers.extensions.end()) {}

unsigned OwnFileSearch::mark(const WalkEntry& folder) const {
  if (folder.folder == nullptr) return 0;
  return folder.folder->mark() != 0 || folders_.contains(lowercased(folder.name)) ? 1 : 0;
}

bool OwnFileSearch::counts(const WalkEntry& entry) const {
  if (entry.stat.kind != EntryKind::file || entry.folder == nullptr) return false;
  if (entry.folder->mark() != 0) return true;
  const auto extension = extensionOf(entry.name);
  if (extension.empty()) return false;
  if (extensions_.contains(extension)) return true;
  const bool isLower = std::all_of(extension.begin(), extension.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x80 && (c < 'A' || c > 'Z');
  });
  return !isLower && extensions_.contains(lowercased(extension));
}

void OwnFileSearch::add(const WalkEntry& entry, OwnFiles& found) {
  std::string path = entry.folder->relativePath();
  if (!path.empty()) path += '/';
  path += entry.name;
  add({1, std::move(path)}, found);
}

void OwnFileSearch::add(const OwnFiles& other, OwnFiles& found) {
  if (other.count > 0 && (found.count == 0 || precedesInTree(other.first, found.first))) {
    found.first = other.first;
  }
  found.count += other.count;
}

std::optional<std::string> personalContent(const std::string& path, const FileMarkers& markers,
                                           std::int64_t limit) {
  ContentVisitor visitor(markers, limit);
  walkTrees({path}, {.detail = WalkOptions::Detail::kind, .order = WalkOptions::Order::byName},
            [&]() -> TreeVisitor& { return visitor; });
  return visitor.found.text();
}

}  // namespace volbrin
