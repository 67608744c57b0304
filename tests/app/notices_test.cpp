// Notifications, on a bus of the test's own with a service that writes down what it is to show.
#include <plovix/standalone/app/desktop_notices.h>
#include <plovix/standalone/app/run_notices.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSettings>

#include "program_support.h"

namespace plovix::app {
namespace {

class Service final : public QDBusVirtualObject {
 public:
  explicit Service(const QStringList& capabilities) : capabilities_(capabilities) {}
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.member() == "GetCapabilities") return bus.send(message.createReply(capabilities_));
    const QVariantList words = message.arguments();
    shown += {words.at(3).toString(), words.at(4).toString()};
    replaced = words.at(1).toUInt();
    return bus.send(message.createReply(42U));
  }
  QStringList shown;
  uint replaced = 0;

 private:
  QStringList capabilities_;
};

class NoticesTest : public ProgramTest {
 protected:
  // Ends a run of the task.
  void End(std::int64_t task, RunState state, const std::string& reason) {
    RunRecord run;
    run.task = task;
    run.state = state;
    run.reason = reason;
    (void)runs_.Request(run);
  }
};

TEST_F(NoticesTest, AreShownAsPlainTextAndOpenTheWindow) {
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder_.path());
  QProcess daemon;
  daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
  if (!daemon.waitForStarted()) GTEST_SKIP() << "dbus-daemon is not installed";
  daemon.waitForReadyRead();
  const QString address = QString::fromUtf8(daemon.readLine()).trimmed();
  for (const bool markup : {true, false}) {
    QDBusConnection of_service = QDBusConnection::connectToBus(address, "service");
    Service service(markup ? QStringList{"body-markup"} : QStringList());
    DesktopNotices notices(QDBusConnection::connectToBus(address, "window"));
    RunNotices runs(Parts(),
                    [&](auto task, const auto& title, const auto& text) { notices.Show(task, title, text); });
    const std::int64_t task = Put("<b>R&D</b>").id;
    End(task, RunState::kFailed, "");
    runs.Look();
    QTest::qWait(50);  // there is no service yet
    of_service.registerVirtualObject("/org/freedesktop/Notifications", &service);
    ASSERT_TRUE(of_service.registerService("org.freedesktop.Notifications"));
    const auto shown = [&] {
      runs.Look();
      EXPECT_TRUE(QTest::qWaitFor([&] { return !service.shown.isEmpty(); }));
      QTest::qWait(50);  // until its answer is there
      return std::exchange(service.shown, {});
    };
    End(task, RunState::kSucceeded, "");
    EXPECT_EQ(shown(), (QStringList{"The automated task \"<b>R&D</b>\" works again", ""}));
    End(task, RunState::kFailed, "<a>");
    EXPECT_EQ(shown(),
              (QStringList{"The automated task \"<b>R&D</b>\" failed", markup ? "&lt;a&gt;" : "<a>"}));
    EXPECT_EQ(service.replaced, 42U);
    qint64 clicked = 0;
    notices.OnClick([&](qint64 subject) { clicked = subject; });
    of_service.send(QDBusMessage::createSignal("/org/freedesktop/Notifications",
                                               "org.freedesktop.Notifications", "ActionInvoked")
                    << 42U << "default");
    EXPECT_TRUE(QTest::qWaitFor([&] { return clicked == task; }));
    QSettings("plovix", "plovix").setValue("notices/on", false);
    End(task, RunState::kSucceeded, "");
    runs.Look();
    QTest::qWait(50);
    EXPECT_EQ(service.shown, QStringList());
    QSettings("plovix", "plovix").setValue("notices/on", true);
    for (const char* name : {"service", "window"}) QDBusConnection::disconnectFromBus(name);
  }
  daemon.kill();
  daemon.waitForFinished();
}

}  // namespace
}  // namespace plovix::app
