/// @file
/// Fonts and colours of the pages and of the program around them.
#pragma once

#include <plovix/base/requirements.h>

#include <QFont>

class QApplication;

/// Qt widgets for the controls.
namespace plovix::qt {

/// Tahoma, or the closest font on this machine, in the size of the surrounding widget.
[[nodiscard]] QFont PageFont();

/// The colours to choose from.
enum class Palette {
  kSystem,  ///< the desktop's own, with visible outlines and help texts
  kLight,   ///< dark on light
  kDark     ///< light on dark
};

/// Sets the style and all colours; may be called again. Optional: pages work with any style and palette.
void ApplyPalette(QApplication& application, Palette palette);

}  // namespace plovix::qt
