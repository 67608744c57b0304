#include "window_manager.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <algorithm>
#include <set>

namespace plovix::app {
namespace {

constexpr std::chrono::milliseconds kGlanceAtManagers{250};
constexpr std::chrono::milliseconds kPauseBeforeRestart{2000};
constexpr int kPipePatience = 1000;  // milliseconds, for a few bytes into an empty pipe
constexpr const char* kSpeaker = "plovix-manager: ";

// One place runs the tasks: services and terminals before windows, and of windows the first.
bool StepsBackFor(const ManagerRecord& own, const ManagerRecord& other) {
  return other.kind != ManagerKind::kWindow || other.number < own.number;
}

}  // namespace

WindowManager::WindowManager(Settings settings, std::function<void()> changed)
    : settings_(std::move(settings)), runs_(settings_.database), wanted_(settings_.starts) {
  glance_.setInterval(kGlanceAtManagers);
  QObject::connect(&glance_, &QTimer::timeout, &glance_, [this] { Look(); });
  glance_.start();
  Look();
  changed_ = std::move(changed);  // its owner does not have it yet
}

WindowManager::~WindowManager() {
  changed_ = {};
  Leave(false);
}

void WindowManager::Start(bool as_root) {
  settings_.as_root = as_root;
  wanted_ = true;
  problem_.clear();
  started_.invalidate();
  Look();
}

std::size_t WindowManager::Running() {
  if (!number_) return 0;
  std::size_t running = 0;
  (void)FailureOf([&] {
    for (const RunRecord& run : runs_.UnderWay()) running += run.manager == *number_ ? 1 : 0;
  });
  return running;
}

// The process goes on when this object and the program are gone, so nothing may wait for it.
void WindowManager::Leave(bool drain) {
  wanted_ = false;
  if (!own_) return;
  QProcess* left = own_.release();
  number_.reset();
  left->disconnect();
  QObject::connect(left, &QProcess::finished, left, &QObject::deleteLater);
  if (drain) {
    left->write("drain\n");
    left->waitForBytesWritten(kPipePatience);
  }
  left->closeWriteChannel();
  if (left->state() == QProcess::NotRunning) return left->deleteLater();
  // Destroying it would kill it, and it may outlive this program: the set is there to the end.
  static auto& still_there = *new std::set<QProcess*>;
  still_there.insert(left);
  QObject::connect(left, &QObject::destroyed, [left] { still_there.erase(left); });
}

void WindowManager::Look() {
  WhoRuns found;
  const auto failure = FailureOf([&] { found = Judge(LivingManagers(runs_)); });
  if (failure) found = {WhoRuns::Who::kNobody, {}, failure->Description()};
  if (found == who_) return;
  who_ = std::move(found);
  if (changed_) changed_();
}

bool WindowManager::IsOwn(const ManagerRecord& manager) const {
  return own_ && manager.process == own_->processId() && manager.host == HostName();
}

WhoRuns WindowManager::Judge(const std::vector<ManagerRecord>& managers) {
  const ManagerRecord *own = nullptr, *other = nullptr;
  for (const ManagerRecord& manager : managers) {
    if (IsOwn(manager)) {
      own = &manager;
    } else if (other == nullptr || StepsBackFor(*other, manager)) {
      other = &manager;
    }
  }
  if (own != nullptr) number_ = own->number;
  if (own != nullptr && other != nullptr && StepsBackFor(*own, *other)) {
    Leave(true);
    wanted_ = true;  // again, once that one is gone
    started_.invalidate();
    own = nullptr;
  }
  if (own != nullptr) return {WhoRuns::Who::kThisWindow, {}, {}};
  if (other != nullptr) return {WhoRuns::Who::kOther, *other, {}};
  const bool is_soon = started_.isValid() && !started_.hasExpired(kPauseBeforeRestart.count());
  if (!own_ && wanted_ && !is_soon) StartOwn();
  if (own_ || wanted_) return {WhoRuns::Who::kStarting, {}, {}};
  return {WhoRuns::Who::kNobody, {}, problem_};
}

void WindowManager::StartOwn() {
  QStringList words{"--while-open", "--database", ToQt(runs_.Path())};
  if (settings_.data) words << "--data" << ToQt(*settings_.data);
  if (settings_.as_root) words << "--as-root";
  own_ = std::make_unique<QProcess>();
  own_->setStandardOutputFile(QProcess::nullDevice());
  QObject::connect(own_.get(), &QProcess::readyReadStandardError, own_.get(), [this] { TakeWords(); });
  // Not at once: the process would be destroyed by its own signal.
  const auto ended = [this] { QTimer::singleShot(0, &glance_, [this] { OwnEnded(); }); };
  QObject::connect(own_.get(), &QProcess::finished, &glance_, ended);
  QObject::connect(own_.get(), &QProcess::errorOccurred, &glance_, ended);
  last_words_.clear();
  started_.start();
  own_->start(ToQt(settings_.program), words);
}

void WindowManager::TakeWords() {
  const QByteArray words = own_->readAllStandardError().trimmed();
  if (!words.isEmpty()) last_words_ = words.mid(words.lastIndexOf('\n') + 1).toStdString();
  if (last_words_.starts_with(kSpeaker)) last_words_.erase(0, std::string_view(kSpeaker).size());
}

// One that was there is started again; one that refused would refuse again.
void WindowManager::OwnEnded() {
  if (!own_ || own_->state() != QProcess::NotRunning) return;
  if (own_->error() != QProcess::FailedToStart) TakeWords();
  if (!number_) {
    wanted_ = false;
    problem_ = last_words_.empty() ? settings_.program + ": " + FromQt(own_->errorString()) : last_words_;
  }
  own_.reset();
  number_.reset();
  Look();
}

}  // namespace plovix::app
