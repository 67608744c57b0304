#include "execute.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <csignal>

namespace plovix::runner {
namespace {

// What the child reports if it cannot become the program.
struct ChildFailure {
  enum class Step { kNone, kPrepare, kFolder, kProgram };
  Step step = Step::kNone;
  int code = 0;
};

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  // The system's call takes writable texts and does not write.
  for (const std::string& text : texts)
    pointers.push_back(const_cast<char*>(text.c_str()));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  pointers.push_back(nullptr);
  return pointers;
}

class Child {
 public:
  Child(const ProgramRequest& request, int output, int report)
      : request_(request), words_{request.path}, output_(output), report_(report), parent_(getpid()) {
    words_.insert(words_.end(), request.arguments.begin(), request.arguments.end());
    arguments_ = Pointers(words_);
    environment_ = Pointers(request.environment);
  }

  [[noreturn]] void Become() {
    ResetSignals();
    const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (!nothing.IsOpen() || dup2(nothing.Get(), STDIN_FILENO) < 0 || dup2(output_, STDOUT_FILENO) < 0 ||
        dup2(output_, STDERR_FILENO) < 0 || setpgid(0, 0) != 0 || prctl(PR_SET_PDEATHSIG, SIGKILL) != 0)
      Report(ChildFailure::Step::kPrepare);
    if (getppid() != parent_) _exit(1);  // it ended before its end was to be noticed
    if (chdir(request_.folder.c_str()) != 0) Report(ChildFailure::Step::kFolder);
    execve(request_.path.c_str(), arguments_.data(), environment_.data());
    Report(ChildFailure::Step::kProgram);
  }

 private:
  static void ResetSignals() {
    for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);  // a few refuse
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
  }

  [[noreturn]] void Report(ChildFailure::Step step) const {
    const ChildFailure failure{step, errno};
    (void)!write(report_, &failure, sizeof failure);
    _exit(1);
  }

  const ProgramRequest& request_;
  std::vector<std::string> words_;
  std::vector<char*> arguments_, environment_;
  int output_, report_;
  pid_t parent_;
};

std::string ProgramWords(const std::string& path, int code) {
  struct stat status {};
  const bool exists = stat(path.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) return "it is a folder";
  if (exists && code == ENOENT) return "the interpreter that it names does not exist";
  if (code == ENOEXEC) return "it is neither a program nor a script that begins with #! and its interpreter";
  if (code == E2BIG) return "its arguments and variables are too long";
  return SystemWords(code);
}

std::string WordsOf(const ProgramRequest& request, const ChildFailure& failure) {
  switch (failure.step) {
    case ChildFailure::Step::kFolder:
      return request.folder + ": the program cannot start in this folder: " + SystemWords(failure.code);
    case ChildFailure::Step::kProgram:
      return request.path + ": the program cannot be executed: " + ProgramWords(request.path, failure.code);
    case ChildFailure::Step::kNone:
    case ChildFailure::Step::kPrepare:
      break;
  }
  return request.path + ": the program cannot be started: " + SystemWords(failure.code);
}

}  // namespace

Execution Execute(const ProgramRequest& request, int output) {
  for (const std::string* path : {&request.path, &request.folder}) {
    if (!path->starts_with('/')) return {0, *path + ": the path is not absolute, it must begin with \"/\""};
  }
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return {0, WordsOf(request, {{}, errno})};
  const Descriptor report(ends[0]);
  Descriptor told(ends[1]);  // closed by becoming the program
  Child child(request, output, told.Get());
  const pid_t id = fork();
  if (id == 0) child.Become();
  if (id < 0) return {0, WordsOf(request, {{}, errno})};
  told.Close();
  ChildFailure failure;
  ssize_t count = 0;
  do {
    count = read(report.Get(), &failure, sizeof failure);
  } while (count < 0 && errno == EINTR);
  if (count != sizeof failure) return {id, {}};
  waitpid(id, nullptr, 0);
  return {0, WordsOf(request, failure)};
}

}  // namespace plovix::runner
