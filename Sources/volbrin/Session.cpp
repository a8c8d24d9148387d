#include "Session.hpp"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "Files.hpp"
#include "Paths.hpp"
#include "Text.hpp"

namespace volbrin::cli {
namespace {

ColorMode colorMode(const Arguments& arguments) {
  const auto mode = arguments.value("--color");
  if (mode == "always") return ColorMode::always;
  return mode == "never" ? ColorMode::never : ColorMode::automatic;
}

/// A path of this computer, as typed, made absolute, in the form in which the engine compares
/// paths. A ".." is followed as the system would, which behind a link isn't what the text says.
std::string absolute(const std::string& typed) {
  std::string path = typed;
  if (!path.starts_with('/')) {
    std::error_code error;
    const auto folder = std::filesystem::current_path(error);
    if (error) throw UsageError("the working directory is gone, so '" + typed + "' leads nowhere");
    path = below(folder.string(), typed);
  }
  const bool climbs = (path + "/").find("/../") != std::string::npos;
  if (climbs) return resolved(path).value_or(standardized(path));
  return standardized(path);
}

}  // namespace

Session::Session(const Arguments& arguments)
    : arguments_(arguments), output_(colorMode(arguments)) {}

const Mac& Session::mac() {
  if (!mac_) {
    const auto folder = arguments_.value("--machine");
    if (folder == "") throw UsageError("--machine wants a folder");
    mac_ = folder ? Mac::fake(*folder) : Mac::real();
  }
  return *mac_;
}

const Catalog& Session::catalog() {
  if (!catalog_) {
    const auto path = arguments_.value("--catalog");
    if (path == "") throw UsageError("--catalog wants a path");
    catalog_ = Catalog::load(path);
  }
  return *catalog_;
}

ProgressLine* Session::progress() {
  if (arguments_.has("--quiet") || ::isatty(STDERR_FILENO) == 0) return nullptr;
  if (!progress_) progress_ = std::make_unique<ProgressLine>();
  return progress_.get();
}

std::optional<ByteCount> Session::byteCount(std::string_view option) const {
  const auto text = arguments_.value(option);
  if (!text) return std::nullopt;
  ByteCount value = 0;
  const char* end = text->data() + text->size();
  const auto [rest, error] = std::from_chars(text->data(), end, value);
  if (error != std::errc() || rest != end || value < 0) {
    throw UsageError(std::string(option) + " wants a whole number of bytes, not '" + *text + "'");
  }
  return value;
}

ScanOptions Session::scanOptions(Missing missing) {
  ScanOptions options;
  options.now = presentDate();
  if (const auto text = arguments_.value("--now")) {
    const auto date = parseIso8601(*text);
    if (!date)
      throw UsageError("--now wants a date such as 2026-03-01T12:00:00Z, not '" + *text + "'");
    options.now = *date;
  }
  options.minimumBytes = byteCount("--min-bytes");
  options.avoidPrivacyPrompts = arguments_.has("--avoid-privacy-prompts");
  for (const auto& argument : arguments_.values("--protect")) {
    for (const auto& path : protectedForms(argument, missing)) {
      options.extraProtected.push_back({path, "a path you added"});
    }
  }
  options.observer = progress();
  return options;
}

std::optional<Goal> Session::goal() const {
  const auto text = arguments_.value("--goal");
  if (!text) return std::nullopt;
  const auto refuse = [&](const char* why) { throw UsageError("'" + *text + "' " + why); };
  if (Goal::isTooLarge(*text)) refuse("is more than any drive holds");
  auto goal = Goal::parse(*text);
  if (!goal) refuse("is no goal; try 50GB, 1.5tb, 500mb or 10%");
  return goal;
}

std::string Session::machinePath(const std::string& argument) {
  if (argument.empty()) throw UsageError("an empty path names nothing");
  if (argument.starts_with("~/") || argument == "~") {
    return absolute(mac().path(argument));
  }
  if (!mac().isFake()) return absolute(argument);
  // The root as the user typed it may go through links that the engine has resolved.
  std::string path = absolute(argument);
  const std::string typedRoot = absolute(*arguments_.value("--machine"));
  if (isAtOrInside(path, typedRoot)) return mac().root() + path.substr(typedRoot.size());
  if (isAtOrInside(path, mac().root())) return path;
  // A machine's own path: ".." ends at its root.
  return standardized(mac().path(argument.starts_with('/') ? standardized(argument) : path));
}

std::vector<std::string> Session::protectedForms(const std::string& argument, Missing missing) {
  // On a real machine written paths are absolute; on a fake one they stand without its root.
  const auto written = [this](const std::string& path) {
    return isAtOrInside(path, mac().root()) ? path.substr(mac().root().size()) : path;
  };
  const std::string path = machinePath(argument);
  std::vector<std::string> forms = {written(path)};
  if (const auto real = resolved(path); !real) {
    const auto words = "nothing is at '" + argument + "', so --protect keeps nothing there";
    if (missing == Missing::refuse) throw UsageError(words);
    printError(words);
  } else if (*real != path) {
    forms.push_back(written(*real));
  }
  return forms;
}

std::optional<std::string> Session::drive(std::string_view option,
                                          const std::vector<DriveInfo>& drives) {
  const auto wanted = arguments_.value(option);
  if (!wanted) return std::nullopt;
  const bool isName = std::any_of(drives.begin(), drives.end(),
                                  [&](const auto& drive) { return drive.name == *wanted; });
  const bool isPath = wanted->starts_with('/') || wanted->starts_with('~');
  return isName || !isPath ? *wanted : machinePath(*wanted);
}

}  // namespace volbrin::cli
