#include "launcher.h"

#include <plovix/base/failure.h>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

#include <csignal>

#include "holder.h"
#include "process_tree.h"

namespace plovix::runner {
namespace {

// The holder's signals are as usual, whatever this process does with its own.
class SpawnSettings {
 public:
  explicit SpawnSettings(int control) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, control, kControlDescriptor);
    posix_spawnattr_init(&attributes);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  posix_spawn_file_actions_t actions{};
  posix_spawnattr_t attributes{};
};

int WaitForHolder(pid_t holder) {
  int status = 0;
  while (waitpid(holder, &status, 0) < 0 && errno == EINTR) continue;
  return status;
}

std::string LostWords(int status) {
  const std::string how = WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                              : "status " + std::to_string(WEXITSTATUS(status));
  return "The process that watched over the program ended with " + how +
         " before the program did; the program and what it started was killed, as far as it was in its session";
}

}  // namespace

Launcher::Launcher(std::vector<std::string> holder, OnEnd on_end)
    : holder_(std::move(holder)), on_end_(std::move(on_end)), wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!wake_.IsOpen())
    throw Failure(failure_number::kInternal, "Programs cannot be started: " + SystemWords(errno));
  thread_ = std::thread([this] { Work(); });
}

Launcher::~Launcher() {
  Do([this](auto&) { is_ending_ = true; });
  thread_.join();
}

void Launcher::Start(ProgramRequest request) {
  Do([this, request = std::move(request)](std::vector<Held>& held) { StartHolder(request, held); });
}

void Launcher::Stop(std::int64_t run, StopReason reason) {
  Do([run, reason](std::vector<Held>& held) {
    for (Held& one : held) {
      if (one.run == run) one.control.Send(NumberFrame(kStopFrame, static_cast<int>(reason)));
    }
  });
}

void Launcher::Extend(BootClock::time_point deadline) {
  Do([deadline](std::vector<Held>& held) {
    for (Held& one : held) one.control.Send(NumberFrame(kDeadlineFrame, deadline.time_since_epoch().count()));
  });
}

void Launcher::Do(Errand errand) {
  {
    const std::lock_guard lock(mutex_);
    errands_.push_back(std::move(errand));
  }
  eventfd_write(wake_.Get(), 1);
}

void Launcher::Work() {
  std::vector<Held> held;
  while (!is_ending_) {
    Watch(held);
    eventfd_t count = 0;
    eventfd_read(wake_.Get(), &count);
    std::vector<Errand> errands;
    {
      const std::lock_guard lock(mutex_);
      errands.swap(errands_);
    }
    for (const Errand& errand : errands) errand(held);
    for (Held& one : held) TakeFrom(one);
    TellEnded(held);
  }
  std::vector<pid_t> holders;
  holders.reserve(held.size());
  for (const Held& one : held) holders.push_back(one.holder);
  held.clear();
  for (const pid_t holder : holders) WaitForHolder(holder);
}

void Launcher::TellEnded(std::vector<Held>& held) const {
  for (std::size_t i = 0; i < held.size();) {
    if (!held[i].control.IsClosed()) {
      ++i;
      continue;
    }
    const Held ended = std::move(held[i]);
    held.erase(held.begin() + static_cast<std::ptrdiff_t>(i));
    Tell(ended);
  }
}

void Launcher::Watch(std::vector<Held>& held) const {
  std::vector<pollfd> watched{{wake_.Get(), POLLIN, 0}};
  for (const Held& one : held) {
    const int events = one.control.HasUnsent() ? POLLIN | POLLOUT : POLLIN;
    watched.push_back({one.control.Get(), static_cast<short>(events), 0});
  }
  poll(watched.data(), watched.size(), -1);
}

void Launcher::TakeFrom(Held& held) const {
  held.control.Flush();
  for (const Frame& frame : held.control.Receive()) {
    ProgramEnd end;
    const auto failure = FailureOf([&] { end = EndFrom(frame); });
    if (failure) end.failure = failure->Description();
    held.end = std::move(end);
  }
}

// The holder has closed its socket, so it ends, or has ended.
void Launcher::Tell(const Held& held) const {
  const int status = WaitForHolder(held.holder);
  ProgramEnd end = held.end.value_or(ProgramEnd());
  if (!held.end) {
    KillSession(held.holder);
    end.failure = LostWords(status);
  }
  end.run = held.run;
  on_end_(end);
}

void Launcher::StartHolder(const ProgramRequest& request, std::vector<Held>& held) const {
  const auto failure = FailureOf([&] {
    auto [mine, other] = FrameSocket::NewPair();
    const SpawnSettings settings(other.Get());
    std::vector<char*> words;
    words.reserve(holder_.size() + 1);
    for (const std::string& word : holder_)
      words.push_back(
          const_cast<char*>(word.c_str()));  // NOLINT(cppcoreguidelines-pro-type-const-cast): C's way
    words.push_back(nullptr);
    pid_t id = 0;
    const int code =
        posix_spawn(&id, words.front(), &settings.actions, &settings.attributes, words.data(), environ);
    if (code != 0)
      throw Failure(failure_number::kInternal, holder_.front() + ": cannot be started: " + SystemWords(code));
    held.push_back({request.run, id, FrameSocket(std::move(mine)), {}});
    held.back().control.Send(FrameOf(request));
  });
  if (!failure) return;
  ProgramEnd end;
  end.run = request.run;
  end.failure = failure->Description();
  on_end_(end);
}

}  // namespace plovix::runner
