#pragma once

#include <optional>
#include <string>

#include "Bytes.hpp"
#include "Scenario.hpp"

namespace volbrin::faults {

/// One fault that is put into a scenario.
struct Fault {
  enum class Kind { killed, interrupted, failed, flipped, full, unmounted, linked };
  Kind kind;
  std::string plan;            ///< for the injector; empty for a full drive
  std::size_t driveBytes = 0;  ///< a file system of this size is mounted as the drive; 0 for none
};

/// What came of it.
struct Verdict {
  bool isReached = false;  ///< the run came to the point of the fault
  ByteCount lostBytes = 0;
  std::string fault;  ///< what else went wrong; empty for nothing
};

/// Runs the scenario with the fault, and then what a user would do about it; after each run all
/// contents must still be there.
[[nodiscard]] Verdict tryFault(const Scenario& scenario, const Fault& fault);

/// How many calls of each class a run without a fault makes.
struct CallCounts {
  int changes = 0, looks = 0, proofs = 0;
};
/// Raises std::runtime_error when the scenario doesn't go through.
[[nodiscard]] CallCounts countCalls(const Scenario& scenario);

/// Room for all that a scenario does.
inline constexpr std::size_t wideDriveBytes = 100'000'000;

/// Whether small file systems can be mounted here.
[[nodiscard]] bool canMount();

}  // namespace volbrin::faults
