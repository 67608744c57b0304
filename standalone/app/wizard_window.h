// The wizard's window: title, description, the current page and the four buttons.
#pragma once

#include <plovix/standalone/wizard/velo_wiz.h>
#include <plovix/surfaces/qt/form_widget.h>

#include <QDialog>
#include <map>
#include <string>

#include "app_parts.h"

class QBoxLayout;
class QLabel;
class QPushButton;

namespace plovix::app {

class SummaryPanel;

class WizardWindow final : public QDialog, private WizardView {
 public:
  // Edits a copy of `task`; `entries` go into the wizard's shared store.
  WizardWindow(AppParts parts, const TaskRecord& task, const std::map<std::string, Value>& entries = {},
               QWidget* parent = nullptr);
  ~WizardWindow() override;

  // Shows the first page; false if the wizard cannot start (the user has been told).
  bool Start(const std::string& identifier);
  [[nodiscard]] VeloWiz& Wizard() noexcept { return wizard_; }
  [[nodiscard]] qt::FormWidget* Page() const noexcept { return page_; }

  void reject() override;  // Cancel, Esc and the window's close button: asks if something was changed

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void PageShown() override;
  void ButtonsChanged() override;
  void Closed(WizardEnd end) override;

  void BuildHeader();
  void BuildSummary();
  void BuildButtons();
  void Press(QPushButton* button, bool (VeloWiz::*verb)());
  void Announce();
  void GoOn();  // Next, or Finish if there is no Next
  [[nodiscard]] bool Holds(const QWidget& widget) const;
  static void TakeChoices();

  AppParts parts_;
  VeloWiz wizard_;
  qt::FormWidget* page_ = nullptr;
  QLabel *title_ = nullptr, *description_ = nullptr;
  QBoxLayout* page_place_ = nullptr;
  SummaryPanel* summary_ = nullptr;
  QPushButton *back_ = nullptr, *next_ = nullptr, *finish_ = nullptr, *cancel_ = nullptr;
};

}  // namespace plovix::app
