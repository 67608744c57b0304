#include "task_file.h"

#include <QStandardPaths>
#include <filesystem>

#include "schema.h"

namespace plovix {
namespace {

namespace fs = std::filesystem;

// A log that was left behind may contain a newer version or another program's tables. Opening the file for
// writing and closing it would move the log into the file, so it is first opened read-only.
void LookBeforeOpening(const std::string& path, std::chrono::milliseconds patience) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(path, error);
  if (error || !fs::exists(real, error) || !fs::exists(fs::path(real) += kLogSuffix, error)) return;
  Connection connection(path, patience, Access::kReadOnly, kTaskFile);
  (void)SchemaVersion(connection, static_cast<int>(MigrationSteps().size()));
}

}  // namespace

std::string DefaultDatabasePath() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return (folder + QStringLiteral("/plovix/tasks.sqlite")).toStdString();
}

std::unique_ptr<Connection> OpenTaskFile(const std::string& path, std::chrono::milliseconds patience) {
  if (path == DefaultDatabasePath()) {
    std::error_code error;  // the connection reports a folder that is still missing
    fs::create_directories(fs::path(path).parent_path(), error);
  }
  try {
    LookBeforeOpening(path, patience);
    auto connection = std::make_unique<Connection>(path, patience, Access::kReadWrite, kTaskFile);
    Migrate(*connection, MigrationSteps());
    connection->PrepareForWriting();
    return connection;
  } catch (const SqlFailure& failure) {  // the statements themselves are correct
    throw Failure(failure_number::kInvalidFormat, RealPath(path, kTaskFile) +
                                                      ": the file is damaged; restore it from a copy (" +
                                                      failure.Words() + ")");
  }
}

}  // namespace plovix
