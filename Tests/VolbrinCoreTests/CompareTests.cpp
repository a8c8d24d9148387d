#include "Compare.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "Parallel.hpp"
#include "Platform/Linux/ChildProcess.hpp"
#include "PrivacyFence.hpp"
#include "TemporaryFolder.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using testing::Pair;
using testing::UnorderedElementsAre;

class CompareTests : public testing::Test {
 protected:
  ~CompareTests() override { HelperThread::setWidth(0); }

  TreeDiff compared(CompareBy by) const {
    return compareTrees(folder_.at("a"), folder_.at("b"), by);
  }

  TemporaryFolder folder_;
};

TEST_F(CompareTests, TellsTreesApart) {
  const std::string big(3'000'000, 'x');
  std::string bigger = big + "y", other = big;
  other[2'999'999] = 'y';
  struct Case {
    const char* name;
    std::function<void(const TemporaryFolder&)> make;  ///< beside two folders and their "same"
    TreeDiff bySize, byContents;
  };
  const std::vector<Case> cases = {
      {"nothing", [](const auto&) {}, {1, 0, 0, 0, false}, {1, 0, 0, 0, true}},
      {"what doesn't count",
       [](const auto& at) {
         at.file("a/.DS_Store", "1");
         at.file("b/deep/.DS_Store", "22");
         at.folder("a/empty");
         at.link("b/link", "same");
         at.link("a/folder", "/usr");
         ::mkfifo(at.at("b/pipe").c_str(), 0600);
       },
       {1, 0, 0, 0, false},
       {1, 0, 0, 0, true}},
      {"one side only",
       [](const auto& at) {
         at.file("a/x\n/\xFF", "1");
         at.file("b/.hidden");
         at.file("b/.DS_Store/in");
       },
       {2, 1, 2, 0, false},
       {2, 1, 2, 0, true}},
      {"a file and a link to one",
       [](const auto& at) {
         at.file("a/f", "same");
         at.link("b/f", "same");
       },
       {2, 1, 0, 0, false},
       {2, 1, 0, 0, true}},
      {"size, and contents",
       [&](const auto& at) {
         at.file("a/1", big), at.file("b/1", bigger);
         at.file("a/2", big), at.file("b/2", other);
         at.file("a/3", "ab"), at.file("b/3", "ac");
         at.file("a/d/4", big), at.file("b/d/4", big);
         at.file("a/5"), at.file("b/5");
       },
       {6, 0, 0, 1, false},
       {6, 0, 0, 3, true}}};
  for (const auto& [name, make, bySize, byContents] : cases) {
    for (const char* side : {"a", "b"}) {
      fs::remove_all(folder_.at(side));
      folder_.file(std::string(side) + "/same", "same");
    }
    make(folder_);
    for (const std::size_t width : {1U, 3U}) {
      HelperThread::setWidth(width);
      EXPECT_EQ(compared(CompareBy::size), bySize) << name;
      EXPECT_EQ(compared(CompareBy::contents), byContents) << name;
    }
  }
}

TEST_F(CompareTests, ComparesAnythingElseAsSingleFiles) {
  folder_.file("one", "12"), folder_.file("two", "12"), folder_.file("three", "13");
  folder_.file("long", "123"), folder_.folder("folder");
  folder_.link("to folder", "folder"), folder_.file("folder/in", "1");
  struct Case {
    const char *a, *b;
    std::int64_t bySize, byContents;
  };
  for (const auto& [a, b, bySize, byContents] :
       {Case{"one", "two", 0, 0}, Case{"one", "three", 0, 1}, Case{"one", "long", 1, 1},
        Case{"none", "nowhere", 0, 0}, Case{"one", "none", 1, 1}, Case{"none", "one", 1, 1},
        Case{"one", "folder", 1, 1}, Case{"folder", "none", 1, 1}}) {
    for (const auto by : {CompareBy::size, CompareBy::contents}) {
      const auto wanted = by == CompareBy::size ? bySize : byContents;
      auto diff = compareTrees(folder_.at(a), folder_.at(b), by);
      EXPECT_EQ(diff.unseen, by == CompareBy::contents && std::string(a) == "none" &&
                                 std::string(b) == "nowhere");
      diff.unseen = 0;
      EXPECT_EQ(diff, (TreeDiff{1, 0, 0, wanted, by == CompareBy::contents})) << a << ", " << b;
    }
  }
  const auto behind = compareTrees(folder_.at("to folder"), folder_.at("folder"), CompareBy::size);
  EXPECT_EQ(behind, (TreeDiff{1, 0, 0, 0, false}));
}

TEST_F(CompareTests, TakesOnlyASecondCopyForOne) {
  folder_.file("a/in/file", "1"), folder_.file("b/in/file", "1"), folder_.file("single", "1");
  folder_.link("link", "a"), folder_.link("b/way", "../a"), folder_.file("c/file", "1");
  fs::create_hard_link(folder_.at("single"), folder_.at("again"));
  struct Case {
    const char *a, *b;
    bool isCopy;
  };
  for (const auto& [a, b, isCopy] :
       {Case{"a", "b", true}, Case{"a", "a", false}, Case{"a", "link", false},
        Case{"link", "b", false}, Case{"a/in", "b/way/in", false}, Case{"c", "a", false},
        Case{"single", "again", false}, Case{"single", "c/file", true}}) {
    const auto diff = compareCopies(folder_.at(a), folder_.at(b), CompareBy::contents);
    EXPECT_EQ(diff && diff->isProof(), isCopy) << a << ", " << b;
  }
  fs::permissions(folder_.path(), fs::perms(0755));
  fs::permissions(folder_.folder("a/locked"), fs::perms::none);
  EXPECT_TRUE(compareTrees(folder_.at("a"), folder_.at("b"), CompareBy::size).identical());
  HelperThread::setWidth(1);  // what follows runs in forked processes
  const auto provesAsOrdinaryUser = [&] {
    if (::setuid(65534) != 0) ::_exit(2);
    const auto diff = compareCopies(folder_.at("a"), folder_.at("b"), CompareBy::size);
    ::_exit(diff && diff->isProof() ? 1 : 0);
  };
  EXPECT_EXIT(provesAsOrdinaryUser(), testing::ExitedWithCode(0), "");
  fs::remove(folder_.at("a/locked"));
  for (const char* side : {"a", "b"}) {  // alike in size, and nobody can tell more
    fs::permissions(folder_.file(std::string(side) + "/shut", side), fs::perms::none);
  }
  const auto provesNothing = [&] {
    if (::setuid(65534) != 0) ::_exit(2);
    const auto diff = compareCopies(folder_.at("a"), folder_.at("b"), CompareBy::contents);
    ::_exit(diff && diff->identical() && diff->unseen == 1 && !diff->isProof() ? 0 : 1);
  };
  EXPECT_EXIT(provesNothing(), testing::ExitedWithCode(0), "");
}

TEST_F(CompareTests, ReadsNothingThatIsFenced) {
  folder_.file("a/in", "1"), folder_.folder("b"), folder_.file("c/in", "1");
  const FenceGuard fence({folder_.at("a"), folder_.at("c")});
  EXPECT_EQ(compared(CompareBy::contents), (TreeDiff{0, 0, 0, 0, true}));
  EXPECT_EQ(fileSizesUnder(folder_.at("a")).size(), 0U);
}

TEST_F(CompareTests, ReachesFilesAtAnyDepth) {
  for (const char* side : {"a", "b"}) {
    folder_.file("tree/file", side);
    for (int depth = 0; depth < 30; ++depth) {  // from the inside out: too deep for whole paths
      const auto above = folder_.folder("above");
      fs::rename(folder_.at("tree"), above + "/" + std::string(240, 'd'));
      fs::rename(above, folder_.at("tree"));
    }
    fs::rename(folder_.at("tree"), folder_.at(side));
  }
  EXPECT_EQ(compared(CompareBy::size), (TreeDiff{1, 0, 0, 0, false}));
  EXPECT_EQ(compared(CompareBy::contents), (TreeDiff{1, 0, 0, 1, true}));
}

TEST_F(CompareTests, ListsTheSizesOfFiles) {
  folder_.file("empty"), folder_.file("abc", "abc");
  EXPECT_THAT(fileSizesUnder(folder_.path()),
              UnorderedElementsAre(Pair("empty", 0), Pair("abc", 3)));
}

}  // namespace
}  // namespace volbrin::test
