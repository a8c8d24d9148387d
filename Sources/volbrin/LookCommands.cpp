#include <fmt/format.h>

#include <algorithm>

#include "ByteText.hpp"
#include "CatalogCheck.hpp"
#include "Commands.hpp"
#include "Compare.hpp"
#include "Explain.hpp"
#include "Files.hpp"
#include "OwnerResolver.hpp"
#include "Surroundings.hpp"

namespace volbrin::cli {
namespace {

std::string usageLine(const std::string& path, const Usage& usage) {
  std::string line = fmt::format("{:>8}  {}", byteText(usage.bytes), printableLine(path));
  if (usage.unreadable > 0) {
    line += fmt::format("  ({} {} couldn't be read)", usage.unreadable,
                        usage.unreadable == 1 ? "entry" : "entries");
  }
  return line + "\n";
}

std::string line(std::string_view label, const std::optional<std::string>& text) {
  return text ? fmt::format("  {:<18}{}\n", label, printableLine(*text)) : "";
}

std::string explanationText(const Explanation& found, const Mac& mac) {
  std::string text = printableLine(mac.display(found.path)) + "\n";
  const bool isThere = found.bytes > 0 || exists(found.path) || isSymlink(found.path);
  text += isThere ? line("Size:", byteText(found.bytes)) : line("", "nothing is there");
  if (isThere && found.unreadable > 0) {
    text += line("", fmt::format("at least: {} {} couldn't be read", found.unreadable,
                                 found.unreadable == 1 ? "entry" : "entries"));
  }
  text += line("Drive:", found.drive);
  text += line("Known as:", found.knownAs);
  text += line("Owner:", found.owner);
  text += line("Never touched:", found.neverTouch);
  for (const auto& why : found.holdsNeverTouch) text += line("Never touched:", "in it: " + why);
  if (found.throughLink) text += line("Link:", "it is reached through a link");
  for (const auto& child : found.biggest) {
    text += fmt::format("  {:>8}  {}\n", byteText(child.bytes), printableLine(child.name));
  }
  for (const auto& path : found.notLookedInto) text += line("Not looked into:", path);
  return text;
}

std::string diffText(const TreeDiff& diff) {
  const auto files = fmt::format("{} {}", diff.files, diff.files == 1 ? "file" : "files");
  const auto* compared = diff.checksummed ? "contents" : "sizes";
  if (diff.isProof()) return fmt::format("The same: {}, {} compared.\n", files, compared);
  if (diff.identical()) {
    return fmt::format("No difference seen ({}, {} compared), but {} {} couldn't be looked at.\n",
                       files, compared, diff.unseen, diff.unseen == 1 ? "thing" : "things");
  }
  return fmt::format(
      "Not the same ({}, {} compared):\n  {:>8} only in the first\n  {:>8} only in the second\n"
      "  {:>8} in both and different\n",
      files, compared, diff.onlyHere, diff.onlyThere, diff.differing);
}

OwnerResolver::Kind folderKind(const std::string& text) {
  if (text == "container") return OwnerResolver::Kind::container;
  if (text == "group-container") return OwnerResolver::Kind::groupContainer;
  return OwnerResolver::Kind::supportFolder;
}

std::string verdictText(const std::string& folder, const OwnerResolver::Verdict& verdict) {
  using Form = OwnerResolver::Verdict::Form;
  const auto name = printableLine(verdict.name.value_or("an app nobody knows the name of"));
  switch (verdict.form) {
    case Form::installed:
      return fmt::format("{} belongs to {}, which is installed.\n", folder, name);
    case Form::removed:
      return fmt::format("{} belongs to {}, which is not installed any more.\n", folder, name);
    case Form::system:
      return fmt::format("{} belongs to the system.\n", folder);
    case Form::unknown:
      break;
  }
  return fmt::format("Nothing tells whose {} is.\n", folder);
}

}  // namespace

ExitStatus explain(Session& session) {
  const auto path = session.machinePath(*session.arguments().value("PATH"));
  const auto found = Explainer::explain(path, session.mac(), session.catalog(), session.progress());
  session.endProgress();
  if (session.wantsJson()) {
    session.output().json(toJson(found));
  } else {
    session.output().text(explanationText(found, session.mac()));
  }
  return ExitStatus::done;
}

ExitStatus compare(Session& session) {
  const auto a = session.machinePath(*session.arguments().value("A"));
  const auto b = session.machinePath(*session.arguments().value("B"));
  const auto by = session.arguments().has("--checksums") ? CompareBy::contents : CompareBy::size;
  const auto diff = compareTrees(a, b, by, session.progress());
  session.endProgress();
  for (const auto& path : {a, b}) {
    if (!exists(path)) printError(session.mac().display(path) + " isn't there");
  }
  if (session.wantsJson()) {
    if (diff.unseen > 0)
      printError(fmt::format("{} {} couldn't be looked at", diff.unseen,
                             diff.unseen == 1 ? "thing" : "things"));
    session.output().json(toJson(diff));
  } else {
    session.output().text(diffText(diff));
  }
  return diff.identical() ? ExitStatus::done : ExitStatus::problem;
}

ExitStatus usage(Session& session) {
  std::vector<std::string> paths;
  for (const auto& argument : session.arguments().values("PATH")) {
    const auto path = session.machinePath(argument);
    if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(path);
  }
  const auto usages = session.mac().usageOf(paths, session.progress());
  session.endProgress();

  Json object = Json::object();
  std::string text;
  for (const auto& path : paths) {
    object.emplace(path, toJson(usages.at(path)));
    text += usageLine(session.mac().display(path), usages.at(path));
  }
  if (session.wantsJson()) {
    session.output().json(object);
  } else {
    session.output().text(text);
  }
  return ExitStatus::done;
}

ExitStatus apps(Session& session) {
  const auto around = Surroundings::of(session.mac());
  if (session.wantsJson()) {
    session.output().json(toJson(around.apps.apps()));
    return ExitStatus::done;
  }
  std::string text;
  for (const auto& app : around.apps.apps()) {
    text +=
        fmt::format("{}  ({}){}\n           {}\n", app.name, app.bundleID.value_or("no identifier"),
                    app.lastUsed ? "  last used " + iso8601(*app.lastUsed).substr(0, 10) : "",
                    printableLine(session.mac().display(app.path)));
  }
  session.output().text(text.empty() ? "No apps found.\n" : text);
  return ExitStatus::done;
}

ExitStatus owner(Session& session) {
  const auto name = *session.arguments().value("NAME");
  const auto kind = folderKind(*session.arguments().value("--kind"));
  const auto& catalog = session.catalog();
  const auto around = Surroundings::of(session.mac());
  const OwnerResolver owners(around.apps, catalog, around.games(), session.mac());
  const auto verdict = owners.resolve(name, kind);
  if (session.wantsJson()) {
    session.output().json(toJson(verdict));
  } else {
    session.output().text(verdictText(printableLine(name), verdict));
  }
  return ExitStatus::done;
}

ExitStatus catalogCheck(Session& session) {
  auto path = session.arguments().value("PATH");
  if (!path) path = session.arguments().value("--catalog");
  const auto verdict = checkCatalog(path);
  if (session.wantsJson()) {
    session.output().json(toJson(verdict));
  } else {
    std::string text = verdict.ok ? "The rules are sound.\n" : "";
    for (const auto& [where, problem] : verdict.problems) {
      text += fmt::format("{}: {}\n", where.empty() ? "the file" : where, problem);
    }
    session.output().text(text);
  }
  return verdict.ok ? ExitStatus::done : ExitStatus::problem;
}

}  // namespace volbrin::cli
