#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Machine.hpp"
#include "TemporaryFolder.hpp"
#include "Tool.hpp"

namespace volbrin::faults {

/// Something that the tool does to a machine, and where it looks on the way.
struct Scenario {
  std::string name;
  std::vector<std::string> words;                    ///< of the run that a fault is put into
  std::vector<std::vector<std::string>> first = {};  ///< runs before it, without faults
  std::vector<std::vector<std::string>> then = {};   ///< runs behind it, without faults
  std::vector<std::string> checkedPaths = {};  ///< where links are planted, in the machine's form
  bool isReal = false;                         ///< on this computer, with a home of its own
  bool hasCopies = false;                      ///< copies are made and proved
  bool usesDrive = false;                      ///< the drive "Ext" is written to
  bool isOnlyOnDrive = false;                  ///< what it takes away is then on the drive alone
  bool isAcrossDrives = false;                 ///< "Ext" must be a file system of its own
};

[[nodiscard]] const std::vector<Scenario>& scenarios();

/// A machine on which each scenario can run, with a rule file and a folder beside it that nobody
/// may touch. Every file has contents of its own.
class Stage {
 public:
  /// `mount` is called when the folders are there, before anything is in the drive "Ext".
  explicit Stage(const std::function<void(const std::string& drive)>& mount = nullptr);

  [[nodiscard]] Ending run(const Scenario& scenario, const std::vector<std::string>& words,
                           std::map<std::string, std::string> environment = {}) const;

  [[nodiscard]] std::string path(const std::string& written) const {
    return machine_.path(written);
  }
  [[nodiscard]] const std::string& root() const { return machine_.root(); }
  /// The drive "Ext" at another place, where it stays when it is unmounted; empty for none.
  std::string driveAside;
  [[nodiscard]] const std::string& outside() const { return outside_.path(); }
  /// What may change and go: what rebuilds itself, and what the tool and the system write down.
  [[nodiscard]] std::set<std::string> ownedByNobody() const;

 private:
  test::Machine machine_;
  test::TemporaryFolder rules_, outside_;
};

}  // namespace volbrin::faults
