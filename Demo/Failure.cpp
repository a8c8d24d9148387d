#include "Failure.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <system_error>

namespace volbrin::demo {

void failWithErrno(std::string_view what, std::string_view path) {
  const std::string reason = std::generic_category().message(errno);
  throw Failure(fmt::format("can't {} {}: {}", what, path, reason));
}

}  // namespace volbrin::demo
