// Task files: a refusal names a place, an accepted file is exported and read again as the same, and a task
// of any values comes back. Input that starts with a brace is a file, from other input a task is made.
#include <fuzzer/FuzzedDataProvider.h>
#include <plovix/standalone/exchange/task_file.h>
#include <plovix/standalone/model/task_fields.h>

#include <algorithm>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

// Makes a task with one of each kind of its parts.
class Maker : public FuzzedDataProvider {
 public:
  using FuzzedDataProvider::FuzzedDataProvider;
  [[nodiscard]] TaskFile File() {
    TaskFile file;
    FillAll(std::tuple_cat(kTaskTextFields, kTaskSettingFields), file.task);
    FillAll(kCategoryFields, file.task.categories.emplace_back());
    FillAll(kPermissionFields, file.task.permissions.emplace().emplace_back());
    file.task.permissions->back().subject += 's';  // which is not empty
    FillAll(kRecurrenceFields, file.task.recurrence.emplace());
    PatternRecord& pattern = file.task.recurrence->pattern = PickValueInArray(kPatternClasses).second;
    ForEachField(kPatternFields, [&](std::string_view, auto field) {
      if (auto* value = FieldIn(pattern, field)) Fill(*value);
    });
    file.task.schedule_start = Day();
    FillAll(kActionFields, file.task.actions.emplace_back());
    file.task.actions[0].settings = {{Text(), Text()}, {Text(), Text()}};
    file.tags = {{'t' + Text(), {{'l' + Text(), Text()}}}};
    return file;
  }

 private:
  [[nodiscard]] std::string Text() { return ConsumeRandomLengthString(40); }
  [[nodiscard]] std::chrono::local_days Day() {  // in the years that can be written
    return std::chrono::local_days{std::chrono::days{ConsumeIntegralInRange(-719'528, 2'932'896)}};
  }
  void Fill(std::string& text) { text = Text(); }
  void Fill(std::integral auto& number) { number = ConsumeIntegral<std::decay_t<decltype(number)>>(); }
  void Fill(bool& value) { value = ConsumeBool(); }
  void Fill(DateTime& moment) { moment = Day() + std::chrono::seconds{ConsumeIntegralInRange(0, 86399)}; }
  void Fill(std::array<bool, 7>& days) {
    std::ranges::generate(days, [this] { return ConsumeBool(); });
  }
  template <class Table, class Record>
  void FillAll(const Table& fields, Record& record) {
    ForEachField(fields, [&](std::string_view, auto field) { Fill(record.*field); });
  }
};

std::string Write(const TaskFile& file) {
  TaskRecord task = file.task;
  if (file.is_personal) task.owner = "somebody";
  return WriteTaskFile(task, file.tags, TextTable::Ids());
}

std::optional<TaskFile> Read(std::string_view text) {
  try {
    return ReadTaskFile(text, "f", TextTable::Ids());
  } catch (const Failure& failure) {
    // "[exchange.refused:f,[exchange.problem.KEY:PLACE...", the place of ill-formed JSON in numbers.
    constexpr std::string_view kStart = "[exchange.refused:f,[exchange.problem.";
    const std::string& words = failure.Description();
    Require(failure.Number() == failure_number::kInvalidCall && words.starts_with(kStart));
    Require(std::string_view(",]").find(words.at(words.find(':', kStart.size()) + 1)) == words.npos);
    return std::nullopt;
  }
}

}  // namespace

void Try(std::string_view input) {
  std::string text(input);
  if (!input.starts_with('{')) {
    Maker maker(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    const TaskFile made = maker.File();
    text = Write(made);
    Require(Read(text) == made);
    while (maker.ConsumeBool())  // a few slips of the hand
      text[maker.ConsumeIntegralInRange<std::size_t>(0, text.size() - 1)] = maker.ConsumeIntegral<char>();
  }
  const auto file = Read(text);
  if (file) Require(Read(Write(*file)) == file);
}

}  // namespace plovix::fuzz
