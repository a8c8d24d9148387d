#include "Progress.hpp"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "ByteText.hpp"
#include "Output.hpp"
#include "Text.hpp"

namespace volbrin::cli {
namespace {

constexpr std::chrono::milliseconds betweenDraws{100};
constexpr const char* eraseLine = "\r\x1b[K";  // ECMA-48, "Erase in Line"

std::size_t terminalWidth() {
  winsize size{};
  const bool isKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : 80;
}

/// The first `width` characters.
std::string cut(std::string text, std::size_t width) {
  while (characterCount(text) > width) {
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U) {
      text.pop_back();
    }
    text.pop_back();
  }
  return text;
}

}  // namespace

bool StatusLine::isFresh() const { return isShown_ && Clock::now() - drawn_ < betweenDraws; }

void StatusLine::draw(std::string_view text) {
  drawn_ = Clock::now();
  isShown_ = true;
  std::fputs((eraseLine + cut(printableLine(text), terminalWidth() - 1)).c_str(), stderr);
}

void StatusLine::erase() {
  if (isShown_) std::fputs(eraseLine, stderr);
  isShown_ = false;
}

void ProgressLine::finderBegins(std::string_view name) {
  const std::lock_guard guard(lock_);
  finder_ = name;
  place_.clear();
  draw();
}

void ProgressLine::looksAt(std::string_view title) {
  const std::lock_guard guard(lock_);
  place_ = title;
  draw();
}

void ProgressLine::measured(ByteCount bytes) {
  bytes_ += bytes;
  // A thread that would have to wait leaves the drawing to the next.
  const std::unique_lock guard(lock_, std::try_to_lock);
  if (guard) draw();
}

void ProgressLine::draw() {
  if (line_.isFresh()) return;
  std::string text = finder_;
  if (!place_.empty()) text += (text.empty() ? "" : ": ") + place_;
  text += fmt::format("{}{} so far", text.empty() ? "" : ", ", byteText(bytes_));
  line_.draw(text);
}

}  // namespace volbrin::cli
