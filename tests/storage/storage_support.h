// What the storage's tests share: a folder of their own, tasks to store, files as bytes, plain SQL on a
// file, this program as another process, and a disk that fails.
#pragma once

#include <plovix/standalone/storage/sqlite_storage.h>
#include <sys/types.h>

#include <QSqlDatabase>
#include <QString>
#include <QVariant>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace plovix::test {

inline constexpr DateTime kNow{std::chrono::local_days{std::chrono::year{2031} / 2 / 3} +
                               std::chrono::seconds{14706}};
inline constexpr std::chrono::milliseconds kImpatient{50};

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  [[nodiscard]] std::string operator/(const std::string& name) const { return path_ / name; }
  // The bytes of every file in it but the shared-memory files, by name.
  [[nodiscard]] std::map<std::string, std::string> Bytes() const;

 private:
  std::filesystem::path path_;
};

void WriteFile(const std::string& path, const std::string& bytes);

// A connection of a program other than the storage.
class OtherProgram {
 public:
  explicit OtherProgram(const std::string& path);
  ~OtherProgram();
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  // Runs the statement, which must succeed; gives back the first column of the first row.
  QVariant Run(const QString& sql);

 private:
  QSqlDatabase database_;
};

// A task whose every text and action follows from its name, so that half a task shows.
[[nodiscard]] TaskRecord WholeTask(const std::string& name);
[[nodiscard]] bool IsWhole(const TaskRecord& task);

// This program once more, saving whole tasks into `path`: `count` times, 0 for ever. It says
// "ID VERSION NAME" on a line after each save.
class SavingProcess {
 public:
  SavingProcess(const std::string& path, const std::string& prefix, int count);
  ~SavingProcess();
  SavingProcess(const SavingProcess&) = delete;
  SavingProcess& operator=(const SavingProcess&) = delete;
  // The next whole line; empty at the end.
  [[nodiscard]] std::string Line();
  void Kill() const;
  [[nodiscard]] int ExitCode();

 private:
  pid_t pid_ = -1;
  FILE* output_ = nullptr;
};
int RunSavingProcess(const std::string& path, const std::string& prefix, int count);

// While it lives, the disk fails with `error` at this process's write or sync call number `first`, and
// at all later ones when `for_ever`.
class DiskFault {
 public:
  DiskFault(int error, int first, bool for_ever);
  ~DiskFault();
  DiskFault(const DiskFault&) = delete;
  DiskFault& operator=(const DiskFault&) = delete;
  [[nodiscard]] bool Happened() const;
};

}  // namespace plovix::test
