/// @file
/// How much room a page and its controls ask for, in letters of the page's font and in lines. A surface makes
/// pixels or columns of it.
#pragma once

#include "page_lines.h"

namespace plovix::surface {

/// @{
/// Letters on a line of text that reads well, below how many a page scrolls, and lines that it keeps then.
inline constexpr int kPageWidth = 72;
inline constexpr int kLeastPageWidth = 30;
inline constexpr int kLeastPageLines = 6;
/// @}
/// Lines of a text box with several.
inline constexpr int kAreaLines = 3;
/// Letters of a list at most; longer entries show when it is opened.
inline constexpr int kWidestList = 24;
/// @{
/// Letters of a text box with one line: what it asks for, and for a short entry amid words. In rows it is as
/// wide as the page has room.
inline constexpr int kFieldWidth = 17;
inline constexpr int kNarrowFieldWidth = 8;
/// @}
/// Letters of a button's caption, such as "...", that does not need a button's usual width.
inline constexpr int kShortCaption = 3;

/// Of one list, over its life: looks at each entry once, and at none when the widest is reached.
class ListWidth {
 public:
  /// Letters, up to kWidestList; to be asked again when the entries have changed (Aspect::kItems).
  [[nodiscard]] int Of(const ComboBox& list);

 private:
  int longest_ = 0;
  int measured_ = 0;  // entries
};

}  // namespace plovix::surface
