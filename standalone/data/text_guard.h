// Holds a text that somebody else wrote to what it may read. Used to run queries, for a preview and for
// tasks.
#pragma once

#include <plovix/standalone/sqlite/connection.h>

#include <memory>
#include <string_view>

#include "schema_map.h"
#include "time_limit.h"

namespace plovix {

// From its construction on, the connection's statements may read only what the texts may. The connection
// outlives it.
class TextGuard {
 public:
  TextGuard(Connection& connection, bool reads_hidden);

  // Whether its views hold more SELECTs than the database should be given.
  [[nodiscard]] bool IsTooNested(std::string_view sql) { return schema_->SelectsIn(sql) > kMostSelects; }
  // Fails with a SqlFailure that says what was refused.
  [[nodiscard]] Statement Prepare(std::string_view sql, const TimeLimit& time) const;

 private:
  [[nodiscard]] Statement PrepareText(std::string_view sql) const;
  void Wake(const SchemaEntry& table) const;

  Connection& connection_;
  std::shared_ptr<SchemaMap> schema_;
  std::shared_ptr<bool> is_text_ = std::make_shared<bool>(false);
};

}  // namespace plovix
