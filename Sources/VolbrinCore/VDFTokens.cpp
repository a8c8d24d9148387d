#include "VDFTokens.hpp"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

#include "Text.hpp"

namespace volbrin {

std::optional<VDFTokens::Token> VDFTokens::next() {
  skipBlanks();
  if (isAtEnd()) return std::nullopt;
  switch (text_[at_]) {
    case '{':
      ++at_;
      return Token{Kind::open, ""};
    case '}':
      ++at_;
      return Token{Kind::close, ""};
    case '"':
      ++at_;
      return Token{Kind::text, quoted()};
    default:
      return Token{Kind::text, bareWord()};
  }
}

void VDFTokens::skipBlanks() {
  while (!isAtEnd()) {
    if (const std::size_t blank = whiteSpaceHere(); blank > 0) {
      at_ += blank;
    } else if (text_.substr(at_).starts_with("//")) {
      at_ = std::min(text_.find('\n', at_), text_.size());
    } else {
      return;
    }
  }
}

std::string VDFTokens::quoted() {
  std::string result;
  while (!isAtEnd()) {
    const char c = text_[at_++];
    if (c == '"') break;
    if (c != '\\' || isAtEnd()) {
      result += c;
      continue;
    }
    const char escaped = text_[at_++];
    result += escaped == 'n' ? '\n' : escaped == 't' ? '\t' : escaped;
  }
  return result;
}

std::string VDFTokens::bareWord() {
  const std::size_t begin = at_;
  while (!isAtEnd() && text_[at_] != '{' && text_[at_] != '}' && whiteSpaceHere() == 0) ++at_;
  return std::string(text_.substr(begin, at_ - begin));
}

std::size_t VDFTokens::whiteSpaceHere() const {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text_.data()) + at_;
  const auto length = static_cast<std::int32_t>(std::min<std::size_t>(text_.size() - at_, 4));
  std::int32_t used = 0;
  UChar32 point = 0;
  U8_NEXT(bytes, used, length, point);
  return point >= 0 && isWhiteSpace(static_cast<char32_t>(point)) ? static_cast<std::size_t>(used)
                                                                  : 0;
}

}  // namespace volbrin
