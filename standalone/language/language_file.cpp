#include "language_file.h"

#include <plovix/controls/failure.h>

#include <charconv>
#include <nlohmann/json.hpp>

namespace plovix {
namespace {

[[noreturn]] void Refuse(const std::string& source, const std::string& problem) {
  throw Failure(failure_number::kInvalidCall, source + ": " + problem);
}

int TextId(const std::string& key, const std::string& source) {
  int id = 0;
  const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), id);
  if (error != std::errc{} || end != key.data() + key.size())
    Refuse(source, "\"" + key + "\" is not a text number");
  return id;
}

}  // namespace

TextTable ParseLanguage(std::string_view json, const std::string& source) {
  TextTable table;
  try {
    const auto file = nlohmann::json::parse(json);
    table.code = file.at("language").get<std::string>();
    table.name = file.at("name").get<std::string>();
    const auto direction = file.at("direction").get<std::string>();
    if (direction != "ltr" && direction != "rtl") Refuse(source, R"("direction" must be "ltr" or "rtl")");
    table.right_to_left = direction == "rtl";
    for (const auto& [key, text] : file.at("pages").items()) {
      table.page_texts[TextId(key, source)] = text.get<std::string>();
    }
    for (const auto& [key, text] : file.at("host").items()) table.host_texts[key] = text.get<std::string>();
  } catch (const nlohmann::json::exception& error) {
    Refuse(source, error.what());
  }
  return table;
}

}  // namespace plovix
