#include "task_object.h"

#include "call_gate.h"
#include "host_state.h"
#include "list_position.h"

namespace plovix {
namespace {

// The object as this host's class; null for null. Fails with 13 on any other object.
template <class Own, class Object>
std::shared_ptr<Own> OwnOrNothing(const std::shared_ptr<Object>& object) {
  auto own = std::dynamic_pointer_cast<Own>(object);
  if (object && !own) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  return own;
}

class EntryObject final : public StoreEntry {
 public:
  explicit EntryObject(plovix::Value value) : value_(std::move(value)) {}
  [[nodiscard]] plovix::Value Value() const override {
    Called("StoreEntry.Value");
    return value_;
  }

 private:
  plovix::Value value_;
};

}  // namespace

std::int32_t ActionObject::RecordModes() {
  Called("Action.RecordModes");
  return record_.record_modes;
}

std::int32_t ActionObject::Capabilities() {
  Called("Action.Capabilities");
  return record_.capabilities;
}

std::int32_t ActionListObject::Count() {
  Called("ActionList.Count");
  return static_cast<std::int32_t>(records.size());
}

std::shared_ptr<Action> ActionListObject::Item(std::int32_t index) {
  Called("ActionList.Item");
  return std::make_shared<ActionObject>(records[ListPosition(index, records.size())]);
}

void ActionListObject::Remove(std::int32_t index) {
  Called("ActionList.Remove");
  records.erase(records.begin() + static_cast<std::ptrdiff_t>(ListPosition(index, records.size())));
}

TaskObject::TaskObject(HostState& state, const TaskRecord& record) : state_(state) {
  Assign(record);
}

TaskRecord TaskObject::Record() const {
  TaskRecord record = fields_;
  record.actions = actions_->records;
  if (categories_) record.categories = categories_->Records();
  if (permissions_) record.permissions = permissions_->set;
  if (recurrence_) record.recurrence = recurrence_->Record();
  return record;
}

void TaskObject::Assign(const TaskRecord& record) {
  fields_ = record;
  fields_.actions.clear();
  fields_.categories.clear();
  fields_.recurrence.reset();
  fields_.permissions.reset();
  actions_ = std::make_shared<ActionListObject>(record.actions);
  categories_ = std::make_shared<CategoryListObject>(state_, record.categories);
  permissions_ = record.permissions ? std::make_shared<PermissionsObject>(*record.permissions) : nullptr;
  if (!record.recurrence) {
    recurrence_ = nullptr;
  } else if (recurrence_) {
    recurrence_->Assign(*record.recurrence);
  } else {
    recurrence_ = std::make_shared<RecurrenceObject>(*record.recurrence);
  }
}

bool TaskObject::IsExisting() {
  Called("AutoTask.IsExisting");
  return fields_.id != 0;
}

std::int16_t TaskObject::RecordMode() {
  Called("AutoTask.RecordMode");
  return fields_.record_mode;
}

void TaskObject::SetRecordMode(std::int16_t mode) {
  Called("AutoTask.SetRecordMode");
  fields_.record_mode = mode;
}

bool TaskObject::UsesLanguageTags() {
  Called("AutoTask.UsesLanguageTags");
  return fields_.uses_language_tags;
}

std::string TaskObject::Name() {
  Called("AutoTask.Name");
  return fields_.name;
}

void TaskObject::SetName(const std::string& text) {
  Called("AutoTask.SetName");
  fields_.name = text;
}

std::string TaskObject::ShortDescription() {
  Called("AutoTask.ShortDescription");
  return fields_.short_description;
}

void TaskObject::SetShortDescription(const std::string& text) {
  Called("AutoTask.SetShortDescription");
  fields_.short_description = text;
}

std::string TaskObject::Description() {
  Called("AutoTask.Description");
  return fields_.description;
}

void TaskObject::SetDescription(const std::string& text) {
  Called("AutoTask.SetDescription");
  fields_.description = text;
}

std::string TaskObject::NameTag() {
  Called("AutoTask.NameTag");
  return fields_.name_tag;
}

void TaskObject::SetNameTag(const std::string& tag) {
  Called("AutoTask.SetNameTag");
  fields_.name_tag = tag;
}

std::string TaskObject::ShortDescriptionTag() {
  Called("AutoTask.ShortDescriptionTag");
  return fields_.short_description_tag;
}

void TaskObject::SetShortDescriptionTag(const std::string& tag) {
  Called("AutoTask.SetShortDescriptionTag");
  fields_.short_description_tag = tag;
}

std::string TaskObject::DescriptionTag() {
  Called("AutoTask.DescriptionTag");
  return fields_.description_tag;
}

void TaskObject::SetDescriptionTag(const std::string& tag) {
  Called("AutoTask.SetDescriptionTag");
  fields_.description_tag = tag;
}

std::string TaskObject::DataObjectName() {
  Called("AutoTask.DataObjectName");
  return fields_.data_object_name;
}

void TaskObject::SetDataObjectName(const std::string& name) {
  Called("AutoTask.SetDataObjectName");
  fields_.data_object_name = name;
}

std::string TaskObject::DataObjectCaption() {
  Called("AutoTask.DataObjectCaption");
  return fields_.data_object_caption;
}

void TaskObject::SetDataObjectCaption(const std::string& caption) {
  Called("AutoTask.SetDataObjectCaption");
  fields_.data_object_caption = caption;
}

std::string TaskObject::LocalizedName() {
  Called("AutoTask.LocalizedName");
  return state_.TagText(fields_.name_tag);
}

std::string TaskObject::LocalizedShortDescription() {
  Called("AutoTask.LocalizedShortDescription");
  return state_.TagText(fields_.short_description_tag);
}

std::string TaskObject::LocalizedDescription() {
  Called("AutoTask.LocalizedDescription");
  return state_.TagText(fields_.description_tag);
}

bool TaskObject::AllowAutomationManager() {
  Called("AutoTask.AllowAutomationManager");
  return fields_.allow_automation_manager;
}

void TaskObject::SetAllowAutomationManager(bool allow) {
  Called("AutoTask.SetAllowAutomationManager");
  fields_.allow_automation_manager = allow;
}

bool TaskObject::SkipRowSelection() {
  Called("AutoTask.SkipRowSelection");
  return fields_.skip_row_selection;
}

void TaskObject::SetSkipRowSelection(bool skip) {
  Called("AutoTask.SetSkipRowSelection");
  fields_.skip_row_selection = skip;
}

std::string TaskObject::Query() {
  Called("AutoTask.Query");
  return fields_.query;
}

void TaskObject::SetQuery(const std::string& query) {
  Called("AutoTask.SetQuery");
  fields_.query = query;
}

std::string TaskObject::Owner() {
  Called("AutoTask.Owner");
  return fields_.owner;
}

void TaskObject::SetOwner(const std::string& user_id) {
  Called("AutoTask.SetOwner");
  fields_.owner = user_id;
}

std::shared_ptr<plovix::Permissions> TaskObject::Permissions() {
  Called("AutoTask.Permissions");
  return permissions_;
}

void TaskObject::SetPermissions(std::shared_ptr<plovix::Permissions> permissions) {
  Called("AutoTask.SetPermissions");
  permissions_ = OwnOrNothing<PermissionsObject>(permissions);
}

void TaskObject::SetMayRun(bool may) {
  Called("AutoTask.SetMayRun");
  fields_.may_run = may;
}

void TaskObject::SetMayEdit(bool may) {
  Called("AutoTask.SetMayEdit");
  fields_.may_edit = may;
}

void TaskObject::SetMayDelete(bool may) {
  Called("AutoTask.SetMayDelete");
  fields_.may_delete = may;
}

std::int32_t TaskObject::ProcessingMode() {
  Called("AutoTask.ProcessingMode");
  return fields_.processing_mode;
}

void TaskObject::SetProcessingMode(std::int32_t mode) {
  Called("AutoTask.SetProcessingMode");
  fields_.processing_mode = mode;
}

bool TaskObject::ProcessAllRecords() {
  Called("AutoTask.ProcessAllRecords");
  return fields_.process_all_records;
}

void TaskObject::SetProcessAllRecords(bool all) {
  Called("AutoTask.SetProcessAllRecords");
  fields_.process_all_records = all;
}

bool TaskObject::ProcessFailedRecords() {
  Called("AutoTask.ProcessFailedRecords");
  return fields_.process_failed_records;
}

void TaskObject::SetProcessFailedRecords(bool failed) {
  Called("AutoTask.SetProcessFailedRecords");
  fields_.process_failed_records = failed;
}

DateTime TaskObject::BaseDate() {
  Called("AutoTask.BaseDate");
  return fields_.base_date;
}

void TaskObject::SetBaseDate(DateTime date) {
  Called("AutoTask.SetBaseDate");
  fields_.base_date = date;
}

std::shared_ptr<plovix::Recurrence> TaskObject::Recurrence() {
  Called("AutoTask.Recurrence");
  return recurrence_;
}

void TaskObject::SetRecurrence(std::shared_ptr<plovix::Recurrence> recurrence) {
  Called("AutoTask.SetRecurrence");
  recurrence_ = OwnOrNothing<RecurrenceObject>(recurrence);
}

std::shared_ptr<ActionList> TaskObject::Actions() {
  Called("AutoTask.Actions");
  return actions_;
}

void TaskObject::SetActions(std::shared_ptr<ActionList> actions) {
  Called("AutoTask.SetActions");
  if (!actions) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  actions_ = OwnOrNothing<ActionListObject>(actions);
}

std::shared_ptr<CategoryList> TaskObject::Categories() {
  Called("AutoTask.Categories");
  return categories_;
}

void TaskObject::SetCategories(std::shared_ptr<CategoryList> categories) {
  Called("AutoTask.SetCategories");
  categories_ = OwnOrNothing<CategoryListObject>(categories);
}

void StoreObject::Add(const std::string& key, Value value) {
  Called("ValueStore.Add");
  if (!values.emplace(key, std::move(value)).second) {
    throw Failure(failure_number::kKeyInUse, "This key is already associated with an element: " + key);
  }
}

std::shared_ptr<StoreEntry> StoreObject::Item(const std::string& key) {
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
