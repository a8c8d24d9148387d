#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Catalog.hpp"
#include "Mac.hpp"

namespace volbrin {

/// Says what may never be offered or touched: the catalog's protected paths and endings, the cloud
/// folders, and what the user added. Immutable; may be asked from any thread. Comparisons are
/// plain, byte by byte.
class PathGuard {
 public:
  /// `extra` are the user's own rules.
  PathGuard(const Catalog& catalog, const Mac& mac, const std::vector<ProtectedPath>& extra);

  enum class Contents { include, leaveOut };

  /// The words of the first rule that keeps `path`, or absent. A rule keeps its path and all in it;
  /// with `Contents::include` also every folder above, since acting on that would reach it. An
  /// ending keeps every path with such a component.
  [[nodiscard]] std::optional<std::string> protection(std::string_view path,
                                                      Contents contents) const;

  /// Whether `path` is reached through a link: resolved, it reads differently. False for what
  /// can't be resolved.
  [[nodiscard]] static bool throughLink(const std::string& path);

  /// The words of every rule strictly inside `path`, in rule order, each once. Endings aren't
  /// asked.
  [[nodiscard]] std::vector<std::string> protectedInside(std::string_view path) const;

 private:
  struct Rule {
    std::string path;  ///< absolute
    std::string why;
  };
  struct Suffix {
    std::string suffix;  ///< the ending of a path component
    std::string why;
  };

  std::vector<Rule> rules_;
  std::vector<Suffix> suffixes_;
};

}  // namespace volbrin
