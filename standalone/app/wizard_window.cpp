#include "wizard_window.h"

#include <plovix/standalone/editors/action_list_widget.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/accessibility.h>
#include <plovix/surfaces/qt/plain_text.h>
#include <plovix/surfaces/qt/theme.h>

#include <QAccessible>
#include <QApplication>
#include <QBoxLayout>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>

#include "host_surface_texts.h"
#include "run_windows.h"
#include "summary_panel.h"
#include "task_warnings.h"

namespace plovix::app {
namespace {

constexpr std::string_view kActionListName = "VeloDesignerCtrl.VeloActionList";
constexpr int kWizardWide = 140;
constexpr int kSummaryWide = 40;  // of these
constexpr int kWizardHigh = 34;

std::shared_ptr<HostControl> MakeControl(std::string_view registered_name) {
  if (registered_name != kActionListName) return nullptr;
  return std::make_shared<VeloActionList>();
}

QFrame* NewRule(QWidget* parent, QFrame::Shape shape = QFrame::HLine) {
  auto* rule = new QFrame(parent);
  qt::AnnounceAs(*rule, QAccessible::Separator);
  rule->setFrameShape(shape);
  rule->setFrameShadow(QFrame::Sunken);
  return rule;
}

}  // namespace

WizardWindow::WizardWindow(AppParts parts, const TaskRecord& task,
                           const std::map<std::string, Value>& entries, QWidget* parent)
    : QDialog(parent),
      parts_(parts),
      wizard_({parts.state, parts.registry, parts.storage, MakeControl}, task, entries) {
  auto* layout = new QVBoxLayout(this);
  BuildHeader();
  page_place_ = new QHBoxLayout;
  layout->addLayout(page_place_, 1);
  BuildSummary();
  layout->addWidget(NewRule(this));
  BuildButtons();
  ResizeToText(*this, qt::PageFont(), kWizardWide, kWizardHigh);
  wizard_.SetView(this);
  qApp->installEventFilter(this);
}

WizardWindow::~WizardWindow() {
  wizard_.SetView(nullptr);
}

void WizardWindow::BuildHeader() {
  title_ = qt::NewWrappedLabel({}, this);
  QFont font = qt::PageFont();
  font.setBold(true);
  title_->setFont(font);
  description_ = qt::NewWrappedLabel({}, this);
  for (QWidget* widget : std::initializer_list<QWidget*>{title_, description_, NewRule(this)})
    layout()->addWidget(widget);
}

// To the right of the page; the last Tab stop.
void WizardWindow::BuildSummary() {
  summary_ = new SummaryPanel(parts_, this);
  summary_->setFixedWidth(QFontMetrics(qt::PageFont()).averageCharWidth() * kSummaryWide);
  page_place_->addWidget(NewRule(this, QFrame::VLine));
  QVBoxLayout* column = NewColumn({summary_});
  page_place_->addLayout(column);
  const std::int64_t id = wizard_.Task().Record().id;
  if (id == 0) return;  // how a task runs is stored beside it, once it is stored
  QPushButton* policies = NewButton(parts_.Shown("wizard.policies"), [this, id] {
    (void)DoOrTell(parts_.state, "list.failed", [&] { EditPolicies(parts_, id, *this); });
    summary_->Show(wizard_.Task().Record(), wizard_.Store().values);
  });
  policies->setObjectName("policies");
  column->addWidget(policies);
}

void WizardWindow::BuildButtons() {
  const auto make = [this](const char* name, const char* caption, std::function<void()> action) {
    QPushButton* button = NewButton(parts_.Shown(caption), std::move(action));
    button->setObjectName(name);
    return button;
  };
  back_ = make("back", "button.back", [this] { Press(back_, &VeloWiz::Back); });
  next_ = make("next", "button.next", [this] { Press(next_, &VeloWiz::Next); });
  finish_ = make("finish", "button.finish", [this] { Press(finish_, &VeloWiz::Finish); });
  cancel_ = make("cancel", "button.cancel", [this] { reject(); });
  QHBoxLayout* row = NewRow({nullptr, back_, next_, finish_});
  row->addSpacing(fontMetrics().averageCharWidth() * 2);
  row->addWidget(cancel_);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

bool WizardWindow::Start(const std::string& identifier) {
  return wizard_.Open(identifier);
}

// The focus goes to the button first, so that Enter leaves a field as Tab does. If the page stays, the focus
// returns, unless the page has moved it to a field.
void WizardWindow::Press(QPushButton* button, bool (VeloWiz::*verb)()) {
  const QPointer<QWidget> former = focusWidget();
  const qt::FormWidget* page = page_;
  button->setFocus(Qt::OtherFocusReason);
  (wizard_.*verb)();
  if (wizard_.IsOpen() && page == page_ && focusWidget() == button && former)
    former->setFocus(Qt::OtherFocusReason);
}

void WizardWindow::keyPressEvent(QKeyEvent* event) {
  if (!IsEnter(*event) || event->modifiers().testFlag(Qt::AltModifier)) return QDialog::keyPressEvent(event);
  if (!PressesButton(*this, *event) && (page_ == nullptr || !page_->FocusTakesEnter())) GoOn();
}

void WizardWindow::GoOn() {
  (next_->isEnabled() ? next_ : finish_)->click();
}

// Ctrl+Enter comes here first, whatever has the focus: multi-line texts, lists and popups use Enter
// themselves, and popup windows pass nothing on.
bool WizardWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
    return QDialog::eventFilter(watched, event);
  const auto& key = static_cast<QKeyEvent&>(*event);
  if (!IsEnter(key) || !key.modifiers().testFlag(Qt::ControlModifier) ||
      !Holds(*static_cast<QWidget*>(watched)))
    return QDialog::eventFilter(watched, event);
  if (key.isAutoRepeat()) return true;
  TakeChoices();
  GoOn();
  return true;
}

// Whether the widget is in this window or in a popup that was opened from it.
bool WizardWindow::Holds(const QWidget& widget) const {
  const QWidget* at = &widget;
  while (at != nullptr && at != this && (!at->isWindow() || at->windowType() == Qt::Popup))
    at = at->parentWidget();
  return at == this;
}

// The highlighted entry of an open list counts as chosen. A menu is only closed, because its entries are
// actions.
void WizardWindow::TakeChoices() {
  const QPointer<QWidget> popup = QApplication::activePopupWidget();
  if (!popup) return;
  QWidget* keys = popup->focusWidget() != nullptr ? popup->focusWidget() : popup.data();
  QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
  if (qobject_cast<QMenu*>(popup) == nullptr) QCoreApplication::sendEvent(keys, &enter);
  if (popup && popup->isVisible()) popup->close();
}

void WizardWindow::reject() {
  const TextTable& texts = parts_.state.texts;
  if (!wizard_.HasChanges() || IsSure(texts, DiscardQuestion(texts), *this)) wizard_.Cancel();
}

void WizardWindow::PageShown() {
  if (page_ != nullptr) {
    page_place_->removeWidget(page_);
    page_->hide();
    page_->deleteLater();  // it may be the sender of the event that led to the new page
  }
  const TextTable& texts = parts_.state.texts;
  page_ = new qt::FormWidget(
      wizard_.Controls(), wizard_.User(),
      [this, &texts](HostControl& control, QWidget* parent) -> QWidget* {
        auto* list = dynamic_cast<VeloActionList*>(&control);
        if (list == nullptr) return nullptr;
        return new ActionListWidget(*list, texts, parent,
                                    [this] { return FieldsFor(parts_, wizard_.Task().Record()); });
      },
      this, SurfaceTextsOf(texts), SurfaceOptionsOf(parts_.state));
  page_place_->insertWidget(0, page_, 1);
  page_->show();  // at once, because keys may already be waiting
  summary_->Show(wizard_.Task().Record(), wizard_.Store().values);
  setTabOrder(cancel_, summary_);  // the new page's widgets are the last of the chain
  title_->setText(ToQt(wizard_.Title()));
  description_->setText(ToQt(wizard_.Description()));
  ButtonsChanged();
  Announce();
  page_->FocusFirst();
}

// Assistive technology reads a changed window title, an alert, and the heading of the page when the focus
// enters it.
void WizardWindow::Announce() {
  std::vector<std::string> words{FromQt(page_->Heading()), wizard_.Title()};
  const bool own = parts_.state.user_id == parts_.user.id;
  if (!own) words.push_back(parts_.state.user_id);
  qt::SetTitle(*this, parts_.Shown(own ? "wizard.windowTitle" : "wizard.windowTitleOwner", words));
  setAccessibleDescription(ToQt(wizard_.Description()));
  QAccessibleEvent event(page_, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void WizardWindow::ButtonsChanged() {
  const WizardButtons buttons = wizard_.Buttons();
  back_->setEnabled(buttons.back);
  next_->setEnabled(buttons.next);
  finish_->setEnabled(buttons.finish);
  cancel_->setEnabled(buttons.cancel);
  (buttons.finish ? finish_ : next_)->setDefault(true);
}

void WizardWindow::Closed(WizardEnd end) {
  done(end == WizardEnd::kFinished ? QDialog::Accepted : QDialog::Rejected);
}

}  // namespace plovix::app
