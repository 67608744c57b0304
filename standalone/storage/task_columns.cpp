#include "task_columns.h"

#include <plovix/controls/failure.h>
#include <plovix/standalone/model/category_column.h>
#include <plovix/standalone/model/iso_time.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <variant>

#include "permission_column.h"

namespace plovix {
namespace {

using std::chrono::local_days;

// Gives the value back; what cannot be read again is not stored.
template <class Time>
Time Storable(Time value) {
  constexpr local_days kFirst{std::chrono::year{0} / 1 / 1};
  constexpr local_days kBehind{std::chrono::year{10000} / 1 / 1};
  if (value < kFirst || value >= kBehind) {
    throw Failure(failure_number::kOverflow, "A date outside the years 0 to 9999 cannot be stored");
  }
  return value;
}

// Values of a field's type, to and from the file.
struct ToFile {
  Statement& statement;
  int parameter;
  void operator()(const std::string& text) const { statement.BindText(parameter, text); }
  void operator()(std::integral auto number) const { statement.BindInteger(parameter, number); }
  void operator()(DateTime value) const { statement.BindText(parameter, IsoDateTime(Storable(value))); }
  void operator()(const std::vector<CategoryRecord>& categories) const {
    statement.BindText(parameter, EncodeCategories(categories));
  }
};

struct FromFile {
  const Statement& row;
  int column;
  bool operator()(std::string& text) const {
    text = row.Text(column);
    return true;
  }
  bool operator()(bool& flag) const {
    std::int64_t number = 0;
    const bool fits = ReadInteger(number, row, column);
    flag = number != 0;
    return fits;
  }
  template <std::integral Number>
  bool operator()(Number& number) const {
    return ReadInteger(number, row, column);
  }
  bool operator()(DateTime& date) const {
    const auto stored = ParseIsoDateTime(row.Text(column));
    if (stored) date = *stored;
    return stored.has_value();
  }
  bool operator()(std::vector<CategoryRecord>& categories) const {
    categories = DecodeCategories(row.Text(column));
    return true;
  }
};

bool IsNull(const Statement& row, int column) {
  return row.Type(column) == ColumnType::kNull;
}

// A column for the field that `kLocate` finds in a task; NULL where it finds none.
template <auto kLocate>
constexpr TaskColumn Column(std::string_view name) {
  return {name,
          [](Statement& statement, int parameter, const TaskRecord& task) {
            const auto* field = kLocate(task);
            if (field == nullptr) return statement.BindNull(parameter);
            ToFile{statement, parameter}(*field);
          },
          [](TaskRecord& task, const Statement& row, int column) {
            auto* field = kLocate(task);
            if (field == nullptr || IsNull(row, column)) return field == nullptr && IsNull(row, column);
            return FromFile{row, column}(*field);
          }};
}

template <auto kField>
constexpr auto kOwn = [](auto& task) { return &(task.*kField); };

template <auto kField>
constexpr auto kOfRecurrence =
    [](auto& task) { return task.recurrence ? &((*task.recurrence).*kField) : nullptr; };

template <class Pattern>
constexpr auto kPattern =
    [](auto& task) { return task.recurrence ? std::get_if<Pattern>(&task.recurrence->pattern) : nullptr; };

template <class Pattern, auto kField>
constexpr auto kOfPattern = [](auto& task) {
  auto* pattern = kPattern<Pattern>(task);
  return pattern != nullptr ? &(pattern->*kField) : nullptr;
};

template <std::size_t kIndex>
constexpr auto kOfWeek = [](auto& task) {
  auto* weekly = kPattern<WeeklyRecord>(task);
  return weekly != nullptr ? &weekly->days[kIndex] : nullptr;
};

// Of the day that a monthly and a yearly pattern choose alike.
template <auto kField>
constexpr auto kOfDay = [](auto& task) {
  auto* monthly = kPattern<MonthlyRecord>(task);
  auto* yearly = kPattern<YearlyRecord>(task);
  auto* day = monthly != nullptr ? &monthly->day : yearly != nullptr ? &yearly->day : nullptr;
  return day != nullptr ? &(day->*kField) : nullptr;
};

void BindStartDate(Statement& statement, int parameter, const TaskRecord& task) {
  if (!task.schedule_start) return statement.BindNull(parameter);
  statement.BindText(parameter, IsoDate(Storable(*task.schedule_start)));
}

bool ReadStartDate(TaskRecord& task, const Statement& row, int column) {
  if (IsNull(row, column)) return true;
  task.schedule_start = ParseIsoDate(row.Text(column));
  return task.schedule_start.has_value();
}

void BindPermissions(Statement& statement, int parameter, const TaskRecord& task) {
  if (!task.permissions) return statement.BindNull(parameter);
  statement.BindText(parameter, EncodePermissions(*task.permissions));
}

bool ReadPermissions(TaskRecord& task, const Statement& row, int column) {
  if (IsNull(row, column)) return true;
  task.permissions = DecodePermissions(row.Text(column));
  return task.permissions.has_value();
}

// The patterns by their numbers in the column PatternKind. A released number never changes.
constexpr auto kPatternKinds =
    std::to_array<PatternRecord>({DailyRecord{}, WeeklyRecord{}, MonthlyRecord{}, YearlyRecord{}});

void BindPatternKind(Statement& statement, int parameter, const TaskRecord& task) {
  const auto* found =
      std::ranges::find(kPatternKinds, task.recurrence->pattern.index(), &PatternRecord::index);
  if (found == kPatternKinds.end()) return statement.BindNull(parameter);
  statement.BindInteger(parameter, found - kPatternKinds.begin());
}

bool ReadPatternKind(TaskRecord& task, const Statement& row, int column) {
  std::size_t kind = 0;
  const bool is_null = IsNull(row, column);
  if (!is_null && (!ReadInteger(kind, row, column) || kind >= kPatternKinds.size())) return false;
  task.recurrence->pattern = is_null ? PatternRecord() : kPatternKinds.at(kind);
  return true;
}

constexpr std::array kTaskColumns{
    Column<kOwn<&TaskRecord::modified>>("Modified"),
    Column<kOwn<&TaskRecord::record_mode>>("RecordMode"),
    Column<kOwn<&TaskRecord::uses_language_tags>>("UsesLanguageTags"),
    Column<kOwn<&TaskRecord::name>>("Name"),
    Column<kOwn<&TaskRecord::short_description>>("ShortDescription"),
    Column<kOwn<&TaskRecord::description>>("Description"),
    Column<kOwn<&TaskRecord::name_tag>>("NameTag"),
    Column<kOwn<&TaskRecord::short_description_tag>>("ShortDescriptionTag"),
    Column<kOwn<&TaskRecord::description_tag>>("DescriptionTag"),
    Column<kOwn<&TaskRecord::categories>>("Category"),
    Column<kOwn<&TaskRecord::data_object_name>>("DataObjectName"),
    Column<kOwn<&TaskRecord::data_object_caption>>("DataObjectCaption"),
    Column<kOwn<&TaskRecord::allow_automation_manager>>("AllowAutomationManager"),
    Column<kOwn<&TaskRecord::skip_row_selection>>("SkipRowSelection"),
    Column<kOwn<&TaskRecord::processing_mode>>("ProcessingMode"),
    Column<kOwn<&TaskRecord::process_all_records>>("ProcessAllRecords"),
    Column<kOwn<&TaskRecord::process_failed_records>>("ProcessFailedRecords"),
    Column<kOwn<&TaskRecord::base_date>>("BaseDate"),
    Column<kOwn<&TaskRecord::query>>("Query"),
    Column<kOwn<&TaskRecord::owner>>("Owner"),
    TaskColumn{"Permissions", BindPermissions, ReadPermissions},
    Column<kOwn<&TaskRecord::may_run>>("MayRun"),
    Column<kOwn<&TaskRecord::may_edit>>("MayEdit"),
    Column<kOwn<&TaskRecord::may_delete>>("MayDelete"),
};

constexpr std::array kScheduleColumns{
    TaskColumn{"StartDate", BindStartDate, ReadStartDate},
    Column<kOfRecurrence<&RecurrenceRecord::recurrence_type>>("RecurrenceType"),
    Column<kOfRecurrence<&RecurrenceRecord::time_kind>>("TimeKind"),
    Column<kOfRecurrence<&RecurrenceRecord::interval>>("Interval"),
    Column<kOfRecurrence<&RecurrenceRecord::execution_time>>("ExecutionTime"),
    TaskColumn{"PatternKind", BindPatternKind, ReadPatternKind},
    Column<kOfPattern<DailyRecord, &DailyRecord::every_n_days>>("EveryNDays"),
    Column<kOfPattern<DailyRecord, &DailyRecord::weekdays_only>>("WeekdaysOnly"),
    Column<kOfPattern<WeeklyRecord, &WeeklyRecord::every_n_weeks>>("EveryNWeeks"),
    Column<kOfWeek<0>>("Sunday"),
    Column<kOfWeek<1>>("Monday"),
    Column<kOfWeek<2>>("Tuesday"),
    Column<kOfWeek<3>>("Wednesday"),
    Column<kOfWeek<4>>("Thursday"),
    Column<kOfWeek<5>>("Friday"),
    Column<kOfWeek<6>>("Saturday"),
    Column<kOfPattern<MonthlyRecord, &MonthlyRecord::every_n_months>>("EveryNMonths"),
    Column<kOfPattern<YearlyRecord, &YearlyRecord::month>>("Month"),
    Column<kOfDay<&DayChoice::use_relative_day>>("UseRelativeDay"),
    Column<kOfDay<&DayChoice::day_of_month>>("DayOfMonth"),
    Column<kOfDay<&DayChoice::relative_week>>("RelativeWeek"),
    Column<kOfDay<&DayChoice::relative_day_of_week>>("RelativeDayOfWeek"),
};

}  // namespace

std::span<const TaskColumn> TaskColumns() {
  return kTaskColumns;
}

std::span<const TaskColumn> ScheduleColumns() {
  return kScheduleColumns;
}

}  // namespace plovix
