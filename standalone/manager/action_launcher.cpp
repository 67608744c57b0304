#include "action_launcher.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/data/data_changes.h>
#include <plovix/standalone/runner/log_line.h>
#include <plovix/standalone/runner/output_folder.h>
#include <plovix/standalone/runner/program_action.h>
#include <plovix/standalone/storage/manager_lock.h>
#include <sys/eventfd.h>

#include <algorithm>

namespace plovix::manager {
namespace {

constexpr std::chrono::milliseconds kPatienceForWriters{5000};

// Why a program did not do its work; empty if it did.
std::string FailureOfProgram(const runner::ProgramEnd& end) {
  if (!end.failure.empty()) return end.failure;
  if (end.stopped == runner::StopReason::kTimeLimit)
    return "the program took longer than its time limit and was ended";
  if (end.stopped != runner::StopReason::kNone) return "the program was ended";
  if (end.signal) return "the program was ended by signal " + std::to_string(*end.signal);
  if (end.exit_status == 0) return {};
  return "the program returned " + std::to_string(end.exit_status.value_or(-1));
}

}  // namespace

ActionLauncher::ActionLauncher(LauncherSettings settings)
    : settings_(std::move(settings)),
      environment_(runner::FixedEnvironment(settings_.zone)),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      statement_thread_([this](const std::stop_token& stop) { RunStatements(stop); }) {
  launcher_.emplace(settings_.holder, [this](const runner::ProgramEnd& end) { ProgramEnded(end); });
}

ActionLauncher::~ActionLauncher() {
  statement_thread_.request_stop();
  const std::scoped_lock lock(mutex_);
  if (changes_ != nullptr) changes_->Interrupt();
}

void ActionLauncher::Tell(ActionEnd end) {
  {
    const std::scoped_lock lock(mutex_);
    ended_.push_back(std::move(end));
  }
  eventfd_write(wake_.Get(), 1);
}

void ActionLauncher::Begin(const ActionOrder& order) {
  if (ending_) return;
  if (order.kind == "run-program") return BeginProgram(order);
  if (order.kind == "run-sql") return BeginStatement(order);
  runner::AppendLogLine(order.file, order.text);
  Tell({order.run, order.epoch, {}});
}

void ActionLauncher::BeginProgram(const ActionOrder& order) {
  runner::ProgramRequest request =
      runner::RequestFor(order.action, order.values, settings_.secrets, environment_);
  request.run = order.run;
  request.output_path = runner::OutputPath(settings_.output_folder, order.run);
  request.lock_path = settings_.lock_path;
  request.lock_offset = ByteOfRun(order.run);
  {
    const std::scoped_lock lock(mutex_);
    programs_[order.run] = order.epoch;
  }
  launcher_->Start(std::move(request));
}

void ActionLauncher::ProgramEnded(const runner::ProgramEnd& end) {
  std::int64_t epoch = 0;
  {
    const std::scoped_lock lock(mutex_);
    stopping_.erase(end.run);
    const auto found = programs_.find(end.run);
    const bool is_wanted = found != programs_.end() && end.stopped != runner::StopReason::kDrained;
    if (is_wanted) epoch = found->second;
    programs_.erase(end.run);
    if (!is_wanted) return;
  }
  Tell({end.run, epoch, FailureOfProgram(end)});
}

void ActionLauncher::BeginStatement(const ActionOrder& order) {
  if (settings_.data_path.empty())
    throw Failure(failure_number::kInvalidCall, "there is no data file to run the statement on");
  {
    const std::scoped_lock lock(mutex_);
    statements_.push_back(order);
  }
  more_.notify_one();
}

// A stopped run has taken its statement away.
bool ActionLauncher::IsFirst(const ActionOrder& order) const {
  return !statements_.empty() && statements_.front().run == order.run &&
         statements_.front().epoch == order.epoch;
}

void ActionLauncher::RunStatements(const std::stop_token& stop) {
  std::unique_ptr<DataChanges> changes;
  std::unique_lock lock(mutex_);
  while (more_.wait(lock, stop, [this] { return !statements_.empty(); })) {
    const ActionOrder order = statements_.front();
    lock.unlock();
    std::string failure;
    try {
      if (!changes) changes = std::make_unique<DataChanges>(settings_.data_path, kPatienceForWriters);
      lock.lock();
      changes->Resume();
      changes_ = changes.get();
      const bool is_wanted = IsFirst(order);
      lock.unlock();
      if (is_wanted) changes->Run(order.statement, order.parameters);
    } catch (const std::exception&) {
      failure = CurrentFailure().Description();
    }
    if (!lock.owns_lock()) lock.lock();
    changes_ = nullptr;
    if (!IsFirst(order)) continue;
    statements_.pop_front();
    ended_.push_back({order.run, order.epoch, failure});
    eventfd_write(wake_.Get(), 1);
  }
}

std::vector<ActionEnd> ActionLauncher::Ended(Instant /*now*/) {
  eventfd_t count = 0;
  eventfd_read(wake_.Get(), &count);
  const std::scoped_lock lock(mutex_);
  return std::exchange(ended_, {});
}

void ActionLauncher::Stop(std::int64_t run) {
  {
    const std::scoped_lock lock(mutex_);
    if (programs_.erase(run) > 0) stopping_.insert(run);
    std::erase_if(ended_, [run](const ActionEnd& end) { return end.run == run; });
    const bool runs_now = !statements_.empty() && statements_.front().run == run;
    if (runs_now && changes_ != nullptr) changes_->Interrupt();
    std::erase_if(statements_, [run](const ActionOrder& order) { return order.run == run; });
  }
  if (launcher_) launcher_->Stop(run, runner::StopReason::kCancelled);
}

void ActionLauncher::End() {
  ending_ = true;
  const std::scoped_lock lock(mutex_);
  for (const auto& [run, epoch] : programs_) launcher_->Stop(run, runner::StopReason::kDrained);
  statements_.clear();
  if (changes_ != nullptr) changes_->Interrupt();
}

bool ActionLauncher::IsIdle() {
  const std::scoped_lock lock(mutex_);
  return programs_.empty() && stopping_.empty() && changes_ == nullptr;
}

void ActionLauncher::Kill() {
  End();
  launcher_.reset();
}

}  // namespace plovix::manager
