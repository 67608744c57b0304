// The tables and views of a user's SQLite file as data objects. The file is only ever read.
#pragma once

#include <plovix/standalone/sqlite/connection.h>
#include <plovix/standalone/tasks/data_source.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "schema_map.h"

namespace plovix {

// The file is opened at the first call and kept open. A failing call closes it, and the next one starts
// afresh, so the program goes on when the file is back. Belongs to one thread.
class SqliteDataSource final : public DataSource {
 public:
  static constexpr std::chrono::milliseconds kPatience{2000};
  static constexpr std::chrono::milliseconds kLongest{30'000};
  // `patience` is how long a call waits for another program that writes, `longest` how long it reads before
  // it gives up and fails.
  explicit SqliteDataSource(std::string path, std::chrono::milliseconds patience = kPatience,
                            std::chrono::milliseconds longest = kLongest)
      : path_(std::move(path)), patience_(patience), longest_(longest) {}

  // From now on, calls also give up when `unwanted` is requested to stop.
  void StopWhen(std::stop_token unwanted) { unwanted_ = std::move(unwanted); }

  // Sorted by caption. Without the database's own tables, the internal tables of virtual tables, and unsafe
  // virtual tables.
  [[nodiscard]] std::vector<DataObjectRecord> List() override;
  [[nodiscard]] std::optional<DataObjectRecord> Find(std::string_view name) override;
  // Types follow from the declarations (FieldTypeOf). For a field without one, such as a view's computed
  // field, the first record decides if it can be read quickly; otherwise it is text. Fails for a view that is
  // built on too many others.
  [[nodiscard]] std::vector<FieldRecord> Fields(std::string_view name) override;

 private:
  void Reading(const std::function<void(Connection&)>& body);
  // Read again if the file has changed, and while another program may be changing it.
  [[nodiscard]] const std::vector<DataObjectRecord>& Listed();

  std::string path_;
  std::chrono::milliseconds patience_, longest_;
  std::stop_token unwanted_;
  std::unique_ptr<Connection> connection_;
  FileId file_;  // the open one
  std::shared_ptr<SchemaMap> schema_;
  std::vector<DataObjectRecord> objects_;
  std::optional<FileState> listed_;  // the state of the file from which they were read
};

// The first row that matches decides, ignoring case:
//   BOOL                                     yes or no
//   DATETIME, TIMESTAMP                      date and time
//   DATE                                     date
//   INT                                      whole number
//   CHAR, CLOB, TEXT                         text
//   BLOB                                     binary
//   REAL, FLOA, DOUB, NUMERIC, DECIMAL       number
//   anything else                            text
[[nodiscard]] FieldType FieldTypeOf(std::string_view declared);

// The name with spaces for underscores and a capital first letter, if that letter is in one of the Latin
// alphabets of Western Europe.
[[nodiscard]] std::string CaptionOf(std::string_view name);

}  // namespace plovix
