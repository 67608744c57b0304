// Sees to it that the tasks of a file are run while a window is open: starts a manager of the window's own
// where there is none, and ends it with the window. Used by the runner bar.
#pragma once

#include <plovix/standalone/storage/manager_lock.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovix::app {

// Who runs the tasks of a file.
struct WhoRuns {
  enum class Who { kNobody, kStarting, kThisWindow, kOther };
  Who who = Who::kNobody;
  ManagerRecord other;  // of kOther
  std::string problem;  // of kNobody: why this window does not; empty: it was not asked to
  bool operator==(const WhoRuns&) const = default;
};

// On the application's thread, with its event loop.
class WindowManager final {
 public:
  struct Settings {
    std::string program;   // plovix-manager
    std::string database;  // exists
    std::optional<std::string> data;
    bool starts = true;  // by itself; else only when it is asked to
    bool as_root = false;
  };
  // Fails if the task file cannot be opened. `changed` is called when Who has changed.
  WindowManager(Settings settings, std::function<void()> changed);
  // As Leave.
  ~WindowManager();
  WindowManager(const WindowManager&) = delete;
  WindowManager& operator=(const WindowManager&) = delete;

  [[nodiscard]] const WhoRuns& Who() const noexcept { return who_; }
  // After a failure, or where it does not start by itself.
  void Start(bool as_root);
  // The runs of this window's own manager that are under way.
  [[nodiscard]] std::size_t Running();
  // Ends its own manager, and what that runs unless it may `drain`, without waiting for it.
  void Leave(bool drain);

 private:
  void Look();
  [[nodiscard]] WhoRuns Judge(const std::vector<ManagerRecord>& managers);
  void StartOwn();
  void OwnEnded();
  void TakeWords();
  [[nodiscard]] bool IsOwn(const ManagerRecord& manager) const;

  Settings settings_;
  std::function<void()> changed_;
  SqliteRunStore runs_;
  QTimer glance_;
  std::unique_ptr<QProcess> own_;
  QElapsedTimer started_;
  std::optional<std::int64_t> number_;  // its own manager's, once it is there
  std::string last_words_, problem_;
  bool wanted_;
  WhoRuns who_;
};

}  // namespace plovix::app
