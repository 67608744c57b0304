// Plays the user of examples/minimal_host by keyboard alone: compiled into the same program, it wakes up with
// the application, and ends it with status 3 when what is shown is not what was expected.
#include <QApplication>
#include <QDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

[[noreturn]] void GiveUp(const QString& why) {
  std::fprintf(stderr, "%s\n", qPrintable(why));
  std::_Exit(3);
}

QWidget& Focused() {
  QWidget* widget = QApplication::focusWidget();
  if (widget == nullptr) GiveUp("nothing has the focus");
  return *widget;
}

void Expect(const QString& shown, const QString& wanted) {
  if (shown != wanted) GiveUp("\"" + shown + "\" is shown in place of \"" + wanted + "\"");
}

// One step for each turn of the event loop; a step that opens a dialog returns only when it is closed.
void Step(std::size_t next) {
  static const std::vector<std::function<void()>> steps = {
      [] { QTest::keyClick(&Focused(), Qt::Key_Return); },
      [] { Expect(QApplication::activeWindow()->windowTitle(), "Automated Task Details"); },
      [] { QTest::keyClicks(&Focused(), "Nightly"); },
      [] { QTest::keyClick(&Focused(), Qt::Key_Tab); },
      [] { QTest::keyClick(&Focused(), Qt::Key_Return); },
      [] { QTest::keyClick(&Focused(), Qt::Key_A, Qt::AltModifier); },
      [] { QTest::keyClicks(&Focused(), "Good night"); },
      [] { QTest::keyClick(&Focused(), Qt::Key_Return); },
      // Where no window manager runs, nobody else gives the window its activity back.
      [] { QApplication::setActiveWindow(QApplication::activeModalWidget()); },
      [] { QTest::keyClick(&Focused(), Qt::Key_F, Qt::AltModifier); },
      [] {
        const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        Expect(box == nullptr ? "no box" : box->text(), "Nightly");
        QTest::keyClick(&Focused(), Qt::Key_Return);
      },
  };
  if (next == steps.size()) return;
  constexpr int kMilliseconds = 200;  // a mnemonic of a button takes half of that
  QTimer::singleShot(kMilliseconds, qApp, [next] {
    Step(next + 1);
    steps[next]();
  });
}

void Start() {
  Step(0);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(Start)
