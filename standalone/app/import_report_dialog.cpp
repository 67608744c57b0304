#include "import_report_dialog.h"

#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 72;
constexpr int kLinesHigh = 10;

QLabel* NewLabel(const std::string& text) {
  QLabel* label = qt::NewWrappedLabel(qt::Shortened(ToQt(text), qt::kLongestTold));
  return label;
}

// One paragraph for each note; any number of them stays inside the window.
QPlainTextEdit* NewList(const TextTable& texts, const ImportReport& report) {
  QStringList notes;
  for (const ImportNote& note : report)
    notes += "\u2022 " + qt::Shortened(ToQt(texts.Host(note.text, note.parameters)), qt::kLongestTold);
  auto* list = new QPlainTextEdit(notes.join('\n'));
  list->setObjectName("notes");
  list->setReadOnly(true);
  list->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  list->setTabChangesFocus(true);
  list->setAccessibleName(ToQt(texts.Host("exchange.report.list")));
  list->setMinimumSize(list->fontMetrics().averageCharWidth() * kCharactersWide,
                       list->fontMetrics().lineSpacing() * kLinesHigh);
  return list;
}

}  // namespace

ImportReportDialog::ImportReportDialog(const TextTable& texts, const std::string& file_name,
                                       const ImportReport& report, QWidget* parent)
    : QDialog(parent) {
  qt::SetTitle(*this, ToQt(texts.Host("exchange.importTitle")));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(NewLabel(texts.Host("exchange.report.intro", {file_name})));
  auto* list = NewList(texts, report);
  layout->addWidget(list, 1);
  layout->addWidget(NewLabel(texts.Host("exchange.report.hint")));
  auto* buttons = new QDialogButtonBox;
  layout->addWidget(buttons);
  auto* go = buttons->addButton(ToQt(texts.Host("exchange.report.go")), QDialogButtonBox::AcceptRole);
  auto* cancel = buttons->addButton(ToQt(texts.Host("button.cancel")), QDialogButtonBox::RejectRole);
  cancel->setAutoDefault(false);
  go->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  list->setFocus();  // read first; Enter continues from there
}

}  // namespace plovix::app
