#include "DateText.hpp"

#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

namespace volbrin {
namespace {

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int>(text.size())));
}

}  // namespace

std::string dateText(Date date, std::string_view pattern) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::SimpleDateFormat format(unicode(pattern), icu::Locale::getDefault(), status);
  if (U_FAILURE(status)) return iso8601(date).substr(0, 10);
  using Milliseconds = std::chrono::duration<double, std::milli>;
  icu::UnicodeString text;
  format.format(UDate(Milliseconds(date.time_since_epoch()).count()), text);
  std::string result;
  return text.toUTF8String(result);
}

}  // namespace volbrin
