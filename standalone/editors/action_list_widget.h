// Draws a VeloActionList: the list of actions with add, edit, remove and move.
#pragma once

#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/text/text_table.h>
#include <plovix/standalone/widgets/pieces.h>

#include <QWidget>

class QLabel;
class QListWidget;

namespace plovix::app {

class ActionListWidget final : public QWidget {
 public:
  // The fields to which an action can refer, asked as it is edited; nothing if they are not known.
  using Fields = std::function<std::optional<std::vector<FieldRecord>>()>;
  // `list` and `texts` outlive the widget.
  ActionListWidget(VeloActionList& list, const TextTable& texts, QWidget* parent, Fields fields = {});
  ~ActionListWidget() override;

 private:
  void BuildButtons(QBoxLayout& column);
  void Redraw();
  void UpdateButtons();
  void Add();
  void Edit();
  void Remove();
  void Move(int by);
  void SelectRow(int row);
  [[nodiscard]] std::optional<std::vector<FieldRecord>> KnownFields() const {
    return fields_ ? fields_() : std::nullopt;
  }
  [[nodiscard]] QString RowText(const ActionRecord& action) const;

  VeloActionList& list_;
  const TextTable& texts_;
  Fields fields_;
  QListWidget* rows_;
  QLabel* hint_;
  RowButtons buttons_;
};

}  // namespace plovix::app
