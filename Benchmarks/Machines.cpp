#include "Machines.hpp"

#include <fmt/format.h>

#include <vector>

#include "Acting/History.hpp"
#include "Catalog.hpp"
#include "Paths.hpp"
#include "TreeFiles.hpp"
#include "Trees.hpp"

namespace volbrin::bench {
namespace {

/// Where a part of the home's files goes.
struct Share {
  std::string folder;  ///< below the home; "{}" stands for a number
  std::size_t folders;
  std::size_t percent;    ///< of all files, for these folders together
  const char* extension;  ///< of the files
};

const std::vector<Share> shares = {{"Library/Developer/Xcode/DerivedData/App{}", 4, 12, "o"},
                                   {".npm/_cacache/part{}", 4, 10, "bin"},
                                   {"Library/Caches/com.maker{}.tool", 40, 10, "cache"},
                                   {"Library/Containers/com.gone{}.app", 30, 6, "plist"},
                                   {"Library/Containers/com.here{}.app", 30, 6, "plist"},
                                   {"Library/Application Support/Nobody {}", 20, 8, "dat"},
                                   {"Library/Application Support/com.gone{}.app", 20, 6, "dat"},
                                   {"Documents/Project {}", 10, 14, "txt"},
                                   {"Pictures/Album {}", 10, 8, "jpg"},
                                   {"Movies/Cut {}", 4, 2, "mov"},
                                   {"Music/Session {}", 4, 4, "wav"},
                                   {"Downloads/Folder {}", 5, 4, "html"},
                                   {"Code/checkout{}", 6, 10, "cpp"}};

/// Files in folders of their own, a dozen or so in each.
void fill(const std::string& path, std::size_t files, const char* extension, Sequence& random) {
  const Descriptor top = makeFolders(path);
  for (std::size_t made = 0, folder = 0; made < files; ++folder) {
    const Descriptor inner = makeFolder(top.get(), fmt::format("part {:04}", folder));
    const Descriptor deep = makeFolder(inner.get(), "more");
    for (auto count = 4 + random.below(24); count > 0 && made < files; --count, ++made) {
      makeFile(random.below(3) == 0 ? inner : deep, fmt::format("item {:04}.{}", made, extension),
               random.below(8) == 0 ? random.below(20000) : random.below(600));
    }
  }
}

/// A machine with a startup drive and one beside it.
Descriptor makeMachine(const std::string& root) {
  makeFolders(root + "/Users/me");
  makeFolders(root + "/Volumes/Backup");
  Descriptor folder = makeFolders(root);
  makeTextFile(folder, "volbrin-fixture.json",
               R"({"drives": [
  {"name": "Disk", "path": "/", "total": 1000000000000, "free": 90000000000},
  {"name": "Backup", "path": "/Volumes/Backup", "total": 2000000000000, "free": 1500000000000}]})");
  return folder;
}

void makeApp(const std::string& folder, const std::string& name, const std::string& bundleID) {
  makeTextFile(makeFolders(fmt::format("{}/{}.app/Contents", folder, name)), "Info.plist",
               fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"
                           "<dict><key>CFBundleIdentifier</key><string>{}</string></dict></plist>",
                           bundleID));
}

}  // namespace

void makeHomeMachine(const std::string& root, std::size_t files) {
  Sequence random;
  const std::string home = root + "/Users/me/";
  for (const auto& share : shares) {
    for (std::size_t i = 0; i < share.folders; ++i) {
      fill(home + fmt::format(fmt::runtime(share.folder), i),
           files * share.percent / 100 / share.folders, share.extension, random);
    }
  }
  for (int i = 0; i < 30; ++i) {
    makeApp(root + "/Applications", fmt::format("Here {}", i), fmt::format("com.here{}.app", i));
  }
  for (const char* copy : {"Pictures/Album 1", "Movies/Cut 2"}) {
    fill(fmt::format("{}/Volumes/Backup/Archive/{}", root, copy), files / 500, "jpg", random);
  }
  makeMachine(root);
}

void makeMoveMachine(const std::string& root, std::size_t count, std::size_t bytes) {
  const Descriptor folder = makeMachine(root);
  makeFileTree(root + "/Users/me/Big", count, bytes);
  Catalog catalog;
  auto& place = catalog.places.emplace_back();
  place.id = place.title = place.reason = place.getBack = "big";
  place.paths = {"~/Big"};
  place.action.kind = Action::Kind::move;
  place.action.destination = root + "/Volumes/Backup/Big";
  makeTextFile(folder, "rules.json", jsonText(toJson(catalog)));
}

void makeCloudMachine(const std::string& root, std::size_t files) {
  constexpr std::size_t filesPerFolder = 1'000;
  constexpr std::size_t filesPerBig = 500;
  makeMachine(root);
  const auto cloud = root + "/Users/me/Library/Mobile Documents/com~apple~CloudDocs";
  const Descriptor top = makeFolders(cloud);
  const Descriptor copies = makeFolders(root + "/Users/me/Documents/Archive");
  for (std::size_t i = 0; i < files;) {
    const Descriptor folder =
        makeFolder(top.get(), fmt::format("Folder {:04}", i / filesPerFolder));
    for (const std::size_t end = i + filesPerFolder; i < end && i < files; ++i) {
      const auto name = fmt::format("Note {:07}.txt", i);
      const std::size_t big = i / filesPerBig;
      const bool isBig = i % filesPerBig == 0;
      const std::string text(isBig ? bigCloudFileBytes + big : i % 50,
                             static_cast<char>('a' + i % 26));
      makeTextFile(folder, name, text);
      if (isBig && big % 2 == 0) makeTextFile(copies, name, text);
    }
  }
}

std::string historyIn(const std::string& root) {
  return root + "/Users/me/Library/Application Support/Volbrin/history.jsonl";
}

void makeHistoryMachine(const std::string& root) {
  makeMachine(root);
  std::string lines;
  for (int i = 0; i < 100'000; ++i) {
    HistoryEntry entry;
    entry.at = *parseIso8601("2026-01-01T00:00:00Z");
    entry.id = fmt::format("leftover-{}", i % 70'000);
    entry.title = fmt::format("Leftover of App {}", i % 70'000);
    entry.action = Action::Kind::trash;
    entry.bytes = 1'000'000 + i;
    if (i % 3 == 2) entry.undone = true;
    entry.relocated = {{fmt::format("/Users/me/Library/Caches/App {}", i),
                        fmt::format("/Users/me/.Trash/App {}", i),
                        {},
                        {}}};
    lines += jsonText(toJson(entry)) + '\n';
  }
  const auto path = historyIn(root);
  makeTextFile(makeFolders(std::string(parentFolder(path))), "history.jsonl", lines);
}

}  // namespace volbrin::bench
