// Which entries of a long list to show. Used by the popup of combo boxes that have more entries than
// anyone scrolls through.
#pragma once

#include <plovix/controls/kinds.h>

#include <QString>
#include <optional>
#include <vector>

namespace plovix::qt {

// A stretch of the entries that match, in the order of the list.
struct Matches {
  std::vector<int> entries;  // their indexes, at most the number asked for
  int row = -1;              // in `entries`: the one in question; -1: none is
  int hidden = 0;            // matches before and behind the stretch
  bool from_first = true;    // the stretch begins with the first match
  bool to_last = true;       // it ends with the last one
};

// The entries that contain `typed`, ignoring case as Unicode has it; all of them when nothing is typed.
// In question is the first match at or after index `around`, else the last; without `around` the best one:
// the entry that is `typed`, else one that begins with it, else the first; when nothing is typed, the
// selected one. `most` (at least 1) limits the stretch, which has the entry in question in its middle
// as far as there are matches on both sides.
[[nodiscard]] Matches FindMatches(const ComboBox& box, const QString& typed, std::optional<int> around,
                                  int most);

}  // namespace plovix::qt
