// Draws a VeloActionList: the list of actions with add, edit, remove and move.
#pragma once

#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/text/text_table.h>

#include <QWidget>

class QLabel;
class QListWidget;
class QPushButton;

namespace plovix::app {

class ActionListWidget final : public QWidget {
 public:
  // Both outlive the widget.
  ActionListWidget(VeloActionList& list, const TextTable& texts, QWidget* parent);
  ~ActionListWidget() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPushButton* AddButton(std::string_view caption, void (ActionListWidget::*action)());
  void Redraw();
  void UpdateButtons();
  void Add();
  void Edit();
  void Remove();
  void MoveUp();
  void MoveDown();
  void SelectRow(int row);
  [[nodiscard]] QString RowText(const ActionRecord& action) const;

  VeloActionList& list_;
  const TextTable& texts_;
  QListWidget* rows_;
  QLabel* hint_;
  QPushButton *edit_ = nullptr, *remove_ = nullptr, *up_ = nullptr, *down_ = nullptr;
};

}  // namespace plovix::app
