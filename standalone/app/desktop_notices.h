// Notifications of the desktop, over its bus. Where there is no bus or no service for them, nothing happens.
#pragma once

#include <QDBusConnection>
#include <QMap>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

class QDBusMessage;
class QDBusPendingCall;

namespace plovix::app {

class DesktopNotices final : public QObject {
  Q_OBJECT  // receives the bus's signals

      public :
      // On the session's bus.
      DesktopNotices();
  explicit DesktopNotices(const QDBusConnection& bus);

  // Shows plain texts; replaces what was shown for the same `subject`.
  void Show(qint64 subject, const QString& title, const QString& text);
  // Called when somebody clicks on one.
  void OnClick(std::function<void(qint64 subject)> clicked) { clicked_ = std::move(clicked); }

 private:
  Q_SLOT void ActionInvoked(uint id, const QString& action);
  [[nodiscard]] static QDBusMessage Call(const char* method);
  void Send(qint64 subject, const QString& title, const QString& text);

  QDBusConnection bus_;
  std::optional<bool> has_markup_;  // of the service; nothing until it is known
  QMap<qint64, uint> ids_;          // by subject
  std::function<void(qint64)> clicked_;
};

}  // namespace plovix::app
