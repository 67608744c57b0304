/// @file
/// The stand-alone host's objects behind AutoTask, its lists and the shared store.
#pragma once

#include <plovix/host/auto_task.h>
#include <plovix/host/value_store.h>
#include <plovix/standalone/tasks/task_record.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "category_object.h"
#include "recurrence_object.h"
#include "session_object.h"

namespace plovix {

struct HostState;

/// An action over plain values.
class ActionObject final : public Action {
 public:
  /// Takes over the values; they do not change.
  explicit ActionObject(ActionRecord record) : record_(std::move(record)) {}
  /// The host's own view, not gated.
  [[nodiscard]] const ActionRecord& Record() const noexcept { return record_; }
  [[nodiscard]] std::int32_t RecordModes() override;
  [[nodiscard]] std::int32_t Capabilities() override;

 private:
  ActionRecord record_;
};

/// Actions over plain values; Item creates an object for each.
class ActionListObject final : public ActionList {
 public:
  /// Empty, or with these actions.
  explicit ActionListObject(std::vector<ActionRecord> initial = {}) : records(std::move(initial)) {}
  [[nodiscard]] std::int32_t Count() override;
  [[nodiscard]] std::shared_ptr<Action> Item(std::int32_t index) override;
  void Remove(std::int32_t index) override;

  std::vector<ActionRecord> records;  ///< the host's own view, not gated
};

/// A task over plain values; created by MakeTask.
class TaskObject final : public AutoTask {
 public:
  /// Reads the texts of tags from `state`, which outlives the object.
  TaskObject(HostState& state, const TaskRecord& record);
  /// The task as values, including those of its current list and recurrence objects.
  [[nodiscard]] TaskRecord Record() const;
  /// Replaces the values and creates new list objects; recurrence and pattern objects that fit are kept.
  void Assign(const TaskRecord& record);

  [[nodiscard]] bool IsExisting() override;
  [[nodiscard]] std::int16_t RecordMode() override;
  void SetRecordMode(std::int16_t mode) override;
  [[nodiscard]] bool UsesLanguageTags() override;
  [[nodiscard]] std::string Name() override;
  void SetName(const std::string& text) override;
  [[nodiscard]] std::string ShortDescription() override;
  void SetShortDescription(const std::string& text) override;
  [[nodiscard]] std::string Description() override;
  void SetDescription(const std::string& text) override;
  [[nodiscard]] std::string NameTag() override;
  void SetNameTag(const std::string& tag) override;
  [[nodiscard]] std::string ShortDescriptionTag() override;
  void SetShortDescriptionTag(const std::string& tag) override;
  [[nodiscard]] std::string DescriptionTag() override;
  void SetDescriptionTag(const std::string& tag) override;
  [[nodiscard]] std::string LocalizedName() override;
  [[nodiscard]] std::string LocalizedShortDescription() override;
  [[nodiscard]] std::string LocalizedDescription() override;
  [[nodiscard]] std::string DataObjectName() override;
  void SetDataObjectName(const std::string& name) override;
  [[nodiscard]] std::string DataObjectCaption() override;
  void SetDataObjectCaption(const std::string& caption) override;
  [[nodiscard]] bool AllowAutomationManager() override;
  void SetAllowAutomationManager(bool allow) override;
  [[nodiscard]] bool SkipRowSelection() override;
  void SetSkipRowSelection(bool skip) override;
  [[nodiscard]] std::string Query() override;
  void SetQuery(const std::string& query) override;
  [[nodiscard]] std::string Owner() override;
  void SetOwner(const std::string& user_id) override;
  // Here and below: setting fails with 13 on an object that this host did not create.
  [[nodiscard]] std::shared_ptr<plovix::Permissions> Permissions() override;
  void SetPermissions(std::shared_ptr<plovix::Permissions> permissions) override;
  void SetMayRun(bool may) override;
  void SetMayEdit(bool may) override;
  void SetMayDelete(bool may) override;
  [[nodiscard]] std::int32_t ProcessingMode() override;
  void SetProcessingMode(std::int32_t mode) override;
  [[nodiscard]] bool ProcessAllRecords() override;
  void SetProcessAllRecords(bool all) override;
  [[nodiscard]] bool ProcessFailedRecords() override;
  void SetProcessFailedRecords(bool failed) override;
  [[nodiscard]] DateTime BaseDate() override;
  void SetBaseDate(DateTime date) override;
  [[nodiscard]] std::shared_ptr<plovix::Recurrence> Recurrence() override;
  void SetRecurrence(std::shared_ptr<plovix::Recurrence> recurrence) override;
  [[nodiscard]] std::shared_ptr<ActionList> Actions() override;
  void SetActions(std::shared_ptr<ActionList> actions) override;
  [[nodiscard]] std::shared_ptr<CategoryList> Categories() override;
  void SetCategories(std::shared_ptr<CategoryList> categories) override;

 private:
  HostState& state_;
  TaskRecord fields_;  // without the contents of the objects below
  std::shared_ptr<ActionListObject> actions_;
  std::shared_ptr<CategoryListObject> categories_;
  std::shared_ptr<RecurrenceObject> recurrence_;
  std::shared_ptr<PermissionsObject> permissions_;
};

/// A store in memory.
class StoreObject final : public ValueStore {
 public:
  void Add(const std::string& key, Value value) override;
  [[nodiscard]] std::shared_ptr<StoreEntry> Item(const std::string& key) override;
  [[nodiscard]] Value GetValue(const std::string& key, const Value& fallback) override;
  void SetItem(const std::string& key, Value value) override;
  [[nodiscard]] bool Exists(const std::string& key) override;

  std::map<std::string, Value> values;  ///< the host's own view, not gated
};

}  // namespace plovix
