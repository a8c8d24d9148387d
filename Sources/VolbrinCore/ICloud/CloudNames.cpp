#include "CloudNames.hpp"

#include <unicode/regex.h>

#include <array>
#include <memory>
#include <unordered_set>

#include "../Paths.hpp"
#include "../Sha256.hpp"
#include "../Text.hpp"

namespace volbrin {
namespace {

/// What stands behind a copy's name, in the order in which it is looked for.
class CopyMarks {
 public:
  CopyMarks() {
    static constexpr std::array patterns = {" copy( \\d+)?$", " \\(\\d+\\)$", " \\d+$"};
    for (std::size_t i = 0; i < marks_.size(); ++i) {
      UErrorCode status = U_ZERO_ERROR;
      marks_[i].reset(new icu::RegexMatcher(icu::UnicodeString(patterns[i]), 0, status));
    }
  }

  /// Whether a mark was taken off the end.
  bool takeOff(icu::UnicodeString& text) {
    for (const auto& mark : marks_) {
      UErrorCode status = U_ZERO_ERROR;
      mark->reset(text);
      if (!mark->find(status) || U_FAILURE(status)) continue;
      text = mark->replaceFirst(icu::UnicodeString(), status);
      return true;
    }
    return false;
  }

 private:
  std::array<std::unique_ptr<icu::RegexMatcher>, 3> marks_;
};

}  // namespace

std::string normalizedCopyName(std::string_view name) {
  thread_local CopyMarks marks;
  auto text = icu::UnicodeString::fromUTF8(lowercased(stem(name)));
  while (marks.takeOff(text)) {
  }
  std::string result;
  text.toUTF8String(result);
  return result + "." + lowercased(extensionOf(name));
}

bool isPackageName(std::string_view name) {
  static const std::unordered_set<std::string> extensions = {
      "app",       "photoslibrary", "musiclibrary", "tvlibrary", "imovielibrary", "fcpbundle",
      "logicx",    "band",          "aplibrary",    "lrlibrary", "bundle",        "framework",
      "plugin",    "component",     "vst",          "vst3",      "aaxplugin",     "xcarchive",
      "xcodeproj", "xcworkspace",   "sparsebundle", "rtfd",      "pages",         "numbers",
      "key",       "epub",          "pkg",          "mpkg",      "playground"};
  return extensions.contains(lowercased(extensionOf(name)));
}

std::string cloudID(std::string_view path) { return "icloud-" + sha256OfText(path).substr(0, 12); }

}  // namespace volbrin
