#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Bytes.hpp"
#include "Json.hpp"

namespace volbrin {

/// A folder whose contents a cloud keeps: never looked into, never offered.
struct CloudFolder {
  std::string path;  ///< absolute
  std::string name;  ///< for the user: "iCloud Drive", "a cloud drive"

  bool operator==(const CloudFolder&) const = default;
};

/// An installed simulator runtime of Xcode.
struct SimRuntime {
  std::string id;
  std::string name;
  ByteCount bytes = 0;

  bool operator==(const SimRuntime&) const = default;
};

/// What a folder tree can't tell of a fake machine: the file "volbrin-fixture.json" in its root.
struct Fixture {
  static constexpr const char* fileName = "volbrin-fixture.json";

  struct Drive {
    std::string name;
    std::string path;  ///< in the machine's own form: "/" for the startup drive
    ByteCount total = 0;
    ByteCount free = 0;
  };

  std::vector<Drive> drives;
  std::optional<std::vector<std::string>> running;  ///< bundle identifiers of open apps
  /// For an app's path as `Mac::display` writes it, when it was last used (ISO 8601); null for
  /// never.
  std::optional<std::map<std::string, std::optional<std::string>>> lastUsed;
  std::optional<std::vector<std::string>> tools;  ///< command-line tools that are there
  std::optional<std::vector<SimRuntime>> simRuntimes;
  std::optional<double> scale;                    ///< factor on every measured size
  std::optional<std::vector<std::string>> cloud;  ///< further cloud roots, in `Mac::path` form
};

template <>
struct RecordFields<CloudFolder> {
  static constexpr auto list =
      std::tuple{field("path", &CloudFolder::path), field("name", &CloudFolder::name)};
};

template <>
struct RecordFields<SimRuntime> {
  static constexpr auto list =
      std::tuple{field("id", &SimRuntime::id), field("name", &SimRuntime::name),
                 field("bytes", &SimRuntime::bytes)};
};

template <>
struct RecordFields<Fixture::Drive> {
  static constexpr auto list =
      std::tuple{field("name", &Fixture::Drive::name), field("path", &Fixture::Drive::path),
                 field("total", &Fixture::Drive::total), field("free", &Fixture::Drive::free)};
};

template <>
struct RecordFields<Fixture> {
  static constexpr auto list = std::tuple{field("drives", &Fixture::drives),
                                          field("running", &Fixture::running),
                                          field("lastUsed", &Fixture::lastUsed),
                                          field("tools", &Fixture::tools),
                                          field("simRuntimes", &Fixture::simRuntimes),
                                          field("scale", &Fixture::scale),
                                          field("cloud", &Fixture::cloud)};
};

}  // namespace volbrin
