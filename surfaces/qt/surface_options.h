/// @file
/// What a host may choose about how pages are shown and edited.
#pragma once

#include <plovix/surfaces/common/page_reading.h>

#include <functional>
#include <string>

namespace plovix::qt {

using surface::TabOrder;

/// Given to the form widget.
struct SurfaceOptions {
  TabOrder tab_order = TabOrder::kReading;  ///< of every page
  /// Says in words, UTF-8, why the user may not enter `text` into a text box or an editable combo box; empty
  /// if they may. Refused text does not reach the control: the field keeps its text, and the words are shown
  /// below it until the next edit. A page may set any text. Without a function, users may type anything.
  std::function<std::string(const Control& control, const std::string& text)> refuse = {};
};

}  // namespace plovix::qt
