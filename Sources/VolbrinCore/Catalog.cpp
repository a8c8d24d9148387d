#include "Catalog.hpp"

#include <cstdlib>

#include "Files.hpp"
#include "Paths.hpp"
#include "System.hpp"

namespace volbrin {

CatalogNotFound::CatalogNotFound()
    : std::runtime_error(
          "Couldn't find the rules (engine/rules/catalog.json). Pass --catalog <path>.") {}

Catalog Catalog::load(const std::optional<std::string>& path) {
  const auto file = path ? path : defaultPath();
  if (!file) throw CatalogNotFound();
  return fromJson<Catalog>(parseJson(readFile(*file), *file), *file);
}

std::optional<std::string> Catalog::defaultPath() {
  std::vector<std::string> candidates;
  if (const char* named = std::getenv("VOLBRIN_CATALOG")) candidates.emplace_back(named);
  if (const auto program = executablePath()) {
    const std::string folder(parentFolder(*program));
    candidates.push_back(standardized(folder + "/../rules/catalog.json"));
    candidates.push_back(standardized(folder + "/../Resources/engine/rules/catalog.json"));
  }
  candidates.push_back(standardized(VOLBRIN_SOURCE_FOLDER "/../../engine/rules/catalog.json"));
  for (const auto& candidate : candidates) {
    if (exists(candidate)) return candidate;
  }
  return std::nullopt;
}

}  // namespace volbrin
