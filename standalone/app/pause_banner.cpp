#include "pause_banner.h"

#include <plovix/standalone/widgets/pieces.h>
#include <plovix/surfaces/qt/accessibility.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QLabel>
#include <QPushButton>

#include "task_runs.h"

namespace plovix::app {

PauseBanner::PauseBanner(AppParts parts, std::function<void()> resume)
    : parts_(std::move(parts)),
      text_(qt::NewWrappedLabel()),
      resume_(NewButton(parts_.Shown("list.resumeAll"), std::move(resume))) {
  qt::AnnounceAs(*this, QAccessible::AlertMessage);
  setObjectName("pauseBanner");
  setFrameShape(QFrame::StyledPanel);
  QFont font = text_->font();
  font.setBold(true);
  text_->setFont(font);
  resume_->setObjectName("resumeAll");
  auto* row = NewRow({text_, resume_});
  row->setStretch(0, 1);
  setLayout(row);
  hide();
}

void PauseBanner::Show(const std::optional<Pause>& pause) {
  if (pause) {
    const QString text = PauseInWords(parts_, "list.allPaused", "list.allPausedWhy", *pause);
    text_->setText(text);
    setAccessibleName(text);
  }
  resume_->setVisible(parts_.user.administrator);
  setVisible(pause.has_value());
}

}  // namespace plovix::app
