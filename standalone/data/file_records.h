// The records of a user's data file, for tasks that run. The file is only read here, and only what a task may
// read.
#pragma once

#include <plovix/standalone/runs/manager_ports.h>

#include <string>

namespace plovix {

class FileRecords final : public RecordSource {
 public:
  // `path`: of the data file. Without hidden data objects: nobody is there who may see them.
  explicit FileRecords(std::string path) : path_(std::move(path)) {}

  // The keys are read at once, so that nobody who writes is kept waiting; each record is read as it comes to
  // its turn, and one that is gone by then is left out.
  [[nodiscard]] std::unique_ptr<RecordPass> Open(const TaskRecord& task,
                                                 const std::vector<std::string>& keys) override;

 private:
  std::string path_;
};

}  // namespace plovix
