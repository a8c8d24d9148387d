#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "Dates.hpp"

/// Records and their JSON form (RFC 8259). A record lists its fields once:
///
///   template <>
///   struct volbrin::RecordFields<Skipped> {
///     static constexpr auto list =
///         std::tuple{field("path", &Skipped::path), field("why", &Skipped::why)};
///   };
///
/// and an enumeration its forms in `EnumForms`. Keys are written in that order. A field of type
/// std::optional is left out when absent and may be missing (or null) when read; every other key is
/// required. Keys that the record doesn't list are ignored.
namespace volbrin {

using Json = nlohmann::ordered_json;

template <class Record, class Value>
struct Field {
  const char* key;
  Value Record::*member;
};

template <class Record, class Value>
constexpr Field<Record, Value> field(const char* key, Value Record::*member) {
  return {key, member};
}

template <class Record>
struct RecordFields;
template <class Enum>
struct EnumForms;

template <class T>
concept JsonRecord = requires {
  RecordFields<T>::list;
};
template <class T>
concept JsonEnum = requires {
  EnumForms<T>::list;
};

/// One thing that is wrong with a JSON document: where ("places[1].getBack"; empty for the document
/// as a whole) and what ("missing", "expected a string, found a number").
struct JsonProblem {
  std::string path;
  std::string problem;

  bool operator==(const JsonProblem&) const = default;
};

/// A document that can't be read. The message is one line: the source, the place and the problem.
class DecodingError : public std::runtime_error {
 public:
  DecodingError(const std::string& source, std::vector<JsonProblem> problems);

  [[nodiscard]] const std::vector<JsonProblem>& problems() const { return problems_; }

 private:
  std::vector<JsonProblem> problems_;
};

/// The greatest nesting that `parseJson` reads.
inline constexpr int maximumJsonDepth = 256;

/// Reads `text`; anything but one JSON value in UTF-8, of at most `maximumJsonDepth`, raises a
/// DecodingError that names `source`, line and column.
[[nodiscard]] Json parseJson(std::string_view text, const std::string& source);

enum class JsonLayout { compact, indented };

/// `value` as text without a final line end; bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string jsonText(const Json& value, JsonLayout layout = JsonLayout::compact);

/// Reads values and collects every problem instead of stopping at the first.
class JsonReader {
 public:
  [[nodiscard]] const std::vector<JsonProblem>& problems() const { return problems_; }

  template <class T>
  void read(const Json& value, const std::string& path, T& target);

 private:
  void read(const Json& value, const std::string& path, std::string& target);
  void read(const Json& value, const std::string& path, bool& target);
  void read(const Json& value, const std::string& path, std::int64_t& target);
  void read(const Json& value, const std::string& path, double& target);
  void read(const Json& value, const std::string& path, Date& target);

  template <class T>
  void read(const Json& value, const std::string& path, std::vector<T>& target);
  template <class T>
  void read(const Json& value, const std::string& path, std::map<std::string, T>& target);
  template <class T>
  void read(const Json& value, const std::string& path, std::optional<T>& target);
  template <class Record, class Value>
  void readField(const Json& object, const std::string& path, Record& record,
                 const Field<Record, Value>& which);

  void report(const std::string& path, std::string problem);
  void reportForm(const std::string& path, const std::string& wanted, const std::string& found);
  void refuseNul(const std::string& text, const std::string& path);
  /// Reports and answers false unless `value` is of the wanted form.
  bool expect(bool fits, const Json& value, const std::string& path, const char* wanted);

  std::vector<JsonProblem> problems_;
};

/// The record that `value` holds; every problem together is raised as one DecodingError.
template <class T>
[[nodiscard]] T fromJson(const Json& value, const std::string& source) {
  T result{};
  JsonReader reader;
  reader.read(value, "", result);
  if (!reader.problems().empty()) throw DecodingError(source, reader.problems());
  return result;
}

[[nodiscard]] inline Json toJson(const std::string& value) { return value; }
[[nodiscard]] inline Json toJson(bool value) { return value; }
[[nodiscard]] inline Json toJson(std::int64_t value) { return value; }
[[nodiscard]] inline Json toJson(double value) { return value; }
[[nodiscard]] inline Json toJson(Date value) { return iso8601(value); }
template <JsonEnum T>
[[nodiscard]] Json toJson(T value);
template <JsonRecord T>
[[nodiscard]] Json toJson(const T& record);
template <class T>
[[nodiscard]] Json toJson(const std::vector<T>& values);
template <class T>
[[nodiscard]] Json toJson(const std::map<std::string, T>& values);
/// Absence inside a list or a map is null; an absent field is left out by its record.
template <class T>
[[nodiscard]] Json toJson(const std::optional<T>& value);

// ---------------------------------------------------------------------------------------------

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <class T>
void JsonReader::read(const Json& value, const std::string& path, T& target) {
  if constexpr (JsonRecord<T>) {
    if (!expect(value.is_object(), value, path, "an object")) return;
    std::apply([&](const auto&... each) { (readField(value, path, target, each), ...); },
               RecordFields<T>::list);
  } else {
    static_assert(JsonEnum<T>, "a type with no JSON form");
    if (!expect(value.is_string(), value, path, "a string")) return;
    const auto& text = value.template get_ref<const std::string&>();
    std::string wanted;
    for (const auto& [form, name] : EnumForms<T>::list) {
      if (text == name) {
        target = form;
        return;
      }
      wanted.append(wanted.empty() ? "" : ", ").append(name);
    }
    reportForm(path, wanted, text);
  }
}

template <class Record, class Value>
void JsonReader::readField(const Json& object, const std::string& path, Record& record,
                           const Field<Record, Value>& which) {
  const std::string inner = path.empty() ? which.key : path + "." + which.key;
  const auto found = object.find(which.key);
  if (found != object.end()) {
    read(*found, inner, record.*which.member);
  } else if (!IsOptional<Value>::value) {
    report(inner, "missing");
  }
}

template <class T>
void JsonReader::read(const Json& value, const std::string& path, std::vector<T>& target) {
  if (!expect(value.is_array(), value, path, "a list")) return;
  target.clear();
  target.reserve(value.size());
  for (const auto& item : value) {
    T element{};
    read(item, path + "[" + std::to_string(target.size()) + "]", element);
    target.push_back(std::move(element));
  }
}

template <class T>
void JsonReader::read(const Json& value, const std::string& path,
                      std::map<std::string, T>& target) {
  if (!expect(value.is_object(), value, path, "an object")) return;
  target.clear();
  for (const auto& [key, item] : value.items()) {
    const std::string inner = path + "[" + jsonText(key) + "]";
    refuseNul(key, inner);
    read(item, inner, target[key]);
  }
}

template <class T>
void JsonReader::read(const Json& value, const std::string& path, std::optional<T>& target) {
  if (value.is_null()) {
    target.reset();
  } else {
    read(value, path, target.emplace());
  }
}

template <JsonEnum T>
Json toJson(T value) {
  for (const auto& [form, name] : EnumForms<T>::list) {
    if (form == value) return name;
  }
  return nullptr;
}

template <JsonRecord T>
Json toJson(const T& record) {
  Json object = Json::object();
  const auto write = [&](const auto& each) {
    const auto& value = record.*each.member;
    if constexpr (IsOptional<std::decay_t<decltype(value)>>::value) {
      if (value) object.emplace(each.key, toJson(*value));
    } else {
      object.emplace(each.key, toJson(value));
    }
  };
  std::apply([&](const auto&... each) { (write(each), ...); }, RecordFields<T>::list);
  return object;
}

template <class T>
Json toJson(const std::vector<T>& values) {
  Json list = Json::array();
  for (const auto& value : values) list.push_back(toJson(value));
  return list;
}

template <class T>
Json toJson(const std::map<std::string, T>& values) {
  Json object = Json::object();
  for (const auto& [key, value] : values) object.emplace(key, toJson(value));
  return object;
}

template <class T>
Json toJson(const std::optional<T>& value) {
  return value ? toJson(*value) : Json(nullptr);
}

}  // namespace volbrin
