/// @file
/// The texts of one language: the pages' texts by number, the host's own by key.
#pragma once

#include <plovix/base/requirements.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

/// Read from a language file (LoadLanguage), or filled by the host.
class TextTable {
 public:
  /// A table in which every text is its number or key: "[27]", with parameters "[56:31]".
  [[nodiscard]] static TextTable Ids();

  std::string code;                                            ///< "en"
  std::string name;                                            ///< the language's own name for itself
  bool right_to_left = false;                                  ///< how the language is written
  std::map<int, std::string> page_texts;                       ///< by number, UTF-8
  std::map<std::string, std::string, std::less<>> host_texts;  ///< by key

  /// A page text with "{1}", "{2}" ... replaced by the parameters; nothing if the table lacks it.
  [[nodiscard]] std::optional<std::string> Find(int id,
                                                const std::vector<std::string>& parameters = {}) const;
  /// One of the host's own texts; its key in brackets if the table lacks it.
  [[nodiscard]] std::string Host(std::string_view key, const std::vector<std::string>& parameters = {}) const;
  /// Removes a page text from the table.
  void Remove(int id);

 private:
  bool ids_ = false;
  std::set<int> removed_;
};

/// "[27]", "[56:31]", "[list.new]".
[[nodiscard]] std::string BracketedText(std::string_view key, const std::vector<std::string>& parameters);

}  // namespace plovix
