// What the walker knows of the pages: what a user finds on coming back to one, and when saving it must fail.
#pragma once

#include <plovix/framework/numeric_text.h>
#include <plovix/standalone/model/task_fields.h>

#include <limits>

#include "faults.h"
#include "hand.h"

namespace plovix::testing_support {

// What of a stored task is not as it has to be; nothing when all is.
inline std::string Differences(const std::optional<TaskRecord>& stored, const TaskRecord& wanted) {
  if (stored == wanted) return "";
  if (!stored) return "the task is gone";
  std::string names = "not the same:";
  const auto note = [&](std::string_view name, bool same) { names += same ? "" : " " + std::string(name); };
  const auto compare = [&](const auto& fields, const auto& one, const auto& other) {
    ForEachField(fields, [&](auto name, auto field) { note(name, one.*field == other.*field); });
  };
  compare(kTaskFields, *stored, wanted);
  note("Actions", stored->actions == wanted.actions);
  note("Categories", stored->categories == wanted.categories);
  note("Permissions", stored->permissions == wanted.permissions);
  note("schedule start", stored->schedule_start == wanted.schedule_start);
  const RecurrenceRecord none;
  compare(kRecurrenceFields, stored->recurrence.value_or(none), wanted.recurrence.value_or(none));
  note("Pattern", stored->recurrence.value_or(none).pattern == wanted.recurrence.value_or(none).pattern);
  return names;
}

// What is neither as it was before nor as it is wanted after: the names of what was lost.
inline std::string Lost(const TaskRecord& before, const TaskRecord& wanted, const TaskRecord& after) {
  std::string names;
  const auto note = [&](std::string_view name, const auto& former, const auto& good, const auto& now) {
    if (now != former && now != good) names += " " + std::string(name);
  };
  const auto compare = [&](const auto& fields, const auto& former, const auto& good, const auto& now) {
    ForEachField(fields, [&](auto name, auto field) { note(name, former.*field, good.*field, now.*field); });
  };
  compare(kTaskFields, before, wanted, after);
  note("Actions", before.actions, wanted.actions, after.actions);
  note("Categories", before.categories, wanted.categories, after.categories);
  note("Permissions", before.permissions, wanted.permissions, after.permissions);
  note("Recurrence", before.recurrence.has_value(), wanted.recurrence.has_value(),
       after.recurrence.has_value());
  if (!after.recurrence) return names;
  const auto former = before.recurrence.value_or(RecurrenceRecord{});
  const auto good = wanted.recurrence.value_or(RecurrenceRecord{});
  compare(kRecurrenceFields, former, good, *after.recurrence);
  note("Pattern", former.pattern.index(), good.pattern.index(), after.recurrence->pattern.index());
  // A pattern of another kind has nothing to lose.
  if (former.pattern.index() != after.recurrence->pattern.index()) return names;
  ForEachField(kPatternFields, [&](auto name, auto field) {
    const auto* now = FieldIn(after.recurrence->pattern, field);
    if (now == nullptr) return;
    const auto& kept = *FieldIn(former.pattern, field);
    const auto* typed = FieldIn(good.pattern, field);
    if constexpr (requires { now->size(); }) {  // the days, each by itself
      for (std::size_t i = 0; i < now->size(); ++i)
        note(name, kept[i], (typed ? *typed : kept)[i], (*now)[i]);
    } else {
      note(name, kept, typed ? *typed : kept, *now);
    }
  });
  return names;
}

inline bool IsOn(const Form& form, std::string_view name) {
  return ValueOf(form.Get(name)) == "1";
}

// The field that saving takes the page's interval from; none beside a time of day, or without an interval.
inline std::string IntervalField(const Form& form) {
  const std::string_view page = form.Design().page;
  if (page == "DailyRecurrence") return "txtDays";
  if (page == "WeeklyRecurrence") return "txtWeeks";
  if (page == "MonthlyRecurrence")
    return IsOn(form, "optRelativeDay") ? "txtRelativeDayMonth" : "txtSpecificDayMonth";
  if (page != "RecurrenceTime" || IsOn(form, "optSpecificTime")) return "";
  return IsOn(form, "optEveryNMinute") ? "txtMinutes" : "txtHours";
}

// What a numeric text is when it was saved and loaded: "1" in place of one that is no number, not above 0, or
// above the limit; nothing beyond 32 bits, which saving reports as an overflow.
inline std::optional<std::string> NumberKept(const std::string& text,
                                             double limit = std::numeric_limits<double>::max()) {
  const auto number = NumericText::Parse(text, ".");
  if (!number || number->Value() <= 0 || number->Value() > limit) return "1";
  try {
    return std::to_string(number->ToInt32());
  } catch (const Failure&) {
    return std::nullopt;
  }
}

inline bool Overflows(const Form& form) {
  const std::string field = IntervalField(form);
  return !field.empty() && !NumberKept(ValueOf(form.Get(field)));
}

// What the controls show when the page was saved, left and shown again. Not named is what has no place in the
// task: an interval beside a time of day or beyond 32 bits, the month on the line of a yearly pattern that is
// not chosen, a day of a year that lacks it, a base date without its check box, an action's failed records
// beside all records.
inline std::map<std::string, std::string> Promised(const Form& form) {
  std::map<std::string, std::string> all;
  for (std::size_t i = 0; i < form.Count(); ++i) {
    const Kind kind = form.At(i).GetKind();
    const bool passive = kind == Kind::kLabel || kind == Kind::kFrame || kind == Kind::kCommandButton;
    if (!passive) all[std::string(form.At(i).Name())] = ValueOf(form.At(i));
  }
  const auto keep = [&](const char* name, const std::optional<std::string>& text) {
    if (text && all.contains(name)) all[name] = *text;
    if (!text) all.erase(name);
  };
  const auto kept = [&](const std::string& name, bool when = true) {
    return when && all.contains(name) ? std::optional(all[name]) : std::nullopt;
  };
  const std::string field = IntervalField(form);
  const auto interval = field.empty() ? std::nullopt : NumberKept(all[field]);
  // All fields of a page show its one interval.
  for (const char* name :
       {"txtDays", "txtWeeks", "txtMinutes", "txtHours", "txtSpecificDayMonth", "txtRelativeDayMonth"})
    keep(name, interval);
  if (const auto day = kept("txtDay")) keep("txtDay", NumberKept(*day, 31));
  if (const auto day = kept("txtSpecificDay")) {
    const bool in_every_month = NumberKept(*day, 28) == day;
    keep("txtSpecificDay", kept("txtSpecificDay", in_every_month));
    const bool relative = IsOn(form, "optRelativeDay");
    const auto month = kept(relative ? "cboRelativeDayMonth" : "cboSpecificDayMonth");
    for (const char* name : {"cboRelativeDayMonth", "cboSpecificDayMonth"}) keep(name, month);
  }
  // A task of a mode that no option stands for becomes one without data.
  if (all.contains("optNoData") && !IsOn(form, "optSingleRecord") && !IsOn(form, "optQueryResults"))
    keep("optNoData", "1");
  if (form.Design().page == "Records") {
    for (const char* name : {"dtpDate", "dtpTime"}) keep(name, kept(name, IsOn(form, "chkUseBaseDate")));
    if (IsOn(form, "chkProcessAll")) keep("chkFailedRecords", "0");
  }
  return all;
}

}  // namespace plovix::testing_support
