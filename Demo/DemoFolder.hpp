#pragma once

#include <string>

#include "Dates.hpp"
#include "Handle.hpp"

namespace volbrin::demo {

/// What to do with a demo machine that stands where the new one is to be.
enum class Earlier { keep, replace };

/// The top folder of the machine, empty and marked as this program's work by the file
/// ".volbrin-demo". The marker comes first, so a machine that was never finished can be replaced.
class DemoFolder {
 public:
  /// Makes the folder at `path`, with folders above it, or takes an existing empty one. An earlier
  /// demo machine is emptied when `earlier` says so. Raises `Failure`, having changed nothing, when
  /// `path` is no folder, when it holds anything else, and when an earlier machine is to be kept
  /// or has been joined at its top by something that isn't part of a machine.
  static DemoFolder claim(const std::string& path, Earlier earlier);

  /// Dates the marker like the rest of the machine.
  void dateMarker(Seconds now) const;

  [[nodiscard]] const Handle& handle() const { return handle_; }

 private:
  explicit DemoFolder(Handle handle) : handle_(std::move(handle)) {}

  Handle handle_;
};

}  // namespace volbrin::demo
