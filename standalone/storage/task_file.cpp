#include "task_file.h"

#include <QStandardPaths>
#include <filesystem>

#include "schema.h"

namespace plovix {
namespace {

namespace fs = std::filesystem;

// A log that was left behind may hold a newer version or another program's tables. Opened for writing
// and closed again, SQLite would move it into the file; so it is looked at first without that right.
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
    std::error_code error;  // a folder that is missing afterwards is told by the connection
    fs::create_directories(fs::path(path).parent_path(), error);
  }
  try {
    LookBeforeOpening(path, patience);
    auto connection = std::make_unique<Connection>(path, patience, Access::kReadWrite, kTaskFile);
    Migrate(*connection, MigrationSteps());
    connection->PrepareForWriting();
    return connection;
  } catch (const SqlFailure& failure) {  // the statements are known to be right
    throw Failure(failure_number::kInvalidFormat, RealPath(path, kTaskFile) +
                                                      ": the file is damaged; restore it from a copy (" +
                                                      failure.Words() + ")");
  }
}

}  // namespace plovix
