#include "storage_support.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QSqlError>
#include <QSqlQuery>
#include <array>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>

namespace plovix::test {
namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::string name = fs::temp_directory_path() / "plovix-storage-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  chmod(name.c_str(), 0755);
  path_ = fs::canonical(name);
}

TempFolder::~TempFolder() {
  std::error_code error;
  fs::remove_all(path_, error);
}

std::map<std::string, std::string> TempFolder::Bytes() const {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(path_)) {
    const std::string name = entry.path().filename();
    if (!entry.is_regular_file() || name.ends_with("-shm")) continue;
    std::ostringstream bytes;
    bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    files[name] = bytes.str();
  }
  return files;
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

OtherProgram::OtherProgram(const std::string& path) {
  static int count = 0;
  database_ = QSqlDatabase::addDatabase("QSQLITE", QStringLiteral("other-%1").arg(++count));
  database_.setDatabaseName(QString::fromStdString(path));
  EXPECT_TRUE(database_.open());
}

OtherProgram::~OtherProgram() {
  const QString name = database_.connectionName();
  database_.close();
  database_ = QSqlDatabase();
  QSqlDatabase::removeDatabase(name);
}

QVariant OtherProgram::Run(const QString& sql) {
  QSqlQuery query(database_);
  EXPECT_TRUE(query.exec(sql)) << sql.toStdString() << ": " << query.lastError().text().toStdString();
  return query.next() ? query.value(0) : QVariant();
}

TaskRecord WholeTask(const std::string& name) {
  const std::size_t hash = std::hash<std::string>{}(name);
  TaskRecord task;
  task.name = name;
  for (std::size_t i = 0; i < hash % 400; ++i) task.description += name + "/";
  task.categories = {{name, hash % 2 == 0}};
  for (std::size_t i = 0; i < hash % 7; ++i) {
    task.actions.push_back({"runProgram", name, 1, 2, {{"path", task.description}}});
  }
  return task;
}

bool IsWhole(const TaskRecord& task) {
  TaskRecord whole = WholeTask(task.name);
  whole.id = task.id;
  whole.version = task.version;
  whole.modified = task.modified;
  return task == whole;
}

SavingProcess::SavingProcess(const std::string& path, const std::string& prefix, int count) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  std::array<std::string, 5> words{"saver", "--save", path, prefix, std::to_string(count)};
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, ends[0]);
  posix_spawn_file_actions_addclose(&actions, ends[1]);
  EXPECT_EQ(posix_spawn(&pid_, "/proc/self/exe", &actions, nullptr, arguments.data(), environ), 0);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  output_ = fdopen(ends[0], "r");
}

SavingProcess::~SavingProcess() {
  if (pid_ > 0) {
    Kill();
    (void)ExitCode();
  }
  std::fclose(output_);
}

std::string SavingProcess::Line() {
  std::string line;
  for (int byte = std::fgetc(output_); byte != EOF; byte = std::fgetc(output_)) {
    if (byte == '\n') return line;
    line += static_cast<char>(byte);
  }
  return {};
}

void SavingProcess::Kill() const {
  kill(pid_, SIGKILL);
}

int SavingProcess::ExitCode() {
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int RunSavingProcess(const std::string& path, const std::string& prefix, int count) {
  const auto say = [](const TaskRecord& task) {
    std::cout << task.id << ' ' << task.version << ' ' << task.name << std::endl;
  };
  try {
    SqliteStorage storage(path);
    for (int i = 0; count == 0 || i < count; ++i) {
      const std::string name = prefix + "-" + std::to_string(i);
      const TaskRecord saved = storage.Save(WholeTask(name), kNow);
      say(saved);
      if (i % 3 != 0) continue;
      TaskRecord changed = WholeTask(name + "-changed");
      changed.id = saved.id;
      changed.version = saved.version;
      say(storage.Save(changed, kNow));
    }
  } catch (const Failure& failure) {
    std::cerr << failure.Description() << std::endl;
    return 1;
  }
  return 0;
}

}  // namespace plovix::test
