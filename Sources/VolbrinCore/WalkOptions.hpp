#pragma once

#include <string>
#include <unordered_set>

namespace volbrin {

/// What a walk looks at, and in what order (TreeWalk.hpp).
struct WalkOptions {
  /// Folders (absolute paths) that are visited but not entered, a root among them too.
  std::unordered_set<std::string> passedOver = {};

  enum class Detail {
    stat,  ///< an entry's whole record: one metadata call each
    kind,  ///< only what its folder's listing tells: no calls of its own
  };
  Detail detail = Detail::stat;

  enum class Order {
    any,     ///< as the lanes come by
    byName,  ///< one lane; names in each folder ascending by bytes, a folder's contents behind it
  };
  Order order = Order::any;

  enum class RootLinks {
    refuse,  ///< a root that is a link is one entry
    follow,  ///< a root that is a link to a folder stands for the folder
  };
  RootLinks rootLinks = RootLinks::refuse;
};

}  // namespace volbrin
