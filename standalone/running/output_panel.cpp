#include "output_panel.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/runner/output_folder.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <utility>

#include "output_text.h"

namespace plovix::app {
namespace {

constexpr int kLinesInSight = 6;
// From the beginning at most so much is shown: files of programs that this program runs are shorter.
constexpr std::int64_t kMostShown = 4 * 1024 * 1024;  // bytes

bool IsAtEnd(const QPlainTextEdit& text) {
  return text.verticalScrollBar()->value() == text.verticalScrollBar()->maximum();
}

}  // namespace

OutputPanel::OutputPanel(RunParts parts, std::int64_t run)
    : parts_(std::move(parts)),
      path_(runner::OutputPath(parts_.output_folder, run)),
      note_(qt::NewWrappedLabel()),
      text_(new QPlainTextEdit),
      turn_(NewButton(parts_.Shown("details.fromBeginning"), [this] { Turn(); })) {
  text_->setReadOnly(true);
  text_->setTabChangesFocus(true);
  text_->setUndoRedoEnabled(false);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setMinimumHeight(text_->fontMetrics().lineSpacing() * kLinesInSight);
  text_->setAccessibleName(parts_.Shown("details.outputName"));
  text_->setObjectName("output");
  turn_->setObjectName("turn");
  note_->setMinimumHeight(note_->fontMetrics().lineSpacing() * 2);
  auto* rows = NewColumn({note_, text_});
  rows->addLayout(NewRow({turn_, nullptr}));
  setLayout(rows);
  connect(text_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
    if (from_beginning_ && IsAtEnd(*text_)) ReadOn();
  });
}

void OutputPanel::Refresh(bool is_over) {
  is_over_ = is_over;
  const bool is_empty = from_beginning_ ? read_ == 0 : shown_.empty();
  if (is_empty || IsAtEnd(*text_)) from_beginning_ ? ReadOn() : ShowEnd();
}

void OutputPanel::Turn() {
  const bool from_beginning = !std::exchange(from_beginning_, false);
  turn_->setText(parts_.Shown(from_beginning ? "details.toEnd" : "details.fromBeginning"));
  text_->clear();
  shown_.clear();
  read_ = 0;
  from_beginning_ = from_beginning;  // only now: emptying the text has moved its scroll bar
  from_beginning_ ? ReadOn() : ShowEnd();
  text_->setFocus();
}

void OutputPanel::Tell(const QString& words) {
  note_->setText(words);
  text_->setAccessibleDescription(words);
}

void OutputPanel::ShowEnd() {
  const auto failure = FailureOf([this] {
    const auto part = ReadOutput(path_, std::nullopt);
    turn_->setEnabled(part.has_value());
    if (!part) return Tell(parts_.Shown(is_over_ ? "details.noOutput" : "details.noOutputYet"));
    Tell(parts_.Shown(part->offset > 0 ? "details.outputEnd" : "details.outputAll"));
    if (part->bytes == shown_) return;
    shown_ = part->bytes;
    text_->setPlainText(VisibleText(FromWholeLine(*part)));
    text_->moveCursor(QTextCursor::End);
    text_->verticalScrollBar()->setValue(text_->verticalScrollBar()->maximum());
  });
  if (failure) Tell(parts_.Shown("details.outputUnreadable", {failure->Description()}));
}

// A part is added behind what is shown; where somebody reads stays.
void OutputPanel::ReadOn() {
  if (read_ >= kMostShown) return;
  const auto failure = FailureOf([this] {
    auto part = ReadOutput(path_, read_);
    if (!part || part->bytes.empty()) return;
    const bool last = part->offset + static_cast<std::int64_t>(part->bytes.size()) >= part->size;
    if (!last) part->bytes.resize(WholeCharacters(part->bytes));
    read_ += static_cast<std::int64_t>(part->bytes.size());
    Tell(parts_.Shown(last ? "details.outputAll" : "details.outputBeginning"));
    QTextCursor end(text_->document());
    end.movePosition(QTextCursor::End);
    end.insertText(VisibleText(part->bytes));
  });
  if (failure) Tell(parts_.Shown("details.outputUnreadable", {failure->Description()}));
}

}  // namespace plovix::app
