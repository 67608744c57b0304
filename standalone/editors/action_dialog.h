// The editor of one action, drawn from the table of its kind.
#pragma once

#include <plovix/standalone/tasks/action_kinds.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/text_field.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

class QFormLayout;
class QPushButton;

namespace plovix::app {

class ActionDialog final : public EditorDialog {
 public:
  // Edits `action`; if there are several `kinds`, the user may change the kind. `fields`: to which it can
  // refer; nothing if they are not known. `texts` outlives it.
  ActionDialog(const TextTable& texts, const std::string& title, const std::vector<const ActionKind*>& kinds,
               const ActionRecord& action, QWidget* parent,
               std::optional<std::vector<FieldRecord>> fields = std::nullopt);

  // The edited action; valid once the dialog has been accepted.
  [[nodiscard]] ActionRecord Action() const;
  [[nodiscard]] bool Changed() const override { return Action() != initial_; }

  void accept() override;  // only if every field is valid

 private:
  struct Field {
    const ActionField* info = nullptr;
    TextField text;
    QPushButton* button = nullptr;  // beside it: for a path, or for the name of a field of the record
  };

  void BuildKindChoice(const std::vector<const ActionKind*>& kinds);
  void ChooseKind(const ActionKind& kind);
  void BuildFields();
  void AddField(const ActionField& info);
  void ChainTabStops();
  void Browse(const ActionField& info, const TextField& text);
  [[nodiscard]] QPushButton* NewBrowseButton(const ActionField& info, const TextField& text);
  // Nothing where no name can be inserted.
  [[nodiscard]] QPushButton* NewInsertButton(const ActionField& info, const TextField& text);

  ActionRecord initial_, action_;
  std::optional<std::vector<FieldRecord>> known_fields_;
  std::map<std::string, ActionRecord> drafts_;  // the entries for each kind visited
  QFormLayout* form_ = nullptr;
  TextField name_;
  QWidget* field_area_ = nullptr;
  std::vector<Field> fields_;
};

}  // namespace plovix::app
