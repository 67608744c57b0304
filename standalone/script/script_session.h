// The state of a running script: the scene that it has set, the host created from it and the wizard on it.
// The commands work on this.
#pragma once

#include <plovix/standalone/tasks/task_access.h>
#include <plovix/standalone/wizard/velo_wiz.h>

#include <iosfwd>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "fault_injector.h"
#include "manager_scene.h"
#include "script_dialogs.h"
#include "script_runner.h"
#include "snapshots.h"

namespace plovix::script {

class ScriptSession {
 public:
  ScriptSession(std::ostream& out, std::ostream& err, const ScriptOptions& options);
  // Cancels a wizard that is still open.
  ~ScriptSession();
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;

  // Prints one object on one line, flushed at once.
  void Print(const nlohmann::ordered_json& json);
  [[nodiscard]] std::ostream& Messages() noexcept { return err_; }

  [[nodiscard]] HostState& State() noexcept { return state_; }
  [[nodiscard]] ScriptDialogs& Dialogs() noexcept { return dialogs_; }
  [[nodiscard]] FaultInjector& Faults() noexcept { return faults_; }
  [[nodiscard]] TaskStorage& Storage() noexcept { return storage_; }
  // Sets the current user's id, regardless of who works.
  void NameUser(const std::string& id) { state_.user_id = named_user_.emplace(id); }
  // Whether the working user, as stored now, may see a task; without a user, always.
  [[nodiscard]] std::function<bool(const TaskRecord& task)> MayView() const {
    return MayTreat(TaskRight::kView);
  }
  [[nodiscard]] std::function<bool(const TaskRecord& task)> MayTreat(TaskRight right) const;
  // The automation manager, which begins at the first line about it.
  [[nodiscard]] ManagerScene& Automation();

  // The task being edited: the wizard's working copy from the first "open" on, also after the end.
  [[nodiscard]] TaskRecord Task() const;
  void SetTask(const TaskRecord& task);
  // Starts with another task; a wizard that has ended is discarded.
  void BeginTask(const TaskRecord& task);

  // The entries of the shared store: those set for the next wizard, or the wizard's own.
  [[nodiscard]] nlohmann::ordered_json Store();
  void SetEntry(const std::string& key, Value value);

  // Starts a wizard on the task. A LineError if one is open, or there is no such page.
  void Open(const std::string& identifier);
  [[nodiscard]] bool IsOpen() const noexcept { return wizard_ && wizard_->IsOpen(); }
  // The open wizard; a LineError if none is open.
  [[nodiscard]] VeloWiz& Wizard();
  // The wizard from the first "open" on, open or not; nullptr before.
  [[nodiscard]] const VeloWiz* LastWizard() const noexcept { return wizard_.get(); }

  // The script's own data objects; nullptr if there is a data file instead.
  [[nodiscard]] MemoryDataSource* NamedData() noexcept { return named_data_.get(); }
  // Adds a stored task's category column after those of the storage.
  void AddStoredCategory(const std::string& column) { stored_categories_.push_back(column); }

  // To be called after the scene has changed: an open wizard asks its page again. Planned failures do not
  // count these calls.
  void SceneChanged();

 private:
  // Installs the host for a state during its lifetime.
  struct Installation {
    explicit Installation(HostState& state) { InstallHost(state); }
    ~Installation() { InstallServices({}); }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;
  };

  [[nodiscard]] std::unique_ptr<RowCursor> OpenRows(const std::string& query);

  std::ostream& out_;
  std::ostream& err_;
  TaskStorage& storage_;
  RunStore* runs_;         // nullptr: in memory
  RecordSource* records_;  // likewise
  std::optional<Zone> zone_;
  UsersAndTags* tables_;
  const std::optional<std::string> user_;  // who works; nothing: whom the scene names
  std::optional<std::string> named_user_;
  std::function<std::unique_ptr<RowCursor>(const std::string& query)> open_rows_;
  ScriptDialogs dialogs_;
  HostState state_;
  std::shared_ptr<MemoryDataSource> named_data_;
  std::vector<std::string> stored_categories_;
  Installation installation_;
  PageRegistry registry_;
  FaultInjector faults_;
  ObserveCalls observe_{faults_};
  ObjectNumbers numbers_;
  TaskRecord task_;                       // for the next wizard
  std::map<std::string, Value> entries_;  // for each wizard's store, set by the script
  std::unique_ptr<VeloWiz> wizard_;
  std::unique_ptr<ManagerScene> automation_;
};

}  // namespace plovix::script
