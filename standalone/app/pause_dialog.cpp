#include "pause_dialog.h"

#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/accessibility.h>

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace plovix::app {
namespace {

constexpr int kReasonWide = 60;  // characters

}  // namespace

PauseDialog::PauseDialog(const TextTable& texts, const std::string& task, bool everything, QWidget* parent)
    : EditorDialog(texts, texts.Host("pause.title"), parent), reason_("", kLongestName) {
  Rows()->addWidget(qt::NewWrappedLabel(Text("pause.task", {task})));
  if (everything) {
    auto* only_this = new QRadioButton(Text("pause.only"));
    only_this->setChecked(true);
    everything_ = new QRadioButton(Text("pause.everything"));
    auto* group = new QWidget;
    qt::AnnounceAs(*group, QAccessible::Grouping);
    group->setAccessibleName(windowTitle());
    QVBoxLayout* rows = NewColumn({only_this, everything_});
    rows->setContentsMargins({});
    group->setLayout(rows);
    Rows()->addWidget(group);
  }
  Rows()->addWidget(NewNote("pause.note"));
  QLineEdit* line = reason_.Line();
  line->setMinimumWidth(fontMetrics().averageCharWidth() * kReasonWide);
  line->setPlaceholderText(Text("pause.reasonHint"));
  Rows()->addWidget(NewCaption(Text("pause.reason"), *line));
  Rows()->addLayout(NewColumn({line, reason_.ProblemLabel()}));
  Rows()->addStretch();
  AddOkAndCancel("pause.go");
  line->setFocus();
}

std::string PauseDialog::Reason() const {
  return FromQt(reason_.Text().simplified());
}

bool PauseDialog::Everything() const {
  return everything_ != nullptr && everything_->isChecked();
}

void PauseDialog::accept() {
  if (reason_.Accepts(reason_.TooLong(Texts()))) QDialog::accept();
}

}  // namespace plovix::app
