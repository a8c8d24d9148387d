#pragma once

#include <set>
#include <string>
#include <string_view>
#include <unordered_set>

namespace volbrin {

/// Paths as text: nothing here touches the disk. Components are compared byte by byte.

/// Whether `path` lies strictly inside `folder`. "/" is above every other absolute path.
[[nodiscard]] bool isInside(std::string_view path, std::string_view folder);

/// Whether `path` is `folder` or lies inside it.
[[nodiscard]] bool isAtOrInside(std::string_view path, std::string_view folder);

/// `path` without the slashes at its end; "/" stays.
[[nodiscard]] std::string_view withoutTrailingSlashes(std::string_view path);

/// `path` without doubled slashes and those at its end: the form in which paths are compared.
[[nodiscard]] std::string withoutRepeatedSlashes(std::string_view path);

/// The last component of `path`, without regard to trailing slashes; "/" for the root.
[[nodiscard]] std::string_view lastComponent(std::string_view path);

/// The folder above `path`, "/" for a path directly below the root and for the root itself.
[[nodiscard]] std::string_view parentFolder(std::string_view path);

/// `folder` + "/" + `name`, with no doubled slash when `folder` is "/".
[[nodiscard]] std::string below(std::string_view folder, std::string_view name);

/// The last component's extension without its dot; empty when it has none (".vst" has none).
[[nodiscard]] std::string_view extensionOf(std::string_view path);

/// The last component without its extension.
[[nodiscard]] std::string_view stem(std::string_view path);

/// Whether `a` comes before `b` when a tree is read folder by folder, names in ascending order of
/// their bytes and what a folder holds right behind it.
[[nodiscard]] bool precedesInTree(std::string_view a, std::string_view b);

/// `path` without "." and ".." components, doubled and trailing slashes; the disk is not asked, so
/// a ".." behind a link leads where the text says. A relative path stays relative.
[[nodiscard]] std::string standardized(std::string_view path);

/// A set of absolute paths that is asked how a path lies to all of them at once: a look-up of the
/// path and the folders above it, never a loop over the set.
class PathSet {
 public:
  void insert(std::string path);

  /// Whether an entry equals `path`, is a folder above it, or lies inside it.
  [[nodiscard]] bool touches(std::string_view path) const;

  [[nodiscard]] const std::set<std::string, std::less<>>& paths() const { return paths_; }

 private:
  std::set<std::string, std::less<>> paths_;
};

}  // namespace volbrin
