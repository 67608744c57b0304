#include "runner_bar.h"

#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>
#include <unistd.h>

#include <QCheckBox>
#include <QDateTime>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QUrl>

#include "app_parts.h"
#include "user_settings.h"

namespace plovix::app {
namespace {

QString RootAnswerKey(const std::string& database) {
  return kAsRootSettings + QString::fromLatin1(QUrl::toPercentEncoding(ToQt(database)));
}

const char* KeyOfKind(ManagerKind kind) {
  switch (kind) {
    case ManagerKind::kWindow:
      return "runner.window";
    case ManagerKind::kService:
      return "runner.service";
    case ManagerKind::kTerminal:
      break;
  }
  return "runner.terminal";
}

}  // namespace

RunnerBar::RunnerBar(const TextTable& texts)
    : texts_(texts),
      line_(qt::NewWrappedLabel()),
      start_(NewButton(ToQt(texts.Host("runner.start")), [this] { Start(); })) {
  setObjectName("runner");
  setAccessibleName(ToQt(texts.Host("runner.name")));
  start_->setObjectName("startRunning");
  start_->setAccessibleName(ToQt(texts.Host("runner.startName")));
  auto* notify = new QCheckBox(ToQt(texts.Host("notice.switch")));
  notify->setObjectName("notify");
  notify->setChecked(UserSettings().value(kNotifySetting, true).toBool());
  connect(notify, &QCheckBox::clicked, this, [](bool on) { UserSettings().setValue(kNotifySetting, on); });
  QHBoxLayout* row = NewRow({line_, start_, notify});
  row->setStretch(0, 1);
  row->setContentsMargins({});
  setLayout(row);
  Show({});
}

RunnerBar::RunnerBar(const TextTable& texts, WindowManager::Settings settings) : RunnerBar(texts) {
  database_ = settings.database;
  starts_ = settings.starts;
  is_root_ = geteuid() == 0 && !settings.as_root;
  settings.starts = starts_ && !is_root_;
  manager_.emplace(std::move(settings), [this] { Show(manager_->Who()); });
  Show(manager_->Who());
}

std::string RunnerBar::Words(const WhoRuns& who) const {
  switch (who.who) {
    case WhoRuns::Who::kThisWindow:
      return texts_.Host("runner.thisWindow");
    case WhoRuns::Who::kStarting:
      return texts_.Host("runner.starting");
    case WhoRuns::Who::kOther: {
      const auto since = QDateTime::fromSecsSinceEpoch(who.other.since.time_since_epoch().count());
      return texts_.Host(KeyOfKind(who.other.kind),
                         {who.other.host, FromQt(QLocale().toString(since, QLocale::ShortFormat)),
                          InSentence(who.other.account)});
    }
    case WhoRuns::Who::kNobody:
      break;
  }
  if (!who.problem.empty()) return texts_.Host("runner.nobodyBecause", {InSentence(who.problem)});
  return texts_.Host(is_root_ ? "runner.nobodyAsRoot" : "runner.nobody");
}

void RunnerBar::Show(const WhoRuns& who) {
  line_->setText(ToQt(Words(who)));
  start_->setVisible(who.who == WhoRuns::Who::kNobody);
}

void RunnerBar::Start() {
  if (manager_ && (!is_root_ || MayAsRoot(true))) manager_->Start(is_root_);
}

// Asks when there is a window to stand before.
void RunnerBar::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (was_shown_ || !manager_) return;
  was_shown_ = true;
  window()->installEventFilter(this);
  if (!is_root_ || !starts_) return;
  QTimer::singleShot(0, this, [this] {
    if (manager_->Who().who == WhoRuns::Who::kNobody && MayAsRoot(false)) manager_->Start(true);
  });
}

bool RunnerBar::MayAsRoot(bool ask_again) {
  QSettings settings = UserSettings();
  const QString key = RootAnswerKey(database_);
  if (settings.contains(key) && (!ask_again || settings.value(key).toBool()))
    return settings.value(key).toBool();
  const WarningQuestion question{texts_.Host("runner.rootQuestion"), "runner.rootYes", "runner.rootNo"};
  const bool may = IsSure(texts_, question, *window());
  settings.setValue(key, may);
  return may;
}

bool RunnerBar::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Close || watched != window() || MayClose())
    return QWidget::eventFilter(watched, event);
  event->ignore();
  return true;
}

bool RunnerBar::MayClose() {
  const std::size_t running = manager_->Running();
  if (running == 0) return true;
  const auto box = NewBox(QMessageBox::Question, FromQt(qt::TitleOf(*window())),
                          texts_.Host("runner.closeQuestion", {std::to_string(running)}), window());
  const auto* end = box->addButton(ToQt(texts_.Host("runner.closeEnd")), QMessageBox::DestructiveRole);
  const auto* let = box->addButton(ToQt(texts_.Host("runner.closeLet")), QMessageBox::AcceptRole);
  auto* keep = box->addButton(ToQt(texts_.Host("runner.closeKeep")), QMessageBox::RejectRole);
  box->setDefaultButton(keep);
  box->setEscapeButton(keep);
  box->exec();
  if (box->clickedButton() != end && box->clickedButton() != let) return false;
  manager_->Leave(box->clickedButton() == let);
  return true;
}

}  // namespace plovix::app
