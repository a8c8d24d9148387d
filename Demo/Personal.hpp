#pragma once

#include <string_view>

#include "Piles.hpp"

namespace volbrin::demo {

// The user's things that the drive "Backup" holds an identical copy of, wherever it lies.

constexpr Pile weddingIn(std::string_view folder) {
  return {folder, "Clips/C{i4}.mov", 12, 1900, 700, 760, "wedding"};
}

constexpr Single interviewAt(std::string_view path) { return {path, 1050, 1250, "interview"}; }

}  // namespace volbrin::demo
