// Runs in the task file, beside the tasks. Used by managers and windows.
//
// With its own connection, as SqliteUsersAndTags. Every change takes the file's write lock before it reads,
// so that the condition which it found still holds as it is stored; it is on disk when the member returns.
#pragma once

#include <plovix/standalone/runs/run_store.h>
#include <plovix/standalone/schedule/zone.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "manager_record.h"
#include "task_file.h"

namespace plovix {

class RunTables;
struct FileSettings;

// To be used by the thread that made it. What a member says of a task applies to one that exists; for another
// one, nothing is changed.
class SqliteRunStore final : public RunStore {
 public:
  // Opens or creates the file, as OpenTaskFile does.
  explicit SqliteRunStore(const std::string& path, std::chrono::milliseconds patience = kTaskFilePatience);
  ~SqliteRunStore() override;
  SqliteRunStore(const SqliteRunStore&) = delete;
  SqliteRunStore& operator=(const SqliteRunStore&) = delete;

  [[nodiscard]] std::vector<TaskState> States() override;
  [[nodiscard]] std::optional<TaskState> State(std::int64_t task) override;
  [[nodiscard]] std::vector<std::int64_t> Unplanned() override;
  [[nodiscard]] std::vector<std::int64_t> Due(Instant now) override;
  [[nodiscard]] std::optional<Instant> NextWake() override;
  bool MoveCursor(const CursorMove& move) override;
  void SetPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by) override;
  void SetPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by) override;
  bool Release(std::int64_t task, std::int64_t version, const Doer& by) override;
  void SetPauseOfAll(const std::optional<Pause>& pause, const Doer& by) override;
  [[nodiscard]] std::optional<Pause> PauseOfAll() override;
  RunRecord Request(RunRecord run) override;
  bool Cancel(std::int64_t run, const std::string& reason, const Doer& by) override;
  bool CloseByForce(const RunEnd& end, const Doer& by) override;
  [[nodiscard]] Turn EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                                 std::int64_t manager) override;
  void BringForward(Instant now, std::chrono::seconds most) override;
  [[nodiscard]] std::vector<RunRecord> UnderWay() override;
  [[nodiscard]] std::int64_t ChangeCount() override;
  [[nodiscard]] std::vector<RunRecord> History(std::optional<std::int64_t> task) override;
  [[nodiscard]] std::optional<RunRecord> Run(std::int64_t run) override;
  [[nodiscard]] std::vector<RunRecord> Recent(const RunFilter& filter) override;
  [[nodiscard]] std::vector<RunRecord> LatestOfEach() override;
  bool Trim(std::int64_t most, std::int64_t batch) override;
  [[nodiscard]] std::vector<LedgerRow> Ledger(std::int64_t task) override;
  [[nodiscard]] std::optional<LedgerRow> LedgerOf(std::int64_t task, const std::string& record) override;
  [[nodiscard]] std::vector<LedgerRow> LedgerOfRun(const LedgerFilter& filter) override;
  bool Write(const RunRecord& run, const std::vector<LedgerRow>& rows) override;
  bool ClearLedger(const RunRecord& run, bool only_failed) override;
  bool Decide(std::int64_t task, const std::string& record, bool done, const Doer& by) override;
  void Audit(AuditEntry entry) override;
  [[nodiscard]] std::vector<AuditEntry> Audits(const AuditFilter& filter) override;

  // Differs from file to file, but a copy of a file has that of its original.
  [[nodiscard]] std::string FileId();
  // The zone of all schedules by its IANA name; empty until it is set.
  [[nodiscard]] std::string ZoneName();
  void SetZone(const std::string& name);
  // The same as a zone; a file that has none takes the machine's. Fails in words if this machine does not
  // know it.
  [[nodiscard]] Zone ScheduleZone();
  // A number that no manager of this file has had; from 1.
  [[nodiscard]] std::int64_t NewManager();
  // The highest of these numbers; 0 if there was none.
  [[nodiscard]] std::int64_t LastManager();

  // To be called by a manager before it runs anything. A file that is not the one on which the last manager
  // ran, because it is a copy of that or was restored, is paused as a whole, once, with the reason
  // "restored": whatever became of its runs since the copy was made, nobody knows here. What people asked for
  // is cancelled for the same reason. `restored`: it is known to be an earlier state of the file. Returns
  // whether it was.
  bool PauseIfRestored(bool restored, Instant now);

  // What the data are that the tasks are run on, as the manager that set it names them; empty: none so far.
  [[nodiscard]] std::string DataIdentity();
  void SetDataIdentity(const std::string& identity);
  // What stands there of managers; dead ones may be among them.
  [[nodiscard]] std::vector<ManagerRecord> Managers();
  // Adds the one, and removes those of the numbers `gone`.
  void ChangeManagers(const std::optional<ManagerRecord>& added, const std::vector<std::int64_t>& gone);

  // Absolute and without links.
  [[nodiscard]] const std::string& Path() const;
  // As Connection::OnWritten.
  void OnWritten(std::function<void()> told);

 private:
  // Runs `body` in one transaction; it returns false if it has changed nothing. `arrived` is that of
  // Connection::Write.
  bool Change(const std::function<bool()>& body, const std::function<bool()>& arrived);
  void ChangeState(std::int64_t task, const std::function<void(TaskState&)>& change);
  void ChangeSettings(const std::function<void(FileSettings&)>& change);
  // Within a transaction of its own. `by`: the person who ends it; nullptr: its manager.
  // `by`: the person who ends them; nullptr for the manager.
  [[nodiscard]] Turn EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                                 std::int64_t manager, const Doer* by);
  // Within a transaction.
  void CancelNow(RunRecord& run, const std::string& reason, Instant now);
  // `added`: whether it is a new one.
  void NoteInState(const RunRecord& run, bool added = false);
  void Put(const RunRecord& run);
  void Put(std::int64_t task, const std::vector<LedgerRow>& rows);
  [[nodiscard]] bool IsOwner(std::int64_t run, std::int64_t epoch);
  [[nodiscard]] std::optional<RunRecord> ToBegin(Instant until);

  std::unique_ptr<RunTables> tables_;
  std::int64_t own_changes_ = 0;
};

}  // namespace plovix
