// A dry run under way, and then what it would have executed. Used by the list of tasks.
#pragma once

#include <plovix/standalone/widgets/editor_dialog.h>

#include <QTimer>

#include "app_parts.h"

class QTableWidget;

namespace plovix::app {

class DryRunDialog final : public EditorDialog {
 public:
  // `run`: of a dry run. Closing the dialog before the run is over cancels it.
  DryRunDialog(AppParts parts, const std::string& task, std::int64_t run, QWidget* parent);

  [[nodiscard]] bool Changed() const override { return false; }
  void done(int result) override;

 private:
  void Look();
  void Show(const RunRecord& run);

  AppParts parts_;
  std::int64_t run_;
  QLabel* state_;
  QTableWidget* table_;
  QTimer look_;  // until the run is over
};

}  // namespace plovix::app
