#include "Trial.hpp"

#include <fmt/format.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <functional>
#include <stdexcept>

#include "Files.hpp"
#include "Json.hpp"
#include "Ledger.hpp"
#include "Text.hpp"
#include "TreeRecord.hpp"

namespace volbrin::faults {
namespace {

/// Holds a machine against what it was.
class Watch {
 public:
  enum class Drive { kept, lost };
  Watch(const Stage& stage, Drive drive)
      : stage_(stage),
        drive_(drive),
        contents_({stage.root()}, leftOut()),
        outside_(test::recordOf(stage.outside())) {}

  void look(const Scenario& scenario, const std::string& when, Verdict& verdict) const {
    if (!verdict.fault.empty()) return;
    std::set<std::string> tops = {stage_.root()};
    if (drive_ == Drive::kept && !stage_.driveAside.empty()) tops.insert(stage_.driveAside);
    const Ledger now(tops);
    verdict.lostBytes += contents_.lostIn(now);
    if (verdict.lostBytes > 0) verdict.fault = "contents are gone " + when;
    if (test::recordOf(stage_.outside()) != outside_) {
      verdict.fault = "something outside was touched " + when;
    }
    const auto history = stage_.run(scenario, {"history", "--json"});
    if (history.status != 0) verdict.fault = "the history doesn't load " + when;
  }

 private:
  [[nodiscard]] std::set<std::string> leftOut() const {
    auto paths = stage_.ownedByNobody();
    if (drive_ == Drive::lost) paths.insert(stage_.path("/Volumes/Ext"));
    return paths;
  }

  const Stage& stage_;
  Drive drive_;
  Ledger contents_;
  test::TreeRecord outside_;
};

std::string planFor(const Fault& fault, const Stage& stage) {
  if (fault.kind == Fault::Kind::unmounted) return fault.plan + ":" + stage.path("/Volumes/Ext");
  if (fault.kind != Fault::Kind::linked) return fault.plan;
  const auto at = fault.plan.rfind(':');  // before the path, in the machine's form
  return fault.plan.substr(0, at + 1) + stage.path(fault.plan.substr(at + 1)) + ":" +
         stage.outside();
}

void mountDrive(const std::string& path, std::size_t bytes) {
  const auto options = fmt::format("size={}", bytes);
  if (::mount("tmpfs", path.c_str(), "tmpfs", 0, options.c_str()) != 0) {
    throw std::runtime_error("couldn't mount a small file system");
  }
}

Verdict tryOn(const Stage& stage, const Scenario& scenario, const Fault& fault) {
  Verdict verdict;
  for (const auto& words : scenario.first) {
    if (stage.run(scenario, words).status != 0) verdict.fault = "the scenario wasn't reached";
  }
  // Where originals stay on the machine, a drive that goes away may be broken for good.
  const bool isLost = fault.kind == Fault::Kind::unmounted && !scenario.isOnlyOnDrive;
  const Watch watch(stage, isLost ? Watch::Drive::lost : Watch::Drive::kept);
  std::map<std::string, std::string> environment;
  if (!fault.plan.empty()) {
    environment = {{"LD_PRELOAD", VOLBRIN_INJECTOR}, {"FAULT", planFor(fault, stage)}};
  }
  const auto ending = stage.run(scenario, scenario.words, environment);
  const bool isKilled = ending.signal == SIGKILL || ending.signal == SIGINT;
  verdict.isReached = isKilled || fault.kind != Fault::Kind::killed;
  if (ending.status > 1 || (ending.status < 0 && !isKilled)) {
    verdict.fault = fmt::format("the tool ended with {}, signal {}", ending.status, ending.signal);
  }
  if (fault.kind == Fault::Kind::flipped && ending.status == 0) {
    verdict.fault = "a damaged copy was taken for a good one";
  }
  watch.look(scenario, "after the fault", verdict);
  for (const auto& words : scenario.then) {
    const auto next = stage.run(scenario, words);
    if (next.status < 0 || next.status > 1) verdict.fault = "the next run ended oddly";
    watch.look(scenario, "after " + joined(words, " "), verdict);
  }
  return verdict;
}

/// Runs `work` in a process with mounts of its own, and gives what it returns; an empty text when
/// it can't.
std::string inNamespace(const std::function<std::string()>& work) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  const pid_t child = ::fork();
  if (child == 0) {
    std::string text;
    try {
      const int spaces = CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER);
      const bool isApart = ::unshare(spaces) == 0 &&
                           ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
      if (isApart) text = work();
    } catch (const std::exception& error) {
      fmt::print(stderr, "{}\n", error.what());
    }
    const auto written = ::write(ends[1], text.data(), text.size());
    ::_exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
  }
  ::close(ends[1]);
  std::string text(1000, '\0');
  text.resize(
      static_cast<std::size_t>(std::max<ssize_t>(::read(ends[0], text.data(), text.size()), 0)));
  ::close(ends[0]);
  ::waitpid(child, nullptr, 0);
  return text;
}

/// The same on a stage whose drive is a file system of its own.
std::string onOwnDrive(std::size_t bytes, const std::function<std::string(const Stage&)>& work) {
  return inNamespace([&] {
    const test::TemporaryFolder aside;
    Stage stage([&](const std::string& drive) {
      mountDrive(drive, bytes);
      if (::mount(drive.c_str(), aside.path().c_str(), nullptr, MS_BIND, nullptr) != 0) {
        throw std::runtime_error("couldn't mount a drive twice");
      }
    });
    stage.driveAside = aside.path();
    auto text = work(stage);
    ::umount2(aside.path().c_str(), MNT_DETACH);
    ::umount2(stage.path("/Volumes/Ext").c_str(), MNT_DETACH);
    return text;
  });
}

std::string textOf(const Verdict& verdict) {
  return fmt::format("{} {} {}", verdict.isReached ? 1 : 0, verdict.lostBytes, verdict.fault);
}

Verdict verdictOf(const std::string& text) {
  int isReached = 0, length = 0;
  long long lost = 0;
  if (std::sscanf(text.c_str(), "%d %lld %n", &isReached, &lost, &length) < 2) {
    return {false, 0, "the trial ended without an answer"};
  }
  return {isReached == 1, lost, text.substr(static_cast<std::size_t>(length))};
}

/// What the injector has counted in the scenario's run.
std::string countsOn(const Stage& stage, const Scenario& scenario) {
  for (const auto& words : scenario.first) (void)stage.run(scenario, words);
  const test::TemporaryFolder folder;
  const auto counts = folder.at("counts");
  const auto ending = stage.run(scenario, scenario.words,
                                {{"LD_PRELOAD", VOLBRIN_INJECTOR}, {"FAULT_COUNTS", counts}});
  if (ending.status != 0) {
    throw std::runtime_error(scenario.name + " doesn't go through: " + ending.out);
  }
  return readFile(counts);
}

}  // namespace

Verdict tryFault(const Scenario& scenario, const Fault& fault) {
  if (fault.driveBytes == 0) return tryOn(Stage(), scenario, fault);
  return verdictOf(onOwnDrive(
      fault.driveBytes, [&](const Stage& stage) { return textOf(tryOn(stage, scenario, fault)); }));
}

CallCounts countCalls(const Scenario& scenario) {
  const auto count = [&](const Stage& stage) { return countsOn(stage, scenario); };
  const auto text = scenario.isAcrossDrives ? onOwnDrive(wideDriveBytes, count) : count(Stage());
  CallCounts result;
  if (std::sscanf(text.c_str(), "%d %d %d", &result.changes, &result.looks, &result.proofs) != 3) {
    throw std::runtime_error("the injector has counted nothing");
  }
  return result;
}

bool canMount() {
  return !inNamespace([] {
            const test::TemporaryFolder folder;
            mountDrive(folder.path(), 1'000'000);
            ::umount2(folder.path().c_str(), MNT_DETACH);
            return std::string("yes");
          }).empty();
}

}  // namespace volbrin::faults
