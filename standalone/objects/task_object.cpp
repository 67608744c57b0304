#include "task_object.h"

#include "category_object.h"
#include "gated_fields.h"
#include "host_state.h"
#include "recurrence_object.h"
#include "session_object.h"

namespace plovix {
namespace {

class EntryObject final : public StoreEntry {
 public:
  explicit EntryObject(plovix::Value value) : value_(std::move(value)) {}
  [[nodiscard]] plovix::Value Value() const override { return Gated("StoreEntry.Value", value_); }

 private:
  plovix::Value value_;
};

class ActionObject final : public FieldsObject<Action, ActionRecord> {
 public:
  using FieldsObject::FieldsObject;
  [[nodiscard]] std::int32_t RecordModes() override { return Get<&ActionRecord::record_modes>(); }
  [[nodiscard]] std::int32_t Capabilities() override { return Get<&ActionRecord::capabilities>(); }
};

class PlainTask final : public FieldsObject<TaskObject, TaskRecord> {
 public:
  PlainTask(HostState& state, const TaskRecord& task) : state_(state) { PlainTask::Assign(task); }
  [[nodiscard]] TaskRecord Record() const override {
    TaskRecord task = record;
    task.actions = actions_->records;
    if (categories_) task.categories = categories_->Records();
    if (permissions_) task.permissions = permissions_->set;
    if (recurrence_) task.recurrence = recurrence_->Record();
    return task;
  }
  void Assign(const TaskRecord& task) override {
    record = task;
    record.actions.clear();
    record.categories.clear();
    record.recurrence.reset();
    record.permissions.reset();
    actions_ = std::make_shared<ActionListObject>(task.actions);
    categories_ = std::make_shared<CategoryListObject>(state_, task.categories);
    permissions_ = task.permissions ? std::make_shared<PermissionsObject>(*task.permissions) : nullptr;
    if (!task.recurrence) {
      recurrence_ = nullptr;
    } else if (recurrence_) {
      recurrence_->Assign(*task.recurrence);
    } else {
      recurrence_ = std::make_shared<RecurrenceObject>(*task.recurrence);
    }
  }

  [[nodiscard]] bool IsExisting() override { return Gated("AutoTask.IsExisting", record.id != 0); }
  [[nodiscard]] std::int16_t RecordMode() override { return Get<&TaskRecord::record_mode>(); }
  void SetRecordMode(std::int16_t mode) override { Put<&TaskRecord::record_mode>(mode); }
  [[nodiscard]] bool UsesLanguageTags() override { return Get<&TaskRecord::uses_language_tags>(); }
  [[nodiscard]] std::string Name() override { return Get<&TaskRecord::name>(); }
  void SetName(const std::string& text) override { Put<&TaskRecord::name>(text); }
  [[nodiscard]] std::string ShortDescription() override { return Get<&TaskRecord::short_description>(); }
  void SetShortDescription(const std::string& text) override { Put<&TaskRecord::short_description>(text); }
  [[nodiscard]] std::string Description() override { return Get<&TaskRecord::description>(); }
  void SetDescription(const std::string& text) override { Put<&TaskRecord::description>(text); }
  [[nodiscard]] std::string NameTag() override { return Get<&TaskRecord::name_tag>(); }
  void SetNameTag(const std::string& tag) override { Put<&TaskRecord::name_tag>(tag); }
  [[nodiscard]] std::string ShortDescriptionTag() override {
    return Get<&TaskRecord::short_description_tag>();
  }
  void SetShortDescriptionTag(const std::string& tag) override {
    Put<&TaskRecord::short_description_tag>(tag);
  }
  [[nodiscard]] std::string DescriptionTag() override { return Get<&TaskRecord::description_tag>(); }
  void SetDescriptionTag(const std::string& tag) override { Put<&TaskRecord::description_tag>(tag); }
  [[nodiscard]] std::string LocalizedName() override {
    Called("AutoTask.LocalizedName");
    return state_.TagText(record.name_tag);
  }
  [[nodiscard]] std::string LocalizedShortDescription() override {
    Called("AutoTask.LocalizedShortDescription");
    return state_.TagText(record.short_description_tag);
  }
  [[nodiscard]] std::string LocalizedDescription() override {
    Called("AutoTask.LocalizedDescription");
    return state_.TagText(record.description_tag);
  }
  [[nodiscard]] std::string DataObjectName() override { return Get<&TaskRecord::data_object_name>(); }
  void SetDataObjectName(const std::string& name) override { Put<&TaskRecord::data_object_name>(name); }
  [[nodiscard]] std::string DataObjectCaption() override { return Get<&TaskRecord::data_object_caption>(); }
  void SetDataObjectCaption(const std::string& text) override { Put<&TaskRecord::data_object_caption>(text); }
  [[nodiscard]] bool AllowAutomationManager() override {
    return Get<&TaskRecord::allow_automation_manager>();
  }
  void SetAllowAutomationManager(bool allow) override { Put<&TaskRecord::allow_automation_manager>(allow); }
  [[nodiscard]] bool SkipRowSelection() override { return Get<&TaskRecord::skip_row_selection>(); }
  void SetSkipRowSelection(bool skip) override { Put<&TaskRecord::skip_row_selection>(skip); }
  [[nodiscard]] std::string Query() override { return Get<&TaskRecord::query>(); }
  void SetQuery(const std::string& query) override { Put<&TaskRecord::query>(query); }
  [[nodiscard]] std::string Owner() override { return Get<&TaskRecord::owner>(); }
  void SetOwner(const std::string& user_id) override { Put<&TaskRecord::owner>(user_id); }
  // Here and below: setting fails with 13 on an object that this host did not make.
  [[nodiscard]] Ref<plovix::Permissions> Permissions() override {
    return Gated("AutoTask.Permissions", permissions_);
  }
  void SetPermissions(Ref<plovix::Permissions> permissions) override {
    Called("AutoTask.SetPermissions");
    permissions_ = OwnOrNothing<PermissionsObject>(permissions);
  }
  void SetMayRun(bool may) override { Put<&TaskRecord::may_run>(may); }
  void SetMayEdit(bool may) override { Put<&TaskRecord::may_edit>(may); }
  void SetMayDelete(bool may) override { Put<&TaskRecord::may_delete>(may); }
  [[nodiscard]] std::int32_t ProcessingMode() override { return Get<&TaskRecord::processing_mode>(); }
  void SetProcessingMode(std::int32_t mode) override { Put<&TaskRecord::processing_mode>(mode); }
  [[nodiscard]] bool ProcessAllRecords() override { return Get<&TaskRecord::process_all_records>(); }
  void SetProcessAllRecords(bool all) override { Put<&TaskRecord::process_all_records>(all); }
  [[nodiscard]] bool ProcessFailedRecords() override { return Get<&TaskRecord::process_failed_records>(); }
  void SetProcessFailedRecords(bool failed) override { Put<&TaskRecord::process_failed_records>(failed); }
  [[nodiscard]] DateTime BaseDate() override { return Get<&TaskRecord::base_date>(); }
  void SetBaseDate(DateTime date) override { Put<&TaskRecord::base_date>(date); }
  [[nodiscard]] Ref<plovix::Recurrence> Recurrence() override {
    return Gated("AutoTask.Recurrence", recurrence_);
  }
  void SetRecurrence(Ref<plovix::Recurrence> recurrence) override {
    Called("AutoTask.SetRecurrence");
    recurrence_ = OwnOrNothing<RecurrenceObject>(recurrence);
  }
  [[nodiscard]] Ref<ActionList> Actions() override { return Gated("AutoTask.Actions", actions_); }
  void SetActions(Ref<ActionList> actions) override {
    Called("AutoTask.SetActions");
    actions_ = OwnObject<ActionListObject>(actions);
  }
  [[nodiscard]] Ref<CategoryList> Categories() override { return Gated("AutoTask.Categories", categories_); }
  void SetCategories(Ref<CategoryList> categories) override {
    Called("AutoTask.SetCategories");
    categories_ = OwnOrNothing<CategoryListObject>(categories);
  }

 private:
  HostState& state_;
  // What `record` is without.
  Ref<ActionListObject> actions_;
  Ref<CategoryListObject> categories_;
  Ref<RecurrenceObject> recurrence_;
  Ref<PermissionsObject> permissions_;
};

}  // namespace

Ref<Action> ActionListObject::Item(std::int32_t index) {
  Called("ActionList.Item");
  return std::make_shared<ActionObject>(ItemAt(records, index));
}

void ActionListObject::Remove(std::int32_t index) {
  Called("ActionList.Remove");
  records.erase(records.begin() + (&ItemAt(records, index) - records.data()));
}

std::shared_ptr<TaskObject> MakeTask(HostState& state, const TaskRecord& record) {
  return std::make_shared<PlainTask>(state, record);
}

void StoreObject::Add(const std::string& key, Value value) {
  Called("ValueStore.Add");
  if (!values.emplace(key, std::move(value)).second) {
    throw Failure(failure_number::kKeyInUse, "This key is already associated with an element: " + key);
  }
}

Ref<StoreEntry> StoreObject::Item(const std::string& key) {
  Called("ValueStore.Item");
  const auto found = values.find(key);
  if (found == values.end()) throw Failure(failure_number::kInvalidCall, "The store holds no entry " + key);
  return std::make_shared<EntryObject>(found->second);
}

Value StoreObject::GetValue(const std::string& key, const Value& fallback) {
  Called("ValueStore.GetValue");
  const auto found = values.find(key);
  return found == values.end() ? fallback : found->second;
}

void StoreObject::SetItem(const std::string& key, Value value) {
  Called("ValueStore.SetItem");
  values.insert_or_assign(key, std::move(value));
}

bool StoreObject::Exists(const std::string& key) {
  Called("ValueStore.Exists");
  return values.contains(key);
}

}  // namespace plovix
