#include "import_report_dialog.h"

#include <plovix/standalone/widgets/qt_text.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 70;  // beside them the editor leaves room for a scroll bar
constexpr int kLinesHigh = 10;

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
    : EditorDialog(texts, texts.Host("exchange.importTitle"), parent) {
  const QString intro = Text("exchange.report.intro", {file_name});
  Rows()->addWidget(qt::NewWrappedLabel(qt::Shortened(intro, qt::kLongestTold)));
  auto* list = NewList(texts, report);
  Rows()->addWidget(list, 1);
  Rows()->addWidget(NewNote("exchange.report.hint"));
  AddOkAndCancel("exchange.report.go");
  list->setFocus();  // read first; Enter continues from there
}

}  // namespace plovix::app
