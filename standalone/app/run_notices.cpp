#include "run_notices.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/runs/run_words.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <algorithm>

#include "user_settings.h"

namespace plovix::app {
namespace {

constexpr std::chrono::milliseconds kGlanceAtHistory{2000};

const char* KeyOfNotice(NoticeKind kind) {
  switch (kind) {
    case NoticeKind::kFails:
      return "notice.fails";
    case NoticeKind::kWorksAgain:
      return "notice.worksAgain";
    case NoticeKind::kMissed:
      break;
  }
  return "notice.missed";
}

}  // namespace

RunNotices::RunNotices(const AppParts& parts, Show show)
    : parts_(parts),
      show_(std::move(show)),
      rules_(std::max(UserSettings().value(kFailuresSetting, 1).toInt(), 1)) {
  QObject::connect(&glance_, &QTimer::timeout, &glance_, [this] { Look(); });
  glance_.start(kGlanceAtHistory);
  Look();
}

void RunNotices::Look() {
  (void)FailureOf([this] {
    for (const Notice& notice : rules_.Take(parts_.runs.Recent({}))) Tell(notice);
  });
}

void RunNotices::Tell(const Notice& notice) {
  const auto task = parts_.storage.Load(notice.run.task);
  if (!task || !May(parts_.user, *task, TaskRight::kView)) return;
  if (!UserSettings().value(kNotifySetting, true).toBool()) return;
  const std::string reason = ReasonInWords(notice.run, parts_.state.texts);
  show_(task->id, parts_.Shown(KeyOfNotice(notice.kind), {InSentence(TaskName(parts_, *task))}),
        qt::Shortened(ToQt(reason), qt::kLongestShown));
}

}  // namespace plovix::app
