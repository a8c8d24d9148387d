#include <fmt/format.h>
#include <gmock/gmock.h>
#include <map>
#include <set>

#include "../../Sources/volbrin/OptionTable.hpp"
#include "Files.hpp"
#include "Platform/Linux/ChildProcess.hpp"
#include "Text.hpp"

namespace volbrin::cli {
namespace {

using testing::HasSubstr;

std::string document(const std::string& name) { return readFile(VOLBRIN_DOCUMENTS "/" + name); }

/// What bash offers for the last of `words`.
std::vector<std::string> offered(const std::vector<std::string_view>& words) {
  const auto script = fmt::format(
      "source '{}'; COMP_WORDS=({}); COMP_CWORD={}; _volbrin; printf '%s\\n' \"${{COMPREPLY[@]}}\"",
      VOLBRIN_DOCUMENTS "/bash-completion/completions/volbrin", joined(words, " "),
      words.size() - 1);
  const auto output = outputOf(findTool("bash", {"/bin"}).value_or(""), {"-c", script});
  if (!output) return {"no answer"};
  const auto lines = split(*output, '\n');
  return {lines.begin(), lines.end()};
}

TEST(DocumentsTests, BashOffersWhatTheTableHas) {
  std::map<std::string_view, std::set<std::string_view>> wanted;  // by the first word
  for (const auto& command : commands()) {
    auto& names = wanted[split(command.name, ' ').front()];
    for (const auto& option : globalOptions()) names.insert(option.name);
    for (const auto& option : command.options) names.insert(option.name);
  }
  for (const auto& [first, names] : wanted) {
    SCOPED_TRACE(first);
    EXPECT_THAT(offered({"volbrin", first, "--"}), testing::UnorderedElementsAreArray(names));
  }
  EXPECT_THAT(offered({"volbrin", "icloud", "cl"}), testing::Contains("clean"));
  EXPECT_THAT(offered({"volbrin", "--color", "a"}), testing::ElementsAre("auto", "always"));
}

TEST(DocumentsTests, TheOtherDocumentsNameWhatTheTableHas) {
  const auto zsh = document("zsh/site-functions/_volbrin");
  const auto fish = document("fish/vendor_completions.d/volbrin.fish");
  auto manual = document("man/man1/volbrin.1");
  std::erase(manual, '\\');
  for (const auto& command : commands()) {
    const auto begin = manual.find(fmt::format(".SS \"volbrin {}", command.name));
    ASSERT_NE(begin, std::string::npos) << command.name;
    const auto part = manual.substr(begin, manual.find("\n.S", begin + 1) - begin);
    const auto first = split(command.name, ' ').front();
    for (const auto& option : command.options) {
      EXPECT_THAT(part, HasSubstr(fmt::format("fB{}fR", option.name)));
      EXPECT_THAT(zsh, HasSubstr(fmt::format("{}[", option.name)));
      EXPECT_THAT(fish, HasSubstr(fmt::format("'__fish_seen_subcommand_from {}' -l {}", first,
                                              option.name.substr(2))));
    }
  }
}

}  // namespace
}  // namespace volbrin::cli
