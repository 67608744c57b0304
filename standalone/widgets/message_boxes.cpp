#include "message_boxes.h"

#include <plovix/host/host_application.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <vector>

#include "qt_text.h"

namespace plovix::app {
namespace {

constexpr int kMostLines = 20;  // of a box, because it has no scroll bar

struct Button {
  int answer;
  const char* caption;  // key of a host text
  QMessageBox::ButtonRole role;
};

struct BoxKind {
  QMessageBox::Icon icon;
  std::vector<Button> buttons;  // Enter presses the first, Esc the last
};

const Button kOkButton{message_box::kOk, "button.ok", QMessageBox::AcceptRole};
const Button kCancelButton{message_box::kCancel, "button.cancel", QMessageBox::RejectRole};
const Button kYesButton{message_box::kYes, "button.yes", QMessageBox::YesRole};
const Button kNoButton{message_box::kNo, "button.no", QMessageBox::NoRole};

BoxKind KindOf(int buttons) {
  switch (buttons) {
    case message_box::kOkWarning:
      return {QMessageBox::Warning, {kOkButton}};
    case message_box::kOkCancelWarning:
      return {QMessageBox::Warning, {kOkButton, kCancelButton}};
    case message_box::kOkCancelQuestion:
      return {QMessageBox::Question, {kOkButton, kCancelButton}};
    case message_box::kYesNoQuestion:
      return {QMessageBox::Question, {kYesButton, kNoButton}};
    default:
      return {QMessageBox::Information, {kOkButton}};
  }
}

// Adds the buttons; each carries its answer as a property.
void AddButtons(QMessageBox& box, const TextTable& texts, const std::vector<Button>& buttons) {
  for (const Button& button : buttons) {
    QPushButton* added = box.addButton(ToQt(texts.Host(button.caption)), button.role);
    added->setProperty("answer", button.answer);
    if (&button == &buttons.front()) box.setDefaultButton(added);
    if (&button == &buttons.back()) box.setEscapeButton(added);
  }
}

}  // namespace

std::unique_ptr<QMessageBox> NewBox(QMessageBox::Icon icon, const std::string& title, const std::string& text,
                                    QWidget* parent) {
  auto box = std::make_unique<QMessageBox>(parent);
  box->setIcon(icon);
  qt::SetTitle(*box, ToQt(title));
  box->setTextFormat(Qt::PlainText);
  box->setText(qt::Shortened(ToQt(text), qt::kLongestTold, kMostLines));
  box->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return box;
}

std::unique_ptr<QMessageBox> MakeMessageBox(const TextTable& texts, const std::string& prompt, int buttons,
                                            const std::string& title) {
  const BoxKind kind = KindOf(buttons);
  auto box = NewBox(kind.icon, title, prompt, QApplication::activeWindow());
  AddButtons(*box, texts, kind.buttons);
  return box;
}

std::unique_ptr<QMessageBox> MakeReportBox(const TextTable& texts, const FailureReport& report) {
  const std::string text = texts.Host("error.number", {std::to_string(report.number), report.description});
  const std::string place =
      report.line > 0 ? texts.Host("error.place", {report.module, report.page, report.procedure,
                                                   std::to_string(report.line)})
                      : texts.Host("error.placeWithoutLine", {report.module, report.page, report.procedure});
  auto box = NewBox(QMessageBox::Critical, texts.Host("error.title"), text, QApplication::activeWindow());
  box->setInformativeText(qt::Shortened(ToQt(place), qt::kLongestTold, kMostLines) + "\n\n" +
                          ToQt(texts.Host("error.hint")));
  // The box's own format applies only to its first text.
  for (QLabel* label : box->findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  AddButtons(*box, texts,
             {{static_cast<int>(ReportAction::kRetry), "button.retry", QMessageBox::AcceptRole},
              {static_cast<int>(ReportAction::kContinue), "button.continue", QMessageBox::AcceptRole},
              {static_cast<int>(ReportAction::kLeave), "button.leave", QMessageBox::RejectRole}});
  return box;
}

int Ask(QMessageBox& box) {
  box.exec();
  // No button if the program is being closed, which is not consent.
  const QAbstractButton* clicked = box.clickedButton() != nullptr ? box.clickedButton() : box.escapeButton();
  return clicked->property("answer").toInt();
}

void Tell(const TextTable& texts, const std::string& title, const std::string& text, QWidget* parent) {
  const auto box = NewBox(QMessageBox::Information, title, text, parent);
  AddButtons(*box, texts, {kOkButton});
  box->exec();
}

std::unique_ptr<QMessageBox> MakeWarningQuestion(const TextTable& texts, const std::string& title,
                                                 const WarningQuestion& question, QWidget* parent) {
  auto box = NewBox(QMessageBox::Question, title, question.text, parent);
  AddButtons(*box, texts,
             {{message_box::kYes, question.yes, QMessageBox::DestructiveRole},
              {message_box::kNo, question.no, QMessageBox::RejectRole}});
  box->setDefaultButton(qobject_cast<QPushButton*>(box->escapeButton()));
  return box;
}

bool IsSure(const TextTable& texts, const WarningQuestion& question, QWidget& window) {
  const std::string title = FromQt(qt::TitleOf(window));
  return Ask(*MakeWarningQuestion(texts, title, question, &window)) == message_box::kYes;
}

// The toolkit's own dialog leaves its lists without names.
QString ChoosePath(QFileDialog& dialog) {
  for (const QString part : {"lookIn", "fileType"}) {
    auto* label = dialog.findChild<QLabel*>(part + "Label");
    auto* list = dialog.findChild<QComboBox*>(part + "Combo");
    if (label != nullptr && list != nullptr) label->setBuddy(list);
  }
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().constFirst() : QString();
}

WarningQuestion DiscardQuestion(const TextTable& texts) {
  return {texts.Host("wizard.discard"), "wizard.discardYes", "wizard.discardNo"};
}

}  // namespace plovix::app
