// The editor of language tags: finds a tag by its name or its texts, creates new ones and edits their texts.
#pragma once

#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/filtered_table.h>

#include <string>
#include <vector>

class QCheckBox;
class QPlainTextEdit;

namespace plovix::app {

class TagTableModel;

class TagDialog final : public EditorDialog {
 public:
  // Starts on `tag`; `choices` come first and can be shown alone. `languages` are the codes of the languages
  // of the texts, `current` is the program's own. Fails as Tags() does; new and edited tags are stored at
  // once, even if the dialog is cancelled.
  TagDialog(const TextTable& texts, const std::string& tag, const std::vector<std::string>& choices,
            UsersAndTags& tables, std::vector<std::string> languages, std::string current, QWidget* parent);

  // The chosen tag once the dialog has been accepted; empty: no tag.
  [[nodiscard]] const std::string& Tag() const { return tag_; }
  [[nodiscard]] bool Changed() const override { return false; }  // a choice is not an entry

  void accept() override;  // only if a tag is selected

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildSearch(bool with_choices);
  void BuildTable();
  void BuildButtons();
  void Edit(bool make_new);
  [[nodiscard]] const TagRecord* Selected() const;
  void ShowSelected();

  std::string tag_;
  UsersAndTags& tables_;
  std::vector<std::string> languages_;
  std::string current_;
  TagTableModel* model_;
  FilteredTable tags_;
  QCheckBox* only_;
  QPlainTextEdit* tag_texts_;
  QLabel* problem_;
  QPushButton* edit_ = nullptr;
};

}  // namespace plovix::app
