// Makes a language tag, or edits the texts of one. Opened by the tag editor.
#pragma once

#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/widgets/editor_dialog.h>

#include <functional>
#include <string>
#include <vector>

class QBoxLayout;
class QLineEdit;
class QPlainTextEdit;

namespace plovix::app {

class TagTextsDialog final : public EditorDialog {
 public:
  using IsTaken = std::function<bool(const std::string& name)>;

  // Makes a tag when `tag` has no name, starting with its texts; else edits its texts, the name stays. One
  // field for each of `languages` (codes), of which `current` has to be filled. Texts in other languages stay
  // as they are. `is_taken` is asked for the name of a new tag.
  TagTextsDialog(const TextTable& texts, const TagRecord& tag, UsersAndTags& tables,
                 const std::vector<std::string>& languages, const std::string& current, IsTaken is_taken,
                 QWidget* parent);

  // As entered.
  [[nodiscard]] TagRecord Tag() const;
  [[nodiscard]] bool Changed() const override { return Tag() != initial_; }

  // Stores the tag. Stays open when that fails, and when somebody else has made the same tag or changed the
  // same texts meanwhile: that is told, and OK then stores over their texts.
  void accept() override;

 private:
  struct Field {
    std::string language;
    QPlainTextEdit* text;
    QLabel* problem;
  };

  void BuildName(QLayout& column);
  void BuildField(QBoxLayout& column, const std::string& language);
  bool Check();
  void TakeOver(const std::vector<std::string>& conflicts);
  void TellTaken(const QString& problem);

  TagRecord initial_;
  UsersAndTags& tables_;
  std::string current_;
  IsTaken is_taken_;
  QLineEdit* name_;
  QLabel *name_problem_, *problem_;
  std::vector<Field> fields_;
};

}  // namespace plovix::app
