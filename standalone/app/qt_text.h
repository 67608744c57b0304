// Small helpers of the windows: texts between the host (UTF-8) and Qt, sizes.
#pragma once

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

// The size wanted for a window, as far as its screen has room for it.
[[nodiscard]] inline QSize OnScreen(QSize wanted, const QWidget& window) {
  return wanted.boundedTo(window.screen()->availableSize());
}

}  // namespace plovix::app
