#include "Machine.hpp"

#include <fmt/format.h>

#include <limits>

namespace volbrin::test {

Machine::Machine() {
  root_.folder("Users/me");
  setFixture(R"({"drives": [{"name": "Disk", "path": "/", "total": 1000000000000,
                             "free": 100000000000}]})");
}

std::string Machine::relative(std::string_view written) const {
  if (written.starts_with('~')) return "Users/me" + std::string(written.substr(1));
  return std::string(written.substr(1));
}

std::string Machine::path(std::string_view written) const { return root_.at(relative(written)); }

std::string Machine::folder(std::string_view written) const {
  return root_.folder(relative(written));
}

std::string Machine::file(std::string_view written, std::string_view contents) const {
  return root_.file(relative(written), contents);
}

std::string Machine::fileOfSize(std::string_view written, std::size_t bytes) const {
  return root_.fileOfSize(relative(written), bytes);
}

std::string Machine::link(std::string_view written, std::string_view target) const {
  return root_.link(relative(written), target);
}

std::string Machine::app(std::string_view written, std::string_view bundleID,
                         std::string_view team) const {
  const std::string teamEntry =
      team.empty() ? "" : fmt::format("<key>VolbrinTeamID</key><string>{}</string>", team);
  file(fmt::format("{}/Contents/Info.plist", written),
       fmt::format(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>CFBundleIdentifier</key><string>{}</string>{}</dict></plist>
)",
                   bundleID, teamEntry));
  return path(written);
}

void Machine::setFixture(std::string_view json) const { root_.file(Fixture::fileName, json); }

Catalog emptyCatalog() { return Catalog{}; }

Catalog catalogOfPlaces() {
  constexpr ByteCount tooMuch = std::numeric_limits<ByteCount>::max();
  Catalog catalog;
  auto& limits = catalog.thresholds;
  for (auto* limit :
       {&limits.leftover, &limits.unknownLeftover, &limits.appCaches, &limits.appCacheEach,
        &limits.splitInstall, &limits.workshop, &limits.installerBytes, &limits.unusedAppBytes,
        &limits.personalFolder, &limits.staleMount}) {
    *limit = tooMuch;
  }
  return catalog;
}

Catalog::Place placeAt(std::string id, std::vector<std::string> paths) {
  Catalog::Place place;
  place.title = "Title of " + id;
  place.reason = "Reason of " + id + ".";
  place.getBack = "Comes back by itself.";
  place.tier = Tier::rebuilds;
  place.action = actions::remove;
  place.id = std::move(id);
  place.paths = std::move(paths);
  return place;
}

}  // namespace volbrin::test
