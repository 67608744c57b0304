#include "languages.h"

#include <plovix/controls/failure.h>

#include <fstream>
#include <sstream>

#include "language_file.h"

namespace plovix {
namespace {

constexpr std::string_view kFallback = "en";

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) throw Failure(failure_number::kInvalidCall, path + ": the language file cannot be read");
  return text.str();
}

}  // namespace

std::vector<std::string> LanguageCodes() {
  std::vector<std::string> codes;
  for (const auto& [code, json] : EmbeddedLanguages()) codes.push_back(code);
  return codes;
}

TextTable LoadLanguage(const std::string& wanted) {
  if (wanted == "ids") return TextTable::Ids();
  if (wanted.ends_with(".json")) return ParseLanguage(ReadFile(wanted), wanted);
  const auto found = EmbeddedLanguages().find(wanted);
  if (found == EmbeddedLanguages().end()) {
    std::string known;
    for (const auto& [code, json] : EmbeddedLanguages()) known += (known.empty() ? "" : ", ") + code;
    throw Failure(failure_number::kInvalidCall,
                  "There is no language \"" + wanted + "\"; there are: " + known);
  }
  return ParseLanguage(found->second, "languages/" + wanted + ".json");
}

TextTable LoadPreferredLanguage(const std::vector<std::string>& preferred) {
  for (const std::string& name : preferred) {
    const std::string code = name.substr(0, name.find_first_of("-_."));
    if (EmbeddedLanguages().contains(code)) return LoadLanguage(code);
  }
  return LoadLanguage(std::string(kFallback));
}

}  // namespace plovix
