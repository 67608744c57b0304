// Asks which records a task processes when a person starts it. The records are read in the background. Used
// by the list of tasks.
#pragma once

#include <plovix/standalone/data/background_question.h>
#include <plovix/standalone/data/query_run.h>
#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/filtered_table.h>

#include <QTimer>
#include <string>
#include <variant>
#include <vector>

#include "record_table_model.h"

class QLabel;
class QRadioButton;

namespace plovix::app {

class RecordChooserDialog final : public EditorDialog {
 public:
  // For a task on records, whose data are in the file `path`. A task on a single record gets exactly one.
  // `texts` outlives the dialog.
  RecordChooserDialog(const TextTable& texts, const std::string& title, const std::string& path,
                      const TaskRecord& task, QWidget* parent);

  // The keys of the chosen records, as KeyOf; empty: those that are due. Valid once the dialog has been
  // accepted.
  [[nodiscard]] const std::vector<std::string>& Keys() const { return keys_; }
  [[nodiscard]] bool Changed() const override { return false; }  // nothing that would be missed

  void accept() override;  // only with a record

 private:
  using Found = std::variant<QueryRows, QueryProblem>;

  void BuildChoice();
  void BuildTable();
  void Show(const Found& found);
  void SelectionChanged();
  void TellCount();

  bool single_;
  RecordTableModel* model_;
  FilteredTable rows_;
  QRadioButton *due_ = nullptr, *these_ = nullptr;  // only with a query
  QLabel *count_, *problem_;
  bool filling_ = false;  // what changes the selection is not the person
  std::vector<std::string> keys_;
  QTimer silence_;  // runs out if the records do not come
  BackgroundQuestion<Found> question_;
};

}  // namespace plovix::app
