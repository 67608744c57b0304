/// @file
/// The languages the program carries, and the choice of one.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "text_table.h"

namespace plovix {

/// Language files by code ("en"), as text.
[[nodiscard]] const std::map<std::string, std::string_view>& EmbeddedLanguages();
/// The codes alone, sorted: "en", "fr".
[[nodiscard]] std::vector<std::string> LanguageCodes();

/// The table for what a user asked for: "ids", the path of a language file (it ends in ".json" or holds a
/// "/"; at most 4 MB), or a code. Fails with words for a person: what is wrong with the file, or the known
/// codes.
[[nodiscard]] TextTable LoadLanguage(const std::string& wanted);

/// The first of the user's languages ("fr-CA", "en_GB") that the program carries, else English.
[[nodiscard]] TextTable LoadPreferredLanguage(const std::vector<std::string>& preferred);

}  // namespace plovix
