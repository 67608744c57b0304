/// @file
/// What a host may choose about how pages are shown and edited.
#pragma once

#include <plovix/controls/control.h>

#include <functional>
#include <string>

namespace plovix::qt {

/// The order in which the Tab key goes through a page.
enum class TabOrder {
  kReading,   ///< line by line, as the page is read; neighbours on screen are neighbours for the keyboard
  kDeclared,  ///< as the page's design declares its controls, which is also the order of Form::At
};

/// Given to the form widget.
struct SurfaceOptions {
  TabOrder tab_order = TabOrder::kReading;  ///< of every page
  /// Says in words, UTF-8, why the user may not enter `text` into a text box or an editable combo box; empty
  /// if they may. Refused text does not reach the control: the field keeps its text, and the words are shown
  /// below it until the next edit. A page may set any text. Without a function, users may type anything.
  std::function<std::string(const Control& control, const std::string& text)> refuse = {};
};

}  // namespace plovix::qt
