#include "planned_text.h"

#include <plovix/standalone/runs/run_words.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <nlohmann/json.hpp>
#include <string_view>

#include "output_text.h"

namespace plovix::app {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostActions = 1000;  // of which there may be some for each of a million records

// The next element of a list without what surrounds it, and `list` from there on; empty at the end. Reads no
// more than it gives, because the whole may have megabytes.
std::string_view NextElement(std::string_view& list) {
  const std::size_t begin = list.find_first_not_of("[], \n");
  if (begin == std::string_view::npos) return {};
  bool in_text = false;
  int depth = 0;
  for (std::size_t at = begin; at < list.size(); ++at) {
    const char unit = list[at];
    if (in_text && unit == '\\') ++at;
    if (unit == '"') in_text = !in_text;
    if (in_text) continue;
    if (unit == '{' || unit == '[') ++depth;
    if (unit == '}' || unit == ']') --depth;
    if (depth > 0) continue;
    const std::string_view element = list.substr(begin, at + 1 - begin);
    list.remove_prefix(at + 1);
    return element;
  }
  list = {};
  return {};
}

std::string TextAt(const Json& action, const char* key) {
  const auto found = action.find(key);
  return found == action.end() ? ""
         : found->is_string()  ? found->get<std::string>()
                               : found->dump(-1, ' ', false, Json::error_handler_t::replace);
}

// One word of a command, recognizable as one.
std::string AsWord(const std::string& text) {
  return text.empty() || text.find_first_of(" \t\n\"") != std::string::npos
             ? Json(text).dump(-1, ' ', false, Json::error_handler_t::replace)
             : text;
}

std::string ActionInWords(const Json& action, const TextTable& texts) {
  if (const auto found = action.find("arguments"); found != action.end() && found->is_array()) {
    std::string line;
    for (const Json& argument : *found)
      line += (line.empty() ? "" : " ") +
              AsWord(argument.is_string() ? argument.get<std::string>() : argument.dump());
    return texts.Host("details.plannedProgram", {line});
  }
  if (action.contains("statement"))
    return texts.Host("details.plannedStatement",
                      {TextAt(action, "statement"), TextAt(action, "parameters")});
  return texts.Host("details.plannedLine", {TextAt(action, "file"), TextAt(action, "text")});
}

}  // namespace

QString PlannedText(const std::string& planned, const TextTable& texts) {
  std::string lines, record;
  std::size_t count = 0;
  std::string_view rest = planned;
  for (auto element = NextElement(rest); !element.empty(); element = NextElement(rest)) {
    if (++count > kMostActions) continue;
    const Json action = Json::parse(element, nullptr, false);
    if (!action.is_object()) return VisibleText(std::string_view(planned).substr(0, kMostRead));
    const std::string key = action.contains("record") && action["record"].is_string()
                                ? action["record"].get<std::string>()
                                : std::string();
    if (key != record) lines += texts.Host("details.plannedRecord", {RecordInWords(key, texts)}) + "\n";
    record = key;
    lines += ActionInWords(action, texts) + "\n";
  }
  if (count == 0) return ToQt(texts.Host("details.plannedNothing"));
  if (count > kMostActions)
    lines += texts.Host("details.plannedMore", {std::to_string(count - kMostActions)}) + "\n";
  return VisibleText(lines);
}

}  // namespace plovix::app
