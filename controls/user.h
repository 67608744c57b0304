/// @file
/// The user's actions. A surface, or a test that plays the user, creates a User and calls these verbs. No
/// failure escapes from them: a failure that a page lets through goes to the listener under the event's name.
#pragma once

#include <plovix/base/failure.h>

#include <string>
#include <string_view>

#include "form.h"

namespace plovix {

/// Implemented by the wizard. Called on the user-interface thread; User itself never re-enters it.
class UserListener {
 public:
  virtual ~UserListener() = default;
  /// An event procedure let a failure through; `procedure` is its name, such as "txtName_Change".
  virtual void EventFailed(const Failure& failure, std::string_view procedure) = 0;
  /// @{
  /// Called around every verb, even one that fails; verbs nest if an event makes the host show a dialog. A
  /// page that is replaced in between must live until the outermost verb has ended.
  virtual void EventBegins() = 0;
  virtual void EventEnds() = 0;
  /// @}
};

/// Every verb returns whether the control accepted it: a disabled or hidden control refuses the user, and so
/// does a control whose kind lacks the verb. Verbs move the focus to the control, as a real user does, but
/// only Leave raises LostFocus. Any verb may replace the page, so its form must be kept alive until the verb
/// returns.
class User {
 public:
  /// `listener` outlives the user.
  explicit User(UserListener& listener) : listener_(listener) {}

  bool Type(Control& control, std::string text);  ///< text box, editable combo box: the whole text
  bool Toggle(Control& control);                  ///< check box
  bool Choose(Control& control);                  ///< option button
  bool Press(Control& control);                   ///< command button
  bool Click(Control& control);        ///< label; a button is pressed, an option chosen, a check box toggled
  bool DoubleClick(Control& control);  ///< label, option button: only the second click
  bool DropDown(Control& control);     ///< combo box: before the list opens
  bool Pick(Control& control, int index);      ///< combo box: an entry, 0-based; refused outside the list
  bool Set(Control& control, DateTime value);  ///< picker: date and time together
  bool Enter(Control& control);                ///< the focus arrived; selects an option button
  bool Leave(Control& control);                ///< the focus left
  void Show(Form& form);                       ///< the page became visible: UserControl_Show

 private:
  template <class Verb>
  void Run(Form& form, std::string_view procedure, Verb verb);
  template <class Type, class Verb>
  bool On(Control& control, Event event, Verb verb);
  UserListener& listener_;
};

}  // namespace plovix
