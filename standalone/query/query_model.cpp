#include "query_model.h"

#include <plovix/base/same_name.h>
#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace plovix {
namespace {

constexpr auto kTextComparisons = std::to_array<Comparison>(
    {Comparison::kEquals, Comparison::kDiffers, Comparison::kContains, Comparison::kBeginsWith,
     Comparison::kEndsWith, Comparison::kLess, Comparison::kAtMost, Comparison::kGreater,
     Comparison::kAtLeast, Comparison::kIsEmpty, Comparison::kIsNotEmpty});
constexpr auto kOrderedComparisons = std::to_array<Comparison>(
    {Comparison::kEquals, Comparison::kDiffers, Comparison::kLess, Comparison::kAtMost, Comparison::kGreater,
     Comparison::kAtLeast, Comparison::kIsEmpty, Comparison::kIsNotEmpty});
constexpr auto kBooleanComparisons = std::to_array<Comparison>(
    {Comparison::kEquals, Comparison::kDiffers, Comparison::kIsEmpty, Comparison::kIsNotEmpty});
constexpr auto kBinaryComparisons =
    std::to_array<Comparison>({Comparison::kIsEmpty, Comparison::kIsNotEmpty});

template <typename Number>
std::errc ReadWhole(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end != text.data() + text.size() ? std::errc::invalid_argument : error;
}

std::optional<std::string_view> CheckInteger(std::string_view value) {
  std::int64_t number = 0;
  const std::errc error = ReadWhole(value, number);
  if (error == std::errc{}) return std::nullopt;
  return error == std::errc::result_out_of_range ? "query.problem.integerRange" : "query.problem.integer";
}

// Words such as "inf" are numbers to the library, but not SQL literals.
std::optional<std::string_view> CheckReal(std::string_view value) {
  double number = 0;
  const bool literal = value.find_first_not_of("0123456789.eE+-") == std::string_view::npos;
  if (literal && ReadWhole(value, number) == std::errc{} && std::isfinite(number)) return std::nullopt;
  return "query.problem.real";
}

// A day, or a day and a time with or without seconds, separated by a blank or "T".
bool IsDateTime(std::string value) {
  constexpr std::size_t kDay = 10;
  constexpr std::size_t kToMinutes = 16;
  if (value.size() == kDay) return ParseIsoDate(value).has_value();
  if (value.size() > kDay && value[kDay] == ' ') value[kDay] = 'T';
  if (value.size() == kToMinutes) value += ":00";
  return ParseIsoDateTime(value).has_value();
}

std::optional<std::string_view> CheckText(const Condition& condition) {
  if (!IsPattern(condition.comparison)) return std::nullopt;
  if (condition.value.empty()) return "query.problem.missing";
  // The database ends a pattern at a zero byte.
  if (condition.value.find('\0') != std::string::npos) return "query.problem.zero";
  return std::nullopt;
}

}  // namespace

const FieldRecord* FindField(std::span<const FieldRecord> fields, std::string_view name) {
  const auto found =
      std::ranges::find_if(fields, [name](const FieldRecord& field) { return SameName(field.name, name); });
  return found == fields.end() ? nullptr : &*found;
}

std::span<const Comparison> ComparisonsFor(FieldType type) {
  switch (type) {
    case FieldType::kText:
      return kTextComparisons;
    case FieldType::kInteger:
    case FieldType::kReal:
    case FieldType::kDate:
    case FieldType::kDateTime:
      return kOrderedComparisons;
    case FieldType::kBoolean:
      return kBooleanComparisons;
    case FieldType::kBinary:
      return kBinaryComparisons;
  }
  return kBinaryComparisons;
}

bool TakesValue(Comparison comparison) {
  return comparison != Comparison::kIsEmpty && comparison != Comparison::kIsNotEmpty;
}

bool IsPattern(Comparison comparison) {
  return comparison == Comparison::kContains || comparison == Comparison::kBeginsWith ||
         comparison == Comparison::kEndsWith;
}

bool IsNumeric(FieldType type) {
  return type == FieldType::kInteger || type == FieldType::kReal || type == FieldType::kBoolean;
}

std::optional<std::string_view> CheckCondition(const Condition& condition, FieldType type) {
  const std::string& value = condition.value;
  if (std::ranges::count(ComparisonsFor(type), condition.comparison) == 0) return "query.problem.comparison";
  if (!TakesValue(condition.comparison)) return std::nullopt;
  if (type == FieldType::kText) return CheckText(condition);
  if (value.empty()) return "query.problem.missing";
  switch (type) {
    case FieldType::kInteger:
      return CheckInteger(value);
    case FieldType::kReal:
      return CheckReal(value);
    case FieldType::kBoolean:
      return value == "0" || value == "1" ? std::nullopt : std::optional("query.problem.boolean");
    case FieldType::kDate:
      return ParseIsoDate(value) ? std::nullopt : std::optional("query.problem.date");
    case FieldType::kDateTime:
      return IsDateTime(value) ? std::nullopt : std::optional("query.problem.dateTime");
    case FieldType::kText:
    case FieldType::kBinary:
      break;
  }
  return std::nullopt;
}

}  // namespace plovix
