/// @file
/// How a page is gone through and named: the order of the Tab key, where the focus goes first, how the arrow
/// keys go through the options, and what a screen reader says.
#pragma once

#include <string>

#include "captions.h"
#include "page_lines.h"

namespace plovix::surface {

/// The order in which the Tab key goes through a page.
enum class TabOrder {
  kReading,   ///< line by line, as the page is read; what is near on the screen is near for the keyboard
  kDeclared,  ///< as the page's design declares its controls, which is also the order of Form::At
};

/// What is announced of a control.
struct Announcement {
  const Control* control;        ///< a field, an option button or a command button
  std::string name;              ///< UTF-8, without marks of mnemonics
  std::string description = {};  ///< of an option that a help line explains: the help
};

/// A page as it is read. Asks the controls anew each time, so that every answer holds for the state they are
/// in.
class PageReading {
 public:
  /// `form` outlives the reading.
  explicit PageReading(const Form& form);

  /// From the top of the page to its end.
  [[nodiscard]] const std::vector<Line>& Lines() const noexcept { return lines_; }
  /// The label that names the page; nullptr without one.
  [[nodiscard]] const Control* Heading() const;

  /// All of the controls.
  [[nodiscard]] std::vector<Control*> InOrder(TabOrder order) const;
  /// Those at which the Tab key stops now: what a user can reach and use. Of labels only the links are among
  /// them, of the options the one of OptionStop.
  [[nodiscard]] std::vector<Control*> TabStops(TabOrder order) const;
  /// The one option at which the Tab key stops: the selected one, else the first to be read. Arriving at
  /// another one would select it. nullptr on a page without options.
  [[nodiscard]] OptionButton* OptionStop() const;

  /// Where the focus goes when the page is shown: where the page put it, else to the first usable control as
  /// the page is read, but for labels and frames; of the options to the selected one. nullptr: nowhere. An
  /// option that is not selected must not be told of this focus (User::Enter would select it).
  [[nodiscard]] Control* FirstFocus() const;
  /// Where an arrow key leads from an option: to the next usable one as the page is read, or for `step` -1
  /// the one before, round the end. nullptr when there is no other one. Arriving there selects it.
  [[nodiscard]] OptionButton* OptionAfter(const OptionButton& from, int step) const;

  /// What is announced of fields, options and buttons, whose captions say nothing or not enough; every other
  /// control is announced by its caption as it is read (ReadCaption). In reading order; asked for again when
  /// a caption has changed.
  [[nodiscard]] std::vector<Announcement> Announcements(const Unicode& unicode = {}) const;

 private:
  [[nodiscard]] Control* SelectedOr(Control* first) const;

  const Form& form_;
  std::vector<Line> lines_;
  std::vector<OptionButton*> options_;  // in reading order
};

}  // namespace plovix::surface
