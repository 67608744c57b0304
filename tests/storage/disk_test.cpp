// Task files on disks and systems that fail. The calls by which SQLite reaches its files stand here in front
// of the C library's: the dynamic linker takes the program's own definitions first.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <set>

#include "storage_support.h"

namespace {

enum Call : unsigned { kWrite = 1, kSync = 2, kTruncate = 4, kOpen = 8, kRead = 16, kLock = 32, kMap = 64 };
constexpr int kKilled = -1;  // instead of an error

// Fails the call number `first` of those in `calls`, and all later ones when `for_ever`.
struct Fault {
  const char* name = "";
  unsigned calls = 0;
  int error = 0;
  std::set<int> failures = {};  // the numbers by which a person may be told of it
  bool for_ever = false;
  int first = 0;
};
Fault fault;
int calls_made = 0;
bool armed = false;

bool Fails(Call call) {
  if (!armed || (fault.calls & call) == 0) return false;
  ++calls_made;
  return fault.for_ever ? calls_made >= fault.first : calls_made == fault.first;
}

int Fail() {
  if (fault.error == kKilled) raise(SIGKILL);
  errno = fault.error;
  return -1;
}

template <class Result, class... Parameters>
Result Real(const char* name, Parameters... parameters) {
  return reinterpret_cast<Result (*)(Parameters...)>(dlsym(RTLD_NEXT, name))(parameters...);
}

}  // namespace

extern "C" {

// Of what cannot be written, half arrives.
ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset) {
  const bool fails = Fails(kWrite);
  const auto written = Real<ssize_t>("pwrite64", file, bytes, fails ? count / 2 : count, offset);
  return fails ? Fail() : written;
}
ssize_t pread64(int file, void* bytes, size_t count, off64_t offset) {
  return Fails(kRead) ? Fail() : Real<ssize_t>("pread64", file, bytes, count, offset);
}
int fdatasync(int /*file*/) {
  return Fails(kSync) ? Fail() : 0;  // no test takes the power away
}
int ftruncate64(int file, off64_t length) noexcept {
  return Fails(kTruncate) ? Fail() : Real<int>("ftruncate64", file, length);
}
int open64(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const auto mode = va_arg(more, mode_t);
  va_end(more);
  return Fails(kOpen) ? Fail() : Real<int>("open64", path, flags, mode);
}
int fcntl64(int file, int command, ...) {
  va_list more;
  va_start(more, command);
  void* const argument = va_arg(more, void*);
  va_end(more);
  const bool locks = command == F_SETLK && static_cast<flock*>(argument)->l_type != F_UNLCK;
  return locks && Fails(kLock) ? Fail() : Real<int>("fcntl64", file, command, argument);
}
void* mmap64(void* address, size_t length, int protection, int flags, int file, off64_t offset) noexcept {
  if (!Fails(kMap)) return Real<void*>("mmap64", address, length, protection, flags, file, offset);
  Fail();
  return MAP_FAILED;
}
int usleep(useconds_t time) {
  return armed ? 0 : Real<int>("usleep", time);  // between attempts that are known to fail
}

}  // extern "C"

namespace plovix::test {
namespace {

namespace fs = std::filesystem;
constexpr std::chrono::milliseconds kHasty{1};

// With the version that the file has before it is opened.
std::pair<int, Contents> StateOf(const std::string& path) {
  int version = 0;
  if (fs::exists(path)) {
    Connection connection(path, kImpatient, Access::kReadWrite);
    version = SchemaVersion(connection, static_cast<int>(MigrationSteps().size()));
  }
  Contents contents = ContentsOf(path);
  ExpectIntact(path);
  return {version, std::move(contents)};
}

// Something that a program does: what is there before, the objects by which it does it, and the deed.
struct Operation {
  const char* name;
  std::function<void(const std::string& path)> prepare;
  std::function<std::function<void()>(const std::string& path)> open;
  bool is_opening = false;  // in steps: it may be refused behind some that arrived
};

constexpr Instant kThen{};

CursorMove MoveOf(std::int64_t task, std::optional<Instant> from, Instant to) {
  RunRecord run;
  run.task = task;
  run.due = to;
  return {task, from, to, 1, "schedule", to, {run}};
}

// With everything in its log, as after a crash. Run 1, of task 1, is under way; run 2, of task 2, waits.
void Fill(const std::string& path) {
  const TempFolder folder;
  SqliteStorage storage(folder / "tasks");
  for (const char* name : {"before", "other"}) storage.Save(WholeTask(name), kNow);
  SqliteUsersAndTags tables(folder / "tasks");  // closed, it would empty the log
  tables.SaveTag({"tag", {{"en", "before"}, {"fr", "avant"}}}, {});
  SqliteRunStore runs(folder / "tasks");
  runs.MoveCursor(MoveOf(1, std::nullopt, kThen));
  (void)runs.Claim(kThen, 1);
  runs.MoveCursor(MoveOf(2, std::nullopt, kThen));
  CopyWithLog(folder / "tasks", path);
}

// The same with a held task 3, and two more runs of task 2 that are over.
void FillMore(const std::string& path) {
  const TempFolder folder;
  Fill(folder / "tasks");
  TaskRecord held = WholeTask("held");
  held.held = true;
  SqliteStorage storage(folder / "tasks");
  storage.Save(held, kNow);
  SqliteRunStore runs(folder / "tasks");
  RunRecord run;
  run.task = 2;
  run.origin = RunOrigin::kManual;
  for (int i = 0; i < 2; ++i) runs.Cancel(runs.Request(run).id, "why", {"ann", kThen});
  CopyWithLog(folder / "tasks", path);
}

template <class Object, class Use>
auto With(const Use& use) {
  return [use](const std::string& path) -> std::function<void()> {
    auto object = std::make_shared<Object>(path, kHasty);
    return [object, use] { use(*object); };
  };
}

// Opening itself is the deed.
std::function<void()> Open(const std::string& path) {
  return [path] { EXPECT_EQ(SqliteUsersAndTags(path, kHasty).Users().size(), 1U); };
}

std::vector<Operation> Operations() {
  const auto change = [](auto& s) { s.Save(WholeTask("after", *s.Load(1)), kNow); };
  const auto tag = [](auto& t) { t.SaveTag({"tag", {{"en", "after"}}}, t.Tags().front().texts); };
  const auto users = [](SqliteUsersAndTags& tables) {
    tables.SaveUsers({FirstAdministrator(), {.id = "u", .name = "User", .groups = {"g", "h"}}},
                     {FirstAdministrator()});
  };
  const LedgerRow done{"i:1", LedgerState::kDone, "print", 1, ""};
  const auto claim = [](auto& runs) { EXPECT_EQ(runs.Claim(kThen, 2)->id, 2); };
  const auto finish = [done](auto& runs) {
    EXPECT_TRUE(runs.Finish({1, 1, RunState::kPartly, kThen, kThen, "why", 1, 0, {}, {done}, ""}));
  };
  const auto write = [done](auto& runs) { EXPECT_TRUE(runs.Write(*runs.Run(1), {done})); };
  const auto plan = [](auto& runs) {
    EXPECT_TRUE(runs.MoveCursor(MoveOf(2, kThen, kThen + std::chrono::hours(1))));
  };
  const auto cancel = [](auto& runs) { EXPECT_TRUE(runs.Cancel(2, "why", {"ann", kThen})); };
  const auto trim = [](auto& runs) { EXPECT_TRUE(runs.Trim(1, 9)); };
  const auto release = [](auto& runs) { EXPECT_TRUE(runs.Release(3, 1, {"ann", kThen})); };
  const auto restore = [](auto& runs) { EXPECT_TRUE(runs.PauseIfRestored(true, kThen)); };
  const auto read_all = [](SqliteStorage& storage) {
    EXPECT_EQ(storage.List().size(), 2U);
    const auto rows = storage.OpenRows("SELECT Name FROM VeloAutoTasks");
    for (const char* name : {"before", "other"}) EXPECT_TRUE(rows->Next() && rows->Text(0) == name);
  };
  return {{"create the file", [](auto&) {}, Open, true},
          {"open the file", Fill, Open, true},
          {"bring version 1 up to date", [](auto& path) { MakeVersion(1, path); }, Open, true},
          {"save a new task", Fill, With<SqliteStorage>([](auto& s) { s.Save(WholeTask("after"), kNow); })},
          {"change a task", Fill, With<SqliteStorage>(change)},
          {"delete a task", Fill, With<SqliteStorage>([](auto& storage) { storage.Delete(1, 1); })},
          {"save the users", Fill, With<SqliteUsersAndTags>(users)},
          {"save a tag", Fill, With<SqliteUsersAndTags>(tag)},
          {"claim a run", Fill, With<SqliteRunStore>(claim)},
          {"finish a run", Fill, With<SqliteRunStore>(finish)},
          {"write the ledger", Fill, With<SqliteRunStore>(write)},
          {"move a cursor", Fill, With<SqliteRunStore>(plan)},
          {"cancel a run", Fill, With<SqliteRunStore>(cancel)},
          {"trim runs", FillMore, With<SqliteRunStore>(trim)},
          {"release a task", FillMore, With<SqliteRunStore>(release)},
          {"pause a restored file", FillMore, With<SqliteRunStore>(restore)},
          {"read tasks", Fill, With<SqliteStorage>(read_all)},
          {"read tags", Fill, With<SqliteUsersAndTags>([](auto& t) { EXPECT_EQ(t.Tags().size(), 1U); })}};
}

std::vector<Fault> Faults() {
  using namespace failure_number;
  const Fault once[] = {{"no room", kWrite, ENOSPC, {kDiskFull}},
                        {"over quota", kWrite, EDQUOT, {kDiskFull}},
                        {"write error", kWrite, EIO, {kDeviceError}},
                        {"no room at a sync", kSync, ENOSPC, {kDiskFull}},
                        {"sync error", kSync, EIO, {kDeviceError}},
                        {"cut error", kTruncate, EIO, {kDeviceError}},
                        {"too many files", kOpen, EMFILE, {kFileAccess, kPermissionDenied}},
                        {"read error", kRead, EIO, {kDeviceError, kInvalidFormat}},
                        {"locked", kLock, EAGAIN, {kPermissionDenied, kDeviceError}},
                        {"no locks", kLock, ENOLCK, {kDeviceError, kPermissionDenied}},
                        {"no memory map", kMap, ENOMEM, {kDeviceError}}};
  std::vector<Fault> faults{{"killed", ~0U, kKilled}};
  for (const bool for_ever : {false, true})
    for (Fault each : once) each.for_ever = for_ever, faults.push_back(each);
  return faults;
}

enum class End { kDone, kRefused, kUnknown, kKilled };

// The deed under the present fault, its objects closed under it as well.
End Do(const Operation& operation, const std::string& path) {
  auto deed = operation.open(path);
  armed = true;
  try {
    deed();
    deed = nullptr;
    armed = false;
    return End::kDone;
  } catch (const Failure& failure) {
    armed = false;
    const std::string& words = failure.Description();
    // The reason why a new file's journal fails is lost with the journal.
    const bool lost = operation.is_opening && failure.Number() == failure_number::kDeviceError;
    EXPECT_TRUE(lost || fault.failures.contains(failure.Number())) << failure.Number() << words;
    EXPECT_TRUE(words.starts_with(path)) << words;
    if (words.find("not known") != std::string::npos) return End::kUnknown;
    if (fault.first % 2 != 0) return End::kRefused;
    deed();  // in every other round the person tries again
    return End::kDone;
  }
}

// The same in a process that ends at the fault.
End DoAndDie(const Operation& operation, const std::string& path) {
  const pid_t child = fork();
  if (child == 0) {
    const auto deed = operation.open(path);
    armed = true;
    deed();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : WEXITSTATUS(status) == 0);
  return WIFSIGNALED(status) ? End::kKilled : End::kDone;
}

// Every single call of every kind fails, once and from then on, and at every single one the process is
// killed.
int Sweep(const Operation& operation) {
  const TempFolder prepared;
  const std::string file = prepared / "file", changed = prepared / "changed";
  operation.prepare(file);
  CopyWithLog(file, changed);
  operation.open(changed)();
  const auto after = StateOf(changed);
  CopyWithLog(file, prepared / "unchanged");
  const auto before = StateOf(prepared / "unchanged");
  int faults = 0;
  bool waits_for_disk = false;
  for (const Fault& each : Faults()) {
    bool happened = true;
    const int step = each.calls == kSync ? 1 : PLOVIX_WALK_DIVISOR;  // there are few syncs
    for (int call = 1; happened; call += step) {
      SCOPED_TRACE(testing::Message() << operation.name << ": " << each.name << " at call " << call);
      const auto [folder, path] = OwnTaskFile();
      CopyWithLog(file, path);
      fault = each;
      fault.first = call;
      calls_made = 0;
      const End end = each.error == kKilled ? DoAndDie(operation, path) : Do(operation, path);
      happened = each.error == kKilled ? end == End::kKilled : calls_made >= call;
      if (!happened) continue;
      const auto found = StateOf(path);
      ++faults;
      EXPECT_TRUE(found == before || found == after);
      waits_for_disk |= each.calls == kSync && end == End::kRefused;
      EXPECT_TRUE(end != End::kDone || found == after);
      EXPECT_TRUE(end != End::kRefused || operation.is_opening || found == before);
    }
  }
  EXPECT_TRUE(waits_for_disk || before == after) << operation.name;
  return faults;
}

class FailingDisk : public testing::TestWithParam<std::size_t> {};  // which operation

TEST_P(FailingDisk, LeavesTheOldStateOrTheNewOne) {
  const Operation operation = Operations().at(GetParam());
  const int faults = Sweep(operation);
  std::printf("%-28s%6d faults\n", operation.name, faults);
  EXPECT_GT(faults, 9) << operation.name;
}

INSTANTIATE_TEST_SUITE_P(Disk, FailingDisk, testing::Range(std::size_t{0}, Operations().size()));

}  // namespace
}  // namespace plovix::test
