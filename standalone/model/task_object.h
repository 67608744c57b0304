// The stand-alone host's objects behind AutoTask, its lists and the shared store.
#pragma once

#include <plovix/host/auto_task.h>
#include <plovix/host/value_store.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "recurrence_object.h"
#include "task_record.h"

namespace plovix {

// The text of a language tag in the current language.
using TagTexts = std::function<std::string(const std::string& tag)>;

class ActionObject final : public Action {
 public:
  explicit ActionObject(ActionRecord record) : record_(std::move(record)) {}
  [[nodiscard]] const ActionRecord& Record() const noexcept { return record_; }
  [[nodiscard]] std::int32_t RecordModes() override;
  [[nodiscard]] std::int32_t Capabilities() override;

 private:
  ActionRecord record_;
};

class ActionListObject final : public ActionList {
 public:
  explicit ActionListObject(std::vector<ActionRecord> initial = {}) : records(std::move(initial)) {}
  [[nodiscard]] std::int32_t Count() override;
  [[nodiscard]] std::shared_ptr<Action> Item(std::int32_t index) override;
  void Remove(std::int32_t index) override;

  std::vector<ActionRecord> records;  // the host's own view, not gated

 private:
};

class CategoryListObject final : public CategoryList {
 public:
  CategoryListObject(std::vector<CategoryRecord> initial, TagTexts texts)
      : records(std::move(initial)), texts_(std::move(texts)) {}
  [[nodiscard]] std::int32_t Count() override;
  [[nodiscard]] std::shared_ptr<Category> Item(std::int32_t index) override;

  std::vector<CategoryRecord> records;

 private:
  TagTexts texts_;
};

class TaskObject final : public AutoTask {
 public:
  TaskObject(const TaskRecord& record, TagTexts texts);
  // The task as values; its lists and its recurrence are taken from the objects that it holds now.
  [[nodiscard]] TaskRecord Record() const;
  // Replaces the values and makes new list objects; recurrence and pattern objects that fit are kept.
  void Assign(const TaskRecord& record);

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
  [[nodiscard]] std::string Owner() override;
  [[nodiscard]] std::int32_t ProcessingMode() override;
  void SetProcessingMode(std::int32_t mode) override;
  [[nodiscard]] bool ProcessAllRecords() override;
  void SetProcessAllRecords(bool all) override;
  [[nodiscard]] bool ProcessFailedRecords() override;
  void SetProcessFailedRecords(bool failed) override;
  [[nodiscard]] DateTime BaseDate() override;
  void SetBaseDate(DateTime date) override;
  [[nodiscard]] std::shared_ptr<plovix::Recurrence> Recurrence() override;
  // Fails with 13 on a recurrence that this host did not make.
  void SetRecurrence(std::shared_ptr<plovix::Recurrence> recurrence) override;
  [[nodiscard]] std::shared_ptr<ActionList> Actions() override;
  // Fails with 13 on a list that this host did not make.
  void SetActions(std::shared_ptr<ActionList> actions) override;
  [[nodiscard]] std::shared_ptr<CategoryList> Categories() override;

 private:
  TaskRecord fields_;  // without its lists and its recurrence
  std::shared_ptr<ActionListObject> actions_;
  std::shared_ptr<CategoryListObject> categories_;
  std::shared_ptr<RecurrenceObject> recurrence_;
  TagTexts texts_;
};

class StoreObject final : public ValueStore {
 public:
  void Add(const std::string& key, Value value) override;
  [[nodiscard]] std::shared_ptr<StoreEntry> Item(const std::string& key) override;
  [[nodiscard]] Value GetValue(const std::string& key, const Value& fallback) override;
  void SetItem(const std::string& key, Value value) override;
  [[nodiscard]] bool Exists(const std::string& key) override;

  std::map<std::string, Value> values;  // the host's own view, not gated
};

}  // namespace plovix
