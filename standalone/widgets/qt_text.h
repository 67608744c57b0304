// Small helpers of the windows: texts between the host (UTF-8) and Qt, comparison, sizes.
#pragma once

#include <plovix/standalone/text/fold_case.h>

#include <QFontMetrics>
#include <QScreen>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <algorithm>
#include <string>
#include <string_view>

namespace plovix::app {

[[nodiscard]] inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
[[nodiscard]] inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

// A list in a sentence, each as `shown` by the function.
template <class Texts, class Shown>
[[nodiscard]] QString Joined(const Texts& texts, Shown shown) {
  QStringList list;
  for (const auto& text : texts) list += shown(text);
  return list.join(u", ");
}

// A text without case differences, for comparing names given by people.
[[nodiscard]] inline std::string Folded(const QString& text) {
  return FoldCase(FromQt(text));
}

// Resizes a window as far as its screen allows, including the frame that the desktop draws around it.
inline void ResizeOnScreen(QWidget& window, const QSize& wanted) {
  constexpr QSize kUsualFrame(10, 40);  // in pixels, until it is shown
  const QRect screen = window.screen()->availableGeometry();
  const QSize frame = window.isVisible() ? window.frameGeometry().size() - window.size() : kUsualFrame;
  window.resize(wanted.boundedTo(screen.size() - frame));
  if (!window.isVisible()) return;
  const QRect now = window.frameGeometry();
  const QPoint over(std::max(0, now.right() - screen.right()), std::max(0, now.bottom() - screen.bottom()));
  if (!over.isNull()) window.move(now.topLeft() - over);
}
// Gives a window room for so much text in a font, as far as its screen allows.
inline void ResizeToText(QWidget& window, const QFont& font, int characters, int lines) {
  const QFontMetrics metrics(font);
  ResizeOnScreen(window, {metrics.averageCharWidth() * characters, metrics.lineSpacing() * lines});
}

}  // namespace plovix::app
