// Converts the host's wall times to Qt's. Used by the windows for display in the user's locale.
#pragma once

#include <plovix/controls/kinds.h>

#include <QDateTime>
#include <QLocale>
#include <string>

namespace plovix::app {

[[nodiscard]] inline QDateTime WallTime(DateTime time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  return {QDate(1970, 1, 1).addDays(day.time_since_epoch().count()),
          QTime::fromMSecsSinceStartOfDay(static_cast<int>((time - day).count()) * 1000), Qt::UTC};
}

// The time of day in the user's locale, with seconds only if they are not zero.
[[nodiscard]] inline std::string LocaleTime(DateTime time) {
  const QTime of_day = WallTime(time).time();
  const QLocale locale;
  QString format = locale.timeFormat(QLocale::ShortFormat);
  if (of_day.second() != 0 && !format.contains("ss")) format.replace("mm", "mm:ss");
  return locale.toString(of_day, format).toStdString();
}

}  // namespace plovix::app
