#include "recurrence_members.h"

#include <plovix/standalone/tasks/task_fields.h>

#include "member_value.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

template <class Value>
void SetPatternValue(Value& value, const std::string& index, const std::string& word) {
  if (!index.empty()) throw LineError("only Recurrence.Pattern.Day takes an index");
  SetMember(value, word);
}

void SetPatternValue(std::array<bool, 7>& days, const std::string& index, const std::string& word) {
  const bool one_digit = index.size() == 1 && index[0] >= '1' && index[0] <= '7';
  if (!one_digit) throw LineError("the days of a week are Day.1, Sunday, to Day.7, Saturday");
  days.at(static_cast<std::size_t>(index[0] - '1')) = SwitchFrom(word);
}

// A pattern of the class with the field keeps its other members; any other pattern is replaced.
template <class Record, class Value>
void SetPatternField(RecurrenceRecord& recurrence, Value Record::*field, const std::string& index,
                     const std::string& word) {
  PatternRecord& pattern = recurrence.pattern;
  if (FieldIn(pattern, field) == nullptr) {
    if constexpr (!std::is_same_v<Record, DayChoice>) {
      pattern = Record{};
    } else if (recurrence.recurrence_type == recurrence_type::kYearly) {
      pattern = YearlyRecord{};
    } else {
      pattern = MonthlyRecord{};
    }
  }
  SetPatternValue(*FieldIn(pattern, field), index, word);
}

Json PatternJson(const PatternRecord& pattern) {
  const auto* kind = ClassOf(pattern);
  if (kind == kPatternClasses.end()) return nullptr;
  Json json = {{"kind", kind->first}};
  ForEachField(kPatternFields, [&](std::string_view name, auto field) {
    if (const auto* value = FieldIn(pattern, field)) json[std::string(name)] = MemberJson(*value);
  });
  return json;
}

void SetPattern(PatternRecord& pattern, const std::string& word) {
  PatternRecord wanted;
  if (word != kNothing) {
    const auto* found = ClassNamed(word);
    if (found == kPatternClasses.end()) {
      throw LineError(
          "a pattern is nothing, or a DailyPattern, WeeklyPattern, MonthlyPattern or YearlyPattern");
    }
    wanted = found->second;
  }
  if (wanted.index() != pattern.index()) pattern = wanted;
}

// `path` is a member of the pattern; "Day" has an index: "Day.2" or "Day(2)".
void SetPatternMember(RecurrenceRecord& recurrence, const std::string& path, const std::string& word) {
  const std::size_t mark = path.find_first_of(".(");
  const std::string name = path.substr(0, mark);
  std::string index = mark == std::string::npos ? "" : path.substr(mark + 1);
  if (mark != std::string::npos && path[mark] == '(' && index.ends_with(')')) index.pop_back();
  const bool found =
      VisitField(kPatternFields, name, [&](auto field) { SetPatternField(recurrence, field, index, word); });
  if (!found) throw LineError("no pattern has a member \"" + name + "\"");
}

}  // namespace

Json RecurrenceJson(const std::optional<RecurrenceRecord>& recurrence) {
  if (!recurrence) return nullptr;
  Json json = Json::object();
  ForEachField(kRecurrenceFields, [&](std::string_view name, auto field) {
    json[std::string(name)] = MemberJson((*recurrence).*field);
  });
  json["Pattern"] = PatternJson(recurrence->pattern);
  return json;
}

void SetRecurrenceMember(std::optional<RecurrenceRecord>& recurrence, const std::string& member,
                         const std::string& word) {
  constexpr std::string_view kInPattern = "Pattern.";
  RecurrenceRecord changed = recurrence.value_or(RecurrenceRecord{});
  if (member.starts_with(kInPattern)) {
    SetPatternMember(changed, member.substr(kInPattern.size()), word);
  } else if (member == "Pattern") {
    SetPattern(changed.pattern, word);
  } else if (!VisitField(kRecurrenceFields, member, [&](auto field) { SetMember(changed.*field, word); })) {
    throw LineError("a recurrence has no member \"" + member + "\"");
  }
  recurrence = changed;
}

}  // namespace plovix::script
