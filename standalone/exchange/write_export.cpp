#include <plovix/base/failure.h>
#include <plovix/standalone/tasks/task_fields.h>
#include <plovix/standalone/text/iso_time.h>
#include <plovix/standalone/text/json_text.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "file_format.h"
#include "task_export.h"

namespace plovix {
namespace {

using namespace file_format;
using OrderedJson = nlohmann::ordered_json;

constexpr int kIndent = 2;  // blanks

class Writer {
 public:
  explicit Writer(const TextTable& texts) : texts_(texts) {}

  [[nodiscard]] OrderedJson Task(const TaskRecord& task) const {
    OrderedJson json = Fields(kTaskTextFields, task);
    json.update(Fields(kTaskSettingFields, task));
    json[kPersonal] = !task.owner.empty();
    json[kCategories] =
        List(task.categories, [this](const auto& category) { return Fields(kCategoryFields, category); });
    json[kPermissions] = nullptr;
    if (task.permissions) {
      json[kPermissions] =
          List(*task.permissions, [this](const auto& line) { return Fields(kPermissionFields, line); });
    }
    json[kRecurrence] = task.recurrence ? Recurrence(*task.recurrence) : OrderedJson();
    json[kScheduleStart] = task.schedule_start ? OrderedJson(Day(*task.schedule_start)) : OrderedJson();
    json[kActions] = List(task.actions, [this](const ActionRecord& action) {
      OrderedJson item = Fields(kActionFields, action);
      item[kSettings] = Texts(action.settings);
      return item;
    });
    return json;
  }

  // An object of texts by keys.
  [[nodiscard]] static OrderedJson Texts(const std::map<std::string, std::string>& texts) {
    OrderedJson json = OrderedJson::object();
    for (const auto& [key, text] : texts) Append(json, key, ToJsonText(text));
    return json;
  }

  // Appends a name that the object does not have yet, without the object's linear search for it.
  static void Append(OrderedJson& object, const std::string& name, OrderedJson value) {
    object.get_ref<OrderedJson::object_t&>().emplace_back(ToJsonText(name), std::move(value));
  }

  [[noreturn]] void Fail(std::string_view text, const std::string& parameter) const {
    throw Failure(failure_number::kOverflow, texts_.Host(text, {parameter}));
  }

 private:
  [[nodiscard]] std::string Day(std::chrono::local_days day) const {
    std::string text = IsoDate(day);
    if (!ParseIsoDate(text)) Fail("exchange.dateOutside", text);
    return text;
  }

  [[nodiscard]] OrderedJson ValueJson(const std::string& text) const { return ToJsonText(text); }
  [[nodiscard]] OrderedJson ValueJson(DateTime moment) const {
    std::string text = IsoDateTime(moment);
    if (!ParseIsoDateTime(text)) Fail("exchange.dateOutside", text);
    return text;
  }
  // A Boolean, a number, or the days of a week.
  template <class Value>
  [[nodiscard]] OrderedJson ValueJson(const Value& value) const {
    return value;
  }

  template <class Table, class Record>
  [[nodiscard]] OrderedJson Fields(const Table& fields, const Record& record) const {
    OrderedJson json = OrderedJson::object();
    ForEachField(fields, [&](std::string_view name, auto field) {
      json[MemberName(name)] = ValueJson(record.*field);
    });
    return json;
  }

  template <class Record, class Write>
  [[nodiscard]] static OrderedJson List(const std::vector<Record>& records, Write write) {
    OrderedJson json = OrderedJson::array();
    for (const Record& record : records) json.push_back(write(record));
    return json;
  }

  [[nodiscard]] OrderedJson Recurrence(const RecurrenceRecord& recurrence) const {
    OrderedJson json = Fields(kRecurrenceFields, recurrence);
    json[kPattern] = Pattern(recurrence.pattern);
    return json;
  }

  [[nodiscard]] OrderedJson Pattern(const PatternRecord& pattern) const {
    const auto* found = ClassOf(pattern);
    if (found == kPatternClasses.end()) return nullptr;
    OrderedJson json = {{kKind, found->first}};
    ForEachField(kPatternFields, [&](std::string_view name, auto field) {
      if (const auto* value = FieldIn(pattern, field)) json[MemberName(name)] = ValueJson(*value);
    });
    return json;
  }

  const TextTable& texts_;
};

}  // namespace

std::vector<TagRecord> TagsUsed(const TaskRecord& task, const std::vector<TagRecord>& all) {
  std::unordered_set<std::string_view> names = {task.name_tag, task.short_description_tag,
                                                task.description_tag};
  for (const CategoryRecord& category : task.categories) names.insert(category.tag);
  std::vector<TagRecord> used;
  std::ranges::copy_if(all, std::back_inserter(used),
                       [&](const TagRecord& tag) { return names.contains(tag.tag); });
  return used;
}

std::string WriteExport(const TaskRecord& task, const std::vector<TagRecord>& tags, const TextTable& texts) {
  const Writer writer(texts);
  OrderedJson file = {{kFormat, kName}, {kFileVersion, kVersion}, {kTask, writer.Task(task)}};
  file[kTags] = OrderedJson::object();
  for (const TagRecord& tag : tags) Writer::Append(file[kTags], tag.tag, Writer::Texts(tag.texts));
  std::string text = file.dump(kIndent) + "\n";
  if (text.size() > kLargestExport)
    writer.Fail("exchange.tooLarge", std::to_string(kLargestExport / 1024 / 1024));
  return text;
}

}  // namespace plovix
