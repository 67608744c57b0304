#include "run_parts.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QDateTime>
#include <QLocale>

namespace plovix::app {
namespace {

constexpr int kRightMissing = 70;  // as TaskControl fails

}  // namespace

QString RunParts::Shown(std::string_view key, const std::vector<std::string>& parameters) const {
  return ToQt(texts.Host(key, parameters));
}

// The locale's own time with seconds names the computer's zone.
std::string RunParts::Time(Instant at) const {
  const auto wall = QDateTime::fromSecsSinceEpoch(zone.WallAt(at).time_since_epoch().count(), Qt::UTC);
  const QLocale locale;
  QString format = locale.timeFormat(QLocale::ShortFormat);
  if (!format.contains("ss")) format.replace("mm", "mm:ss");
  return FromQt(locale.toString(wall.date(), QLocale::ShortFormat) + ' ' +
                locale.toString(wall.time(), format));
}

std::string RunParts::ExactTime(Instant at) const {
  return texts.Host("history.exactTime", {Time(at), std::string(zone.PeriodAt(at).abbreviation)});
}

std::optional<std::string> NameFor(const UserRecord& user, const std::optional<TaskRecord>& task,
                                   const TextTable& texts,
                                   const std::function<std::string(const TaskRecord&)>& name_of) {
  if (!task) return user.administrator ? std::optional(texts.Host("history.deletedTask")) : std::nullopt;
  return May(user, *task, TaskRight::kView) ? std::optional(name_of(*task)) : std::nullopt;
}

bool DoOrTell(const RunParts& parts, QWidget& window, const std::function<void()>& work) {
  const auto failure = FailureOf(work);
  if (!failure) return true;
  const bool forbidden = failure->Number() == kRightMissing;
  Tell(parts.texts, FromQt(qt::TitleOf(window)),
       forbidden ? parts.texts.Host("history.forbidden")
                 : parts.texts.Host("history.refused", {failure->Description()}),
       &window);
  return false;
}

}  // namespace plovix::app
