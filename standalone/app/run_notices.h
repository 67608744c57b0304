// Tells on the desktop what happens to the tasks that the user may see, while the program is open.
#pragma once

#include <plovix/standalone/runs/notice_rules.h>

#include <QTimer>
#include <functional>

#include "app_parts.h"

namespace plovix::app {

class RunNotices final {
 public:
  using Show = std::function<void(std::int64_t task, const QString& title, const QString& text)>;
  RunNotices(const AppParts& parts, Show show);

  // Looks at what is new in the history; by itself every two seconds. A history that cannot be read is looked
  // at the next time.
  void Look();

 private:
  void Tell(const Notice& notice);

  AppParts parts_;
  Show show_;
  NoticeRules rules_;
  QTimer glance_;
};

}  // namespace plovix::app
