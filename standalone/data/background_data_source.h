// A user's SQLite file as data objects, read in the background. Used by the program, which waits with a
// window that can be cancelled, and by scripts.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "background_job.h"
#include "sqlite_data_source.h"

namespace plovix {

// An abandoned read fails with a message; until it has ended, all further calls fail at once. Belongs to one
// thread.
class BackgroundDataSource final : public DataSource {
 public:
  BackgroundDataSource(std::string path, JobWait wait) : path_(std::move(path)), wait_(std::move(wait)) {}

  [[nodiscard]] std::vector<DataObjectRecord> List() override;
  [[nodiscard]] std::optional<DataObjectRecord> Find(std::string_view name) override;
  [[nodiscard]] std::vector<FieldRecord> Fields(std::string_view name) override;

 private:
  template <typename Found>
  [[nodiscard]] Found Ask(std::function<Found(SqliteDataSource&)> ask);

  std::string path_;
  JobWait wait_;
  std::shared_ptr<SqliteDataSource> source_;  // used by the job while there is one
  std::unique_ptr<BackgroundJob> left_;       // abandoned
};

}  // namespace plovix
