#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.hpp"
#include "Catalog.hpp"
#include "Goal.hpp"
#include "Mac.hpp"
#include "Output.hpp"
#include "Progress.hpp"
#include "ScanContext.hpp"

namespace volbrin::cli {

/// What a command ends with (see the manual page).
enum class ExitStatus { done = 0, problem = 1, usage = 2, unloadable = 3 };

/// One run of the program: what the command line asks for, in the engine's own types. Everything is
/// read when it is asked for, so that a command loads only what it needs.
class Session {
 public:
  explicit Session(const Arguments& arguments);

  [[nodiscard]] const Arguments& arguments() const { return arguments_; }
  [[nodiscard]] bool wantsJson() const { return arguments_.has("--json"); }
  [[nodiscard]] const Output& output() const { return output_; }

  /// The machine; raises its error when it can't be loaded.
  [[nodiscard]] const Mac& mac();
  /// The rules; raises their error when they can't be loaded.
  [[nodiscard]] const Catalog& catalog();
  /// Null when standard error is no terminal or progress isn't wanted; gone at the end of the run.
  [[nodiscard]] ProgressLine* progress();
  /// Takes the progress line away, before results are written.
  void endProgress() { progress_.reset(); }

  // From here on: UsageError for a value that doesn't parse.

  /// The number of bytes that an option gives; absent when it isn't there.
  [[nodiscard]] std::optional<ByteCount> byteCount(std::string_view option) const;
  /// How to take a `--protect` of what isn't there: a slip of the hand, perhaps.
  enum class Missing { warn, refuse };
  [[nodiscard]] ScanOptions scanOptions(Missing missing = Missing::warn);
  [[nodiscard]] std::optional<Goal> goal() const;
  /// A path argument as an absolute path of the machine.
  [[nodiscard]] std::string machinePath(const std::string& argument);
  /// A path to keep, in the forms of a rule: as it stands and, behind links, where it really is.
  [[nodiscard]] std::vector<std::string> protectedForms(const std::string& argument,
                                                        Missing missing);
  /// The drive that an option names: its name as it stands, a path in the engine's form.
  [[nodiscard]] std::optional<std::string> drive(std::string_view option,
                                                 const std::vector<DriveInfo>& drives);

 private:
  const Arguments& arguments_;
  Output output_;
  std::optional<Mac> mac_;
  std::optional<Catalog> catalog_;
  std::unique_ptr<ProgressLine> progress_;
};

}  // namespace volbrin::cli
