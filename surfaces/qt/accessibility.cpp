#include "accessibility.h"

#include <QAccessibleWidget>
#include <QComboBox>
#include <QLabel>
#include <QVariant>

#include "plain_text.h"

namespace plovix::qt {
namespace {

const char* const kRole = "accessibleRole";         // property of announced widgets
const char* const kNameLabel = "accessibleNameOf";  // object name of invisible labels

QAccessibleInterface* MakeHostAccess(const QString& /*class_name*/, QObject* object) {
  const QVariant role = object->property(kRole);
  if (!role.isValid()) return nullptr;
  return new QAccessibleWidget(qobject_cast<QWidget*>(object), static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void AnnounceAs(QWidget& widget, QAccessible::Role role) {
  [[maybe_unused]] static const bool installed = (QAccessible::installFactory(&MakeHostAccess), true);
  widget.setProperty(kRole, static_cast<int>(role));
}

void NameComboBox(QComboBox& box, const QString& name) {
  if (box.accessibleName() != name) box.setAccessibleName(name);
  QLabel* carrier = nullptr;
  for (QLabel* label : box.parentWidget()->findChildren<QLabel*>(Qt::FindDirectChildrenOnly)) {
    if (label->buddy() != &box) continue;
    if (label->objectName() != kNameLabel) return;
    carrier = label;
  }
  if (carrier == nullptr) {
    carrier = NewLabel({}, box.parentWidget());
    carrier->setObjectName(kNameLabel);
    carrier->hide();
    carrier->setBuddy(&box);
  }
  carrier->setText(QString(name).replace('&', "&&"));
}

}  // namespace plovix::qt
