#include "recurrence_members.h"

#include <algorithm>
#include <array>
#include <utility>

#include "member_value.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

// A member of a pattern. It belongs to one class, or to the monthly and the yearly one alike.
struct PatternMember {
  std::string_view name;
  // Nothing when the pattern is of a class without the member.
  std::optional<Json> (*get)(const PatternRecord& pattern);
  // False when the pattern is of a class without the member. Only "Day" has an index.
  bool (*set)(PatternRecord& pattern, const std::string& index, const std::string& word);
  // A fresh pattern that has the member.
  PatternRecord (*make)(std::int32_t recurrence_type);
};

template <class Pattern>
PatternRecord Make(std::int32_t /*recurrence_type*/) {
  return Pattern{};
}

PatternRecord MakeMonthlyOrYearly(std::int32_t recurrence_type) {
  if (recurrence_type == recurrence_type::kYearly) return YearlyRecord{};
  return MonthlyRecord{};
}

// A member that is the field which `kLocate` finds in a pattern.
template <auto kLocate>
constexpr PatternMember Located(std::string_view name, PatternRecord (*make)(std::int32_t recurrence_type)) {
  return {name,
          [](const PatternRecord& pattern) -> std::optional<Json> {
            const auto* field = kLocate(pattern);
            if (field == nullptr) return std::nullopt;
            return MemberJson(*field);
          },
          [](PatternRecord& pattern, const std::string& index, const std::string& word) {
            if (!index.empty()) throw LineError("only Recurrence.Pattern.Day takes an index");
            auto* field = kLocate(pattern);
            if (field != nullptr) SetMember(*field, word);
            return field != nullptr;
          },
          make};
}

template <class Pattern, auto kField>
constexpr PatternMember Own(std::string_view name) {
  constexpr auto kLocate = [](auto& pattern) {
    auto* own = std::get_if<Pattern>(&pattern);
    return own != nullptr ? &(own->*kField) : nullptr;
  };
  return Located<kLocate>(name, Make<Pattern>);
}

template <auto kField>
constexpr PatternMember Shared(std::string_view name) {
  constexpr auto kLocate = [](auto& pattern) {
    auto* monthly = std::get_if<MonthlyRecord>(&pattern);
    auto* yearly = std::get_if<YearlyRecord>(&pattern);
    auto* day = monthly != nullptr ? &monthly->day : yearly != nullptr ? &yearly->day : nullptr;
    return day != nullptr ? &(day->*kField) : nullptr;
  };
  return Located<kLocate>(name, MakeMonthlyOrYearly);
}

std::optional<Json> Days(const PatternRecord& pattern) {
  const auto* weekly = std::get_if<WeeklyRecord>(&pattern);
  if (weekly == nullptr) return std::nullopt;
  return weekly->days;
}

bool SetDay(PatternRecord& pattern, const std::string& index, const std::string& word) {
  auto* weekly = std::get_if<WeeklyRecord>(&pattern);
  if (weekly == nullptr) return false;
  const bool one_digit = index.size() == 1 && index[0] >= '1' && index[0] <= '7';
  if (!one_digit) throw LineError("the days of a week are Day.1, Sunday, to Day.7, Saturday");
  weekly->days.at(static_cast<std::size_t>(index[0] - '1')) = SwitchFrom(word);
  return true;
}

constexpr auto kPatternMembers = std::to_array<PatternMember>({
    Own<DailyRecord, &DailyRecord::every_n_days>("EveryNDays"),
    Own<DailyRecord, &DailyRecord::weekdays_only>("WeekdaysOnly"),
    Own<WeeklyRecord, &WeeklyRecord::every_n_weeks>("EveryNWeeks"),
    {"Day", Days, SetDay, Make<WeeklyRecord>},
    Own<MonthlyRecord, &MonthlyRecord::every_n_months>("EveryNMonths"),
    Own<YearlyRecord, &YearlyRecord::month>("Month"),
    Shared<&DayChoice::use_relative_day>("UseRelativeDay"),
    Shared<&DayChoice::day_of_month>("DayOfMonth"),
    Shared<&DayChoice::relative_week>("RelativeWeek"),
    Shared<&DayChoice::relative_day_of_week>("RelativeDayOfWeek"),
});

// The words for a pattern's classes.
constexpr auto kClasses = std::to_array<std::pair<std::string_view, PatternRecord>>({
    {"nothing", std::monostate{}},
    {"DailyPattern", DailyRecord{}},
    {"WeeklyPattern", WeeklyRecord{}},
    {"MonthlyPattern", MonthlyRecord{}},
    {"YearlyPattern", YearlyRecord{}},
});

Json Pattern(const RecurrenceRecord& recurrence) {
  const PatternRecord& pattern = recurrence.pattern;
  if (std::holds_alternative<std::monostate>(pattern)) return nullptr;
  const auto* kind =
      std::ranges::find(kClasses, pattern.index(), [](auto& each) { return each.second.index(); });
  Json json = {{"kind", kind->first}};
  for (const PatternMember& member : kPatternMembers) {
    if (const auto value = member.get(pattern)) json[std::string(member.name)] = *value;
  }
  return json;
}

void SetPattern(RecurrenceRecord& recurrence, const std::string& word) {
  const auto* found = std::ranges::find(kClasses, word, [](auto& each) { return each.first; });
  if (found == kClasses.end()) {
    throw LineError(
        "a pattern is nothing, or a DailyPattern, WeeklyPattern, MonthlyPattern or YearlyPattern");
  }
  if (found->second.index() != recurrence.pattern.index()) recurrence.pattern = found->second;
}

struct RecurrenceMember {
  std::string_view name;
  Json (*get)(const RecurrenceRecord& recurrence);
  void (*set)(RecurrenceRecord& recurrence, const std::string& word);
};

template <auto kField>
constexpr RecurrenceMember Field(std::string_view name) {
  return {name, [](const RecurrenceRecord& recurrence) { return MemberJson(recurrence.*kField); },
          [](RecurrenceRecord& recurrence, const std::string& word) { SetMember(recurrence.*kField, word); }};
}

constexpr auto kRecurrenceMembers = std::to_array<RecurrenceMember>({
    Field<&RecurrenceRecord::recurrence_type>("RecurrenceType"),
    Field<&RecurrenceRecord::time_kind>("TimeKind"),
    Field<&RecurrenceRecord::interval>("Interval"),
    Field<&RecurrenceRecord::execution_time>("ExecutionTime"),
    {"Pattern", Pattern, SetPattern},
});

// `path` is a member of the pattern, "Day" with its index: "Day.2" or "Day(2)".
void SetPatternMember(RecurrenceRecord& recurrence, const std::string& path, const std::string& word) {
  const std::size_t mark = path.find_first_of(".(");
  const std::string name = path.substr(0, mark);
  std::string index = mark == std::string::npos ? "" : path.substr(mark + 1);
  if (mark != std::string::npos && path[mark] == '(' && index.ends_with(')')) index.pop_back();
  const auto* member = std::ranges::find(kPatternMembers, name, &PatternMember::name);
  if (member == kPatternMembers.end()) throw LineError("no pattern has a member \"" + name + "\"");
  if (member->set(recurrence.pattern, index, word)) return;
  recurrence.pattern = member->make(recurrence.recurrence_type);
  (void)member->set(recurrence.pattern, index, word);  // it has the member now
}

}  // namespace

Json RecurrenceJson(const std::optional<RecurrenceRecord>& recurrence) {
  if (!recurrence) return nullptr;
  Json json = Json::object();
  for (const RecurrenceMember& member : kRecurrenceMembers) {
    json[std::string(member.name)] = member.get(*recurrence);
  }
  return json;
}

void SetRecurrenceMember(std::optional<RecurrenceRecord>& recurrence, const std::string& member,
                         const std::string& word) {
  constexpr std::string_view kInPattern = "Pattern.";
  RecurrenceRecord changed = recurrence.value_or(RecurrenceRecord{});
  if (member.starts_with(kInPattern)) {
    SetPatternMember(changed, member.substr(kInPattern.size()), word);
  } else {
    const auto* found = std::ranges::find(kRecurrenceMembers, member, &RecurrenceMember::name);
    if (found == kRecurrenceMembers.end()) throw LineError("a recurrence has no member \"" + member + "\"");
    found->set(changed, word);
  }
  recurrence = changed;
}

}  // namespace plovix::script
