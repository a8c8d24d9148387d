#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Catalog.hpp"
#include "Json.hpp"
#include "Mac.hpp"

namespace volbrin {

/// What is known of one path. Words for a reader are the caller's.
struct Explanation {
  struct Child {
    std::string name;  ///< last path component
    ByteCount bytes = 0;

    bool operator==(const Child&) const = default;
  };

  std::string path;                          ///< as asked
  ByteCount bytes = 0;                       ///< allocated; 0 inside a cloud folder
  std::int64_t unreadable = 0;               ///< entries that couldn't be measured
  std::optional<std::string> drive;          ///< name of the drive that holds it
  std::optional<std::string> neverTouch;     ///< why the path itself is protected
  std::vector<std::string> holdsNeverTouch;  ///< why things in it are protected
  std::optional<std::string> knownAs;        ///< "title [id]" of the catalog place it belongs to
  std::optional<std::string> owner;  ///< "installed: …", "uninstalled: …", "macOS", "unknown"
  bool throughLink = false;          ///< resolved, the path reads differently
  std::vector<Child> biggest;        ///< its largest children, at most 12, largest first
  std::vector<std::string> notLookedInto;  ///< cloud folders left out, as `Mac::display` has them

  bool operator==(const Explanation&) const = default;
};

struct Explainer {
  Explainer() = delete;

  /// Says what `path` (absolute) is, how big, whose, and whether it is safe to touch, by the rules
  /// that a scan goes by. It can't fail: what can't be found out stays absent.
  [[nodiscard]] static Explanation explain(const std::string& path, const Mac& mac,
                                           const Catalog& catalog,
                                           MeasureObserver* observer = nullptr);
};

template <>
struct RecordFields<Explanation::Child> {
  using Child = Explanation::Child;
  static constexpr auto list =
      std::tuple{field("name", &Child::name), field("bytes", &Child::bytes)};
};

template <>
struct RecordFields<Explanation> {
  static constexpr auto list = std::tuple{field("path", &Explanation::path),
                                          field("bytes", &Explanation::bytes),
                                          field("unreadable", &Explanation::unreadable),
                                          field("drive", &Explanation::drive),
                                          field("neverTouch", &Explanation::neverTouch),
                                          field("holdsNeverTouch", &Explanation::holdsNeverTouch),
                                          field("knownAs", &Explanation::knownAs),
                                          field("owner", &Explanation::owner),
                                          field("throughLink", &Explanation::throughLink),
                                          field("biggest", &Explanation::biggest),
                                          field("notLookedInto", &Explanation::notLookedInto)};
};

}  // namespace volbrin
