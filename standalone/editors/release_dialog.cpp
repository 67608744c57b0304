#include "release_dialog.h"

#include <plovix/standalone/tasks/action_kinds.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextOption>
#include <QVBoxLayout>

namespace plovix::app {
namespace {

constexpr int kShownWide = 80;  // characters
constexpr int kShownHigh = 18;  // lines

// Characters that show as nothing, as a line end, or turn the order of those around them, could hide a part
// of a command.
bool IsSeen(char32_t character) {
  switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return false;
    case QChar::Separator_Space:
      return character == U' ';
    default:
      return true;
  }
}

QString Seen(const std::string& text) {
  QString seen;
  for (const char32_t character : ToQt(text).toUcs4()) {
    if (character == U'\n') {
      seen += "\n    ";
    } else if (IsSeen(character)) {
      seen += QString::fromUcs4(&character, 1);
    } else {
      seen += "\\u{" + QString::number(static_cast<uint>(character), 16) + "}";
    }
  }
  return seen;
}

// The caption of a field as its editor has it, without the mark of its key.
QString CaptionOf(const ActionKind* kind, const std::string& key, const TextTable& texts) {
  if (kind != nullptr) {
    for (const ActionField& field : kind->fields)
      if (field.key == key) return ToQt(texts.Host(field.caption)).remove(u'&');
  }
  return Seen(key);
}

QString ActionInFull(const ActionRecord& action, std::size_t number, const TextTable& texts) {
  const ActionKind* kind = FindActionKind(action.kind);
  QString text = QString::number(number) + ". " +
                 (kind != nullptr ? ToQt(texts.Host(kind->caption))
                                  : ToQt(texts.Host("release.unknownKind", {action.kind})));
  if (!action.name.empty()) text += " (" + Seen(action.name) + ")";
  for (const auto& [key, value] : action.settings)
    if (!value.empty()) text += "\n  " + CaptionOf(kind, key, texts) + "\n    " + Seen(value);
  return text;
}

QPlainTextEdit* NewText(const TextTable& texts, const QString& text) {
  auto* shown = new QPlainTextEdit(text);
  shown->setObjectName("actions");
  shown->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  // A long line goes on below, where a row of blanks cannot push its end out of sight.
  shown->setWordWrapMode(QTextOption::WrapAnywhere);
  shown->setReadOnly(true);
  shown->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  shown->setTabChangesFocus(true);
  shown->setAccessibleName(ToQt(texts.Host("release.actions")));
  shown->setMinimumSize(shown->fontMetrics().averageCharWidth() * kShownWide,
                        shown->fontMetrics().lineSpacing() * kShownHigh);
  return shown;
}

}  // namespace

QString ActionsInFull(const TaskRecord& task, const TextTable& texts) {
  QStringList actions;
  for (std::size_t i = 0; i < task.actions.size(); ++i)
    actions += ActionInFull(task.actions[i], i + 1, texts);
  return actions.isEmpty() ? ToQt(texts.Host("release.noActions")) : actions.join("\n\n");
}

ReleaseDialog::ReleaseDialog(const TextTable& texts, const TaskRecord& task, const std::string& name,
                             QWidget* parent)
    : EditorDialog(texts, texts.Host("release.title"), parent) {
  Rows()->addWidget(qt::NewWrappedLabel(qt::Shortened(Text("release.intro", {name}), qt::kLongestTold)));
  auto* shown = NewText(texts, ActionsInFull(task, texts));
  Rows()->addWidget(shown, 1);
  Rows()->addWidget(NewNote("release.hint"));
  AddOkAndCancel("release.go", "release.leave");
  shown->setFocus();  // read first
}

void ReleaseDialog::keyPressEvent(QKeyEvent* event) {
  const bool on_button = qobject_cast<QPushButton*>(focusWidget()) != nullptr;
  if (IsEnter(*event) && !on_button) return event->accept();
  EditorDialog::keyPressEvent(event);
}

}  // namespace plovix::app
