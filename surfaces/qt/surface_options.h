/// @file
/// What a host may choose about how pages are shown and typed in.
#pragma once

#include <plovix/surfaces/common/page_reading.h>

#include <functional>
#include <string>

namespace plovix::qt {

using surface::TabOrder;

/// Given to the form widget.
struct SurfaceOptions {
  TabOrder tab_order = TabOrder::kReading;  ///< of every page
  /// Says in words, UTF-8, why the user may not enter `text` into a text box or an editable combo box; empty:
  /// they may. What is refused does not reach the control: the field keeps what it had, and the words stand
  /// below it until the next edit. A page may set any text. Without a function everything may be typed.
  std::function<std::string(const Control& control, const std::string& text)> refuse = {};
};

}  // namespace plovix::qt
