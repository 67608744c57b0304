#include "entry_rules.h"

#include <plovix/framework/numeric_text.h>
#include <plovix/standalone/tasks/text_limits.h>

#include <QLocale>
#include <algorithm>
#include <array>
#include <limits>

namespace plovix::app {
namespace {

struct TextField {
  std::string_view control;
  std::size_t most;  // characters
};
// The pages' fields for text; all others are for numbers.
constexpr std::array<TextField, 5> kTextFields{{{"txtName", kLongestName},
                                                {"txtShortDescription", kLongestName},
                                                {"cboCategory", kLongestName},
                                                {"txtDescription", kLongestText},
                                                {"txtQuery", kLongestText}}};

std::string ForPeople(std::int64_t number) {
  return QLocale().toString(static_cast<qlonglong>(number)).toStdString();
}

}  // namespace

std::string LengthProblem(const std::string& text, std::size_t most, const TextTable& texts) {
  if (!IsLongerThan(text, most)) return {};
  return texts.Host("entry.tooLong", {ForPeople(static_cast<std::int64_t>(most))});
}

std::string EntryProblem(const Control& control, const std::string& text,
                         const std::string& decimal_separator, const TextTable& texts) {
  const auto* field = std::ranges::find(kTextFields, control.Name(), &TextField::control);
  if (field != kTextFields.end()) return LengthProblem(text, field->most, texts);
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const auto number = NumericText::Parse(text, decimal_separator);
  // Halves are rounded to the even integer, which is the one above.
  if (!number || number->Value() < kMost + 0.5) return {};
  return texts.Host("entry.numberTooLarge", {ForPeople(kMost)});
}

}  // namespace plovix::app
