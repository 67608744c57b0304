// Shown before an import: what of the task cannot be imported unchanged. Used by the task exchange.
#pragma once

#include <plovix/standalone/exchange/import_task.h>

#include <QDialog>

namespace plovix::app {

// Accepted: import; rejected: import nothing.
class ImportReportDialog final : public QDialog {
 public:
  // `file_name` is the file as the user knows it.
  ImportReportDialog(const TextTable& texts, const std::string& file_name, const ImportReport& report,
                     QWidget* parent);
};

}  // namespace plovix::app
