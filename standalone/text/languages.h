/// @file
/// The languages built into the program, and the choice of one.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "text_table.h"

namespace plovix {

/// Language files by code ("en"), as text.
[[nodiscard]] const std::map<std::string, std::string_view>& EmbeddedLanguages();
/// Only the codes, sorted: "en", "fr".
[[nodiscard]] std::vector<std::string> LanguageCodes();

/// The table that a user requested: "ids", the path of a language file (it ends in ".json" or contains a "/";
/// at most 4 MB), or a code. Fails with a message for a person: what is wrong with the file, or the known
/// codes.
[[nodiscard]] TextTable LoadLanguage(const std::string& wanted);

/// The first of the user's languages ("fr-CA", "en_GB") that is built in, or else English.
[[nodiscard]] TextTable LoadPreferredLanguage(const std::vector<std::string>& preferred);

}  // namespace plovix
