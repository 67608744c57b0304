// Saving on a disk that fails. The calls by which SQLite writes and syncs stand here in front of the C
// library's: the dynamic linker takes the program's own definitions first.
#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <set>

#include "storage_support.h"

namespace {

// The disk fails at call number `first`, and at all later ones when `for_ever`.
struct {
  int error = 0;  // 0: the disk is well
  int first = 0;
  bool for_ever = false;
  int calls = 0;
} fault;

template <class Result, class... Parameters>
Result CallOrFail(const char* name, Parameters... parameters) {
  if (fault.error != 0 && ++fault.calls >= fault.first && (fault.for_ever || fault.calls == fault.first)) {
    errno = fault.error;
    return -1;
  }
  return reinterpret_cast<Result (*)(Parameters...)>(dlsym(RTLD_NEXT, name))(parameters...);
}

}  // namespace

extern "C" ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset) {
  return CallOrFail<ssize_t>("pwrite64", file, bytes, count, offset);
}

extern "C" int fdatasync(int file) {
  return CallOrFail<int>("fdatasync", file);
}

extern "C" int ftruncate64(int file, off64_t length) noexcept {
  return CallOrFail<int>("ftruncate64", file, length);
}

namespace plovix::test {
namespace {

// Every single write and sync of creating a file, saving and replacing fails, once and from then on.
TEST(FailingDisk, LeavesAllOrNothingOfEachSave) {
  std::set<std::pair<int, int>> failures;
  const std::pair<int, bool> cases[] = {{ENOSPC, false}, {ENOSPC, true}, {EIO, false}, {EIO, true}};
  for (const auto& [error, for_ever] : cases) {
    bool happened = true;
    for (int call = 1; happened; ++call) {
      SCOPED_TRACE(testing::Message() << "error " << error << " at call " << call);
      const TempFolder folder;
      const std::string path = folder / "tasks.sqlite";
      std::vector<TaskRecord> stored;
      std::optional<SqliteStorage> storage;
      fault = {error, call, for_ever};
      try {
        storage.emplace(path);
        stored = {storage->Save(WholeTask("before"), kNow)};
        stored = {storage->Save(WholeTask("after", stored[0]), kNow)};
      } catch (const Failure& failure) {
        if (!stored.empty()) failures.insert({error, failure.Number()});
      }
      happened = fault.calls >= call;
      fault = {};
      if (storage) {
        EXPECT_EQ(storage->List(), stored);
        // In every other round the program goes on after the failure.
        if (call % 2 == 0) stored.push_back(storage->Save(WholeTask("next"), kNow));
      }
      storage.reset();
      EXPECT_EQ(SqliteStorage(path).List(), stored);
      ExpectIntact(path);
    }
  }
  // Every save is synced, and syncing fails as a broken disk whatever the reason is.
  const std::set<std::pair<int, int>> expected{{ENOSPC, failure_number::kDiskFull},
                                               {ENOSPC, failure_number::kDeviceError},
                                               {EIO, failure_number::kDeviceError}};
  EXPECT_EQ(failures, expected);
}

TEST(FailingDisk, LeavesAVersion1FileToBeOpenedAgain) {
  bool happened = true;
  for (int call = 1; happened; ++call) {
    SCOPED_TRACE(call);
    const TempFolder folder;
    const std::string path = folder / "tasks.sqlite";
    const TaskRecord task = MakeVersion(1, path);
    fault = {EIO, call, true};
    try {
      const SqliteStorage storage(path);
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.Number(), failure_number::kDeviceError);
    }
    happened = fault.calls >= call;
    fault = {};
    EXPECT_EQ(SqliteStorage(path).List(), std::vector{task});
    ExpectIntact(path);
  }
}

}  // namespace
}  // namespace plovix::test
