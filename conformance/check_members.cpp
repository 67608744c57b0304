// Table-driven checks of everything that is set and read back: each member keeps its value, changes no other
// member, and is unset in a new object.
#include <algorithm>
#include <climits>
#include <type_traits>

#include "object_checks.h"

namespace plovix::conformance {
namespace {

struct Member {
  const char* name;
  std::function<Value(HostObject& object)> get;
  std::function<void(HostObject& object, const Value& value)> set;
  std::vector<Value> values;  // to try; the first is the unset value, the next two differ from it
};

// Values that hosts easily alter: blanks, line ends, numbers outside a range, seconds, distant dates.
template <class T>
std::vector<Value> Samples() {
  using namespace std::chrono;
  if constexpr (std::is_same_v<T, bool>) return {false, true, false};
  if constexpr (std::is_same_v<T, std::int16_t>) return {0, 1, 2, 3, -1, SHRT_MAX, SHRT_MIN};
  if constexpr (std::is_same_v<T, std::int32_t>) return {0, 1, 2, 40, -1, INT_MAX, INT_MIN};
  if constexpr (std::is_same_v<T, std::string>)
    return {"", " \tblanks \n", "Größe \"{1}\" 日本 %'\\", std::string(3000, 'x')};
  if constexpr (std::is_same_v<T, DateTime>) {
    return {kZeroDate, local_days{2026y / 3 / 29} + 9017s, kZeroDate - days{1}, local_days{9999y / 12 / 31}};
  }
}

template <class Object, class T, class Argument>
Member Of(const char* name, T (Object::*get)(), void (Object::*set)(Argument)) {
  using Kept = std::conditional_t<std::is_same_v<T, std::int16_t>, std::int32_t, T>;
  return {name, [get](HostObject& object) { return Value(Kept((dynamic_cast<Object&>(object).*get)())); },
          [set](HostObject& object, const Value& value) {
            (dynamic_cast<Object&>(object).*set)(static_cast<T>(std::get<Kept>(value)));
          },
          Samples<T>()};
}

struct ObjectKind {
  const char* name;
  std::function<ObjectRef()> make;
  std::vector<Member> members;
  bool starts_unset = false;
};

ObjectKind TaskKind(const Examination& exam) {
  using T = AutoTask;
  return {"AutoTask",
          [&exam] { return exam.Task(); },
          {Of("RecordMode", &T::RecordMode, &T::SetRecordMode), Of("Name", &T::Name, &T::SetName),
           Of("ShortDescription", &T::ShortDescription, &T::SetShortDescription),
           Of("Description", &T::Description, &T::SetDescription), Of("NameTag", &T::NameTag, &T::SetNameTag),
           Of("ShortDescriptionTag", &T::ShortDescriptionTag, &T::SetShortDescriptionTag),
           Of("DescriptionTag", &T::DescriptionTag, &T::SetDescriptionTag),
           Of("DataObjectName", &T::DataObjectName, &T::SetDataObjectName),
           Of("DataObjectCaption", &T::DataObjectCaption, &T::SetDataObjectCaption),
           Of("AllowAutomationManager", &T::AllowAutomationManager, &T::SetAllowAutomationManager),
           Of("SkipRowSelection", &T::SkipRowSelection, &T::SetSkipRowSelection),
           Of("Query", &T::Query, &T::SetQuery), Of("Owner", &T::Owner, &T::SetOwner),
           Of("ProcessingMode", &T::ProcessingMode, &T::SetProcessingMode),
           Of("ProcessAllRecords", &T::ProcessAllRecords, &T::SetProcessAllRecords),
           Of("ProcessFailedRecords", &T::ProcessFailedRecords, &T::SetProcessFailedRecords),
           Of("BaseDate", &T::BaseDate, &T::SetBaseDate)}};
}

std::vector<Member> DayMembers(Member own) {
  using P = DayInMonthPattern;
  return {Of("UseRelativeDay", &P::UseRelativeDay, &P::SetUseRelativeDay),
          Of("DayOfMonth", &P::DayOfMonth, &P::SetDayOfMonth),
          Of("RelativeWeek", &P::RelativeWeek, &P::SetRelativeWeek),
          Of("RelativeDayOfWeek", &P::RelativeDayOfWeek, &P::SetRelativeDayOfWeek), std::move(own)};
}

std::vector<ObjectKind> Kinds(const Examination& exam) {
  using F = ObjectFactory;
  using R = Recurrence;
  const auto make = [&exam](auto member) { return [&exam, member] { return exam.New(member); }; };
  const ObjectKind recurrence = {
      "Recurrence",
      make(&F::NewRecurrence),
      {Of("RecurrenceType", &R::RecurrenceType, &R::SetRecurrenceType),
       Of("TimeKind", &R::TimeKind, &R::SetTimeKind), Of("Interval", &R::Interval, &R::SetInterval)}};
  const std::vector<Member> daily = {
      Of("EveryNDays", &DailyPattern::EveryNDays, &DailyPattern::SetEveryNDays),
      Of("WeekdaysOnly", &DailyPattern::WeekdaysOnly, &DailyPattern::SetWeekdaysOnly)};
  const auto weeks = Of("EveryNWeeks", &WeeklyPattern::EveryNWeeks, &WeeklyPattern::SetEveryNWeeks);
  const auto months = Of("EveryNMonths", &MonthlyPattern::EveryNMonths, &MonthlyPattern::SetEveryNMonths);
  const auto month = Of("Month", &YearlyPattern::Month, &YearlyPattern::SetMonth);
  return {TaskKind(exam),
          recurrence,
          {"DailyPattern", make(&F::NewDailyPattern), daily, true},
          {"WeeklyPattern", make(&F::NewWeeklyPattern), {weeks}, true},
          {"MonthlyPattern", make(&F::NewMonthlyPattern), DayMembers(months), true},
          {"YearlyPattern", make(&F::NewYearlyPattern), DayMembers(month), true},
          {"Category", make(&F::NewCategory), {Of("Tag", &Category::Tag, &Category::SetTag)}, true},
          {"QueryDefinition",
           make(&F::NewQueryDefinition),
           {Of("Text", &QueryDefinition::Text, &QueryDefinition::SetText)},
           true}};
}

bool Keeps(Examination& exam, const ObjectKind& kind, const Member& member) {
  const auto object = kind.make();
  for (const Value& value : member.values) {
    member.set(*object, value);
    if (member.get(*object) == value) continue;
    if (const auto* number = std::get_if<std::int32_t>(&value)) exam.detail = std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value)) exam.detail = text->substr(0, 40);
    return false;
  }
  return true;
}

// Sets all members, then changes each one and checks the others.
bool KeepsOthers(Examination& exam, const ObjectKind& kind) {
  for (const Member& changed : kind.members) {
    const auto object = kind.make();
    for (const Member& member : kind.members) member.set(*object, member.values[1]);
    changed.set(*object, changed.values[2]);
    for (const Member& other : kind.members) {
      if (&other == &changed || other.get(*object) == other.values[1]) continue;
      exam.detail = std::string("Set") + changed.name + " changes " + other.name;
      return false;
    }
  }
  return true;
}

// A task with every member set, stored and loaded again.
bool Stores(Examination& exam, const ObjectKind& kind) {
  const auto& store = Needed(exam.host.store_task, "store_task");
  const auto session = Given(exam.Application()->Session(), "Session");
  const Value user = Given(session->CurrentUser(), "CurrentUser")->UserId();
  // A host need not store an owner whom it does not know.
  const auto value = [&](const Member& member) {
    return std::string_view(member.name) == "Owner" ? user : member.values[1];
  };
  const auto task = As<AutoTask>(kind.make());
  for (const Member& member : kind.members) member.set(*task, value(member));
  const auto stored = Given(store(task), "store_task");
  for (const Member& member : kind.members) {
    exam.detail = member.name;
    if (member.get(*stored) != value(member)) return false;
  }
  exam.detail.clear();
  return stored->IsExisting();
}

bool StartsUnset(const ObjectKind& kind) {
  const auto first = kind.make();
  for (const Member& member : kind.members) member.set(*first, member.values[1]);
  const auto second = kind.make();
  const auto unset = [&](const Member& member) { return member.get(*second) == member.values[0]; };
  return std::ranges::all_of(kind.members, unset);
}

void CheckKind(Examination& exam, const ObjectKind& kind) {
  for (const Member& member : kind.members) {
    exam.Check(std::string("Set") + member.name +
                   " changes what it is given: the user would find, or the task do, another thing",
               [&] { return Keeps(exam, kind, member); });
  }
  if (kind.members.size() > 1) {
    exam.Check("Setting one member changes another: what a page has set before would be lost",
               [&] { return KeepsOthers(exam, kind); });
  }
  if (kind.starts_unset) {
    exam.Check("A new object is not unset, or not new: a page would show another task's values",
               [&] { return StartsUnset(kind); });
  }
}

}  // namespace

void CheckMembers(Examination& exam) {
  for (const ObjectKind& kind : Kinds(exam)) exam.About(kind.name, [&] { CheckKind(exam, kind); });
  const ObjectKind task = TaskKind(exam);
  exam.About(task.name, [&] {
    exam.Check("A stored task is loaded with other values, or as a new one: what was saved would be lost",
               [&] { return Stores(exam, task); });
  });
}

}  // namespace plovix::conformance
