// Fonts and colours of the pages and of the program around them.
#pragma once

#include <QFont>

class QApplication;

namespace plovix::qt {

// Tahoma, or what comes closest on this machine, in the size of the surrounding widget.
[[nodiscard]] QFont PageFont();

enum class Palette { kSystem, kLight, kDark };

// Sets the style and all of the colours; may be called again.
void ApplyPalette(QApplication& application, Palette palette);

}  // namespace plovix::qt
