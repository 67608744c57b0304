// Texts that come from others - names, cells, files - where the toolkit would take them for something else:
// marked-up text, a placeholder, more than a screen can hold. Used by the surface and by the windows of the
// stand-alone program; tools/check_repository.py finds whoever goes past it.
#pragma once

#include <QLabel>
#include <QString>

namespace plovix::qt {

// What a row or a sentence shows of a text at most. Laying out takes some 15 microseconds for each unit that
// stands above another letter, so a whole text may cost half a minute.
inline constexpr int kLongestShown = 200;   // UTF-16 units
inline constexpr int kLongestTold = 1'500;  // of a message, and of what is said about a cell

// Cut where it is longer than `most` UTF-16 units, or has more than `lines` lines unless that is 0; ends with
// an ellipsis then. No character is cut in two, as long as it has not too many accents.
[[nodiscard]] QString Shortened(const QString& text, int most, int lines = 0);

// What a tool tip is given to show `text` as it stands; the toolkit guesses at everything else. Empty without
// a text. Wraps.
[[nodiscard]] QString ToolTip(const QString& text);

// A label that shows its text as it stands. A single '&' marks a mnemonic once the label has a buddy.
[[nodiscard]] QLabel* NewLabel(const QString& text = {}, QWidget* parent = nullptr);
// The same for sentences: goes on below where it is too narrow, and never widens its window for a long word.
[[nodiscard]] QLabel* NewWrappedLabel(const QString& text = {}, QWidget* parent = nullptr);
// The same, hidden, in bold: for a problem, see TellProblem.
[[nodiscard]] QLabel* NewProblemLabel();
// Says `text` in the label and to whoever cannot see it, as something about `field`. No text: no problem.
void TellProblem(QLabel& label, QWidget& field, const QString& text);

// Titles in which the toolkit finds no placeholder.
void SetTitle(QWidget& window, const QString& title);
[[nodiscard]] QString TitleOf(const QWidget& window);

}  // namespace plovix::qt
