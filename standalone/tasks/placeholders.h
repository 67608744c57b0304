/// @file
/// Placeholders in the texts of actions: {field} stands for the value of the record's field, {secret:NAME}
/// for a secret, {{ and }} for a brace. Texts are parsed first and filled afterwards, so that a value is
/// never read as part of the text around it. Used by the checks of actions, by their editor, and where
/// actions run.
#pragma once

#include <plovix/base/requirements.h>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data_source.h"
#include "field_value.h"

namespace plovix {

/// What is wrong with a text, and where in it.
struct TextProblem {
  std::size_t offset = 0;  ///< in bytes, from the beginning of the text
  std::size_t length = 0;  ///< in bytes; 0 where something is missing
  std::string_view text;   ///< key of a host text that tells the user
  std::string parameter;   ///< of the host text; may be empty
};

/// A text between placeholders, or a placeholder.
struct TextPiece {
  /// What a piece stands for.
  enum class Kind {
    kText,   ///< as it is, with single braces
    kField,  ///< of the record
    kSecret  ///< from the manager's file of secrets
  };
  Kind kind = Kind::kText;  ///< of this piece
  std::string text;         ///< the text, or the name without braces and "secret:"
  std::size_t offset = 0;   ///< where it begins in the text that was parsed, in bytes
  std::size_t length = 0;   ///< there, in bytes
};
/// What becomes one text when it is filled.
using TextTemplate = std::vector<TextPiece>;

/// A parsed text: what is before a problem is there nevertheless, but must not be run.
template <class Value>
struct Parsed {
  Value value;                         ///< whole if there is no problem
  std::optional<TextProblem> problem;  ///< the first one
};

/// Any text. Problems: a brace that is neither doubled nor around a name, and an empty name. A name has no
/// braces and counts with its blanks.
[[nodiscard]] Parsed<TextTemplate> ParseText(std::string_view text);

/// A command line without its program: one template for each argument. Blanks, tabs and line ends separate
/// arguments; double quotes enclose what is not separated, anywhere in an argument, and "" is an empty
/// argument; inside quotes \" and \\ stand for " and \, any other backslash for itself. A placeholder is
/// always part of one argument, blanks in its name included. Nothing else has a meaning: no shell reads the
/// line. Further problem: a quotation mark that is not closed.
[[nodiscard]] Parsed<std::vector<TextTemplate>> ParseArguments(std::string_view text);

/// A variable of a program's environment.
struct VariableTemplate {
  std::string name;    ///< a letter or underscore, then letters, digits and underscores
  TextTemplate value;  ///< what follows the sign "=", with its blanks
};
/// A variable NAME=VALUE on each line; lines of blanks do not count. Further problems: a line that is no
/// variable, a name given twice.
[[nodiscard]] Parsed<std::vector<VariableTemplate>> ParseVariables(std::string_view text);

/// What a template may refer to.
struct KnownNames {
  const std::vector<FieldRecord>* fields = nullptr;  ///< nullptr: unknown, every field is accepted
  bool secrets = false;                              ///< whether a secret may stand here
};
/// The first placeholder that names no field of `known`, or is a secret where none may stand.
[[nodiscard]] std::optional<TextProblem> CheckNames(const TextTemplate& pieces, const KnownNames& known);

/// Secrets by name; never shown, stored or exported.
using Secrets = std::map<std::string, std::string, std::less<>>;

/// @{
/// The template filled with the record's values, as TextOf. Fails with 3265 for a field that the record
/// lacks, and with 5 for an unknown secret; `secrets` may be nothing where none may stand.
[[nodiscard]] std::string Fill(const TextTemplate& pieces, const RecordValues& record,
                               const Secrets& secrets = {});
/// The same as one line: line ends and other control characters become blanks, "\r\n" a single one.
[[nodiscard]] std::string FillLine(const TextTemplate& pieces, const RecordValues& record);
/// The same as a text that a program is given: fails with 5, too, if a value holds a zero byte, which would
/// end it.
[[nodiscard]] std::string FillForProgram(const TextTemplate& pieces, const RecordValues& record,
                                         const Secrets& secrets = {});
/// @}

/// The value that a placeholder stands for, with its type; fails as Fill does. Not for a piece of text.
[[nodiscard]] FieldValue ValueOf(const TextPiece& placeholder, const RecordValues& record,
                                 const Secrets& secrets);

/// The text with every brace doubled: it says after parsing what it said when braces had no meaning.
[[nodiscard]] std::string WithDoubledBraces(std::string_view text);

}  // namespace plovix
