#include "query_text.h"

#include <algorithm>
#include <charconv>
#include <functional>

namespace plovix {
namespace {

std::string Quoted(std::string_view text, char quote) {
  std::string quoted(1, quote);
  for (const char character : text) {
    quoted += character;
    if (character == quote) quoted += quote;
  }
  return quoted + quote;
}

// SQL text ends at a zero byte, and text editors change line ends.
bool IsSafeInText(std::string_view text) {
  constexpr std::string_view kParagraphSeparator = "\xE2\x80\xA9";
  return text.find(kParagraphSeparator) == std::string_view::npos &&
         std::ranges::none_of(text, [](char character) {
           return static_cast<unsigned char>(character) < 0x20U && character != '\t' && character != '\n';
         });
}

// A value that is not safe is written as its bytes.
std::string TextLiteral(std::string_view text) {
  if (IsSafeInText(text)) return Quoted(text, '\'');
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string literal = "CAST(x'";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    literal += kDigits[byte / 16U];
    literal += kDigits[byte % 16U];
  }
  return literal + "' AS TEXT)";
}

std::string_view OperatorOf(Comparison comparison) {
  switch (comparison) {
    case Comparison::kEquals:
      return " = ";
    case Comparison::kDiffers:
      return " <> ";
    case Comparison::kLess:
      return " < ";
    case Comparison::kAtMost:
      return " <= ";
    case Comparison::kGreater:
      return " > ";
    case Comparison::kAtLeast:
      return " >= ";
    case Comparison::kContains:
    case Comparison::kBeginsWith:
    case Comparison::kEndsWith:
      return " LIKE ";
    case Comparison::kIsEmpty:
      return " IS NULL";
    case Comparison::kIsNotEmpty:
      return " IS NOT NULL";
  }
  return {};
}

bool HasWildcard(std::string_view value) {
  return value.find_first_of("%_") != std::string_view::npos;
}

// Escaped with backslashes only if the value contains wildcards.
std::string PatternOf(const Condition& condition) {
  const bool escape = HasWildcard(condition.value);
  std::string pattern;
  if (condition.comparison != Comparison::kBeginsWith) pattern += '%';
  for (const char character : condition.value) {
    if (escape && (character == '%' || character == '_' || character == '\\')) pattern += '\\';
    pattern += character;
  }
  if (condition.comparison != Comparison::kEndsWith) pattern += '%';
  return pattern;
}

template <typename Number>
bool ReadsAs(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
}

BoundValue ValueOf(const Condition& condition, FieldType type) {
  if (IsPattern(condition.comparison)) return PatternOf(condition);
  if (IsNumeric(type) && !CheckCondition(condition, FieldType::kReal)) {
    std::int64_t whole = 0;
    if (ReadsAs(condition.value, whole)) return whole;
    double real = 0;
    if (ReadsAs(condition.value, real)) return real;
  }
  return condition.value;
}

// A number is written as it was typed.
std::string LiteralOf(const Condition& condition, FieldType type) {
  const BoundValue value = ValueOf(condition, type);
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr ? TextLiteral(*text) : condition.value;
}

using WriteValue = std::function<std::string(const Condition&, FieldType)>;

std::string ConditionText(const Condition& condition, std::span<const FieldRecord> fields,
                          const WriteValue& write) {
  const FieldRecord* field = FindField(fields, condition.field);
  std::string text = QuotedName(condition.field);
  text += OperatorOf(condition.comparison);
  if (!TakesValue(condition.comparison)) return text;
  text += write(condition, field != nullptr ? field->type : FieldType::kText);
  if (IsPattern(condition.comparison) && HasWildcard(condition.value)) text += " ESCAPE '\\'";
  return text;
}

std::string_view Between(Join join) {
  return join == Join::kAll ? " AND " : " OR ";
}

std::string Written(const QueryModel& model, std::span<const FieldRecord> fields, const WriteValue& write) {
  std::string where;
  for (const Group& group : model.groups) {
    std::string inner;
    for (const Condition& condition : group.conditions) {
      if (!inner.empty()) inner += Between(group.inner);
      inner += ConditionText(condition, fields, write);
    }
    if (inner.empty()) continue;
    where += where.empty() ? " WHERE " : Between(model.outer);
    where += group.conditions.size() > 1 ? "(" + inner + ")" : inner;
  }
  return "SELECT * FROM " + QuotedName(model.object) + where;
}

}  // namespace

std::string QuotedName(std::string_view name) {
  return Quoted(name, '"');
}

std::string QueryText(const QueryModel& model, std::span<const FieldRecord> fields) {
  return Written(model, fields, LiteralOf);
}

BoundQuery BindQuery(const QueryModel& model, std::span<const FieldRecord> fields) {
  BoundQuery query;
  query.sql = Written(model, fields, [&query](const Condition& condition, FieldType type) {
    query.values.push_back(ValueOf(condition, type));
    return "?";
  });
  return query;
}

}  // namespace plovix
