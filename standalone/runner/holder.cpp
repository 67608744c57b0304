#include "holder.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <plovix/base/failure.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <span>

#include "execute.h"
#include "output_file.h"
#include "process_tree.h"
#include "secret_mask.h"

namespace plovix::runner {
namespace {

using namespace std::chrono_literals;
using Awake = std::chrono::steady_clock;

constexpr auto kFirstPause = 10ms, kLongestPause = 1000ms;  // between two rounds of killing
constexpr auto kRefreshEvery = 1000ms;                      // of a file that lacks the middle
constexpr int kReadsAtOnce = 16;                            // before something else is looked at
constexpr std::size_t kMostNames = 20;

[[noreturn]] void RefuseRun(const std::string& words) {
  throw Failure(failure_number::kInternal, words);
}

// Taken by this process alone: the descriptor is closed in the program.
Descriptor LockByte(const ProgramRequest& request) {
  if (request.lock_path.empty()) return {};
  Descriptor file(open(request.lock_path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
  if (!file.IsOpen()) RefuseRun(request.lock_path + ": the lock cannot be taken: " + SystemWords(errno));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = request.lock_offset;
  lock.l_len = 1;
  if (fcntl(file.Get(), F_OFD_SETLK, &lock) == 0) return file;
  const bool is_held = errno == EAGAIN || errno == EACCES;
  RefuseRun(request.lock_path +
            ": the lock cannot be taken: " + (is_held ? "another process has it" : SystemWords(errno)));
}

Descriptor BlockedSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGCHLD, SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

// What runs from the request on.
class Holder {
 public:
  // `frames`: the request, and what came behind it.
  Holder(FrameSocket& control, const Descriptor& signals, pid_t manager, std::span<const Frame> frames)
      : control_(control),
        frames_(frames.subspan(1)),
        signals_(signals),
        request_(RequestFrom(frames.front())),
        manager_(manager),
        mask_(request_.secrets) {
    end_.run = request_.run;
  }

  ProgramEnd Run() {
    if (const auto failure = FailureOf([this] { Start(); })) end_.failure = failure->Description();
    if (program_ != 0) Obey(frames_);
    while (program_ != 0 && !(ended_ && is_empty_)) Turn();
    FinishOutput();
    return end_;
  }

 private:
  void Start() {
    lock_ = LockByte(request_);
    file_.emplace(request_.output_path);
    timer_ = Descriptor(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK));
    std::array<int, 2> ends{};
    if (!timer_.IsOpen() || pipe2(ends.data(), O_CLOEXEC) != 0) RefuseRun(SystemWords(errno));
    output_ = Descriptor(ends[0]);
    const Descriptor input(ends[1]);
    fcntl(output_.Get(), F_SETFL, O_NONBLOCK);
    if (request_.deadline) SetDeadline(*request_.deadline);
    if (request_.time_limit > 0ms) limit_at_ = Awake::now() + request_.time_limit;
    Execution execution = Execute(request_, input.Get());
    program_ = execution.id;
    end_.failure = std::move(execution.failure);
  }

  void Turn() {
    std::array<pollfd, 4> watched{{{control_.IsClosed() ? -1 : control_.Get(), POLLIN, 0},
                                   {signals_.Get(), POLLIN, 0},
                                   {timer_.Get(), POLLIN, 0},
                                   {output_.Get(), POLLIN, 0}}};
    poll(watched.data(), watched.size(), PauseBeforeTurn());
    Obey(control_.Receive());
    TakeSignals();
    CheckManager();
    TakeOutput();
    Reap();
    CheckTimes();
  }

  [[nodiscard]] int PauseBeforeTurn() const {
    auto next = Awake::time_point::max();
    for (const auto& at : {kill_at_, limit_at_, refresh_at_}) next = std::min(next, at.value_or(next));
    if (next == Awake::time_point::max()) return -1;
    const auto pause = std::chrono::ceil<std::chrono::milliseconds>(next - Awake::now());
    return static_cast<int>(std::clamp<std::int64_t>(pause.count(), 0, 1'000'000));
  }

  void Obey(std::span<const Frame> frames) {
    for (const Frame& frame : frames) {
      const std::int64_t number = NumberFrom(frame);
      if (frame.front() == kStopFrame) Ask(static_cast<StopReason>(number));
      if (frame.front() == kDeadlineFrame)
        SetDeadline(BootClock::time_point(std::chrono::milliseconds(number)));
    }
  }

  void TakeSignals() {
    signalfd_siginfo told{};
    while (read(signals_.Get(), &told, sizeof told) == sizeof told) {
      if (told.ssi_signo != SIGCHLD) Ask(StopReason::kDrained);
    }
  }

  // After the signals: one comes for each thread of the manager that ends, the last one when it is gone.
  void CheckManager() {
    if (control_.IsClosed() || getppid() != manager_) Kill(StopReason::kDrained);
  }

  void TakeOutput() {
    std::array<char, 65536> block{};
    for (int reads = 0; output_.IsOpen() && reads < kReadsAtOnce; ++reads) {
      const ssize_t count = read(output_.Get(), block.data(), block.size());
      if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
      if (count <= 0) return output_.Close();
      end_.output_bytes += count;
      file_->Add(mask_.Next({block.data(), static_cast<std::size_t>(count)}));
    }
    if (file_->NeedsRefresh() && !refresh_at_) refresh_at_ = Awake::now() + kRefreshEvery;
  }

  void Reap() {
    int status = 0;
    pid_t id = 0;
    while ((id = waitpid(-1, &status, WNOHANG)) > 0) {
      if (id != program_) continue;
      if (WIFEXITED(status)) end_.exit_status = WEXITSTATUS(status);
      if (WIFSIGNALED(status)) end_.signal = WTERMSIG(status);
      ended_ = true;
      limit_at_.reset();
    }
    is_empty_ = id < 0;  // whoever lost its parent is a child of this process
    if (ended_ && !is_empty_ && !kill_at_) EndLeftovers();
  }

  void EndLeftovers() {
    for (const ProcessInfo& process : Descendants()) {
      if (process.state == 'Z' || end_.leftovers.size() == kMostNames) continue;
      end_.leftovers.push_back(process.name + " (" + std::to_string(process.id) + ")");
    }
    AskTree();
  }

  void CheckTimes() {
    const auto now = Awake::now();
    std::uint64_t expirations = 0;
    (void)!read(timer_.Get(), &expirations, sizeof expirations);  // so that it does not wake again
    if (deadline_ && BootClock::now() >= *deadline_) Kill(StopReason::kDeadline);
    if (limit_at_ && now >= *limit_at_) Ask(StopReason::kTimeLimit);
    if (kill_at_ && now >= *kill_at_) {
      SignalDescendants(SIGKILL);
      pause_ = std::min<std::chrono::milliseconds>(pause_ * 2, kLongestPause);
      kill_at_ = now + pause_;
    }
    if (refresh_at_ && now >= *refresh_at_) {
      file_->Refresh();
      refresh_at_.reset();
    }
  }

  // Only the first reason counts.
  void Note(StopReason reason) {
    if (!ended_ && end_.stopped == StopReason::kNone) end_.stopped = reason;
    limit_at_.reset();
  }

  void Ask(StopReason reason) {
    Note(reason);
    if (!kill_at_) AskTree();
  }

  // Whoever is stopped could not react.
  void AskTree() {
    SignalDescendants(SIGTERM);
    SignalDescendants(SIGCONT);
    kill_at_ = Awake::now() + request_.patience;
  }

  void Kill(StopReason reason) {
    if (killing_) return;
    Note(reason);
    killing_ = true;
    kill_at_ = Awake::now();
  }

  // Kept earlier than it is, by the time that others need to find out.
  void SetDeadline(BootClock::time_point deadline) {
    deadline_ = deadline - std::chrono::seconds(kSecondsBeforeDeadline);
    const auto since_start = std::max<std::chrono::milliseconds>(deadline_->time_since_epoch(), 1ms);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(since_start);
    itimerspec time{};
    time.it_value.tv_sec = seconds.count();
    time.it_value.tv_nsec = std::chrono::nanoseconds(since_start - seconds).count();
    timerfd_settime(timer_.Get(), TFD_TIMER_ABSTIME, &time, nullptr);
  }

  // Somebody outside the tree may still have the other end of the pipe, so its end is not waited for.
  void FinishOutput() {
    if (!file_) return;
    TakeOutput();
    file_->Add(mask_.End());
    file_->Refresh();
    end_.left_out = file_->LeftOut();
    end_.output_failure = file_->Problem();
  }

  FrameSocket& control_;
  const std::span<const Frame> frames_;
  const Descriptor& signals_;
  const ProgramRequest request_;
  const pid_t manager_;
  SecretMask mask_;
  Descriptor lock_, timer_, output_;
  std::optional<OutputFile> file_;
  ProgramEnd end_;
  pid_t program_ = 0;
  bool ended_ = false;     // the program; perhaps not its tree
  bool is_empty_ = false;  // the tree
  bool killing_ = false;   // without patience
  std::chrono::milliseconds pause_ = kFirstPause;
  std::optional<Awake::time_point> kill_at_, limit_at_, refresh_at_;
  std::optional<BootClock::time_point> deadline_;
};

// Nothing that the manager had open may keep a program's partner waiting.
void LeaveManager() {
  syscall(SYS_close_range, kControlDescriptor + 1, ~0U, 0);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO}) dup2(nothing, standard);
  close(nothing);
  setsid();
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  prctl(PR_SET_PDEATHSIG, SIGTERM);  // the thread that started this process ended
  std::signal(SIGXFSZ, SIG_IGN);     // the output file is too long for a limit
}

// Waits until the socket is ready, whatever the time.
void WaitFor(const FrameSocket& control, short event) {
  pollfd watched{control.Get(), event, 0};
  poll(&watched, 1, -1);
}

}  // namespace

int HoldProgram() {
  const pid_t manager = getppid();
  LeaveManager();
  const Descriptor signals = BlockedSignals();
  FrameSocket control{Descriptor(kControlDescriptor)};
  std::vector<Frame> frames;
  while (frames.empty() && !control.IsClosed()) {
    WaitFor(control, POLLIN);
    frames = control.Receive();
  }
  if (frames.empty()) return 1;
  Holder holder(control, signals, manager, frames);
  control.Send(FrameOf(holder.Run()));
  while (control.HasUnsent()) {
    WaitFor(control, POLLOUT);
    control.Flush();
  }
  return 0;
}

}  // namespace plovix::runner
