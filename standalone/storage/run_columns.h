// The columns that hold runs, what is stored beside a task for them, their ledger, and the settings of the
// whole file. Used by the store of runs, which makes its statements from them.
#pragma once

#include <plovix/standalone/runs/run_store.h>

#include <span>

#include "columns.h"
#include "manager_record.h"

namespace plovix {

// What is stored once in a task file.
struct FileSettings {
  std::string id;    // made with the file, and copied with it
  std::string zone;  // of the schedules, by its IANA name; empty until it is set
  std::int64_t last_manager = 0;
  std::optional<Pause> paused;
  std::string ran_on;  // FilePlace of the task file as its last manager found it; empty: never run
  std::string data;    // the data that its tasks are run on; empty: none so far
  bool operator==(const FileSettings&) const = default;
};

// Of VeloRuns: all except Id.
[[nodiscard]] std::span<const ColumnOf<RunRecord>> RunColumns();
// Of VeloAutoTaskStates: all except TaskId. The version is in VeloAutoTasks, so that an index can compare it.
[[nodiscard]] std::span<const ColumnOf<TaskState>> StateColumns();
// Of VeloLedger: all except TaskId.
[[nodiscard]] std::span<const ColumnOf<LedgerRow>> LedgerColumns();
// Of VeloAudit: all except Id.
[[nodiscard]] std::span<const ColumnOf<AuditEntry>> AuditColumns();
// Of the only row of VeloFileSettings: all except Id.
[[nodiscard]] std::span<const ColumnOf<FileSettings>> FileSettingsColumns();
// Of VeloManagers: all except Number.
[[nodiscard]] std::span<const ColumnOf<ManagerRecord>> ManagerColumns();

}  // namespace plovix
