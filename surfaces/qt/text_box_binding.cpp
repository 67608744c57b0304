#include "text_box_binding.h"

#include <plovix/base/utf8.h>
#include <plovix/surfaces/common/widths.h>

#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <cmath>

#include "texts.h"

namespace plovix::qt {
namespace {

class TextAreaWidget final : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;
  [[nodiscard]] QSize minimumSizeHint() const override {
    const int text = surface::kAreaLines * fontMetrics().lineSpacing();
    const int margins = static_cast<int>(std::ceil(2 * document()->documentMargin())) + 2 * frameWidth();
    return {QPlainTextEdit::minimumSizeHint().width(), text + margins};
  }
  [[nodiscard]] QSize sizeHint() const override {
    return {QPlainTextEdit::sizeHint().width(), minimumSizeHint().height()};
  }
};

// A text area uses one character for every line end.
QString AreaText(QString text) {
  return text.replace("\r\n", "\n").replace('\r', '\n');
}

int AreaPosition(const std::string& text, int characters) {
  return static_cast<int>(AreaText(Text(FirstCharacters(text, characters))).size());
}

}  // namespace

void TextLineWidget::SetNarrow() {
  narrow_ = true;
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize TextLineWidget::sizeHint() const {
  QSize size = QLineEdit::sizeHint();
  // By itself a line edit asks for the usual width.
  if (narrow_)
    size.rwidth() -=
        (surface::kFieldWidth - surface::kNarrowFieldWidth) * fontMetrics().horizontalAdvance('x');
  return size;
}

TextLineBinding::TextLineBinding(Surface& surface, TextBox& box, QWidget* parent)
    : BindingOf(surface, box), widget_(new TextLineWidget(parent)) {
  Adopt(widget_);
  KeepToRule(*widget_);
  connect(widget_, &QLineEdit::textEdited, this, [this](const QString& text) {
    shown_ = text.toStdString();
    TellProblem(ProblemWith(text));
    AsUser([&model = Model(), typed = shown_](User& user) { return user.Type(model, typed); });
  });
}

// While the box has the focus, the cursor keeps its position if the text is long enough.
void TextLineBinding::Draw() {
  if (Model().Text() == shown_) return;
  shown_ = Model().Text();
  TellProblem({});
  const int cursor = widget_->hasFocus() ? widget_->cursorPosition() : 0;
  widget_->setText(Text(shown_));
  widget_->setCursorPosition(cursor);
}

void TextLineBinding::DrawSelection() {
  const std::string& text = Model().Text();
  const auto units = [&](int characters) { return Text(FirstCharacters(text, characters)).size(); };
  const auto start = units(Model().SelectionStart());
  const auto end = units(Model().SelectionStart() + Model().SelectionLength());
  widget_->setSelection(static_cast<int>(start), static_cast<int>(end - start));
}

TextAreaBinding::TextAreaBinding(Surface& surface, TextBox& box, QWidget* parent)
    : BindingOf(surface, box), widget_(new TextAreaWidget(parent)) {
  widget_->setTabChangesFocus(true);
  widget_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  Adopt(widget_);
  connect(widget_, &QPlainTextEdit::textChanged, this, [this] {
    if (PageWrites()) return;
    const QString text = widget_->toPlainText();
    if (text == AreaText(Text(shown_))) return;  // ignores formatting, such as an input method's
    const QString problem = ProblemWith(text);
    TellProblem(problem);
    if (!problem.isEmpty() && text.size() > AreaText(Text(shown_)).size()) {
      TakeBack();
      return;
    }
    shown_ = text.toStdString();
    AsUser([&model = Model(), typed = shown_](User& user) { return user.Type(model, typed); });
  });
}

// As a separate edit, so that Ctrl+Z still undoes what was typed before.
void TextAreaBinding::TakeBack() {
  const PageWrite write(Shared());
  const QString former = AreaText(Text(shown_));
  const auto added = widget_->document()->characterCount() - 1 - former.size();
  const auto at = std::max<qsizetype>(widget_->textCursor().position() - added, 0);
  QTextCursor cursor(widget_->document());
  cursor.select(QTextCursor::Document);
  cursor.insertText(former);
  cursor.setPosition(static_cast<int>(std::min(at, former.size())));
  widget_->setTextCursor(cursor);
}

void TextAreaBinding::Draw() {
  if (Model().Text() == shown_) return;
  shown_ = Model().Text();
  TellProblem({});
  const int position = widget_->hasFocus() ? widget_->textCursor().position() : 0;
  widget_->setPlainText(Text(shown_));
  QTextCursor cursor = widget_->textCursor();
  cursor.setPosition(std::min(position, widget_->document()->characterCount() - 1));
  widget_->setTextCursor(cursor);
}

void TextAreaBinding::DrawSelection() {
  QTextCursor cursor = widget_->textCursor();
  cursor.setPosition(AreaPosition(Model().Text(), Model().SelectionStart()));
  cursor.setPosition(AreaPosition(Model().Text(), Model().SelectionStart() + Model().SelectionLength()),
                     QTextCursor::KeepAnchor);
  widget_->setTextCursor(cursor);
}

}  // namespace plovix::qt
