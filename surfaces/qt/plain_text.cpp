#include "plain_text.h"

#include <QAccessible>
#include <QTextBoundaryFinder>

namespace plovix::qt {
namespace {

constexpr int kLongestTitle = 150;   // UTF-16 units
constexpr int kLongestCluster = 32;  // UTF-16 units; a character with more accents is cut
constexpr const char* kPlaceholder = "[*]";
constexpr const char* kLiteral = "[*][*]";  // the toolkit shows this as kPlaceholder

// Where to cut a text that is longer than `most`.
qsizetype CutOf(const QString& text, qsizetype most) {
  const qsizetype from = std::max<qsizetype>(0, most - kLongestCluster);
  const QString around = text.mid(from, most - from + 1);
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, around);
  finder.setPosition(most - from);
  const qsizetype before = finder.isAtBoundary() ? most - from : finder.toPreviousBoundary();
  if (before > 0) return from + before;
  return text.at(most).isLowSurrogate() ? most - 1 : most;
}

}  // namespace

QString Shortened(const QString& text, int most, int lines) {
  qsizetype end = text.size() > most ? CutOf(text, most) : text.size();
  qsizetype at = -1;
  for (int line = 0; line < lines; ++line) {
    at = text.indexOf(u'\n', at + 1);
    if (at < 0 || at >= end) break;
    if (line + 1 == lines) end = at;
  }
  return end == text.size() ? text : text.left(end) + QChar(0x2026);
}

QString ToolTip(const QString& text) {
  if (text.isEmpty()) return {};
  return QStringLiteral("<p style='white-space:pre-wrap'>") + Shortened(text, kLongestTold).toHtmlEscaped() +
         QStringLiteral("</p>");
}

QLabel* NewLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
  return label;
}

QLabel* NewWrappedLabel(const QString& text, QWidget* parent) {
  QLabel* label = NewLabel(text, parent);
  label->setWordWrap(true);
  label->setMinimumWidth(1);  // instead of the longest word's width
  return label;
}

QLabel* NewProblemLabel() {
  QLabel* label = NewWrappedLabel();
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  label->hide();
  return label;
}

void TellProblem(QLabel& label, QWidget& field, const QString& text) {
  label.setText(text);
  label.setVisible(!text.isEmpty());
  if (field.accessibleDescription() != text) field.setAccessibleDescription(text);
  if (text.isEmpty()) return;
  QAccessibleEvent event(&label, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void SetTitle(QWidget& window, const QString& title) {
  window.setWindowTitle(Shortened(title.simplified(), kLongestTitle).replace(kPlaceholder, kLiteral));
}

QString TitleOf(const QWidget& window) {
  return window.windowTitle().replace(kLiteral, kPlaceholder);
}

}  // namespace plovix::qt
