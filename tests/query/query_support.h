// What the tests of queries share: a data object of every type of field, and random models of it.
#pragma once

#include <plovix/standalone/query/query_reader.h>

#include <algorithm>
#include <random>
#include <string>
#include <variant>
#include <vector>

namespace plovix::test {

using Dice = std::mt19937;
using ReadResult = std::variant<NothingAsked, QueryModel, NotExpressible>;

inline const std::vector<FieldRecord> kFields = {
    {"status", FieldType::kText},   {"whole", FieldType::kInteger}, {"total", FieldType::kReal},
    {"paid", FieldType::kBoolean},  {"due", FieldType::kDate},      {"at", FieldType::kDateTime},
    {"photo", FieldType::kBinary},  {"odd \"]", FieldType::kText},  {"SELECT", FieldType::kInteger},
    {"%_' -- é😀", FieldType::kText}};

inline ReadResult Read(std::string_view text) {
  return ReadQuery(text, "orders", kFields);
}

inline std::size_t Roll(Dice& dice, std::size_t sides) {
  return std::uniform_int_distribution<std::size_t>(0, sides - 1)(dice);
}

template <typename Range>
auto AnyOf(Dice& dice, const Range& range) {
  return range[Roll(dice, std::size(range))];
}

inline std::string RandomValue(Dice& dice, FieldType type) {
  using Strings = std::vector<std::string>;
  switch (type) {
    case FieldType::kInteger:
      return AnyOf(dice, Strings{"0", "-7", "007", "9223372036854775807", "-9223372036854775808"});
    case FieldType::kReal:
      return AnyOf(dice, Strings{"0", "-.5", "1.50", "2.", "1e3", "99999999999999999999"});
    case FieldType::kBoolean:
      return AnyOf(dice, Strings{"0", "1"});
    case FieldType::kDate:
      return AnyOf(dice, Strings{"2024-02-29", "2026-01-05"});
    case FieldType::kDateTime:
      return AnyOf(dice, Strings{"2024-02-29", "2024-02-29 10:00", "2026-01-05T08:00:01"});
    case FieldType::kText:
    case FieldType::kBinary:
      break;
  }
  const Strings parts = {"\r", "'",  "''", "\"", "%", "_", "\\", ";", "--", "/*",
                         "a",  "OR", " ",  "é",  "1", "?", "]",  "x", "\n", std::string(1, '\0')};
  std::string text;
  for (std::size_t count = Roll(dice, 6); count > 0; --count) text += AnyOf(dice, parts);
  return text;
}

inline Condition RandomCondition(Dice& dice) {
  while (true) {
    const FieldRecord field = AnyOf(dice, kFields);
    Condition condition{field.name, AnyOf(dice, ComparisonsFor(field.type)), {}};
    if (TakesValue(condition.comparison)) condition.value = RandomValue(dice, field.type);
    if (!CheckCondition(condition, field.type)) return condition;
  }
}

// Conditions that are in order, and joins that have a meaning or are the default.
inline QueryModel RandomModel(Dice& dice) {
  QueryModel model{"orders", Join::kAll, {}};
  for (std::size_t groups = Roll(dice, 4); groups > 0; --groups) {
    Group group;
    for (std::size_t count = Roll(dice, 3) + 1; count > 0; --count)
      group.conditions.push_back(RandomCondition(dice));
    if (group.conditions.size() > 1 && Roll(dice, 2) == 0) group.inner = Join::kAny;
    model.groups.push_back(group);
  }
  if (model.groups.size() > 1 && Roll(dice, 2) == 0) model.outer = Join::kAny;
  return model;
}

}  // namespace plovix::test
