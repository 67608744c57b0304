// What the toolkit does not tell assistive technology by itself. Used by the surface and by the windows of
// the stand-alone program.
#pragma once

#include <QAccessible>

class QComboBox;
class QString;
class QWidget;

namespace plovix::qt {

// Says what a widget without a kind of its own is: a window, a group whose name is read when the focus
// enters it, a rule. Without that, a container is taken for one that only arranges others and is passed
// over. To be called as soon as the widget is made.
void AnnounceAs(QWidget& widget, QAccessible::Role role);

// Names a combo box that stands in its place. Assistive technology reads the current entry as the box's own
// name, so that a label has to carry the name; where no other leads to the box, one that is not seen does.
void NameComboBox(QComboBox& box, const QString& name);

}  // namespace plovix::qt
