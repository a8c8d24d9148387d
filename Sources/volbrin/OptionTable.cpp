#include "OptionTable.hpp"

#include <algorithm>

namespace volbrin::cli {
namespace {

std::vector<Option> scanOptions() {
  return {
      {"--min-bytes", "", ValueKind::text, "N",
       "report everything of at least N bytes, in place of the rules' own thresholds"},
      {"--now", "", ValueKind::text, "DATE",
       "the moment from which ages are measured (ISO 8601); the present by default"},
      {"--protect",
       "",
       ValueKind::machinePath,
       "PATH",
       "never touch PATH or anything in it; may be given more than once",
       {},
       true},
      {"--avoid-privacy-prompts", "", ValueKind::none, "",
       "keep out of the folders for which macOS asks the user first"},
  };
}

std::vector<Option> with(std::vector<Option> options, std::vector<Option> more) {
  options.insert(options.end(), more.begin(), more.end());
  return options;
}

std::vector<Option> cloudSizes() {
  return {{"--min-bytes", "", ValueKind::text, "N",
           "leave files below N bytes out; 20000000 by default"},
          {"--big-bytes", "", ValueKind::text, "N",
           "list lone files from N bytes on; 1000000000 by default"},
          {"--size-only-bytes", "", ValueKind::text, "N",
           "from N bytes on take files of one size for copies, whatever their names; 100000000 by "
           "default"}};
}

std::vector<Option> dryRunAndYes() {
  return {{"--dry-run", "", ValueKind::none, "", "say what would happen and change nothing"},
          {"--yes", "", ValueKind::none, "", "don't ask"}};
}

const Option goal = {"--goal", "", ValueKind::text, "TEXT",
                     "free space wanted: 50GB, 1.5tb, 500mb, 50 (gigabytes) or 10%"};

}  // namespace

const std::vector<Option>& globalOptions() {
  static const std::vector<Option> options = {
      {"--machine", "", ValueKind::folder, "DIR",
       "work on the fake machine in DIR, not on this computer"},
      {"--catalog", "", ValueKind::file, "PATH", "the rule file"},
      {"--json", "", ValueKind::none, "", "print JSON on standard output, and nothing else there"},
      {"--color",
       "",
       ValueKind::choice,
       "WHEN",
       "colour of the text: auto, always or never",
       {"auto", "always", "never"}},
      {"--quiet", "", ValueKind::none, "", "no progress on standard error"},
      {"--help", "-h", ValueKind::none, "", "tell how the program, or a command, is used"},
      {"--version", "", ValueKind::none, "", "print the version"},
  };
  return options;
}

const std::vector<Command>& commands() {
  static const std::vector<Command> list = {
      {"status",
       "drives and Trash, without a scan",
       "Says how much space each drive has and what the Trash holds.",
       {},
       {},
       {{"volbrin status", "how full the drives are"},
        {"volbrin status --json", "the same for a script"}}},
      {"scan",
       "find what uses the space and can go",
       "Looks at the whole machine and says of each thing why it can go and how to get it back. "
       "Nothing is changed.",
       {},
       with({goal}, scanOptions()),
       {{"volbrin scan", "what could go, and why"},
        {"volbrin scan --goal 50GB", "with what the startup drive is short of"},
        {"volbrin scan --min-bytes 0", "the small things too"},
        {"volbrin scan --protect ~/Library/Caches/pip", "and one folder left alone"}}},
      {"plan",
       "routes to a goal of free space",
       "Scans, and says how far each route gets: only what rebuilds itself, plus what can be "
       "downloaded again, and so on; and the fewest steps that reach the goal. Nothing is changed.",
       {},
       with({goal,
             {"--drive", "", ValueKind::text, "DRIVE",
              "the drive to plan for, by name or path; the startup drive by default"}},
            scanOptions()),
       {{"volbrin plan", "how to get 50 GB free on the startup drive"},
        {"volbrin plan --goal 10% --drive Backup", "a tenth of another drive"}}},
      {"explain",
       "what any path is",
       "Says of one path what it is, how big, whose, whether it is safe to touch, and what in it "
       "is biggest. Nothing is changed.",
       {{"PATH", ValueKind::machinePath, "what to explain", true, false}},
       {},
       {{"volbrin explain ~/Library/Caches/Homebrew", "a place that the rules know"},
        {"volbrin explain ~/Library/Containers/com.example.app", "a folder with an owner"}}},
      {"usage",
       "what paths take on disk",
       "Prints the allocated bytes of each path with everything in it. Files with several names "
       "count once, links count themselves, other drives and cloud folders are not entered.",
       {{"PATH", ValueKind::machinePath, "what to measure", true, true}},
       {},
       {{"volbrin usage ~/Library/Caches", "one folder"},
        {"volbrin usage ~/Movies ~/Music --json", "several, for a script"}}},
      {"compare",
       "do two trees agree",
       "Compares two folders file by file, or two files, by size. Folders, links and files named "
       ".DS_Store don't count. The exit status is 1 when there is a difference.",
       {{"A", ValueKind::machinePath, "the one", true, false},
        {"B", ValueKind::machinePath, "the other", true, false}},
       {{"--checksums", "", ValueKind::none, "", "compare the contents too, byte by byte"}},
       {{"volbrin compare ~/Movies/Trip /Volumes/Backup/Trip", "is all of it there"},
        {"volbrin compare --checksums ~/Movies/Trip /Volumes/Backup/Trip",
         "and is every byte the same"}}},
      {"apps",
       "the installed apps",
       "Lists the apps that a scan knows of, and when each was last used.",
       {},
       {},
       {{"volbrin apps", "what is installed"}}},
      {"owner",
       "whose folder that is",
       "Says whether a folder of that name in ~/Library belongs to an app that is installed, to "
       "one that was removed, to the system, or to nobody known.",
       {{"NAME", ValueKind::text, "the folder's name", true, false}},
       {{"--kind",
         "",
         ValueKind::choice,
         "KIND",
         "where the folder stands: container (Containers), group-container (Group Containers) or "
         "support-folder (Application Support)",
         {"container", "group-container", "support-folder"},
         false,
         true}},
       {{"volbrin owner Slack --kind support-folder",
         "whose ~/Library/Application Support/Slack is"},
        {"volbrin owner com.example.app --kind container", "a sandboxed app's folder"}}},
      {"clean",
       "act on findings",
       "Scans afresh and acts on the findings of these ids, each by its own means: to the Trash, "
       "to "
       "a drive with every copy proved, or by its tool's own command. What is yours is only ever "
       "moved. Shows what will happen and asks first; where nobody can be asked it wants --yes. "
       "Ctrl-C ends a copy, and the original stays.",
       {{"ID", ValueKind::text, "a finding's id, in brackets in the scan's text", true, true}},
       with(with(dryRunAndYes(),
                 {{"--agree", "", ValueKind::none, "",
                   "you know the cautions of these findings and agree to them"},
                  {"--permanent-caches", "", ValueKind::none, "",
                   "remove what rebuilds itself for good, past the Trash"},
                  {"--move-to", "", ValueKind::text, "DRIVE",
                   "the drive to move to, by name or path"},
                  {"--link-move", "", ValueKind::none, "",
                   "move what only its app can move, and leave a link in its place"}}),
            scanOptions()),
       {{"volbrin clean npm-cache", "one finding, after a question"},
        {"volbrin clean npm-cache pip-cache --dry-run", "what would happen"},
        {"volbrin clean personal-movies-trip --move-to Backup --yes",
         "to a drive, without a question"}}},
      {"undo",
       "put an action back",
       "Puts back what the last action under this id moved to the Trash, and takes away the links "
       "that it left. Nothing is overwritten; copies on a drive stay.",
       {{"ID", ValueKind::text, "the id that was acted on", true, false}},
       dryRunAndYes(),
       {{"volbrin undo npm-cache", "put it back, after a question"}}},
      {"history",
       "what was done, newest last",
       "Lists every action that changed the disk, and every undo.",
       {},
       {},
       {{"volbrin history", "what was done so far"}}},
      {"icloud scan",
       "copies and big files in iCloud Drive",
       "Looks for files that iCloud Drive holds more than once or that are also on this Mac or a "
       "drive, by name and size, and for big files with no other copy. Nothing is downloaded, "
       "opened or changed.",
       {},
       cloudSizes(),
       {{"volbrin icloud scan", "what could leave iCloud Drive"},
        {"volbrin icloud scan --min-bytes 1000000", "smaller files too"}}},
      {"icloud clean",
       "take files out of iCloud Drive",
       "Scans and takes the files of these ids out of iCloud Drive: each is downloaded if need be, "
       "checked byte for byte against the copy that stays, copied to a drive, and removed once the "
       "copy on the drive is proved. Shows what will happen and asks first. Ctrl-C stops after the "
       "file that is at work.",
       {{"ID", ValueKind::text, "a file's id, in brackets in the scan's text", true, true}},
       with(with({{"--drive",
                   "",
                   ValueKind::text,
                   "DRIVE",
                   "the drive to park the files on, by name or path",
                   {},
                   false,
                   true},
                  {"--chunk-bytes", "", ValueKind::text, "N",
                   "most bytes to download at once; 5000000000 by default"},
                  {"--margin-bytes", "", ValueKind::text, "N",
                   "free space to leave on the Mac; 5000000000 by default"},
                  {"--agree", "", ValueKind::none, "",
                   "you know the cautions of these files and agree to them"}},
                 dryRunAndYes()),
            cloudSizes()),
       {{"volbrin icloud clean icloud-0123456789ab --drive Backup --dry-run", "what would happen"},
        {"volbrin icloud clean icloud-0123456789ab --drive Backup", "after a question"}}},
      {"catalog check",
       "what is wrong with a rule file",
       "Loads a rule file and reports everything that is wrong with it, each with its place in the "
       "file. Without PATH, the file that a scan would load.",
       {{"PATH", ValueKind::file, "the rule file", false, false}},
       {},
       {{"volbrin catalog check", "the rules in use"},
        {"volbrin catalog check my-rules.json", "rules of one's own"}}},
  };
  return list;
}

const Command* findCommand(std::string_view name) {
  const auto found = std::find_if(commands().begin(), commands().end(),
                                  [&](const Command& command) { return command.name == name; });
  return found == commands().end() ? nullptr : &*found;
}

}  // namespace volbrin::cli
