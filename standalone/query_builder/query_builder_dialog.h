// The query builder: which records of a data object a task works on, as rows of conditions and as SQL text,
// in step with each other, and what that finds. Used by the dialogs of the program.
#pragma once

#include <plovix/standalone/data/query_run.h>
#include <plovix/standalone/tasks/data_source.h>
#include <plovix/standalone/widgets/editor_dialog.h>

#include <QTimer>
#include <optional>
#include <string>

class QLabel;
class QPlainTextEdit;

namespace plovix::app {

class QueryPreviewPanel;
class QueryRowsWidget;

// The rows are in charge as long as they can express the text. Another text is used as it stands, and the
// rows are greyed out.
class QueryBuilderDialog final : public EditorDialog {
 public:
  // Edits the query `text`; blank: all records are offered. `target` is the data's file for counting and
  // checking; without a path: neither. `texts` outlives the dialog, `source` is only used to construct it,
  // which fails as the source does.
  QueryBuilderDialog(const TextTable& texts, DataSource& source, const DataObjectRecord& object,
                     const std::string& text, QueryTarget target, QWidget* parent);

  // The query; never blank once the dialog has been accepted.
  [[nodiscard]] const std::string& Query() const { return query_; }
  [[nodiscard]] bool Changed() const override { return query_ != initial_; }

  // Refuses a condition with a wrong value at its row. Asks whether a text that the database does not take is
  // to be kept.
  void accept() override;

 private:
  void BuildText();
  void ChainTabStops();
  void RowsChanged();
  void TextTyped();
  void Settle();
  void ReadQueryText();
  void ShowQueryText();
  void ShowPreview();
  void Tell(const QString& notice);
  [[nodiscard]] bool IsBlank() const;
  [[nodiscard]] bool IsKept();
  // What keeps the text from being run.
  [[nodiscard]] std::optional<QueryProblem> Problem() const;

  std::string object_, query_, initial_;
  QueryTarget target_;
  QueryRowsWidget* rows_;
  QPlainTextEdit* text_;
  QLabel* notice_;
  QueryPreviewPanel* preview_ = nullptr;  // with a path
  QTimer settled_;                        // runs out when nothing was edited for a moment
  bool is_typed_ = false;                 // the text is newer than the rows
  bool rows_count_ = true;                // they express the text
};

}  // namespace plovix::app
