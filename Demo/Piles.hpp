#pragma once

#include <span>
#include <string_view>

namespace volbrin::demo {

class TreeWriter;

/// A folder full of files that are named by one rule and differ in size and age. Most of the
/// machine is a table of these.
///
/// `pattern` is the path of each file below `folder`. In it stand for
///   {i} {i2} {i4}  the file's number from 1, as it is or with leading zeros to that many digits,
///   {h8} {h40} ... so many random hexadecimal digits,
///   {b4} {b16} ... one of so many two-digit hexadecimal folder names,
///   {w}            an everyday word,
///   {u}            a UUID.
/// A pattern must give each file a name of its own, which {i} or enough digits see to.
struct Pile {
  std::string_view folder;   ///< in machine form ("~/..." or "/...")
  std::string_view pattern;  ///< see above
  int files;                 ///< how many
  double megabytes;          ///< what files and folders measure as on the machine, about
  double newestDays;         ///< age of the newest file
  double oldestDays;         ///< age of the oldest
  /// Piles of one `content`, pattern, count and size are identical, whatever their folders.
  /// Empty: the contents go by the folder.
  std::string_view content = {};
};

/// Writes each pile. The folders that a pattern asks for count towards the pile's size, and a pile
/// never measures more than it says unless it has more files than blocks.
void writePiles(TreeWriter& writer, std::span<const Pile> piles);

/// The same for one.
void writePile(TreeWriter& writer, const Pile& pile);

/// One file that measures as `megabytes` on the machine.
struct Single {
  std::string_view path;
  double megabytes;
  double daysAgo;
  std::string_view content = {};  ///< as in `Pile`
};

void writeSingles(TreeWriter& writer, std::span<const Single> singles);

/// A small text file, written as it is.
struct Note {
  std::string_view path;
  std::string_view text;
  double daysAgo;
};

void writeNotes(TreeWriter& writer, std::span<const Note> notes);

}  // namespace volbrin::demo
