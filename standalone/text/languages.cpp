#include "languages.h"

#include <plovix/base/failure.h>

#include "language_file.h"
#include "ordinary_file.h"

namespace plovix {
namespace {

const char* const kFallback = "en";
constexpr std::size_t kLargestFile = std::size_t{4} * 1024 * 1024;  // bytes; the program's own have 60,000

}  // namespace

std::vector<std::string> LanguageCodes() {
  std::vector<std::string> codes;
  for (const auto& [code, json] : EmbeddedLanguages()) codes.push_back(code);
  return codes;
}

TextTable LoadLanguage(const std::string& wanted) {
  if (wanted == "ids") return TextTable::Ids();
  if (wanted.ends_with(".json") || wanted.find('/') != std::string::npos)
    return ParseLanguage(ReadOrdinaryFile(wanted, kLargestFile, LoadLanguage(kFallback)), wanted);
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
  return LoadLanguage(kFallback);
}

}  // namespace plovix
