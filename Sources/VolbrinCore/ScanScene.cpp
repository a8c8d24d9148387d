#include "ScanScene.hpp"

#include "CatalogPaths.hpp"

namespace volbrin {
namespace {

PathSet claimedPaths(const Catalog& catalog, const Mac& mac) {
  PathSet claimed;
  for (const auto& place : catalog.places) {
    for (const auto& pattern : place.paths) {
      for (auto& path : expand(pattern, mac)) claimed.insert(std::move(path));
    }
  }
  return claimed;
}

}  // namespace

ScanScene::ScanScene(const Mac& mac, const Catalog& catalog, const ScanOptions& options)
    : around_(Surroundings::of(mac)),
      owners_(around_.apps, catalog, around_.games(), mac),
      survey_(mac, catalog.personalMarkers, options.observer),
      context_{mac,
               catalog,
               around_.drives,
               around_.apps,
               owners_,
               around_.steam,
               mac.runningBundleIDs(),
               options,
               survey_,
               claimedPaths(catalog, mac)} {}

}  // namespace volbrin
