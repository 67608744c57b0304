#include "wait_window.h"

#include <plovix/standalone/data/sqlite_data_source.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace plovix::app {
namespace {

// Nothing is drawn for this time: too short to be noticed, and enough for nearly every file.
constexpr std::chrono::milliseconds kUnnoticed{100};
constexpr std::chrono::milliseconds kBetweenLooks{20};
// Reading ends earlier, if it ends at all.
constexpr std::chrono::milliseconds kLongest = SqliteDataSource::kLongest + std::chrono::seconds{1};

}  // namespace

JobWait WaitWithWindow(const TextTable& texts) {
  return [&texts](const BackgroundJob& job) {
    if (job.WaitFor(kUnnoticed)) return true;
    const auto window = NewBox(QMessageBox::NoIcon, texts.Host("list.title"), texts.Host("data.reading"),
                               QApplication::activeWindow());
    window->addButton(ToQt(texts.Host("button.cancel")), QMessageBox::RejectRole);
    QElapsedTimer waited;
    waited.start();
    QTimer look;
    look.callOnTimeout(window.get(), [&] {
      if (job.WaitFor(std::chrono::milliseconds{0})) window->done(QDialog::Accepted);
      if (waited.hasExpired(kLongest.count())) window->done(QDialog::Rejected);
    });
    look.start(kBetweenLooks);
    window->exec();
    return job.WaitFor(std::chrono::milliseconds{0});
  };
}

}  // namespace plovix::app
