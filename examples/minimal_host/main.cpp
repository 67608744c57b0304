// A host in one file: the wizard in a Qt window, on the plain host objects in memory. Your own application
// replaces them one by one: MemoryStorage by its database, HostState's members by its own data.
#include <plovix/component/entry_points.h>
#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/wizard/velo_wiz.h>
#include <plovix/surfaces/qt/form_widget.h>
#include <plovix/surfaces/qt/theme.h>

#include <QApplication>
#include <QBoxLayout>
#include <QDialog>
#include <QInputDialog>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

using namespace plovix;

namespace {

QString Text(const std::string& utf8) {
  return QString::fromStdString(utf8);
}

// Shows a text literally, because names given by users must not be read as markup. Returns the pressed
// button.
int Show(QMessageBox::Icon icon, const std::string& title, const std::string& text,
         QMessageBox::StandardButtons buttons = QMessageBox::Ok) {
  QMessageBox box(icon, Text(title), {}, buttons, QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setText(Text(text));
  return box.exec();
}

// The host's dialogs. Missing editors act as if the user had cancelled.
class Dialogs final : public HostDialogs {
 public:
  int MessageBox(const std::string& prompt, int buttons, const std::string& title) override {
    const bool asks = buttons == message_box::kYesNoQuestion;
    const bool cancels =
        buttons == message_box::kOkCancelWarning || buttons == message_box::kOkCancelQuestion;
    const auto shown = asks      ? QMessageBox::Yes | QMessageBox::No
                       : cancels ? QMessageBox::Ok | QMessageBox::Cancel
                                 : QMessageBox::Ok;
    switch (Show(QMessageBox::Question, title, prompt, shown)) {
      case QMessageBox::Yes:
        return message_box::kYes;
      case QMessageBox::Ok:
        return message_box::kOk;
      default:
        return asks ? message_box::kNo : message_box::kCancel;
    }
  }
  ReportAction Report(const FailureReport& report) override {
    Show(QMessageBox::Critical, report.page, report.description);
    return ReportAction::kLeave;
  }
};

// The host's control on the actions page: a list and a button that adds a line for the log.
QWidget* NewActionWidget(HostControl& control, QWidget* parent) {
  auto& actions = dynamic_cast<VeloActionList&>(control);
  auto* widget = new QWidget(parent);
  auto* layout = new QVBoxLayout(widget);
  auto* rows = new QListWidget;
  auto* add = new QPushButton("&Add a line for the log...");
  rows->setAccessibleName("Actions");
  layout->addWidget(rows);
  layout->addWidget(add);
  const auto redraw = [&actions, rows] {
    rows->clear();
    for (const ActionRecord& action : actions.Rows()) rows->addItem(Text(action.settings.at("text")));
  };
  actions.OnChanged(redraw);
  QObject::connect(widget, &QObject::destroyed, [&actions] { actions.OnChanged({}); });
  QObject::connect(add, &QPushButton::clicked, widget, [&actions, widget] {
    ActionRecord action = NewAction(*FindActionKind("write-log"));
    const QString text = QInputDialog::getText(widget, "Action", "Line to write:");
    action.settings["text"] = text.toStdString();
    if (!text.isEmpty()) actions.Append(action);
  });
  redraw();
  return widget;
}

class Window final : public QDialog, WizardView {
 public:
  explicit Window(const WizardParts& parts) : wizard_(parts, TaskRecord{}) {
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {back_, next_, finish_}) buttons->addWidget(button);
    layout_->addLayout(buttons);
    connect(back_, &QPushButton::clicked, this, [this] { wizard_.Back(); });
    connect(next_, &QPushButton::clicked, this, [this] { wizard_.Next(); });
    connect(finish_, &QPushButton::clicked, this, [this] { wizard_.Finish(); });
    wizard_.SetView(this);
    wizard_.Open("Plovix.AutoTaskType");
    resize(sizeHint());
  }
  void reject() override { wizard_.Cancel(); }

 private:
  void PageShown() override {
    if (page_ != nullptr) page_->deleteLater();  // it may be the sender of the event
    page_ = new qt::FormWidget(wizard_.Controls(), wizard_.User(), NewActionWidget, this);
    layout_->insertWidget(0, page_);
    page_->show();
    page_->FocusFirst();
    setWindowTitle(page_->Heading());
    ButtonsChanged();
  }
  void ButtonsChanged() override {
    const WizardButtons buttons = wizard_.Buttons();
    back_->setEnabled(buttons.back);
    next_->setEnabled(buttons.next);
    finish_->setEnabled(buttons.finish);
    (buttons.finish ? finish_ : next_)->setDefault(true);
  }
  void Closed(WizardEnd end) override { done(end == WizardEnd::kFinished ? Accepted : Rejected); }

  VeloWiz wizard_;
  qt::FormWidget* page_ = nullptr;
  QVBoxLayout* layout_ = new QVBoxLayout(this);
  QPushButton* back_ = new QPushButton("< &Back");
  QPushButton* next_ = new QPushButton("&Next >");
  QPushButton* finish_ = new QPushButton("&Finish");
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  Dialogs dialogs;
  HostState state;
  state.dialogs = &dialogs;
  state.user_id = "ann";
  state.texts = LoadPreferredLanguage({QLocale().name().toStdString()});
  InstallHost(state);
  PageRegistry registry;
  RegisterPages(registry);
  MemoryStorage storage;
  Window window({state, registry, storage, [](auto) { return std::make_shared<VeloActionList>(); }});
  const bool stored = window.exec() == QDialog::Accepted;
  if (stored) Show(QMessageBox::Information, "Stored", storage.List().back().name);
  return stored ? 0 : 1;
}
