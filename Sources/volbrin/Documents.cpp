#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <iostream>

#include "Completions.hpp"
#include "Help.hpp"
#include "Model.hpp"
#include "OptionTable.hpp"

/// Writes the manual page and the completions below the folder that it is given, where the system
/// looks for them ("man/man1", "bash-completion/completions", ...).
namespace {

using namespace volbrin;
using namespace volbrin::cli;

/// `text` for a manual page (groff_man(7)): hyphens that may be copied, no line taken for a
/// request.
std::string roff(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '-' || c == '\\') result += '\\';
    result += c == '\\' ? 'e' : c;
  }
  return result.starts_with('.') || result.starts_with('\'') ? "\\&" + result : result;
}

std::string optionEntries(const std::vector<Option>& options) {
  std::string text;
  for (const auto& option : options) {
    text += ".TP\n";
    std::string names = fmt::format("\\fB{}\\fR", roff(option.name));
    if (!option.shortName.empty()) {
      names = fmt::format("\\fB{}\\fR, {}", roff(option.shortName), names);
    }
    if (option.kind != ValueKind::none) names += fmt::format(" \\fI{}\\fR", option.value);
    text += names + "\n" + roff(option.help) + "\n";
  }
  return text;
}

std::string manualPage() {
  std::string text =
      fmt::format(".TH VOLBRIN 1 \"\" \"volbrin {}\" \"User Commands\"\n", Engine::version);
  text += fmt::format(".SH NAME\nvolbrin \\- {}\n", roff(programSummary));
  text += ".SH SYNOPSIS\n.B volbrin\n[options] \\fICOMMAND\\fR ...\n.SH COMMANDS\n";
  for (const auto& command : commands()) {
    text +=
        fmt::format(".SS \"volbrin {}\"\n{}\n", roff(synopsis(command)), roff(command.description));
    for (const auto& positional : command.positionals) {
      text += fmt::format(".TP\n\\fI{}\\fR\n{}\n", positional.name, roff(positional.help));
    }
    text += optionEntries(command.options);
    for (const auto& example : command.examples) {
      text += fmt::format(".PP\n.EX\n{}\n.EE\n{}\n", roff(example.line), roff(example.meaning));
    }
  }
  text += ".SH OPTIONS\nBefore or after the command:\n" + optionEntries(globalOptions());
  text += R"(.SH EXIT STATUS
.TP
0
Done.
.TP
1
\fBcatalog check\fR found a problem, or there is no drive to plan for.
.TP
2
The command line is wrong.
.TP
3
The machine or the rules can't be loaded, or the results can't be written.
.SH ENVIRONMENT
.TP
\fBVOLBRIN_CATALOG\fR
The rule file, unless \fB\-\-catalog\fR names one.
.TP
\fBNO_COLOR\fR
Set to anything, it turns colour off.
)";
  return text;
}

void writeFile(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("couldn't write " + path.string());
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::cerr << "usage: volbrin-documents FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = words[1];
  try {
    writeFile(folder / "bash-completion/completions/volbrin", bashCompletion());
    writeFile(folder / "zsh/site-functions/_volbrin", zshCompletion());
    writeFile(folder / "fish/vendor_completions.d/volbrin.fish", fishCompletion());
    writeFile(folder / "man/man1/volbrin.1", manualPage());
  } catch (const std::exception& error) {
    std::cerr << "volbrin-documents: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
