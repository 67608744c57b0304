/// @file
/// The host's language table and the translator that re-captions controls from it.
#pragma once

#include <plovix/controls/form.h>

#include <string>
#include <string_view>
#include <vector>

#include "value.h"

namespace plovix {

/// The module to which the pages' texts belong.
inline constexpr std::string_view kModule = "Plovix";

/// Texts by number, and language tags: names that a user gives to texts in several languages. All UTF-8.
class LanguageTable {
 public:
  virtual ~LanguageTable() = default;
  /// Text `id` of a module in the current language, its placeholders replaced by `parameters` in order. A
  /// missing text yields its number in brackets, never a failure.
  [[nodiscard]] virtual std::string GetString(int id, std::string_view module,
                                              const std::vector<std::string>& parameters) = 0;
  /// Opens the host's language-tag editor on `tag` and returns the chosen tag, or `tag` itself if the user
  /// cancelled. `choices` (a TextCollection of known tags, or null) belongs to the caller. Modal.
  [[nodiscard]] virtual std::string EditTag(const std::string& tag, const ObjectRef& choices) = 0;
  /// The tag's text in the current language; for a tag without a text, any words that say so. `context` may
  /// be null.
  [[nodiscard]] virtual std::string TagText(const std::string& tag, const ObjectRef& context) = 0;
  /// Stores `text` in the table and returns the tag that carries it, `tag` itself or another one. An empty
  /// `language` means the current one.
  [[nodiscard]] virtual std::string TagForText(const std::string& tag, const std::string& text,
                                               const std::string& language) = 0;
};

/// Called once by each page, during its initialization.
class Translator {
 public:
  virtual ~Translator() = default;
  /// Replaces the caption of every control whose tag names a text ("Lng=NN;", see TextNumber); a control
  /// whose text is missing keeps the caption of its design. `flag` is 1.
  virtual void TranslateControls(Form& form, std::string_view module, int flag) = 0;
  /// Turns the label into a link or back; used on the Details page for users who may edit categories.
  virtual void SetLinkStyle(Label& label, bool on) = 0;
};

}  // namespace plovix
