// What the toolkit does not report to assistive technology by itself. Used by the surface and by the windows
// of the stand-alone program.
#pragma once

#include <QAccessible>

class QComboBox;
class QString;
class QWidget;

namespace plovix::qt {

// Gives a role to a plain widget: a window, a group whose name is read when the focus enters it, a separator.
// Without a role, a container counts as mere layout and is skipped. To be called as soon as the widget is
// created.
void AnnounceAs(QWidget& widget, QAccessible::Role role);

// Names a combo box that is already in its layout. Assistive technology reads the current entry as the box's
// own name, so a label has to carry the name: an invisible one if the box has no other label.
void NameComboBox(QComboBox& box, const QString& name);

}  // namespace plovix::qt
