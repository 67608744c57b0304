#include "desktop_notices.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QVariantMap>

namespace plovix::app {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kClick = QStringLiteral("default");

// The library starts a bus of its own where there is none.
QDBusConnection ExistingBus() {
  const bool exists = qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
                      QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus");
  return exists ? QDBusConnection::sessionBus() : QDBusConnection(QString());
}

void WhenAnswered(QObject* receiver, const QDBusPendingCall& call,
                  const std::function<void(const QDBusPendingCall&)>& answered) {
  auto* watcher = new QDBusPendingCallWatcher(call, receiver);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, receiver, [watcher, answered] {
    answered(*watcher);
    watcher->deleteLater();
  });
}

}  // namespace

DesktopNotices::DesktopNotices() : DesktopNotices(ExistingBus()) {}

DesktopNotices::DesktopNotices(const QDBusConnection& bus) : bus_(bus) {
  if (bus_.isConnected())
    bus_.connect(kService, kPath, kService, QStringLiteral("ActionInvoked"), this,
                 SLOT(ActionInvoked(uint, QString)));
}

QDBusMessage DesktopNotices::Call(const char* method) {
  return QDBusMessage::createMethodCall(kService, kPath, kService, QString::fromLatin1(method));
}

// A service that knows markup takes what looks like it for markup; another one shows what escapes it.
void DesktopNotices::Show(qint64 subject, const QString& title, const QString& text) {
  if (!bus_.isConnected()) return;
  if (has_markup_) return Send(subject, title, text);
  WhenAnswered(this, bus_.asyncCall(Call("GetCapabilities")),
               [this, subject, title, text](const QDBusPendingCall& call) {
                 const QDBusPendingReply<QStringList> capabilities = call;
                 if (capabilities.isError()) return;  // nobody shows notifications
                 has_markup_ = capabilities.value().contains(QStringLiteral("body-markup"));
                 Send(subject, title, text);
               });
}

void DesktopNotices::Send(qint64 subject, const QString& title, const QString& text) {
  QDBusMessage call = Call("Notify");
  const QStringList actions{kClick, title};
  const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("plovix")}};
  call << QStringLiteral("Plovix") << ids_.value(subject) << QStringLiteral("plovix") << title
       << (*has_markup_ ? text.toHtmlEscaped() : text) << actions << hints << -1;
  WhenAnswered(this, bus_.asyncCall(call), [this, subject](const QDBusPendingCall& answer) {
    const QDBusPendingReply<uint> id = answer;
    if (id.isError()) {
      has_markup_.reset();  // the next service may differ
    } else {
      ids_[subject] = id.value();
    }
  });
}

void DesktopNotices::ActionInvoked(uint id, const QString& action) {
  if (action == kClick && ids_.values().contains(id) && clicked_) clicked_(ids_.key(id));
}

}  // namespace plovix::app
