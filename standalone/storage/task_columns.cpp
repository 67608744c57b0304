#include "task_columns.h"

#include <plovix/controls/failure.h>

#include <array>
#include <charconv>
#include <chrono>
#include <concepts>
#include <cstdio>
#include <optional>

#include "category_column.h"

namespace plovix {
namespace {

using std::chrono::local_days;

constexpr std::array kColumns{
    TaskColumn{"Modified", &TaskRecord::modified},
    TaskColumn{"RecordMode", &TaskRecord::record_mode},
    TaskColumn{"UsesLanguageTags", &TaskRecord::uses_language_tags},
    TaskColumn{"Name", &TaskRecord::name},
    TaskColumn{"ShortDescription", &TaskRecord::short_description},
    TaskColumn{"Description", &TaskRecord::description},
    TaskColumn{"NameTag", &TaskRecord::name_tag},
    TaskColumn{"ShortDescriptionTag", &TaskRecord::short_description_tag},
    TaskColumn{"DescriptionTag", &TaskRecord::description_tag},
    TaskColumn{"Category", &TaskRecord::categories},
    TaskColumn{"DataObjectName", &TaskRecord::data_object_name},
    TaskColumn{"DataObjectCaption", &TaskRecord::data_object_caption},
    TaskColumn{"AllowAutomationManager", &TaskRecord::allow_automation_manager},
    TaskColumn{"SkipRowSelection", &TaskRecord::skip_row_selection},
    TaskColumn{"ProcessingMode", &TaskRecord::processing_mode},
    TaskColumn{"ProcessAllRecords", &TaskRecord::process_all_records},
    TaskColumn{"ProcessFailedRecords", &TaskRecord::process_failed_records},
    TaskColumn{"BaseDate", &TaskRecord::base_date},
    TaskColumn{"Query", &TaskRecord::query},
    TaskColumn{"Owner", &TaskRecord::owner},
};

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
    flag = value.toLongLong() != 0;
    return true;
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

template <class Type>
inline constexpr bool kIsInteger = false;
template <std::integral Number>
inline constexpr bool kIsInteger<Number TaskRecord::*> = true;

}  // namespace

bool TaskColumn::IsText() const {
  return std::visit([]<class Field>(Field) { return !kIsInteger<Field>; }, field);
}

std::span<const TaskColumn> TaskColumns() {
  return kColumns;
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

QVariant ColumnValue(const TaskRecord& task, const TaskColumn& column) {
  return std::visit([&task](auto field) { return ToFile{}(task.*field); }, column.field);
}

bool ReadColumn(TaskRecord& task, const TaskColumn& column, const QVariant& value) {
  return std::visit([&](auto field) { return FromFile{value}(task.*field); }, column.field);
}

}  // namespace plovix
