#include "text_field.h"

#include <plovix/standalone/tasks/text_limits.h>

#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QTextCursor>

#include "editor_dialog.h"
#include "qt_text.h"

namespace plovix::app {
namespace {

constexpr int kLongestLine = 1 << 24;  // the usual limit would cut what is stored

}  // namespace

std::string LengthProblem(const std::string& text, std::size_t most, const TextTable& texts) {
  if (!IsLongerThan(text, most)) return {};
  return texts.Host("entry.tooLong", {FromQt(QLocale().toString(static_cast<qulonglong>(most)))});
}

TextField::TextField(const std::string& text, std::size_t most, int lines)
    : most_(most), problem_(NewProblemLabel()) {
  if (lines == 0) {
    line_ = new QLineEdit;
    line_->setMaxLength(kLongestLine);
  } else {
    lines_ = new QPlainTextEdit;
    lines_->setTabChangesFocus(true);
    lines_->setMinimumHeight(lines_->fontMetrics().lineSpacing() * lines);
  }
  SetText(ToQt(text));
}

QWidget* TextField::Editor() const {
  return line_ != nullptr ? static_cast<QWidget*>(line_) : lines_;
}

QString TextField::Text() const {
  return line_ != nullptr ? line_->text() : lines_->toPlainText();
}

void TextField::SetText(const QString& text) const {
  line_ != nullptr ? line_->setText(text) : lines_->setPlainText(text);
}

void TextField::Insert(const QString& text) const {
  line_ != nullptr ? line_->insert(text) : lines_->insertPlainText(text);
  Editor()->setFocus();
}

void TextField::Tell(const QString& problem) const {
  TellProblem(*problem_, *Editor(), problem);
}

bool TextField::Accepts(const QString& problem) const {
  Tell(problem);
  if (problem.isEmpty()) return true;
  Editor()->setFocus();
  if (line_ != nullptr) line_->selectAll();
  return false;
}

void TextField::Select(std::size_t offset, std::size_t length) const {
  const std::string text = FromQt(Text());
  const auto begin = static_cast<int>(ToQt(text.substr(0, offset)).size());
  const auto end = static_cast<int>(ToQt(text.substr(0, offset + length)).size());
  if (line_ != nullptr) return line_->setSelection(begin, end - begin);
  QTextCursor cursor = lines_->textCursor();
  cursor.setPosition(begin);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  lines_->setTextCursor(cursor);
}

QString TextField::TooLong(const TextTable& texts) const {
  return ToQt(LengthProblem(FromQt(Text()), most_, texts));
}

}  // namespace plovix::app
