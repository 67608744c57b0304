// The query builder: the records of a data object on which a task works, as rows of conditions and as SQL
// text, kept in step with each other, with a preview of what they find. Used by the dialogs of the program.
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

// The rows define the query as long as they can express the text. Any other text is used as it is, and the
// rows are disabled.
class QueryBuilderDialog final : public EditorDialog {
 public:
  // Edits the query `text`; if it is blank, starts with all records. `target` is the data's file for counting
  // and checking; without a path there is neither. `texts` outlives the dialog, `source` is only used to
  // construct it, which fails as the source does.
  QueryBuilderDialog(const TextTable& texts, DataSource& source, const DataObjectRecord& object,
                     const std::string& text, QueryTarget target, QWidget* parent);

  // The query; never blank once the dialog has been accepted.
  [[nodiscard]] const std::string& Query() const { return query_; }
  [[nodiscard]] bool Changed() const override { return query_ != initial_; }

  // Refuses a condition with a wrong value, and shows this at its row. Asks whether to keep a text that the
  // database rejects.
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
  // Why the text cannot be run.
  [[nodiscard]] std::optional<QueryProblem> Problem() const;

  std::string object_, query_, initial_;
  QueryTarget target_;
  QueryRowsWidget* rows_;
  QPlainTextEdit* text_;
  QLabel* notice_;
  QueryPreviewPanel* preview_ = nullptr;  // only with a path
  QTimer settled_;                        // runs out when nothing has been edited for a moment
  bool is_typed_ = false;                 // the text is newer than the rows
  bool rows_count_ = true;                // they express the text
};

}  // namespace plovix::app
