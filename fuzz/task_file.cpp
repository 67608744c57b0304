// Task files: a refusal names a place, an accepted file is exported and read again as the same, and a task
// of any values comes back. Input that starts with a brace is a file, from other input a task is made.
#include <fuzzer/FuzzedDataProvider.h>
#include <plovix/standalone/exchange/task_file.h>
#include <plovix/standalone/model/task_fields.h>

#include <algorithm>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

class Maker : public FuzzedDataProvider {
 public:
  using FuzzedDataProvider::FuzzedDataProvider;
  [[nodiscard]] TaskFile File() {
    TaskFile file;
    TaskRecord& task = file.task;
    FillAll(kTaskTextFields, task);
    FillAll(kTaskSettingFields, task);
    Fill(file.is_personal);
    while (ConsumeBool()) FillAll(kCategoryFields, task.categories.emplace_back());
    if (ConsumeBool()) task.permissions.emplace();
    for (char subject = 'a'; task.permissions && ConsumeBool(); ++subject) {
      FillAll(kPermissionFields, task.permissions->emplace_back());
      task.permissions->back().subject += subject;  // not empty, and nobody twice
    }
    if (ConsumeBool()) FillAll(kRecurrenceFields, task.recurrence.emplace());
    if (task.recurrence && ConsumeBool()) {
      task.recurrence->pattern = PickValueInArray(kPatternClasses).second;
      ForEachField(kPatternFields, [&](std::string_view, auto field) {
        if (auto* value = FieldIn(task.recurrence->pattern, field)) Fill(*value);
      });
    }
    if (ConsumeBool()) task.schedule_start = Day();
    while (ConsumeBool()) {
      FillAll(kActionFields, task.actions.emplace_back());
      task.actions.back().settings = Texts();
    }
    for (char tag = 'a'; ConsumeBool(); ++tag) {
      file.tags.push_back({tag + ConsumeRandomLengthString(8), Texts()});
      file.tags.back().texts.erase("");
    }
    return file;
  }

 private:
  [[nodiscard]] std::chrono::local_days Day() {
    using namespace std::chrono;
    constexpr local_days kFirst{year{0} / 1 / 1}, kLast{year{9999} / 12 / 31};
    return kFirst + days{ConsumeIntegralInRange<long>(0, (kLast - kFirst).count())};
  }
  [[nodiscard]] std::map<std::string, std::string> Texts() {
    std::map<std::string, std::string> texts;
    while (ConsumeBool()) Fill(texts[ConsumeRandomLengthString(8)]);
    return texts;
  }
  void Fill(std::string& text) { text = ConsumeRandomLengthString(40); }
  void Fill(std::integral auto& number) { number = ConsumeIntegral<std::decay_t<decltype(number)>>(); }
  void Fill(bool& value) { value = ConsumeBool(); }
  void Fill(DateTime& moment) { moment = Day() + std::chrono::seconds{ConsumeIntegralInRange(0, 86399)}; }
  void Fill(std::array<bool, 7>& days) {
    for (bool& day : days) Fill(day);
  }
  template <class Table, class Record>
  void FillAll(const Table& fields, Record& record) {
    ForEachField(fields, [&](std::string_view, auto field) { Fill(record.*field); });
  }
};

std::string Write(TaskFile file) {
  if (file.is_personal) file.task.owner = "somebody";
  return WriteTaskFile(file.task, file.tags, TextTable::Ids());
}

std::optional<TaskFile> Read(const std::string& text) {
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
