/// @file
/// The user's door. A surface, or a test that plays the user, makes a User and speaks these verbs; no
/// failure comes out of them: what a page lets through goes to the listener under the event's name.
#pragma once

#include <plovix/base/failure.h>

#include <string>
#include <string_view>

#include "form.h"

namespace plovix {

/// Implemented by the wizard. Called on the user-interface thread, never re-entered by User itself.
class UserListener {
 public:
  virtual ~UserListener() = default;
  /// An event procedure let a failure through; `procedure` is its name, such as "txtName_Change".
  virtual void EventFailed(const Failure& failure, std::string_view procedure) = 0;
  /// @{
  /// Around every verb, also a failed one; verbs nest when an event makes the host show a dialog. A page that
  /// is replaced between them must live until the outermost verb has ended.
  virtual void EventBegins() = 0;
  virtual void EventEnds() = 0;
  /// @}
};

/// Every verb answers whether the control took it: a disabled or hidden control refuses its user, and so
/// does a control whose kind has no such verb. Verbs move the focus to the control, as a hand does, but
/// only Leave raises LostFocus. Any verb may make the page go: its form must be kept until the verb returns.
class User {
 public:
  /// `listener` outlives the user.
  explicit User(UserListener& listener) : listener_(listener) {}

  bool Type(Control& control, std::string text);  ///< text box, editable combo box: the whole text
  bool Toggle(Control& control);                  ///< check box
  bool Choose(Control& control);                  ///< option button
  bool Press(Control& control);                   ///< command button
  bool Click(Control& control);        ///< label; a button is pressed, an option chosen, a check box toggled
  bool DoubleClick(Control& control);  ///< label, option button: the second click alone
  bool DropDown(Control& control);     ///< combo box: before the list opens
  bool Pick(Control& control, int index);      ///< combo box: an entry, 0-based; outside is refused
  bool Set(Control& control, DateTime value);  ///< picker: the whole moment
  bool Enter(Control& control);                ///< the focus arrived; selects an option button
  bool Leave(Control& control);                ///< the focus went away
  void Show(Form& form);                       ///< the page became visible: UserControl_Show

 private:
  template <class Verb>
  void Run(Form& form, std::string_view procedure, Verb verb);
  template <class Type, class Verb>
  bool On(Control& control, Event event, Verb verb);
  UserListener& listener_;
};

}  // namespace plovix
