// The line of the list window that says who runs the tasks, with a button for when nobody does and
// a switch for notifications.
#pragma once

#include <plovix/standalone/text/text_table.h>

#include <QWidget>
#include <optional>
#include <string>

#include "window_manager.h"

class QLabel;
class QPushButton;

namespace plovix::app {

class RunnerBar final : public QWidget {
 public:
  // Shows nobody; for pictures.
  explicit RunnerBar(const TextTable& texts);
  // Runs the tasks while the window in which it stands is open, as the settings say. As root, asks once for
  // each task file. Asks before that window closes while runs are under way.
  RunnerBar(const TextTable& texts, WindowManager::Settings settings);

  void Show(const WhoRuns& who);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  [[nodiscard]] std::string Words(const WhoRuns& who) const;
  void Start();
  // Asks and remembers whether the tasks may run as root, unless that was asked before.
  [[nodiscard]] bool MayAsRoot(bool ask_again);
  [[nodiscard]] bool MayClose();

  const TextTable& texts_;
  std::string database_;
  QLabel* line_;
  QPushButton* start_;
  bool is_root_ = false, was_shown_ = false, starts_ = false;
  std::optional<WindowManager> manager_;
};

}  // namespace plovix::app
