/// @file
/// Which entries of a long list to show, where nobody scrolls through all of them: those that contain what
/// was typed.
#pragma once

#include <plovix/controls/kinds.h>

#include <optional>
#include <string_view>
#include <vector>

#include "captions.h"

namespace plovix::surface {

/// A stretch of the entries that match, in the order of the list.
struct Matches {
  std::vector<int> entries;  ///< their indexes, at most the number asked for
  int row = -1;              ///< in `entries`: the one in question; -1: none is
  int hidden = 0;            ///< matches before and behind the stretch
  bool from_first = true;    ///< the stretch begins with the first match
  bool to_last = true;       ///< it ends with the last one
};

/// The entries that contain `typed`, whatever their case; all of them when nothing is typed. In question is
/// the first match at or after index `around`, else the last; without `around` the best one: the entry that
/// is `typed`, else one that begins with it, else the first; when nothing is typed, the selected one. `most`
/// (at least 1) limits the stretch, which has the entry in question in its middle as far as there are matches
/// on both sides.
[[nodiscard]] Matches FindMatches(const ComboBox& box, std::string_view typed, std::optional<int> around,
                                  int most, const Unicode& unicode = {});

}  // namespace plovix::surface
