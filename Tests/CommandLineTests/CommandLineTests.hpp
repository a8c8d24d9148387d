#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "Files.hpp"
#include "Machine.hpp"

namespace volbrin::test {

using Words = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs a program with standard output at `out`; what it says on standard error goes to a file.
inline int runInto(int out, const std::string& errors, Words words,
                   const Environment& environment) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    for (const char* name : {"NO_COLOR", "VOLBRIN_CATALOG"}) ::unsetenv(name);
    for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> vector;
    for (auto& word : words) vector.push_back(word.data());
    vector.push_back(nullptr);
    ::execv(vector.front(), vector.data());
    ::_exit(127);
  }
  ::close(out);
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// The real program, run on a small fake machine with a small catalog.
class CommandLineTests : public testing::Test {
 protected:
  CommandLineTests() {
    machine_.setFixture(R"({"drives":[{"name":"Disk","path":"/","total":1000000000000,
        "free":40000000000},{"name":"Ext","path":"/Volumes/Ext","total":2000000000000,
        "free":1900000000000}],"scale":100000})");
    machine_.fileOfSize("~/Library/Caches/tool/file", 122'880);
    machine_.fileOfSize("/Volumes/Ext/cache/file", 40'960);
    machine_.fileOfSize("~/.Trash/old", 4'096);
    machine_.app("/Applications/Photo Lab.app", "com.maker.photolab");
    auto catalog = catalogOfPlaces();
    catalog.places = {placeAt("tool", {"~/Library/Caches/tool"}),
                      placeAt("ext", {"/Volumes/Ext/cache"})};
    folder_.file("rules.json", jsonText(toJson(catalog)));
  }

  Outcome run(Words words, const Environment& environment = {}) const {
    words.insert(words.begin(), VOLBRIN_PROGRAM);
    const auto out = folder_.at("out"), err = folder_.at("err");
    const int status = runInto(::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), err,
                               std::move(words), environment);
    return {status, readFile(out), readFile(err)};
  }

  /// On the test's machine, with its rules.
  Outcome onMachine(Words words, const Environment& environment = {}) const {
    words.insert(words.end(),
                 {"--machine", machine_.root(), "--catalog", folder_.at("rules.json")});
    return run(std::move(words), environment);
  }

  Json json(Words words) const {
    words.emplace_back("--json");
    const auto outcome = onMachine(std::move(words));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.find('\n'), outcome.out.size() - 1);
    return parseJson(outcome.out, "standard output");
  }

  /// What a terminal would receive on standard output.
  std::string onTerminal(Words words, const Environment& environment) const {
    words.insert(words.begin(), VOLBRIN_PROGRAM);
    words.insert(words.end(),
                 {"--machine", machine_.root(), "--catalog", folder_.at("rules.json")});
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_TRUE(::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    EXPECT_EQ(runInto(::open(::ptsname(terminal), O_RDWR | O_NOCTTY), folder_.at("err"), words,
                      environment),
              0);
    std::string text(4095, '\0');  // shorter than what a terminal holds back
    const auto length = ::read(terminal, text.data(), text.size());
    ::close(terminal);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    std::erase(text, '\r');
    return text;
  }

  Machine machine_;
  TemporaryFolder folder_;
};

}  // namespace volbrin::test
