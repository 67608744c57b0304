// What the tests of programs share: a folder of their own, programs that are started by a launcher, and a
// look at what they leave behind.
#pragma once

#include <plovix/standalone/runner/launcher.h>

#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace plovix::runner::test {

namespace fs = std::filesystem;

// Removed at the end of the test.
class OwnFolder final {
 public:
  OwnFolder() {
    std::string name = (fs::temp_directory_path() / "plovix-runner-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~OwnFolder() { fs::remove_all(path_); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;
  [[nodiscard]] std::string operator/(const char* name) const { return (path_ / name).string(); }

 private:
  fs::path path_;
};

inline std::string BytesOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

// How many processes have the variable in their environment.
inline int CountWith(const std::string& variable) {
  int count = 0;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc"))
    if (fs::exists(entry.path() / "environ", error))
      count += BytesOf(entry.path() / "environ").find(variable) != std::string::npos;
  return count;
}
// Waits a minute at most, for a machine that is busy with other things.
template <class Condition>
bool Happens(const Condition& condition) {
  for (int tries = 0; tries < 6000; ++tries) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

inline const std::string kThisProgram = fs::read_symlink("/proc/self/exe").string();

// "/bin/sh -c SCRIPT" with a variable by which its processes are found, and files in the folder.
inline ProgramRequest Script(const OwnFolder& folder, const std::string& script, const std::string& mark) {
  ProgramRequest request;
  request.path = "/bin/sh";
  request.arguments = {"-c", script};
  request.environment = {"PATH=/usr/bin:/bin", mark};
  request.folder = "/";
  request.output_path = folder / "output";
  return request;
}

class Runs final {
 public:
  void Start(ProgramRequest request) { launcher_.Start(std::move(request)); }
  ProgramEnd End(std::int64_t run) {
    std::unique_lock lock(mutex_);
    const bool has_ended =
        ended_.wait_for(lock, std::chrono::minutes(2), [&] { return ends_.contains(run); });
    return has_ended ? ends_.at(run) : ProgramEnd{run, "it never ended", {}, {}, {}, {}, 0, 0, {}};
  }
  ProgramEnd EndOf(ProgramRequest request) {
    const std::int64_t run = request.run;
    {
      const std::lock_guard lock(mutex_);
      ends_.erase(run);
    }
    Start(std::move(request));
    return End(run);
  }
  Launcher& operator*() { return launcher_; }

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  std::map<std::int64_t, ProgramEnd> ends_;
  Launcher launcher_{{kThisProgram, "--hold"}, [this](const ProgramEnd& end) {
                       const std::lock_guard lock(mutex_);
                       ends_[end.run] = end;
                       ended_.notify_all();
                     }};
};

}  // namespace plovix::runner::test
