// What may be typed into the pages' fields: no text that is too long to be stored, and no number that a page
// could not convert. Used by the wizard's window.
#pragma once

#include <plovix/controls/control.h>
#include <plovix/standalone/text/text_table.h>

#include <string>

namespace plovix::app {

// Why `text` cannot be typed into the control, in words; empty if it can. Numbers are read with
// `decimal_separator`.
[[nodiscard]] std::string EntryProblem(const Control& control, const std::string& text,
                                       const std::string& decimal_separator, const TextTable& texts);

// Why a text of the editors is too long, in words; empty if it is not. `most`: in characters, from
// text_limits.h.
[[nodiscard]] std::string LengthProblem(const std::string& text, std::size_t most, const TextTable& texts);

}  // namespace plovix::app
