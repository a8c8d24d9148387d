#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Machine.hpp"
#include "ScanScene.hpp"

namespace volbrin::test {

/// A fake machine and a catalog that a finder is let loose on. At first both are empty, all
/// thresholds 0.
class FinderTest : public ::testing::Test {
 protected:
  [[nodiscard]] FinderResult find(const SpaceFinder& finder) const {
    const auto mac = machine_.mac();
    const ScanScene scene(mac, catalog_, options_);
    return finder.find(scene.context());
  }

  Machine machine_;
  Catalog catalog_ = emptyCatalog();
  ScanOptions options_;
};

}  // namespace volbrin::test
