// Shown before an import: what of the task cannot be imported unchanged. Used by the task exchange.
#pragma once

#include <plovix/standalone/exchange/import_task.h>
#include <plovix/standalone/widgets/editor_dialog.h>

namespace plovix::app {

// Accepted: import; rejected: import nothing.
class ImportReportDialog final : public EditorDialog {
 public:
  // `file_name` is the file as the user knows it.
  ImportReportDialog(const TextTable& texts, const std::string& file_name, const ImportReport& report,
                     QWidget* parent);
  [[nodiscard]] bool Changed() const override { return false; }  // nothing is entered
};

}  // namespace plovix::app
