#include "host_surface_texts.h"

#include <plovix/framework/numeric_text.h>
#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/text_field.h>

#include <QLocale>
#include <algorithm>
#include <array>
#include <limits>

namespace plovix::app {
namespace {

struct PageField {
  std::string_view control;
  std::size_t most;  // characters
};
// The pages' fields for text; all others are for numbers.
constexpr std::array<PageField, 5> kTextFields{{{"txtName", kLongestName},
                                                {"txtShortDescription", kLongestName},
                                                {"cboCategory", kLongestName},
                                                {"txtDescription", kLongestText},
                                                {"txtQuery", kLongestText}}};

// Why the text cannot be typed into the control, in words; empty: it can.
std::string EntryProblem(const HostState& state, const Control& control, const std::string& text) {
  const auto* field = std::ranges::find(kTextFields, control.Name(), &PageField::control);
  if (field != kTextFields.end()) return LengthProblem(text, field->most, state.texts);
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const auto number = NumericText::Parse(text, state.decimal_separator);
  // The half is rounded to the even integer, the one above.
  if (!number || number->Value() < kMost + 0.5) return {};
  return state.texts.Host("entry.numberTooLarge", {QLocale().toString(kMost).toStdString()});
}

}  // namespace

qt::SurfaceTexts SurfaceTextsOf(const TextTable& texts) {
  return {.search = texts.Host("surface.search"),
          .no_match = texts.Host("surface.noMatch"),
          .more = [&texts](const std::string& count) { return texts.Host("surface.more", {count}); }};
}

qt::SurfaceOptions SurfaceOptionsOf(const HostState& state) {
  return {.refuse = [&state](const Control& control, const std::string& text) {
    return EntryProblem(state, control, text);
  }};
}

}  // namespace plovix::app
