#include "add_field.h"

#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/pieces.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace plovix::app {
namespace {

constexpr int kChoiceCharacters = 24;

}  // namespace

AddField::AddField(const QString& label, const QString& button, Adder adder)
    : adder_(std::move(adder)), choice_(new QComboBox), problem_(NewProblemLabel()) {
  choice_->setEditable(true);
  choice_->setInsertPolicy(QComboBox::NoInsert);
  choice_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);  // names may be long
  choice_->setMinimumContentsLength(kChoiceCharacters);
  choice_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  choice_->completer()->setCompletionMode(QCompleter::PopupCompletion);
  choice_->completer()->setFilterMode(Qt::MatchContains);
  choice_->completer()->setCaseSensitivity(Qt::CaseInsensitive);
  choice_->completer()->popup()->installEventFilter(this);  // which has the keys while it is open
  choice_->installEventFilter(this);                        // the keys come to it before its field
  QLabel* caption = NewCaption(label, *choice_);
  choice_->lineEdit()->setAccessibleName(choice_->accessibleName());
  connect(choice_, &QComboBox::editTextChanged, this, [this] { TellProblem(*problem_, *choice_, {}); });
  setFocusProxy(choice_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->addLayout(NewRow({caption, choice_, NewButton(button, [this] { Commit(); })}));
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
  if (problem.isEmpty()) {
    Added();
    return true;
  }
  TellProblem(*problem_, *choice_, problem);
  choice_->setFocus();
  choice_->lineEdit()->selectAll();
  return false;
}

// Enter adds; in an empty field it goes to the dialog.
bool AddField::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || IsEmpty()) return QWidget::eventFilter(watched, event);
  const auto* pressed = static_cast<QKeyEvent*>(event);
  if (!IsEnter(*pressed) || pressed->modifiers().testFlag(Qt::ControlModifier))
    return QWidget::eventFilter(watched, event);
  EnterPressed();
  return true;
}

// Accepts a shown suggestion: the highlighted one, or the only one if the typed text itself is no choice. Of
// several, it highlights the first, so that nobody is added unseen.
void AddField::EnterPressed() {
  QAbstractItemView* popup = choice_->completer()->popup();
  if (!popup->isVisible()) {
    Commit();
    return;
  }
  const QModelIndex chosen = popup->currentIndex();
  if (!chosen.isValid() && adder_(choice_->currentText().trimmed()).isEmpty()) {
    popup->hide();
    Added();
    return;
  }
  const QAbstractItemModel* shown = popup->model();
  if (!chosen.isValid() && shown->rowCount() > 1) {
    popup->setCurrentIndex(shown->index(0, choice_->completer()->completionColumn()));
    return;
  }
  const QModelIndex taken =
      chosen.isValid() ? chosen : shown->index(0, choice_->completer()->completionColumn());
  choice_->setEditText(taken.data().toString());
  popup->hide();
  Commit();
}

void AddField::Added() {
  choice_->clearEditText();
  TellProblem(*problem_, *choice_, {});
  choice_->setFocus();
}

}  // namespace plovix::app
