#include "add_field.h"

#include <QComboBox>
#include <QCompleter>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "editor_dialog.h"

namespace plovix::app {

AddField::AddField(const QString& label, const QString& button, Adder adder)
    : adder_(std::move(adder)), choice_(new QComboBox), problem_(NewProblemLabel()) {
  choice_->setEditable(true);
  choice_->setInsertPolicy(QComboBox::NoInsert);
  choice_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  choice_->setAccessibleName(QString(label).remove(u'&'));
  choice_->completer()->setCompletionMode(QCompleter::PopupCompletion);
  choice_->completer()->setFilterMode(Qt::MatchContains);
  choice_->completer()->setCaseSensitivity(Qt::CaseInsensitive);
  choice_->lineEdit()->setAccessibleName(choice_->accessibleName());
  choice_->installEventFilter(this);  // the keys come to it before its field
  auto* caption = new QLabel(label);
  caption->setBuddy(choice_);
  auto* add = new QPushButton(button);
  add->setAutoDefault(false);
  connect(add, &QPushButton::clicked, this, [this] { Commit(); });
  connect(choice_, &QComboBox::editTextChanged, this, [this] { TellProblem(*problem_, *choice_, {}); });
  setFocusProxy(choice_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  auto* row = new QHBoxLayout;
  row->addWidget(caption);
  row->addWidget(choice_);
  row->addWidget(add);
  column->addLayout(row);
  column->addWidget(problem_);
}

void AddField::SetChoices(const QStringList& choices) {
  const QString typed = choice_->currentText();
  choice_->clear();
  choice_->addItems(choices);
  choice_->setCurrentIndex(-1);
  choice_->setEditText(typed);
}

bool AddField::IsEmpty() const {
  return choice_->currentText().trimmed().isEmpty();
}

bool AddField::Commit() {
  const QString problem = adder_(choice_->currentText().trimmed());
  if (problem.isEmpty()) choice_->clearEditText();
  TellProblem(*problem_, *choice_, problem);
  choice_->setFocus();
  choice_->lineEdit()->selectAll();
  return problem.isEmpty();
}

// Enter adds; in an empty field it is the dialog's.
bool AddField::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || IsEmpty()) return QWidget::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return QWidget::eventFilter(watched, event);
  Commit();
  return true;
}

}  // namespace plovix::app
