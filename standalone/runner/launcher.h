// Starts holders for programs, and reports how the programs ended. Used by the manager.
#pragma once

#include <functional>
#include <mutex>
#include <thread>

#include "program.h"

namespace plovix::runner {

// All members may be called from any thread. One thread starts every holder and lives as long as the
// launcher, because a holder ends its program when the thread that started it ends.
class Launcher final {
 public:
  // On the launcher's thread, once for each run that was started; must not throw, and must not destroy the
  // launcher.
  using OnEnd = std::function<void(const ProgramEnd& end)>;

  // `holder`: the command that calls HoldProgram, an absolute path and its arguments. Fails with a Failure if
  // the system has no descriptors left.
  Launcher(std::vector<std::string> holder, OnEnd on_end);
  // Kills what runs, without patience and without telling of it, and waits until nothing of it is left.
  ~Launcher();
  Launcher(const Launcher&) = delete;
  Launcher& operator=(const Launcher&) = delete;

  void Start(ProgramRequest request);
  // Asks the run's tree to end, and ends it after the request's patience. Nothing happens if it has ended.
  void Stop(std::int64_t run, StopReason reason);
  // Until this time every program that runs now may run.
  void Extend(BootClock::time_point deadline);

 private:
  struct Held {
    std::int64_t run;
    pid_t holder;
    FrameSocket control;
    std::optional<ProgramEnd> end;
  };
  using Errand = std::function<void(std::vector<Held>& held)>;

  void Do(Errand errand);
  void Work();
  void Watch(std::vector<Held>& held) const;
  void TakeFrom(Held& held) const;
  void TellEnded(std::vector<Held>& held) const;
  void Tell(const Held& held) const;
  void StartHolder(const ProgramRequest& request, std::vector<Held>& held) const;

  const std::vector<std::string> holder_;
  const OnEnd on_end_;
  Descriptor wake_;
  std::mutex mutex_;
  std::vector<Errand> errands_;  // guarded by the mutex
  bool is_ending_ = false;       // only on the thread
  std::thread thread_;
};

}  // namespace plovix::runner
