// Records of data objects in a database in memory, so that the queries of a script's tasks really run.
#pragma once

#include <plovix/standalone/runs/manager_ports.h>

#include <map>
#include <memory>
#include <string>

struct sqlite3;

namespace plovix {

class MemoryRecords final : public RecordSource {
 public:
  explicit MemoryRecords(DataSource& objects);
  ~MemoryRecords() override;
  MemoryRecords(const MemoryRecords&) = delete;
  MemoryRecords& operator=(const MemoryRecords&) = delete;

  // Adds a record of a data object, or changes the named fields of one; a field that is new is NULL in the
  // others. Fails in words, for an unknown data object or a name that is no field's.
  void Put(const std::string& object, const FieldValue& key, const RecordValues& values);
  void Remove(const std::string& object, const FieldValue& key);

  [[nodiscard]] std::unique_ptr<RecordPass> Open(const TaskRecord& task,
                                                 const std::vector<std::string>& keys) override;

 private:
  struct Close {
    void operator()(sqlite3* database) const noexcept;
  };
  // The data object, whose table exists from now on.
  [[nodiscard]] DataObjectRecord Table(const std::string& name);
  void AddColumn(const std::string& table, const std::string& column);
  void Run(const std::string& sql, const std::vector<FieldValue>& values);
  [[nodiscard]] std::vector<RecordValues> Rows(const std::string& sql);

  DataSource& objects_;
  std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace plovix
