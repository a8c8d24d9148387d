#include "Json.hpp"

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

/// Builds a document as the parser tells of it, and refuses what a parser would let pass: a key
/// that stands twice, of which only one would count, and nesting that later steps would follow by
/// recursion.
class DocumentReader final : public nlohmann::json_sax<Json> {
 public:
  explicit DocumentReader(const std::string& source) : source_(source) {}

  [[nodiscard]] Json take() { return std::move(document_); }

  bool null() override { return add(nullptr) != nullptr; }
  bool boolean(bool value) override { return add(value) != nullptr; }
  bool number_integer(number_integer_t value) override { return add(value) != nullptr; }
  bool number_unsigned(number_unsigned_t value) override { return add(value) != nullptr; }
  bool number_float(number_float_t value, const string_t& /*text*/) override {
    return add(value) != nullptr;
  }
  bool string(string_t& value) override { return add(std::move(value)) != nullptr; }
  bool binary(binary_t& /*value*/) override { return false; }  // no text has any
  bool start_object(std::size_t /*elements*/) override { return open(Json::object()); }
  bool start_array(std::size_t /*elements*/) override { return open(Json::array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool key(string_t& value) override {
    auto& container = open_.back();
    auto& members = container.value->get_ref<Json::object_t&>();
    const bool isNew = members.size() < fewKeys ? members.find(value) == members.end()
                                                : isNewAmongMany(container, value);
    container.key = std::move(value);
    if (!isNew) refuse("stands twice");
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    throw DecodingError(source_, {{"", syntaxProblem(error.what())}});
  }

 private:
  struct Container {
    Json* value;
    std::string key = {};                 ///< the last one read
    std::set<std::string> manyKeys = {};  ///< all of them, once there are many
  };

  /// Up to here, looking through all keys is faster than keeping them in order.
  static constexpr std::size_t fewKeys = 16;
  /// Room that most objects need, taken at once.
  static constexpr std::size_t usualMembers = 8;

  static bool isNewAmongMany(Container& container, const std::string& key) {
    if (container.manyKeys.empty()) {
      for (const auto& [each, value] : container.value->get_ref<Json::object_t&>()) {
        container.manyKeys.insert(each);
      }
    }
    return container.manyKeys.insert(key).second;
  }

  /// Puts a value where the document has it; where it is then.
  Json* add(Json value) {
    if (open_.empty()) {
      document_ = std::move(value);
      return &document_;
    }
    Container& container = open_.back();
    if (container.value->is_array()) {
      container.value->push_back(std::move(value));
      return &container.value->back();
    }
    // The key is known to be new, so nothing needs to be looked for.
    auto& members = container.value->get_ref<Json::object_t&>();
    if (members.empty()) members.reserve(usualMembers);
    members.emplace_back(container.key, std::move(value));
    return &members.back().second;
  }

  bool open(Json empty) {
    Json* value = add(std::move(empty));
    open_.push_back({value});
    if (open_.size() > maximumJsonDepth) {
      open_.clear();
      refuse("nested more than " + std::to_string(maximumJsonDepth) + " levels deep");
    }
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  [[noreturn]] void refuse(const std::string& problem) const {
    std::string path;
    for (const auto& [value, key, manyKeys] : open_) {
      if (value->is_array()) {
        path += "[" + std::to_string(value->size() - 1) + "]";
      } else {
        path += (path.empty() ? "" : ".") + excerpt(key);
      }
    }
    throw DecodingError(source_, {{path, problem}});
  }

  const std::string& source_;
  Json document_;
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
    DocumentReader reader(source);
    Json::sax_parse(text.begin(), text.end(), &reader);
    return reader.take();
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
