#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>
#include <vector>

#include "Parallel.hpp"
#include "Trial.hpp"

/// Puts every fault into every scenario, and prints what was tried and what was lost.
namespace {

using namespace volbrin;
using namespace volbrin::faults;

constexpr std::array kinds = {
    Fault::Kind::killed, Fault::Kind::interrupted, Fault::Kind::failed, Fault::Kind::flipped,
    Fault::Kind::full,   Fault::Kind::unmounted,   Fault::Kind::linked};

struct Tally {
  int tried = 0;
  int missed = 0;
  ByteCount lostBytes = 0;
  int broken = 0;
};

/// Every call killed and failed, every copy damaged, every checked path linked away before every
/// call.
std::vector<Fault> faultsOf(const Scenario& scenario, const CallCounts& counts, bool canMount) {
  std::vector<Fault> faults;
  for (int call = 1; call <= counts.changes; ++call) {
    for (const char* when : {"kill-before", "kill-after"}) {
      faults.push_back({Fault::Kind::killed, fmt::format("change:{}:{}", call, when)});
    }
    faults.push_back({Fault::Kind::interrupted, fmt::format("change:{}:interrupt", call)});
    for (const int error : {EIO, ENOSPC, EACCES, EXDEV, ENOENT}) {
      faults.push_back({Fault::Kind::failed, fmt::format("change:{}:error:{}", call, error)});
    }
  }
  if (scenario.hasCopies) {
    for (int call = 1; call <= counts.proofs; ++call) {
      faults.push_back({Fault::Kind::flipped, fmt::format("proof:{}:flip", call)});
    }
  }
  for (const auto& path : scenario.checkedPaths) {
    for (int call = 1; call <= counts.looks; ++call) {
      faults.push_back({Fault::Kind::linked, fmt::format("look:{}:plant:{}", call, path)});
    }
  }
  if (scenario.usesDrive && canMount) {
    constexpr std::size_t page = 4096, most = 150;
    for (std::size_t pages = 20; pages < most; ++pages) {
      faults.push_back({Fault::Kind::full, "", pages * page});
    }
    for (int call = 1; call <= counts.changes; ++call) {
      faults.push_back(
          {Fault::Kind::unmounted, fmt::format("change:{}:unmount", call), wideDriveBytes});
    }
  }
  if (scenario.isAcrossDrives) {
    for (auto& fault : faults) fault.driveBytes = wideDriveBytes;
  }
  return faults;
}

void report(const Scenario& scenario, const Fault& fault, const Verdict& verdict) {
  fmt::print(stderr, "{}: {} {}: {} ({} bytes lost)\n", scenario.name, fault.plan, fault.driveBytes,
             verdict.fault, verdict.lostBytes);
}

/// Tries every `step`-th fault of the scenario.
Tally tryAll(const Scenario& scenario, std::size_t step, bool canMount) {
  const auto counts = countCalls(scenario);
  std::vector<Fault> here, apart;  // those with mounts of their own leave this process
  const auto all = faultsOf(scenario, counts, canMount);
  for (std::size_t at = 0; at < all.size(); at += step) {
    (all[at].driveBytes == 0 ? here : apart).push_back(all[at]);
  }
  std::map<Fault::Kind, Tally> tallies;
  const auto count = [&](const Fault& fault, const Verdict& verdict) {
    auto& tally = tallies[fault.kind];
    ++tally.tried;
    tally.missed += verdict.isReached ? 0 : 1;
    tally.lostBytes += verdict.lostBytes;
    tally.broken += verdict.fault.empty() ? 0 : 1;
    if (!verdict.fault.empty()) report(scenario, fault, verdict);
  };
  const auto verdicts =
      parallelMap(here, [&](const Fault& fault) { return tryFault(scenario, fault); });
  for (std::size_t at = 0; at < here.size(); ++at) count(here[at], verdicts[at]);
  for (const auto& fault : apart) count(fault, tryFault(scenario, fault));

  Tally sum;
  std::string line = fmt::format("| {} | {} |", scenario.name, counts.changes);
  for (const auto kind : kinds) {
    const auto& tally = tallies[kind];
    line += tally.tried == 0 ? " |" : fmt::format(" {} |", tally.tried);
    sum.tried += tally.tried;
    sum.missed += tally.missed;
    sum.lostBytes += tally.lostBytes;
    sum.broken += tally.broken;
  }
  fmt::print("{} {} |\n", line, sum.lostBytes);
  std::fflush(stdout);
  return sum;
}

int runCampaign(std::size_t step, const std::string& only) {
  const bool mounts = canMount();
  if (!mounts)
    fmt::print(stderr, "No file systems can be mounted here: those faults are left out.\n");
  fmt::print(
      "| action | changing calls | killed | interrupted | call failed | bit flipped | drive full | "
      "drive gone | link planted | bytes lost |\n|---|---|---|---|---|---|---|---|---|---|\n");
  Tally sum;
  for (const auto& scenario : scenarios()) {
    if (scenario.isAcrossDrives && !mounts) continue;
    if (scenario.name.find(only) == std::string::npos) continue;
    const auto tally = tryAll(scenario, step, mounts);
    sum.tried += tally.tried;
    sum.missed += tally.missed;
    sum.lostBytes += tally.lostBytes;
    sum.broken += tally.broken;
  }
  fmt::print(
      "\n{} faults tried, {} bytes lost, {} other troubles; {} kills came too late to hit.\n",
      sum.tried, sum.lostBytes, sum.broken, sum.missed);
  return sum.lostBytes == 0 && sum.broken == 0 && sum.missed == 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** words) {
  const int step = count > 1 ? std::atoi(words[1]) : 1;
  if (step < 1) {
    fmt::print(stderr, "usage: volbrin-faults [STEP [ACTION]]\n");
    return 2;
  }
  try {
    return runCampaign(static_cast<std::size_t>(step), count > 2 ? words[2] : "");
  } catch (const std::exception& error) {
    fmt::print(stderr, "volbrin-faults: {}\n", error.what());
    return 1;
  }
}
