// Small helpers of the windows: texts between the host (UTF-8) and Qt, comparison, sizes.
#pragma once

#include <plovix/standalone/model/fold_case.h>

#include <QFontMetrics>
#include <QScreen>
#include <QString>
#include <QWidget>
#include <string>
#include <string_view>

namespace plovix::app {

[[nodiscard]] inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
[[nodiscard]] inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

// A text without its differences of case: how names that people give are compared.
[[nodiscard]] inline std::string Folded(const QString& text) {
  return FoldCase(FromQt(text));
}

// Gives a window room for so much text in a font, as far as its screen goes.
inline void ResizeToText(QWidget& window, const QFont& font, int characters, int lines) {
  const QFontMetrics metrics(font);
  const QSize wanted(metrics.averageCharWidth() * characters, metrics.lineSpacing() * lines);
  window.resize(wanted.boundedTo(window.screen()->availableSize()));
}

}  // namespace plovix::app
