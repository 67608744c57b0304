/// @file
/// The gate that every call from a page to an object of the stand-alone host passes. An observer can count
/// the calls or make one fail, as the script surface's "fail" and the tests' fault sweep do.
#pragma once

#include <plovix/base/requirements.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace plovix {

/// Every gated member, "Interface.Member", as a list in words.
inline constexpr std::string_view kHostMemberWords =
    R"(ActionList.Count ActionList.Item ActionList.Remove Action.RecordModes Action.Capabilities
AutoTask.IsExisting AutoTask.RecordMode AutoTask.SetRecordMode AutoTask.UsesLanguageTags AutoTask.Name
AutoTask.SetName AutoTask.ShortDescription AutoTask.SetShortDescription AutoTask.Description
AutoTask.SetDescription AutoTask.NameTag AutoTask.SetNameTag AutoTask.ShortDescriptionTag
AutoTask.SetShortDescriptionTag AutoTask.DescriptionTag AutoTask.SetDescriptionTag AutoTask.LocalizedName
AutoTask.LocalizedShortDescription AutoTask.LocalizedDescription AutoTask.DataObjectName
AutoTask.SetDataObjectName AutoTask.DataObjectCaption AutoTask.SetDataObjectCaption
AutoTask.AllowAutomationManager AutoTask.SetAllowAutomationManager AutoTask.SkipRowSelection
AutoTask.SetSkipRowSelection AutoTask.Query AutoTask.SetQuery AutoTask.Owner AutoTask.SetOwner
AutoTask.Permissions AutoTask.SetPermissions AutoTask.SetMayRun AutoTask.SetMayEdit AutoTask.SetMayDelete
AutoTask.Actions AutoTask.SetActions AutoTask.Categories AutoTask.SetCategories AutoTask.ProcessingMode
AutoTask.SetProcessingMode AutoTask.ProcessAllRecords AutoTask.SetProcessAllRecords
AutoTask.ProcessFailedRecords AutoTask.SetProcessFailedRecords AutoTask.BaseDate AutoTask.SetBaseDate
AutoTask.Recurrence AutoTask.SetRecurrence
Recurrence.RecurrenceType Recurrence.SetRecurrenceType Recurrence.Pattern Recurrence.SetPattern
Recurrence.TimeKind Recurrence.SetTimeKind Recurrence.Interval Recurrence.SetInterval
Recurrence.ExecutionTime Recurrence.SetExecutionTime
DailyPattern.EveryNDays DailyPattern.SetEveryNDays DailyPattern.WeekdaysOnly DailyPattern.SetWeekdaysOnly
WeeklyPattern.EveryNWeeks WeeklyPattern.SetEveryNWeeks WeeklyPattern.Day WeeklyPattern.SetDay
MonthlyPattern.UseRelativeDay MonthlyPattern.SetUseRelativeDay MonthlyPattern.DayOfMonth
MonthlyPattern.SetDayOfMonth MonthlyPattern.EveryNMonths MonthlyPattern.SetEveryNMonths
MonthlyPattern.RelativeWeek MonthlyPattern.SetRelativeWeek MonthlyPattern.RelativeDayOfWeek
MonthlyPattern.SetRelativeDayOfWeek
YearlyPattern.UseRelativeDay YearlyPattern.SetUseRelativeDay YearlyPattern.Month YearlyPattern.SetMonth
YearlyPattern.DayOfMonth YearlyPattern.SetDayOfMonth YearlyPattern.RelativeWeek
YearlyPattern.SetRelativeWeek YearlyPattern.RelativeDayOfWeek YearlyPattern.SetRelativeDayOfWeek
CategoryList.Count CategoryList.Item CategoryList.Add CategoryList.Clone CategoryList.Load CategoryList.Edit
Category.Tag Category.SetTag Category.Text Category.Public
TextCollection.Add TextCollection.Count TextCollection.Item
DataObject.Name DataObject.Caption DataObject.Key DataObject.Handle DataObject.Fields
DataObjects.Count DataObjects.Item DataObjectCatalog.Find QueryDefinition.Text QueryDefinition.SetText
QueryBuilder.Show
Session.CurrentUser Session.AccountId Session.HasPermission Session.EditPermissions
User.UserId Database.Connection Connection.OpenRecordset
Recordset.BOF Recordset.EOF Recordset.Fields Recordset.MoveNext
Field.Value
ObjectLoader.LoadDataObjects ObjectLoader.LoadDesignerObjects
HostServices.Factory
ObjectFactory.NewActionList ObjectFactory.NewValueStore ObjectFactory.NewCategoryList
ObjectFactory.NewCategory ObjectFactory.NewTextCollection ObjectFactory.NewPermissionEditor
ObjectFactory.NewQueryDefinition ObjectFactory.NewQueryBuilder ObjectFactory.NewRecurrence
ObjectFactory.NewDailyPattern ObjectFactory.NewWeeklyPattern ObjectFactory.NewMonthlyPattern
ObjectFactory.NewYearlyPattern
Utilities.BuildPath Utilities.FileExists Utilities.BoolToCheck Utilities.CheckToBool
Utilities.ObjectFromHandle Utilities.FoldCase
HostApplication.Language HostApplication.Translator HostApplication.UserRights HostApplication.Session
HostApplication.Database HostApplication.DataObjectCatalog HostApplication.Loader HostApplication.Title
HostApplication.Path HostApplication.LanguageTagMode HostApplication.DecimalSeparator HostApplication.Now
HostApplication.MsgBox
LanguageTable.GetString LanguageTable.EditTag LanguageTable.TagText LanguageTable.TagForText
Translator.TranslateControls Translator.SetLinkStyle UserRights.HasRight
ValueStore.Add ValueStore.Item ValueStore.GetValue ValueStore.SetItem ValueStore.Exists
StoreEntry.Value
VeloActionList.Load VeloActionList.Actions VeloActionList.OnContextRequest
WizardHost.Refresh WizardHost.MoveNext)";

/// The words of kHostMemberWords, in their order. Plain loops: every file that names members computes this.
inline constexpr auto kHostMembers = [] {
  constexpr auto kParts = [](char byte) { return byte == ' ' || byte == '\n'; };
  constexpr auto kCount = [=] {
    std::size_t count = 1;
    for (const char byte : kHostMemberWords) count += kParts(byte) ? 1 : 0;
    return count;
  }();
  std::array<std::string_view, kCount> members;
  std::size_t begin = 0;
  for (std::string_view& member : members) {
    std::size_t end = begin;
    while (end < kHostMemberWords.size() && !kParts(kHostMemberWords[end])) ++end;
    member = kHostMemberWords.substr(begin, end - begin);
    begin = end + 1;
  }
  return members;
}();

/// A member's name that is known to stand in the list.
class HostMember {
 public:
  /// @{
  /// Does not compile for a name that is not listed: as a whole, or as interface, "Set" or nothing, and
  /// field.
  consteval HostMember(const char* name) : HostMember("", name, "") {}  // NOLINT(*-explicit-*)
  consteval HostMember(std::string_view interface, std::string_view verb, std::string_view field) {
    const std::size_t point = interface.empty() ? 0 : 1;
    const std::size_t size = interface.size() + point + verb.size() + field.size();
    for (const std::string_view& listed : kHostMembers) {
      if (listed.size() == size && listed.ends_with(field) && listed.starts_with(interface) &&
          listed.substr(interface.size() + point).starts_with(verb))
        name_ = listed;
    }
    if (name_.empty()) throw "an unlisted host member";
  }
  /// @}
  /// The name as listed.
  [[nodiscard]] constexpr std::string_view Name() const { return name_; }

 private:
  std::string_view name_;
};

/// Sees every call from a page to the host's objects.
class CallObserver {
 public:
  virtual ~CallObserver() = default;
  /// Called before the member does anything; an exception makes the call fail.
  virtual void HostCalled(std::string_view member) = 0;
};

/// Sets an observer for this thread's gate during its lifetime; afterwards restores the former one.
class ObserveCalls {
 public:
  /// `observer` outlives this object.
  explicit ObserveCalls(CallObserver& observer);
  ~ObserveCalls();
  ObserveCalls(const ObserveCalls&) = delete;
  ObserveCalls& operator=(const ObserveCalls&) = delete;

 private:
  CallObserver* former_;
};

/// Passes the gate: first line of every gated member.
void Called(HostMember member);

/// A gated member that only tells a value.
template <class Value>
[[nodiscard]] Value Gated(HostMember member, const Value& value) {
  Called(member);
  return value;
}

}  // namespace plovix
