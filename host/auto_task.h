/// @file
/// The automated task being edited. Implemented by the host, which creates it before the first page and
/// stores it after Finish. Pages hold a counted reference and change it only when they are left.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "action_list.h"
#include "category_list.h"
#include "recurrence.h"
#include "session.h"
#include "value.h"

namespace plovix {

/// AutoTask::RecordMode: what records the task processes. Other values may be stored; pages show no choice.
namespace record_mode {
inline constexpr std::int16_t kNoData = 0;        ///< none
inline constexpr std::int16_t kSingleRecord = 1;  ///< the user's current record
inline constexpr std::int16_t kQueryResults = 2;  ///< those that AutoTask::Query selects
}  // namespace record_mode

/// The one of record_mode_bit for a record mode; nothing for a mode that is none of these.
[[nodiscard]] constexpr std::optional<std::int32_t> RecordModeBit(std::int16_t mode) {
  switch (mode) {
    case record_mode::kNoData:
      return record_mode_bit::kNoData;
    case record_mode::kSingleRecord:
      return record_mode_bit::kSingleRecord;
    case record_mode::kQueryResults:
      return record_mode_bit::kQueryResults;
    default:
      return std::nullopt;
  }
}

/// AutoTask::ProcessingMode: which records a run processes. Other values may be stored; pages show no choice.
namespace processing_mode {
inline constexpr std::int32_t kOnce = 0;       ///< each record only once
inline constexpr std::int32_t kModified = 1;   ///< records that have been modified
inline constexpr std::int32_t kEveryTime = 2;  ///< each record on every run
}  // namespace processing_mode

/// Texts are UTF-8. Nothing here trims or checks its arguments. A page reads the task whenever it needs a
/// value, and writes it when it is left, from IWizardPage_CanChangePage. Only these changes are immediate:
/// Details changes actions and permissions, RecurrenceTime gives a recurrence to a task without one, and a
/// pattern page sets numbers that are not yet set.
class AutoTask : public HostObject {
 public:
  /// Whether the task is already stored; a new one takes some choices from the shared store instead.
  [[nodiscard]] virtual bool IsExisting() = 0;

  /// @{
  /// One of record_mode; set by the first page, which clears a data object and automation that do not fit.
  [[nodiscard]] virtual std::int16_t RecordMode() = 0;
  virtual void SetRecordMode(std::int16_t mode) = 0;
  /// @}

  /// True if the task's texts are language tags rather than literal texts. The host decides this from its
  /// LanguageTagMode when it creates the task, and keeps it with the task.
  [[nodiscard]] virtual bool UsesLanguageTags() = 0;
  /// @{
  /// The literal texts, used if the texts are not tags. Set by Details, like all members up to
  /// SetSkipRowSelection.
  [[nodiscard]] virtual std::string Name() = 0;
  virtual void SetName(const std::string& text) = 0;
  [[nodiscard]] virtual std::string ShortDescription() = 0;
  virtual void SetShortDescription(const std::string& text) = 0;
  [[nodiscard]] virtual std::string Description() = 0;
  virtual void SetDescription(const std::string& text) = 0;
  /// @}

  /// @{
  /// The language tags that carry the texts, used if the texts are tags.
  [[nodiscard]] virtual std::string NameTag() = 0;
  virtual void SetNameTag(const std::string& tag) = 0;
  [[nodiscard]] virtual std::string ShortDescriptionTag() = 0;
  virtual void SetShortDescriptionTag(const std::string& tag) = 0;
  [[nodiscard]] virtual std::string DescriptionTag() = 0;
  virtual void SetDescriptionTag(const std::string& tag) = 0;
  /// @}
  /// @{
  /// The text of each tag in the current language.
  [[nodiscard]] virtual std::string LocalizedName() = 0;
  [[nodiscard]] virtual std::string LocalizedShortDescription() = 0;
  [[nodiscard]] virtual std::string LocalizedDescription() = 0;
  /// @}

  /// @{
  /// The data object that the task works on; both are empty if there is none.
  [[nodiscard]] virtual std::string DataObjectName() = 0;
  virtual void SetDataObjectName(const std::string& name) = 0;
  [[nodiscard]] virtual std::string DataObjectCaption() = 0;
  virtual void SetDataObjectCaption(const std::string& caption) = 0;
  /// @}

  /// @{
  /// Whether the automation manager may run the task, that is, whether it has a schedule.
  [[nodiscard]] virtual bool AllowAutomationManager() = 0;
  virtual void SetAllowAutomationManager(bool allow) = 0;
  /// @}

  /// @{
  /// Whether a task on query results takes all of them without asking; false for any other task. The host
  /// gives it its meaning.
  [[nodiscard]] virtual bool SkipRowSelection() = 0;
  virtual void SetSkipRowSelection(bool skip) = 0;
  /// @}

  /// @{
  /// The query that selects the records, in the host's query language; set by the Query page.
  [[nodiscard]] virtual std::string Query() = 0;
  virtual void SetQuery(const std::string& query) = 0;
  /// @}

  /// @{
  /// User id of a personal task's owner, otherwise empty; set by Details, like the permissions.
  [[nodiscard]] virtual std::string Owner() = 0;
  virtual void SetOwner(const std::string& user_id) = 0;
  /// @}
  /// @{
  /// By reference; null for a task without its own set, as for every personal task.
  [[nodiscard]] virtual Ref<plovix::Permissions> Permissions() = 0;
  virtual void SetPermissions(Ref<plovix::Permissions> permissions) = 0;
  /// @}
  /// @{
  /// What the session was allowed to do with tasks on the data object when the task was last edited.
  virtual void SetMayRun(bool may) = 0;
  virtual void SetMayEdit(bool may) = 0;
  virtual void SetMayDelete(bool may) = 0;
  /// @}

  /// @{
  /// Which records a run processes: one of processing_mode. Set by the Records page, like all members below
  /// up to BaseDate.
  [[nodiscard]] virtual std::int32_t ProcessingMode() = 0;
  virtual void SetProcessingMode(std::int32_t mode) = 0;
  /// @}
  /// @{
  /// Process all records: the history of processed records is cleared.
  [[nodiscard]] virtual bool ProcessAllRecords() = 0;
  virtual void SetProcessAllRecords(bool all) = 0;
  /// @}
  /// @{
  /// Process failed records again: their history is cleared.
  [[nodiscard]] virtual bool ProcessFailedRecords() = 0;
  virtual void SetProcessFailedRecords(bool failed) = 0;
  /// @}
  /// @{
  /// Only records updated at or after this moment are processed; kZeroDate means no limit.
  [[nodiscard]] virtual DateTime BaseDate() = 0;
  virtual void SetBaseDate(DateTime date) = 0;
  /// @}

  /// @{
  /// When the task runs, by reference; null for a task without a schedule. RecurrenceTime creates it if there
  /// is none; Details drops it when the task is no longer given to the automation manager.
  [[nodiscard]] virtual Ref<plovix::Recurrence> Recurrence() = 0;
  virtual void SetRecurrence(Ref<plovix::Recurrence> recurrence) = 0;
  /// @}

  /// @{
  /// By reference, never null; replaced by the first page, Details and Actions.
  [[nodiscard]] virtual Ref<ActionList> Actions() = 0;
  virtual void SetActions(Ref<ActionList> actions) = 0;
  /// @}
  /// @{
  /// By reference; may be null. Details edits a clone and sets it.
  [[nodiscard]] virtual Ref<CategoryList> Categories() = 0;
  virtual void SetCategories(Ref<CategoryList> categories) = 0;
  /// @}
};

}  // namespace plovix
