#include "hardening.h"

#include <sqlite3.h>

#include <utility>

namespace plovix {
namespace {

constexpr int kMebibyte = 1024 * 1024;

// For all connections of the process together. A statement that needs more fails for lack of memory, and the
// machine keeps running.
constexpr sqlite3_int64 kMemory = sqlite3_int64{512} * kMebibyte;

constexpr std::pair<int, int> kSettings[] = {
    {SQLITE_DBCONFIG_DEFENSIVE, 1},
    {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
    {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},  // foreign keys still act
    {SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0},
    {SQLITE_DBCONFIG_ENABLE_FTS3_TOKENIZER, 0}  // takes the address of code from a query
};

// They apply to schemas, too: a file that exceeds them is refused as a whole. So no limit is below what real
// files have been seen to need.
constexpr std::pair<int, int> kLimits[] = {
    {SQLITE_LIMIT_LENGTH,
     32 * kMebibyte},  // bytes of a value, and of a record; twice the largest exported task
    {SQLITE_LIMIT_SQL_LENGTH, kMebibyte},
    {SQLITE_LIMIT_COLUMN, 2000},
    {SQLITE_LIMIT_EXPR_DEPTH, 500},
    {SQLITE_LIMIT_COMPOUND_SELECT, 200},
    {SQLITE_LIMIT_VDBE_OP, 1'000'000},
    {SQLITE_LIMIT_FUNCTION_ARG, 100},
    {SQLITE_LIMIT_ATTACHED, 0},
    {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 1000},
    {SQLITE_LIMIT_VARIABLE_NUMBER, 1000},
    {SQLITE_LIMIT_TRIGGER_DEPTH, 10},  // foreign keys count as triggers
    {SQLITE_LIMIT_WORKER_THREADS, 0}};

}  // namespace

void Harden(sqlite3* database, Access access) {
  sqlite3_hard_heap_limit64(kMemory);
  for (const auto& [setting, value] : kSettings) sqlite3_db_config(database, setting, value, nullptr);
  for (const auto& [limit, value] : kLimits) sqlite3_limit(database, limit, value);
  // Connections for writing need no views: neither the task file nor the sample has any.
  if (access == Access::kReadWrite) sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  sqlite3_exec(database, "PRAGMA cell_size_check = ON", nullptr, nullptr, nullptr);
}

}  // namespace plovix
