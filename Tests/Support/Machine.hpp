#pragma once

#include <string>
#include <string_view>

#include "Catalog.hpp"
#include "Mac.hpp"
#include "TemporaryFolder.hpp"

namespace volbrin::test {

/// A fake machine in a temporary folder, filled by the test. Paths are in the machine's own form,
/// "~/x" or "/x".
class Machine {
 public:
  Machine();

  [[nodiscard]] const std::string& root() const { return root_.path(); }
  [[nodiscard]] std::string path(std::string_view written) const;

  std::string folder(std::string_view written) const;
  std::string file(std::string_view written, std::string_view contents = "") const;
  std::string fileOfSize(std::string_view written, std::size_t bytes) const;
  std::string link(std::string_view written, std::string_view target) const;
  /// An app bundle with an identifier and, if given, a team; its path.
  std::string app(std::string_view written, std::string_view bundleID,
                  std::string_view team = "") const;

  /// The fixture: JSON text. At first one startup drive "Disk" of 1000 GB with 100 GB free.
  void setFixture(std::string_view json) const;
  [[nodiscard]] Mac mac() const { return Mac::fake(root()); }

 private:
  [[nodiscard]] std::string relative(std::string_view written) const;

  TemporaryFolder root_;
};

/// A catalog that knows nothing, all of its thresholds 0.
[[nodiscard]] Catalog emptyCatalog();

/// A catalog that knows nothing, and whose thresholds let nothing count but its places.
[[nodiscard]] Catalog catalogOfPlaces();

/// A place of tier `rebuilds` with the action `delete`, its words filled in from `id`.
[[nodiscard]] Catalog::Place placeAt(std::string id, std::vector<std::string> paths);

}  // namespace volbrin::test
