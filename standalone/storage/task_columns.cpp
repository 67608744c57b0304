#include "task_columns.h"

#include <plovix/controls/failure.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <optional>
#include <type_traits>
#include <variant>

#include "category_column.h"

namespace plovix {
namespace {

using std::chrono::local_days;

constexpr std::string_view kDateForm = "0000-00-00", kMidnight = "T00:00:00";

// "YYYY-MM-DDTHH:MM:SS"
std::string IsoText(DateTime value) {
  const auto midnight = std::chrono::floor<std::chrono::days>(value);
  constexpr local_days kFirst{std::chrono::year{0} / 1 / 1};
  constexpr local_days kLast{std::chrono::year{9999} / 12 / 31};
  if (midnight < kFirst || midnight > kLast) {
    throw Failure(failure_number::kOverflow, "A date outside the years 0 to 9999 cannot be stored");
  }
  const std::chrono::year_month_day date(midnight);
  const std::chrono::hh_mm_ss time(value - midnight);
  std::array<char, 32> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                    static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                    static_cast<int>(time.seconds().count()));
  return {text.data(), static_cast<std::size_t>(length)};
}

std::optional<DateTime> ParseIso(std::string_view text) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00";
  if (text.size() != kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool fits = kForm[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == kForm[i];
    if (!fits) return std::nullopt;
  }
  const auto number = [text](std::size_t start, std::size_t length) {
    unsigned value = 0;
    std::from_chars(text.data() + start, text.data() + start + length, value);
    return value;
  };
  using namespace std::chrono;
  const year_month_day date(year{static_cast<int>(number(0, 4))}, month{number(5, 2)}, day{number(8, 2)});
  if (!date.ok() || number(11, 2) > 23 || number(14, 2) > 59 || number(17, 2) > 59) return std::nullopt;
  return local_days{date} + hours{number(11, 2)} + minutes{number(14, 2)} + seconds{number(17, 2)};
}

// Values of a field's type, to and from the file.
struct ToFile {
  QVariant operator()(const std::string& text) const { return TextValue(text); }
  QVariant operator()(std::integral auto number) const { return static_cast<int>(number); }
  QVariant operator()(DateTime value) const { return TextValue(IsoText(value)); }
  QVariant operator()(const std::vector<CategoryRecord>& categories) const {
    return TextValue(EncodeCategories(categories));
  }
};

struct FromFile {
  const QVariant& value;
  bool operator()(std::string& text) const {
    text = TextOf(value);
    return true;
  }
  bool operator()(bool& flag) const {
    std::int64_t number = 0;
    const bool fits = ReadInteger(number, value);
    flag = number != 0;
    return fits;
  }
  template <std::integral Number>
  bool operator()(Number& number) const {
    return ReadInteger(number, value);
  }
  bool operator()(DateTime& date) const {
    const auto stored = ParseIso(TextOf(value));
    if (stored) date = *stored;
    return stored.has_value();
  }
  bool operator()(std::vector<CategoryRecord>& categories) const {
    categories = DecodeCategories(TextOf(value));
    return true;
  }
};

// A column for the field that `kLocate` finds in a task; NULL where it finds none.
template <auto kLocate>
constexpr TaskColumn Column(std::string_view name) {
  using Field = std::remove_pointer_t<decltype(kLocate(std::declval<TaskRecord&>()))>;
  return {name, !std::integral<Field>,
          [](const TaskRecord& task) {
            const Field* field = kLocate(task);
            return field == nullptr ? QVariant() : ToFile{}(*field);
          },
          [](TaskRecord& task, const QVariant& value) {
            Field* field = kLocate(task);
            if (field == nullptr || value.isNull()) return field == nullptr && value.isNull();
            return FromFile{value}(*field);
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

QVariant StartDate(const TaskRecord& task) {
  if (!task.schedule_start) return {};
  return TextValue(IsoText(*task.schedule_start).substr(0, kDateForm.size()));
}

bool ReadStartDate(TaskRecord& task, const QVariant& value) {
  if (value.isNull()) return true;
  const auto midnight = ParseIso(TextOf(value) + std::string(kMidnight));
  if (midnight) task.schedule_start = std::chrono::floor<std::chrono::days>(*midnight);
  return midnight.has_value();
}

// The patterns by their numbers in the column PatternKind. A released number never changes.
constexpr auto kPatternKinds =
    std::to_array<PatternRecord>({DailyRecord{}, WeeklyRecord{}, MonthlyRecord{}, YearlyRecord{}});

QVariant PatternKind(const TaskRecord& task) {
  const auto* found =
      std::ranges::find(kPatternKinds, task.recurrence->pattern.index(), &PatternRecord::index);
  return found == kPatternKinds.end() ? QVariant() : static_cast<int>(found - kPatternKinds.begin());
}

bool ReadPatternKind(TaskRecord& task, const QVariant& value) {
  std::size_t kind = 0;
  if (!value.isNull() && (!ReadInteger(kind, value) || kind >= kPatternKinds.size())) return false;
  task.recurrence->pattern = value.isNull() ? PatternRecord() : kPatternKinds.at(kind);
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
};

constexpr std::array kScheduleColumns{
    TaskColumn{"StartDate", true, StartDate, ReadStartDate},
    Column<kOfRecurrence<&RecurrenceRecord::recurrence_type>>("RecurrenceType"),
    Column<kOfRecurrence<&RecurrenceRecord::time_kind>>("TimeKind"),
    Column<kOfRecurrence<&RecurrenceRecord::interval>>("Interval"),
    Column<kOfRecurrence<&RecurrenceRecord::execution_time>>("ExecutionTime"),
    TaskColumn{"PatternKind", false, PatternKind, ReadPatternKind},
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

QVariant TextValue(std::string_view text) {
  return QByteArray(text.empty() ? "" : text.data(), static_cast<qsizetype>(text.size()));
}

std::string TextOf(const QVariant& value) {
  return value.toByteArray().toStdString();
}

std::string TextColumn(std::string_view column) {
  return "CAST(" + std::string(column) + " AS BLOB)";
}

}  // namespace plovix
