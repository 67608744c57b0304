// Real programs that do what programs should not. The tests start this program once more as holder and as
// manager.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <plovix/standalone/runner/holder.h>
#include <plovix/standalone/runner/output_file.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>

#include "runner_support.h"

namespace plovix::runner::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;
using enum StopReason;

struct Nasty {
  const char* does;
  const char* script;
  std::optional<int> status, signal;
  StopReason stopped = kNone;
  std::size_t leftovers = 0;  // each a "sleep"
  std::int64_t bytes = 0;
  std::chrono::milliseconds time_limit{60'000};
};

constexpr std::int64_t kMuch = std::int64_t{64} * 1024 * 1024;

const Nasty kNasties[] = {
    {"forks twice and leaves its session", "(setsid sleep 61 &); exit 4", 4, {}, {}, 1},
    {"ignores SIGTERM", "trap '' TERM; while :; do sleep 61; done", {}, SIGKILL, kTimeLimit, 0, 0, 300ms},
    {"leaves the pipe to somebody else", "echo held; sleep 61 & exit 0", 0, {}, {}, 1, 5},
    {"writes much", "head -c 67108864 /dev/zero", 0, {}, {}, 0, kMuch},
    {"does nothing", "exit 0", 0, {}},
    {"dies by a signal", "kill -USR1 $$", {}, SIGUSR1},
    {"closes its outputs", "exec >&- 2>&-; sleep 0.2; exit 7", 7, {}},
    {"starts a hundred", "i=0; while [ $i -lt 100 ]; do sleep 61 & i=$((i+1)); done; exit 3", 3, {}, {}, 20},
    {"stops itself", "kill -STOP $$", {}, SIGTERM, kTimeLimit, 0, 0, 300ms},
};

TEST(Programs, LeaveNothingBehindWhateverTheyDo) {
  const OwnFolder folder;
  Runs runs;
  std::int64_t run = 0;
  for (const Nasty& nasty : kNasties) {
    SCOPED_TRACE(nasty.does);
    const std::string mark = "PLOVIX_MARK=" + std::to_string(getpid()) + "." + std::to_string(++run) + ";";
    ProgramRequest request = Script(folder, nasty.script, mark);
    request.time_limit = nasty.time_limit;
    request.patience = 100ms;
    const ProgramEnd end = runs.EndOf(std::move(request));
    EXPECT_EQ(end.failure, "");
    EXPECT_EQ(end.exit_status, nasty.status);
    EXPECT_EQ(end.signal, nasty.signal);
    EXPECT_EQ(end.stopped, nasty.stopped);
    EXPECT_EQ(end.leftovers.size(), nasty.leftovers);
    EXPECT_THAT(end.leftovers, testing::Each(StartsWith("s")));  // a sleep, or the shell about to become one
    EXPECT_EQ(end.output_bytes, nasty.bytes);
    EXPECT_EQ(CountWith(mark), 0);
    struct stat status {};
    ASSERT_EQ(stat((folder / "output").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
  }
}

TEST(Programs, ThatCannotBeExecutedSayWhy) {
  const OwnFolder folder;
  Runs runs;
  const std::string text = folder / "text", lost = folder / "lost";
  std::ofstream(text) << "echo no first line\n";
  std::ofstream(lost) << "#!/no/such/interpreter\n";
  for (const auto& path : {text, lost}) chmod(path.c_str(), 0700);
  const struct {
    std::string path, folder, words;
  } cases[] = {
      {"/no/such", "/", "/no/such: the program cannot be executed: it does not exist"},
      {"/etc/passwd", "/", "permission is denied"},
      {"/etc", "/", "it is a folder"},
      {text, "/", "neither a program nor a script"},
      {lost, "/", "the interpreter that it names does not exist"},
      {"sh", "/", "sh: the path is not absolute"},
      {"/bin/sh", "/no/such", "/no/such: the program cannot start in this folder: it does not exist"}};
  for (const auto& row : cases) {
    ProgramRequest request = Script(folder, "", "A=1");
    request.path = row.path;
    request.folder = row.folder;
    const ProgramEnd end = runs.EndOf(std::move(request));
    EXPECT_THAT(end.failure, HasSubstr(row.words));
    EXPECT_FALSE(end.exit_status);
  }
  fs::create_symlink(text, folder / "link");
  ProgramRequest request = Script(folder, "", "A=1");
  request.arguments[1].assign(1'000'000, 'x');  // also more than a socket takes at once
  EXPECT_THAT(runs.EndOf(request).failure, HasSubstr("its arguments and variables are too long"));
  for (const auto& [path, words] : {std::pair("no/such", "it does not exist"), {"link", "it is a link"}}) {
    request.output_path = folder / path;
    EXPECT_THAT(runs.EndOf(request).failure, HasSubstr(std::string("the output cannot be kept: ") + words));
  }
}

TEST(Programs, GetTheirArgumentsAndVariablesAndNothingElse) {
  const OwnFolder folder;
  Runs runs;
  ProgramRequest request =
      Script(folder, "pwd; cat; printf '<%s>' \"$@\"; env; ls /proc/self/fd; echo err >&2", "A=b c");
  request.arguments.insert(request.arguments.end(), {"sh", "a b", "", "$(id); 'x\"*"});
  request.environment.emplace_back("SECRET=s3cret");
  request.secrets = {"s3cret"};
  request.lock_path = folder / "locks";
  std::ofstream(request.lock_path) << "";
  EXPECT_TRUE(runs.EndOf(std::move(request)).Succeeded());
  const std::string output = BytesOf(folder / "output");
  EXPECT_THAT(output, StartsWith("/\n<a b><><$(id); 'x\"*>"));
  EXPECT_THAT(output, HasSubstr("A=b c\n"));
  EXPECT_THAT(output, HasSubstr("SECRET=***\n"));
  EXPECT_THAT(output, testing::EndsWith("\n0\n1\n2\n3\nerr\n"));  // 3 is the folder that is listed
  EXPECT_EQ(output.find("HOME="), std::string::npos);
}

TEST(Programs, HaveTheBeginningAndTheEndOfTheirOutputKept) {
  const OwnFolder folder;
  Runs runs;
  const auto write = [](std::size_t count, char letter) {
    return "head -c " + std::to_string(count) + " /dev/zero | tr '\\0' " + letter + "; ";
  };
  const std::string middle = "\n[... 3000000 bytes left out ...]\n";
  for (const std::size_t left_out : {0U, 3'000'000U}) {
    const std::string script = write(kFirstOutput, 'a') + write(left_out, 'b') + write(kLastOutput, 'c');
    ProgramRequest request = Script(folder, script, "A=1");
    const ProgramEnd end = runs.EndOf(std::move(request));
    EXPECT_EQ(end.left_out, static_cast<std::int64_t>(left_out));
    EXPECT_EQ(BytesOf(folder / "output"),
              std::string(kFirstOutput, 'a') + (left_out == 0 ? "" : middle) + std::string(kLastOutput, 'c'));
  }
}

// Whether somebody has the lock on that byte.
bool IsLocked(const std::string& path, std::int64_t offset) {
  const Descriptor file(open(path.c_str(), O_RDWR | O_CLOEXEC));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_start = offset;
  lock.l_len = 1;
  EXPECT_EQ(fcntl(file.Get(), F_OFD_GETLK, &lock), 0);
  return lock.l_type != F_UNLCK;
}

TEST(Programs, AreStoppedWithTheReasonAndHoldTheirLockUntilTheTreeIsEmpty) {
  const OwnFolder folder;
  Runs runs;
  const std::string locks = folder / "locks", mark = "PLOVIX_MARK=" + std::to_string(getpid()) + ".lock;";
  std::ofstream(locks) << "";
  ProgramRequest request = Script(folder, "trap '' TERM; (sleep 61); sleep 61", mark);
  request.patience = 200ms;
  request.lock_path = locks;
  request.lock_offset = 7;
  runs.Start(request);
  EXPECT_TRUE(Happens([&] { return CountWith(mark) >= 2; }));
  EXPECT_TRUE(IsLocked(locks, 7));
  EXPECT_FALSE(IsLocked(locks, 8));
  ProgramRequest second = request;
  second.run = 2;
  EXPECT_THAT(runs.EndOf(std::move(second)).failure, HasSubstr("another process has it"));
  (*runs).Stop(0, kCancelled);
  (*runs).Stop(0, kDrained);
  const ProgramEnd end = runs.End(0);
  EXPECT_EQ(end.stopped, kCancelled);
  EXPECT_EQ(end.signal, SIGKILL);
  EXPECT_FALSE(IsLocked(locks, 7));
  EXPECT_EQ(CountWith(mark), 0);
}

TEST(Programs, AreKilledBeforeTheDeadlineUnlessItIsExtended) {
  const OwnFolder folder;
  Runs runs;
  ProgramRequest request = Script(folder, "sleep 3", "A=1");
  request.deadline = BootClock::now() + std::chrono::seconds(kSecondsBeforeDeadline) + 200ms;
  const ProgramEnd end = runs.EndOf(request);
  EXPECT_EQ(end.stopped, kDeadline);
  EXPECT_EQ(end.signal, SIGKILL);
  request.run = 1;
  request.deadline = BootClock::now() + std::chrono::seconds(kSecondsBeforeDeadline) + 2s;
  runs.Start(request);
  (*runs).Extend(BootClock::now() + 1h);
  EXPECT_TRUE(runs.End(1).Succeeded());
}

// Both ways in which a manager can be lost: it is killed, or it ends as it should.
TEST(Programs, DoNotOutliveTheirManagerOrTheirHolder) {
  const OwnFolder folder;
  const std::string mark = "PLOVIX_MARK=" + std::to_string(getpid()) + ".manager;";
  const std::string script = "trap '' TERM; (setsid sleep 61 &); sleep 61";
  {
    std::string word = "--manage", output = folder / "output", program = kThisProgram, name = mark,
                text = script;
    char* words[] = {program.data(), word.data(), output.data(), text.data(), name.data(), nullptr};
    pid_t manager = 0;
    ASSERT_EQ(posix_spawn(&manager, program.c_str(), nullptr, nullptr, words, environ), 0);
    EXPECT_TRUE(Happens([&] { return fs::exists(output + ".ready"); }));
    kill(manager, SIGKILL);
    waitpid(manager, nullptr, 0);
    const auto killed = BootClock::now();
    EXPECT_TRUE(Happens([&] { return CountWith(mark) == 0; }));
    EXPECT_LT(BootClock::now() - killed, 8s);  // not only once the copy of the manager has ended
  }
  {
    Runs runs;
    runs.Start(Script(folder, script, mark));
    EXPECT_TRUE(Happens([&] { return CountWith(mark) >= 3; }));
  }
  EXPECT_EQ(CountWith(mark), 0);
  Runs runs;
  EXPECT_THAT(runs.EndOf(Script(folder, "kill -KILL $PPID; sleep 61", mark)).failure,
              HasSubstr("with signal 9"));
  EXPECT_TRUE(Happens([&] { return CountWith(mark) == 0; }));
}

}  // namespace

// Starts one program and waits for it to end. A copy of this process keeps the holder's socket open.
int Manage(const std::string& output, const std::string& script, const std::string& mark) {
  ProgramRequest request = Script(OwnFolder(), script, mark);
  request.output_path = output;
  Runs runs;
  runs.Start(std::move(request));
  if (Happens([&] { return CountWith(mark) >= 3; }) && fork() == 0) {
    for (const int standard : {0, 1, 2}) close(standard);
    std::this_thread::sleep_for(10s);
    _exit(0);
  }
  std::ofstream(output + ".ready") << "";
  return runs.End(0).Succeeded() ? 0 : 1;
}

}  // namespace plovix::runner::test

int main(int count, char** words) {
  const std::string word = count > 1 ? words[1] : "";
  if (word == plovix::runner::kHoldWord) return plovix::runner::HoldProgram();
  if (word == "--manage") return plovix::runner::test::Manage(words[2], words[3], words[4]);
  testing::InitGoogleMock(&count, words);
  return RUN_ALL_TESTS();
}
