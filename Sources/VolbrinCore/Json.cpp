#include "Json.hpp"

#include <functional>
#include <limits>
#include <set>

#include "Text.hpp"

namespace volbrin {
namespace {

/// `text`, its middle left out when it is long: a message stays a line that a person can read.
std::string excerpt(const std::string& text) {
  constexpr std::size_t half = 60;
  std::string repaired = repairedUtf8(text);
  if (repaired.size() <= 2 * half + 3) return repaired;
  return repairedUtf8(repaired.substr(0, half)) + "..." +
         repairedUtf8(repaired.substr(repaired.size() - half));
}

/// "source: path: problem", with how many more there are; always one line.
std::string messageOf(const std::string& source, const std::vector<JsonProblem>& problems) {
  std::string message = source;
  if (!problems.empty()) {
    const auto& first = problems.front();
    message += (first.path.empty() ? "" : ": " + excerpt(first.path)) + ": " + first.problem;
    if (problems.size() > 1) {
      message += " (and " + std::to_string(problems.size() - 1) + " more)";
    }
  }
  std::string line;
  for (const char c : repairedUtf8(message)) line += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
  return line;
}

const char* kindOf(const Json& value) {
  switch (value.type()) {
    case Json::value_t::null:
      return "null";
    case Json::value_t::object:
      return "an object";
    case Json::value_t::array:
      return "a list";
    case Json::value_t::string:
      return "a string";
    case Json::value_t::boolean:
      return "a boolean";
    default:
      return "a number";
  }
}

/// The library's message without its own error number: "... at line 2, column 7: ...".
std::string syntaxProblem(const char* what) {
  std::string_view text = what;
  if (text.starts_with('[')) {
    if (const auto close = text.find("] "); close != std::string_view::npos) {
      text.remove_prefix(close + 2);
    }
  }
  return "not valid JSON: " + excerpt(std::string(text));
}

/// Watches a document while it is read, for what the parser would let pass: a key that stands
/// twice, of which only one would count, and nesting that later steps would follow by recursion.
class DocumentGuard {
 public:
  explicit DocumentGuard(const std::string& source) : source_(source) {}

  bool operator()(int, Json::parse_event_t event, const Json& parsed) {
    using Event = Json::parse_event_t;
    if (event == Event::key) {
      open_.back().key = parsed.get_ref<const std::string&>();
      if (!open_.back().keys.insert(open_.back().key).second) refuse("stands twice");
    } else if (event == Event::array_end || event == Event::object_end) {
      open_.pop_back();
    } else {
      if (!open_.empty()) ++open_.back().position;
      if (event != Event::value) open_.push_back({event == Event::array_start, 0, {}, {}});
      if (open_.size() > maximumJsonDepth) {
        open_.clear();
        refuse("nested more than " + std::to_string(maximumJsonDepth) + " levels deep");
      }
    }
    return true;
  }

 private:
  struct Container {
    bool isList;
    std::size_t position;  ///< how many of a list's items have begun
    std::string key;       ///< the last one read
    std::set<std::string> keys;
  };

  [[noreturn]] void refuse(const std::string& problem) const {
    std::string path;
    for (const auto& container : open_) {
      if (container.isList) {
        path += "[" + std::to_string(container.position - 1) + "]";
      } else {
        path += (path.empty() ? "" : ".") + excerpt(container.key);
      }
    }
    throw DecodingError(source_, {{path, problem}});
  }

  const std::string& source_;
  std::vector<Container> open_;
};

}  // namespace

DecodingError::DecodingError(const std::string& source, std::vector<JsonProblem> problems)
    : std::runtime_error(messageOf(source, problems)), problems_(std::move(problems)) {}

Json parseJson(std::string_view text, const std::string& source) {
  // The parser takes a NUL for the end of the text.
  if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
    throw DecodingError(source, {{"", "not valid JSON: a NUL at byte " + std::to_string(nul + 1)}});
  }
  try {
    DocumentGuard guard(source);
    return Json::parse(text.begin(), text.end(), std::ref(guard));
  } catch (const Json::exception& error) {
    throw DecodingError(source, {{"", syntaxProblem(error.what())}});
  }
}

std::string jsonText(const Json& value, JsonLayout layout) {
  return value.dump(layout == JsonLayout::indented ? 2 : -1, ' ', false,
                    Json::error_handler_t::replace);
}

void JsonReader::reportForm(const std::string& path, const std::string& wanted,
                            const std::string& found) {
  report(path, "expected one of " + wanted + "; found " + excerpt(jsonText(found)));
}

void JsonReader::refuseNul(const std::string& text, const std::string& path) {
  // The system's calls would end the text there, and look at another path than the one judged.
  if (text.find('\0') != std::string::npos) report(path, "contains a NUL character");
}

void JsonReader::report(const std::string& path, std::string problem) {
  problems_.push_back({path, std::move(problem)});
}

bool JsonReader::expect(bool fits, const Json& value, const std::string& path, const char* wanted) {
  if (!fits) report(path, std::string("expected ") + wanted + ", found " + kindOf(value));
  return fits;
}

void JsonReader::read(const Json& value, const std::string& path, std::string& target) {
  if (!expect(value.is_string(), value, path, "a string")) return;
  target = value.get<std::string>();
  refuseNul(target, path);
}

void JsonReader::read(const Json& value, const std::string& path, bool& target) {
  if (expect(value.is_boolean(), value, path, "true or false")) target = value.get<bool>();
}

void JsonReader::read(const Json& value, const std::string& path, std::int64_t& target) {
  if (!expect(value.is_number(), value, path, "an integer")) return;
  const bool tooGreat = value.is_number_unsigned() &&
                        value.get<std::uint64_t>() >
                            static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (!value.is_number_integer() || tooGreat) {
    report(path, "expected a signed 64-bit integer, found " + excerpt(jsonText(value)));
    return;
  }
  target = value.get<std::int64_t>();
}

void JsonReader::read(const Json& value, const std::string& path, double& target) {
  if (expect(value.is_number(), value, path, "a number")) target = value.get<double>();
}

void JsonReader::read(const Json& value, const std::string& path, Date& target) {
  if (!expect(value.is_string(), value, path, "a date")) return;
  if (const auto date = parseIso8601(value.get_ref<const std::string&>())) {
    target = *date;
  } else {
    report(path, "expected an ISO 8601 date, found " + excerpt(jsonText(value)));
  }
}

}  // namespace volbrin
