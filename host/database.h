/// @file
/// The application's own database, in which tasks are stored, as far as pages read it: the Details page reads
/// the categories in use with "SELECT Category FROM VeloAutoTasks". A host without stored tasks returns no
/// rows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "value.h"

namespace plovix {

/// A column of a recordset.
class Field {
 public:
  virtual ~Field() = default;
  /// The value in the current row; fails with 3021 if there is none. NULL is a missing value.
  [[nodiscard]] virtual plovix::Value Value() = 0;
};

/// A forward pass over the rows of a query.
class Recordset {
 public:
  virtual ~Recordset() = default;
  /// @{
  /// Whether the position is before the first row, after the last one; both if there are no rows.
  [[nodiscard]] virtual bool Bof() = 0;
  [[nodiscard]] virtual bool Eof() = 0;
  /// @}
  /// The column of that name, never null; fails with 3265 if there is none.
  [[nodiscard]] virtual Ref<Field> Fields(const std::string& name) = 0;
  /// Fails with 3021 after the last row. A row that cannot be read fails and ends the pass.
  virtual void MoveNext() = 0;
};

/// A connection through which pages only read.
class DatabaseConnection {
 public:
  virtual ~DatabaseConnection() = default;
  /// Opens a query and moves to its first row; never null. `type` (4), `options` (0), `lock` (none) and
  /// `flags` (-1) select the host's kind of cursor; a host may ignore them.
  [[nodiscard]] virtual Ref<Recordset> OpenRecordset(const std::string& query, std::int32_t type,
                                                     std::int32_t options, std::optional<std::int32_t> lock,
                                                     std::int32_t flags) = 0;
};

/// From HostApplication::Database.
class Database {
 public:
  virtual ~Database() = default;
  /// Never null.
  [[nodiscard]] virtual Ref<DatabaseConnection> Connection() = 0;
};

}  // namespace plovix
