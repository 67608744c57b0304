// The editor of a task's categories.
#pragma once

#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/widgets/editor_dialog.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace plovix::app {

class AddField;

// Where categories come from. Each function may fail with a Failure, which the dialog tells.
struct CategorySource {
  bool tagged = false;             // categories are chosen as language tags, else typed as texts
  std::vector<std::string> known;  // offered for adding: tags when tagged, else texts
  std::function<std::string(const std::string& tag)> text_of;
  // Texts only: the tag of a category that is called `text` from now on; `old_tag` is empty for a new one.
  std::function<std::string(const std::string& old_tag, const std::string& text)> tag_for_text;
  // Tags only: opens the tag editor on `tag` with `known` as its choices; nothing when cancelled.
  std::function<std::optional<std::string>(const std::string& tag, const std::vector<std::string>& known)>
      edit_tag;
};

class CategoryDialog final : public EditorDialog {
 public:
  CategoryDialog(const TextTable& texts, const std::vector<CategoryRecord>& categories, CategorySource source,
                 QWidget* parent);

  // As edited once the dialog has been accepted, until then as given.
  [[nodiscard]] const std::vector<CategoryRecord>& Categories() const { return categories_; }
  [[nodiscard]] bool Changed() const override;

  void accept() override;  // only when every category has a text of its own

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
  void AddTag();
  void Rename();
  void RenameTag();
  void Remove();
  void Move(int by);
  void TogglePublic();
  void UpdateButtons();
  // Why the text cannot stand in a row, -1: a new one; nothing when it can.
  [[nodiscard]] QString ProblemOf(const QString& text, int row) const;
  // Tells what is wrong with the texts. Gives back the row that has it, -1 when nothing is wrong.
  int Check();
  [[nodiscard]] std::string TagOf(const Line& line) const;

  CategorySource source_;
  std::vector<CategoryRecord> categories_;
  std::vector<Line> initial_;
  QTableWidget* table_;
  QLabel* problem_;
  AddField* add_ = nullptr;  // nothing when tagged
  QPushButton *rename_ = nullptr, *remove_ = nullptr, *up_ = nullptr, *down_ = nullptr;
};

}  // namespace plovix::app
