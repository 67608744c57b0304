// Which entries of a long list to show. Used by the popup of combo boxes with more entries than anyone
// scrolls through.
#pragma once

#include <plovix/controls/kinds.h>

#include <QString>
#include <optional>
#include <vector>

namespace plovix::qt {

// A section of the matching entries, in the order of the list.
struct Matches {
  std::vector<int> entries;  // their indexes, at most as many as requested
  int row = -1;              // the current one's position in `entries`; -1: none
  int hidden = 0;            // matches before and after the section
  bool from_first = true;    // the section begins with the first match
  bool to_last = true;       // it ends with the last one
};

// The entries that contain `typed`, ignoring case by Unicode's rules; all entries if nothing is typed. The
// current entry is the first match at or after index `around`, or else the last match. Without `around` it is
// the best match: the entry equal to `typed`, else one that begins with it, else the first; if nothing is
// typed, the selected entry. `most` (at least 1) limits the section, which has the current entry in its
// middle if there are enough matches on both sides.
[[nodiscard]] Matches FindMatches(const ComboBox& box, const QString& typed, std::optional<int> around,
                                  int most);

}  // namespace plovix::qt
