#include "entry_search.h"

#include <algorithm>
#include <numeric>

namespace plovix::surface {
namespace {

enum class Rank { kNone, kContains, kBegins, kEquals };

struct Found {
  std::vector<int> entries;  // every match
  int best = -1;             // position in `entries`
};

Found AllEntries(const ComboBox& box) {
  Found found{std::vector<int>(static_cast<std::size_t>(box.Count())), box.Index()};
  std::iota(found.entries.begin(), found.entries.end(), 0);
  return found;
}

Found Search(const ComboBox& box, std::string_view typed, const Unicode& unicode) {
  if (typed.empty()) return AllEntries(box);
  const std::string wanted = Folded(typed, unicode);
  Found found;
  Rank best = Rank::kNone;
  for (int index = 0; index < box.Count(); ++index) {
    const std::string text = Folded(box.ItemText(index), unicode);
    const std::size_t at = text.find(wanted);
    if (at == std::string::npos) continue;
    const Rank rank = at > 0 ? Rank::kContains : text.size() > wanted.size() ? Rank::kBegins : Rank::kEquals;
    if (rank > best) {
      best = rank;
      found.best = static_cast<int>(found.entries.size());
    }
    found.entries.push_back(index);
  }
  return found;
}

}  // namespace

Matches FindMatches(const ComboBox& box, std::string_view typed, std::optional<int> around, int most,
                    const Unicode& unicode) {
  const Found found = Search(box, typed, unicode);
  const int count = static_cast<int>(found.entries.size());
  int middle = found.best;
  if (around) {
    const auto at = std::ranges::lower_bound(found.entries, *around);
    middle = std::min(static_cast<int>(at - found.entries.begin()), count - 1);
  }
  const int first = std::clamp(middle - most / 2, 0, std::max(0, count - most));
  const int shown = std::min(count, most);
  Matches matches;
  matches.entries.assign(found.entries.begin() + first, found.entries.begin() + first + shown);
  matches.row = middle < 0 ? -1 : middle - first;
  matches.hidden = count - shown;
  matches.from_first = first == 0;
  matches.to_last = first + shown == count;
  return matches;
}

}  // namespace plovix::surface
