#include "Act.hpp"

#include <system_error>

namespace volbrin {

std::string wordsOf(const std::exception& error) {
  const auto* system = dynamic_cast<const std::system_error*>(&error);
  return system != nullptr ? system->code().message() : error.what();
}

std::optional<std::string> waitingCaution(const Finding& finding, const CleanOptions& options) {
  if (!finding.caution || options.includeCautioned) return std::nullopt;
  return *finding.caution + " It waits until you've agreed to it, knowing that.";
}

std::string reachesProtected(const std::string& why) {
  return "It reaches " + why + ", which is never touched.";
}

std::string holdsProtected(const std::string& why) {
  return "It holds " + why + ", which is never touched.";
}

}  // namespace volbrin
