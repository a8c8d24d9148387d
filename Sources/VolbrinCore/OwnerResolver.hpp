#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Catalog.hpp"
#include "Inventory.hpp"
#include "Mac.hpp"
#include "SteamLibrary.hpp"

namespace volbrin {

/// Decides whose a folder in ~/Library is: an app's that is here, one's that was here, the
/// system's, or nobody knows whose. A wrong `removed` would send somebody's data towards the Trash,
/// so the order of the steps is the design: what the catalog knows, then hard facts, and only then
/// what the name looks like. One for each scan; safe to ask from several threads.
class OwnerResolver {
 public:
  /// Where the folder stands, and so what its name is.
  enum class Kind {
    container,       ///< ~/Library/Containers: a bundle identifier
    groupContainer,  ///< ~/Library/Group Containers: "group." or a team, and an identifier
    supportFolder,   ///< ~/Library/Application Support: anything
  };

  struct Verdict {
    enum class Form {
      installed,  ///< the owner is here: leave the folder alone; `name` is a display name
      removed,    ///< it had an owner that is surely gone; `name` when known
      system,     ///< macOS's own
      unknown,    ///< nothing tells either way
    };
    Form form = Form::unknown;
    std::optional<std::string> name;

    bool operator==(const Verdict&) const = default;
  };

  /// Keeps references to `apps`, `catalog` and `mac`.
  OwnerResolver(const AppIndex& apps, const Catalog& catalog, std::vector<SteamGame> steamGames,
                const Mac& mac);

  /// `name` is the folder's last path component.
  [[nodiscard]] Verdict resolve(std::string_view name, Kind kind) const;

  [[nodiscard]] bool isSystem(std::string_view name) const;

 private:
  /// A catalog owner with the forms of its names that are compared.
  struct OwnerKeys {
    const Catalog::Owner* owner;
    std::vector<std::string> names;      ///< `normalized`
    std::vector<std::string> bundleIDs;  ///< lower-cased
  };

  [[nodiscard]] std::optional<Verdict> fromCatalog(std::string_view name) const;
  [[nodiscard]] Verdict verdictOf(const Catalog::Owner& owner) const;
  [[nodiscard]] Verdict groupVerdict(std::string_view name) const;
  [[nodiscard]] std::optional<Verdict> teamVerdict(std::string_view name) const;
  [[nodiscard]] Verdict supportVerdict(std::string_view name) const;
  [[nodiscard]] Verdict bundleVerdict(std::string_view bundleID) const;
  [[nodiscard]] bool isInstalled(const Catalog::Owner& owner) const;
  [[nodiscard]] bool launchServicesKnows(const std::string& bundleID) const;
  /// The teams that signed the installed apps; read at the first need, a visit to every app.
  [[nodiscard]] const std::set<std::string>& teamIDs() const;

  const AppIndex& apps_;
  const Mac& mac_;
  std::vector<SteamGame> steamGames_;
  std::set<std::string> steamNames_;  ///< `normalized` names and folders, for a quick no
  std::vector<OwnerKeys> owners_;
  std::set<std::string, std::less<>> systemNames_;  ///< lower-cased
  std::vector<std::string> systemPrefixes_;         ///< lower-cased

  mutable std::mutex lock_;  ///< Guards `teams_`; held across the one computation that fills it.
  mutable std::optional<std::set<std::string>> teams_;
};

template <>
struct EnumForms<OwnerResolver::Verdict::Form> {
  using Form = OwnerResolver::Verdict::Form;
  static constexpr std::array<std::pair<Form, const char*>, 4> list = {{
      {Form::installed, "installed"},
      {Form::removed, "removed"},
      {Form::system, "system"},
      {Form::unknown, "unknown"},
  }};
};

template <>
struct RecordFields<OwnerResolver::Verdict> {
  using Verdict = OwnerResolver::Verdict;
  static constexpr auto list =
      std::tuple{field("verdict", &Verdict::form), field("name", &Verdict::name)};
};

/// Whether a folder's name has the form of a bundle identifier: more than two parts between dots,
/// none of them empty or with a blank in it.
[[nodiscard]] bool looksLikeBundleID(std::string_view name);

}  // namespace volbrin
