// The editor of a task's categories.
#pragma once

#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/pieces.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QTableWidget;
class QTableWidgetItem;

namespace plovix::app {

class AddField;

// Where categories come from. Each function may fail with a Failure, which the dialog shows.
struct CategorySource {
  bool tagged = false;             // categories are chosen as language tags, otherwise typed as texts
  std::vector<std::string> known;  // offered for adding: tags if tagged, otherwise texts
  std::function<std::string(const std::string& tag)> text_of;
  // For texts only: the tag of a category whose text is now `text`; `old_tag` is empty for a new one.
  std::function<std::string(const std::string& old_tag, const std::string& text)> tag_for_text;
  // For tags only: opens the tag editor on `tag` with `known` as its choices; nothing if cancelled.
  std::function<std::optional<std::string>(const std::string& tag, const std::vector<std::string>& known)>
      edit_tag;
};

class CategoryDialog final : public EditorDialog {
 public:
  CategoryDialog(const TextTable& texts, const std::vector<CategoryRecord>& categories, CategorySource source,
                 QWidget* parent);

  // The edited categories once the dialog has been accepted, until then the given ones.
  [[nodiscard]] const std::vector<CategoryRecord>& Categories() const { return categories_; }
  [[nodiscard]] bool Changed() const override;

  void accept() override;  // only if every category has a unique text

 private:
  struct Line {
    std::string tag;  // empty: typed here
    QString text;
    bool is_public = true;
    bool operator==(const Line&) const = default;
  };

  void BuildTable();
  void BuildButtons(QLayout& column);
  [[nodiscard]] std::vector<Line> Lines() const;
  void Append(const Line& line);
  void Rename();
  void EditTag(QTableWidgetItem* item);  // nothing: adds one
  void Remove();
  void Move(int by);
  void TogglePublic();
  void UpdateButtons();
  // Why a row (-1: a new one) cannot have this text; empty if it can.
  [[nodiscard]] QString ProblemOf(const QString& text, int row) const;
  // Shows what is wrong with the texts. Returns the row with the problem, or -1.
  int Check();
  [[nodiscard]] std::string TagOf(const Line& line) const;

  CategorySource source_;
  std::vector<CategoryRecord> categories_;
  std::vector<Line> initial_;
  QTableWidget* table_;
  QLabel* problem_;
  AddField* add_ = nullptr;  // nullptr if tagged
  RowButtons buttons_;
};

}  // namespace plovix::app
