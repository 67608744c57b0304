// Shows texts from others - names, cells, files - that the toolkit might misinterpret as markup or
// placeholders, or that are too long for a screen. Used by the surface and by the windows of the stand-alone
// program; tools/check_repository.py finds code that bypasses it.
#pragma once

#include <QLabel>
#include <QString>

namespace plovix::qt {

// The most that a row or a sentence shows of a text. Layout takes some 15 microseconds for each combining
// character, so a whole text might take half a minute.
inline constexpr int kLongestShown = 200;   // UTF-16 units
inline constexpr int kLongestTold = 1'500;  // in messages and in tool tips of cells

// The text, cut to `most` UTF-16 units and, unless `lines` is 0, to `lines` lines; a cut text ends with an
// ellipsis. Characters are never cut in two, unless they have too many accents.
[[nodiscard]] QString Shortened(const QString& text, int most, int lines = 0);

// The argument for a tool tip that shows `text` literally, wrapped; the toolkit would guess at any other.
// Empty for an empty text.
[[nodiscard]] QString ToolTip(const QString& text);

// A label that shows its text literally. A single '&' marks a mnemonic once the label has a buddy.
[[nodiscard]] QLabel* NewLabel(const QString& text = {}, QWidget* parent = nullptr);
// The same for sentences: it wraps, and never widens its window for a long word.
[[nodiscard]] QLabel* NewWrappedLabel(const QString& text = {}, QWidget* parent = nullptr);
// The same, hidden, in bold: for a problem, see TellProblem.
[[nodiscard]] QLabel* NewProblemLabel();
// Shows `text` in the label and announces it to assistive technology as a problem of `field`. An empty text
// clears it.
void TellProblem(QLabel& label, QWidget& field, const QString& text);

// Sets a title, without letting the toolkit expand placeholders in it.
void SetTitle(QWidget& window, const QString& title);
[[nodiscard]] QString TitleOf(const QWidget& window);

}  // namespace plovix::qt
