// Creates a language tag, or edits the texts of one. Opened by the tag editor.
#pragma once

#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/text_field.h>

#include <functional>
#include <string>
#include <vector>

namespace plovix::app {

class TagTextsDialog final : public EditorDialog {
 public:
  using IsTaken = std::function<bool(const std::string& name)>;

  // Creates a tag if `tag` has no name, starting with its texts; otherwise edits its texts without changing
  // the name. There is one field for each of `languages` (codes); that of `current` must be filled. Texts in
  // other languages are unchanged. `is_taken` checks the name of a new tag.
  TagTextsDialog(const TextTable& texts, const TagRecord& tag, UsersAndTags& tables,
                 const std::vector<std::string>& languages, const std::string& current, IsTaken is_taken,
                 QWidget* parent);

  // The tag as entered.
  [[nodiscard]] TagRecord Tag() const;
  [[nodiscard]] bool Changed() const override { return Tag() != initial_; }

  // Stores the tag. Stays open if that fails, and if somebody else has meanwhile created the same tag or
  // changed the same texts: this is reported, and the next OK overwrites their texts.
  void accept() override;

 private:
  struct Field {
    std::string language;
    TextField text;
  };

  void BuildName();
  void BuildField(const std::string& language);
  [[nodiscard]] bool IsInOrder() const;
  void TakeOver(const std::vector<std::string>& conflicts);

  TagRecord initial_;
  UsersAndTags& tables_;
  std::string current_;
  IsTaken is_taken_;
  TextField name_;
  QLabel* problem_;
  std::vector<Field> fields_;
};

}  // namespace plovix::app
