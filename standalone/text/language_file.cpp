#include "language_file.h"

#include <plovix/base/failure.h>

#include <charconv>
#include <nlohmann/json.hpp>

#include "json_text.h"

namespace plovix {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kDeepest = 16;  // levels; the format needs two

[[noreturn]] void Refuse(const std::string& source, const std::string& problem) {
  throw Failure(failure_number::kInvalidCall, source + ": " + problem);
}

// A member of the file or of one of its objects.
const Json& Member(const Json& object, const std::string& name, Json::value_t type,
                   const std::string& source) {
  const auto found = object.find(name);
  if (found == object.end()) Refuse(source, "\"" + name + "\" is missing");
  const bool is_object = type == Json::value_t::object;
  if (found->type() != type)
    Refuse(source, "\"" + name + "\" must be " + (is_object ? "an object" : "a text"));
  return *found;
}

const Json& Object(const Json& file, const std::string& name, const std::string& source) {
  return Member(file, name, Json::value_t::object, source);
}

std::string Text(const Json& object, const std::string& name, const std::string& source) {
  return Member(object, name, Json::value_t::string, source).get<std::string>();
}

int TextId(const std::string& key, const std::string& source) {
  int id = 0;
  std::from_chars(key.data(), key.data() + key.size(), id);
  // A number can be written in only one way, so that none occurs twice.
  if (std::to_string(id) != key) Refuse(source, "\"" + key + "\" is not a text number");
  return id;
}

}  // namespace

TextTable ParseLanguage(std::string_view json, const std::string& source) {
  if (NestsDeeper(json, kDeepest)) {
    Refuse(source, "\"[\" and \"{\" are nested deeper than " + std::to_string(kDeepest) + " levels");
  }
  Json file;
  try {
    file = Json::parse(json);
  } catch (const Json::exception& error) {
    Refuse(source, error.what());
  }
  TextTable table;
  table.code = Text(file, "language", source);
  table.name = Text(file, "name", source);
  const std::string direction = Text(file, "direction", source);
  if (direction != "ltr" && direction != "rtl") Refuse(source, R"("direction" must be "ltr" or "rtl")");
  table.right_to_left = direction == "rtl";
  const Json& pages = Object(file, "pages", source);
  for (const auto& [key, text] : pages.items())
    table.page_texts[TextId(key, source)] = Text(pages, key, source);
  const Json& host = Object(file, "host", source);
  for (const auto& [key, text] : host.items()) table.host_texts[key] = Text(host, key, source);
  return table;
}

}  // namespace plovix
