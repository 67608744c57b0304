#include "schema.h"

#include <plovix/standalone/sqlite/schema_objects.h>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <set>
#include <string>

namespace plovix {
namespace {

// "PLVX", in the file's header: distinguishes task files from other SQLite files.
constexpr int kApplicationId = 0x504C5658;

constexpr std::array kTables{
    R"(CREATE TABLE VeloAutoTasks (
         Id INTEGER PRIMARY KEY AUTOINCREMENT,
         Version INTEGER NOT NULL,
         Modified TEXT NOT NULL,
         RecordMode INTEGER NOT NULL,
         UsesLanguageTags INTEGER NOT NULL,
         Name TEXT NOT NULL,
         ShortDescription TEXT NOT NULL,
         Description TEXT NOT NULL,
         NameTag TEXT NOT NULL,
         ShortDescriptionTag TEXT NOT NULL,
         DescriptionTag TEXT NOT NULL,
         Category TEXT NOT NULL,
         DataObjectName TEXT NOT NULL,
         DataObjectCaption TEXT NOT NULL,
         AllowAutomationManager INTEGER NOT NULL,
         SkipRowSelection INTEGER NOT NULL,
         ProcessingMode INTEGER NOT NULL,
         ProcessAllRecords INTEGER NOT NULL,
         ProcessFailedRecords INTEGER NOT NULL,
         BaseDate TEXT NOT NULL,
         Query TEXT NOT NULL,
         Owner TEXT NOT NULL))",
    R"(CREATE TABLE VeloAutoTaskActions (
         TaskId INTEGER NOT NULL REFERENCES VeloAutoTasks (Id) ON DELETE CASCADE,
         Position INTEGER NOT NULL,
         Kind TEXT NOT NULL,
         Name TEXT NOT NULL,
         RecordModes INTEGER NOT NULL,
         Capabilities INTEGER NOT NULL,
         Settings TEXT NOT NULL,
         PRIMARY KEY (TaskId, Position)) WITHOUT ROWID)",
};

// One row for each task that has a recurrence. The columns after PatternKind contain the fields of that
// pattern, and NULL otherwise.
constexpr std::array kSchedules{
    R"(CREATE TABLE VeloAutoTaskSchedules (
         TaskId INTEGER PRIMARY KEY REFERENCES VeloAutoTasks (Id) ON DELETE CASCADE,
         StartDate TEXT,
         RecurrenceType INTEGER NOT NULL,
         TimeKind INTEGER NOT NULL,
         Interval INTEGER NOT NULL,
         ExecutionTime TEXT NOT NULL,
         PatternKind INTEGER,
         EveryNDays INTEGER,
         WeekdaysOnly INTEGER,
         EveryNWeeks INTEGER,
         Sunday INTEGER,
         Monday INTEGER,
         Tuesday INTEGER,
         Wednesday INTEGER,
         Thursday INTEGER,
         Friday INTEGER,
         Saturday INTEGER,
         EveryNMonths INTEGER,
         Month INTEGER,
         UseRelativeDay INTEGER,
         DayOfMonth INTEGER,
         RelativeWeek INTEGER,
         RelativeDayOfWeek INTEGER))",
};

// Permissions is NULL for a task without a permission set. A tag without texts has one row with the language
// '' and a NULL text. VeloUsers always contains an administrator.
constexpr std::array kAccounts{
    "ALTER TABLE VeloAutoTasks ADD COLUMN Permissions TEXT",
    "ALTER TABLE VeloAutoTasks ADD COLUMN MayRun INTEGER NOT NULL DEFAULT 1",
    "ALTER TABLE VeloAutoTasks ADD COLUMN MayEdit INTEGER NOT NULL DEFAULT 1",
    "ALTER TABLE VeloAutoTasks ADD COLUMN MayDelete INTEGER NOT NULL DEFAULT 1",
    R"(CREATE TABLE VeloUsers (
         Id TEXT NOT NULL PRIMARY KEY,
         Name TEXT NOT NULL,
         Administrator INTEGER NOT NULL,
         GroupNames TEXT NOT NULL,
         EditCategories INTEGER NOT NULL,
         SeeAllCategories INTEGER NOT NULL,
         GoOnWithTags INTEGER NOT NULL,
         CreatePersonal INTEGER NOT NULL,
         CreateShared INTEGER NOT NULL) WITHOUT ROWID)",
    "INSERT INTO VeloUsers VALUES ('admin', '', 1, '[]', 1, 1, 1, 1, 1)",
    R"(CREATE TABLE VeloLanguageTags (
         Tag TEXT NOT NULL,
         Language TEXT NOT NULL,
         Text TEXT,
         PRIMARY KEY (Tag, Language)) WITHOUT ROWID)",
};

// What the automation manager keeps. Instants are seconds since 1970. A task without a row of states has the
// defaults; runs stay when their task goes, as its history. The indexes make each question of a manager a
// look-up, whatever the number of tasks and of runs that are over.
constexpr std::array kRuns{
    "ALTER TABLE VeloAutoTasks ADD COLUMN PlannedVersion INTEGER NOT NULL DEFAULT 0",
    "CREATE INDEX VeloAutoTasksUnplanned ON VeloAutoTasks (Id) WHERE PlannedVersion <> Version",
    R"(CREATE TABLE VeloAutoTaskStates (
         TaskId INTEGER PRIMARY KEY REFERENCES VeloAutoTasks (Id) ON DELETE CASCADE,
         Schedule TEXT NOT NULL,
         NextDue INTEGER,
         Planned INTEGER,
         PausedRow INTEGER NOT NULL,
         RunningRun INTEGER NOT NULL,
         Retrying INTEGER NOT NULL,
         Queued INTEGER NOT NULL,
         Missed TEXT NOT NULL,
         MissedCount INTEGER NOT NULL,
         Overlap TEXT NOT NULL,
         Retries INTEGER NOT NULL,
         Interrupted TEXT NOT NULL,
         ShortMonth TEXT NOT NULL,
         TimeLimit INTEGER NOT NULL,
         PausedSince INTEGER,
         PausedBy TEXT,
         PauseReason TEXT))",
    "CREATE INDEX VeloAutoTaskStatesDue ON VeloAutoTaskStates (NextDue) WHERE NextDue IS NOT NULL",
    R"(CREATE TABLE VeloRuns (
         Id INTEGER PRIMARY KEY AUTOINCREMENT,
         TaskId INTEGER NOT NULL,
         Due INTEGER,
         Origin TEXT NOT NULL,
         State TEXT NOT NULL,
         NotBefore INTEGER NOT NULL,
         Attempt INTEGER NOT NULL,
         Failures INTEGER NOT NULL,
         Repeats INTEGER NOT NULL,
         Epoch INTEGER NOT NULL,
         Manager INTEGER NOT NULL,
         Started INTEGER,
         Ended INTEGER,
         Reason TEXT NOT NULL,
         Person TEXT NOT NULL,
         Keys TEXT NOT NULL,
         Cancel INTEGER NOT NULL,
         Found INTEGER NOT NULL,
         Done INTEGER NOT NULL,
         Failed INTEGER NOT NULL,
         Skipped INTEGER NOT NULL,
         MissedFrom INTEGER,
         MissedTo INTEGER,
         MissedCount INTEGER,
         Planned TEXT NOT NULL))",
    "CREATE UNIQUE INDEX VeloRunsOccurrence ON VeloRuns (TaskId, Due) "
    "WHERE Due IS NOT NULL AND State <> 'missed'",
    "CREATE INDEX VeloRunsOfTask ON VeloRuns (TaskId)",
    "CREATE INDEX VeloRunsToBegin ON VeloRuns (NotBefore, Id, TaskId, Origin, Attempt) WHERE State = 'waiting'",
    "CREATE INDEX VeloRunsWaiting ON VeloRuns (TaskId, Origin, Attempt) WHERE State = 'waiting'",
    "CREATE INDEX VeloRunsRunning ON VeloRuns (Manager, Cancel) WHERE State = 'running'",
    R"(CREATE TABLE VeloLedger (
         TaskId INTEGER NOT NULL REFERENCES VeloAutoTasks (Id) ON DELETE CASCADE,
         Record TEXT NOT NULL,
         State TEXT NOT NULL,
         Fingerprint TEXT NOT NULL,
         RunId INTEGER NOT NULL,
         Reason TEXT NOT NULL,
         PRIMARY KEY (TaskId, Record)) WITHOUT ROWID)",
    R"(CREATE TABLE VeloFileSettings (
         Id INTEGER PRIMARY KEY CHECK (Id = 1),
         FileId TEXT NOT NULL,
         Zone TEXT NOT NULL,
         LastManager INTEGER NOT NULL,
         PausedSince INTEGER,
         PausedBy TEXT,
         PauseReason TEXT))",
    "INSERT INTO VeloFileSettings VALUES (1, lower(hex(randomblob(16))), '', 0, NULL, NULL, NULL)",
    // Braces in the texts of actions had no meaning before; doubled, they say what they said.
    R"(UPDATE VeloAutoTaskActions SET Settings = json_set(Settings,
         '$.arguments', replace(replace(json_extract(Settings, '$.arguments'), '{', '{{'), '}', '}}'))
       WHERE Kind = 'run-program' AND json_valid(Settings) AND json_type(Settings, '$.arguments') = 'text')",
    R"(UPDATE VeloAutoTaskActions SET Settings = json_set(Settings,
         '$.statement', replace(replace(json_extract(Settings, '$.statement'), '{', '{{'), '}', '}}'))
       WHERE Kind = 'run-sql' AND json_valid(Settings) AND json_type(Settings, '$.statement') = 'text')",
    R"(UPDATE VeloAutoTaskActions SET Settings = json_set(Settings,
         '$.text', replace(replace(json_extract(Settings, '$.text'), '{', '{{'), '}', '}}'))
       WHERE Kind = 'write-log' AND json_valid(Settings) AND json_type(Settings, '$.text') = 'text')",
};

// Who could create tasks could make them run programs. VeloAudit says what people did; Deed is a fixed word.
// VeloManagers lists those that take runs; a row without a lock is that of a dead one. The indexes find tasks
// that were planned later than the clock shows, and records that a run has begun.
constexpr std::array kRights{
    "ALTER TABLE VeloUsers ADD COLUMN RunPrograms INTEGER NOT NULL DEFAULT 0",
    "UPDATE VeloUsers SET RunPrograms = 1 WHERE Administrator OR CreatePersonal OR CreateShared",
    "ALTER TABLE VeloAutoTasks ADD COLUMN SavedBy TEXT NOT NULL DEFAULT ''",
    "ALTER TABLE VeloAutoTasks ADD COLUMN Held INTEGER NOT NULL DEFAULT 0",
    R"(CREATE TABLE VeloAudit (
         Id INTEGER PRIMARY KEY AUTOINCREMENT,
         At INTEGER NOT NULL,
         Person TEXT NOT NULL,
         Deed TEXT NOT NULL,
         TaskId INTEGER NOT NULL,
         RunId INTEGER NOT NULL,
         Detail TEXT NOT NULL))",
    "ALTER TABLE VeloAutoTaskStates ADD COLUMN Runs INTEGER NOT NULL DEFAULT 0",
    "UPDATE VeloAutoTaskStates SET Runs = (SELECT count(*) FROM VeloRuns r "
    "WHERE r.TaskId = VeloAutoTaskStates.TaskId)",
    "ALTER TABLE VeloFileSettings ADD COLUMN RanOn TEXT NOT NULL DEFAULT ''",
    "ALTER TABLE VeloFileSettings ADD COLUMN Data TEXT NOT NULL DEFAULT ''",
    R"(CREATE TABLE VeloManagers (
         Number INTEGER PRIMARY KEY,
         Kind TEXT NOT NULL,
         Host TEXT NOT NULL,
         Account TEXT NOT NULL,
         Pid INTEGER NOT NULL,
         Since INTEGER NOT NULL))",
    "CREATE INDEX VeloLedgerBegun ON VeloLedger (TaskId, RunId) WHERE State = 'begun'",
    "CREATE INDEX VeloAutoTaskStatesPlanned ON VeloAutoTaskStates (Planned) WHERE Planned IS NOT NULL",
    "CREATE INDEX VeloAutoTaskStatesFull ON VeloAutoTaskStates (TaskId) WHERE Runs > 1000",
};

constexpr std::array<MigrationStep, 5> kSteps{kTables, kSchedules, kAccounts, kRuns, kRights};

// Kept, because making them takes longer than the rest of opening a file.
const std::set<SchemaObject>& ObjectsOf(int version) {
  static std::mutex lock;
  static std::map<int, std::set<SchemaObject>> made;
  const std::scoped_lock locked(lock);
  const auto [found, is_new] = made.try_emplace(version);
  if (is_new) found->second = SchemaObjectsMadeBy(MigrationSteps().first(static_cast<std::size_t>(version)));
  return found->second;
}

// With missing, changed or replaced tables, any statement could fail or return false data; triggers would act
// behind all of them. Additional tables and indexes are up to their owner.
void CheckSchema(const Connection& connection, int version) {
  const auto& expected = ObjectsOf(version);
  const auto found = SchemaObjects(connection);
  const auto refuse = [&](const SchemaObject& object, const std::string& problem) {
    connection.Refuse(failure_number::kInvalidFormat, "the file is damaged: the " + object.type + " \"" +
                                                          object.name + "\" " + problem +
                                                          "; restore it from a copy");
  };
  for (const SchemaObject& object : found) {
    const bool acts = object.type == "trigger" || object.type == "view";
    if (acts && !expected.contains(object)) refuse(object, "does not belong to a task file");
  }
  for (const SchemaObject& object : expected) {
    if (!found.contains(object)) refuse(object, "is missing or not as this program makes it");
  }
}

// To be called in a transaction: while a new file gets its tables, results from before and after do not
// match.
int VersionInTransaction(const Connection& connection, int latest) {
  const std::int64_t application = connection.Integer("PRAGMA application_id").value_or(0);
  const auto version = static_cast<int>(connection.Integer("PRAGMA user_version").value_or(0));
  const bool empty = connection.Integer("SELECT count(*) FROM sqlite_master") == 0;
  const bool utf8 = connection.Text("PRAGMA encoding") == "UTF-8";
  if (application == 0 && version == 0 && empty && utf8) return 0;
  if (application != kApplicationId || version < 1 || !utf8) {
    connection.Refuse(failure_number::kInvalidFormat,
                      "this is another program's database, not a task file; it was not changed");
  }
  if (version > latest) {
    connection.Refuse(failure_number::kInvalidFormat,
                      "a newer version of this program made this task file (its format is " +
                          std::to_string(version) + ", this program knows formats up to " +
                          std::to_string(latest) + "); it was not changed");
  }
  CheckSchema(connection, version);
  return version;
}

}  // namespace

std::span<const MigrationStep> MigrationSteps() {
  return kSteps;
}

int SchemaVersion(Connection& connection, int latest) {
  int version = 0;
  connection.Read([&] { version = VersionInTransaction(connection, latest); });
  return version;
}

void Migrate(Connection& connection, std::span<const MigrationStep> steps) {
  const int latest = static_cast<int>(steps.size());
  if (SchemaVersion(connection, latest) == latest) return;
  connection.Write(
      [&] {
        // Another program may have been faster.
        const int version = VersionInTransaction(connection, latest);
        for (const MigrationStep step : steps.subspan(static_cast<std::size_t>(version))) {
          for (const char* statement : step) connection.Run(statement);
        }
        connection.Run("PRAGMA application_id = " + std::to_string(kApplicationId));
        connection.Run("PRAGMA user_version = " + std::to_string(latest));
      },
      [&] { return SchemaVersion(connection, latest) == latest; });
}

}  // namespace plovix
