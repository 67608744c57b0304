// Exported tasks: a refusal names a place, an accepted file can be exported and read again as the same, and a
// task with any texts is preserved. Input that starts with a brace is a file; from other input a task is
// built.
#include <fuzzer/FuzzedDataProvider.h>
#include <plovix/standalone/exchange/task_export.h>

#include "fuzzer.h"
#include "tests/support/full_task.h"

namespace plovix::fuzz {
namespace {

std::string Write(const TaskExport& file) {
  TaskRecord task = file.task;
  if (file.is_personal) task.owner = "somebody";
  return WriteExport(task, file.tags, TextTable::Ids());
}

std::optional<TaskExport> Read(std::string_view text) {
  try {
    return ReadExport(text, "f", TextTable::Ids());
  } catch (const Failure& failure) {
    // "[exchange.refused:f,[exchange.problem.KEY:PLACE..."; for ill-formed JSON the place is in numbers.
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
    FuzzedDataProvider data(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    const PatternRecord pattern = data.PickValueInArray(kPatternClasses).second;
    const std::string odd = 's' + data.ConsumeRandomLengthString(40);  // a subject is not empty
    const TaskExport made{test::FullTask(pattern, odd), data.ConsumeBool(), {{odd, {{odd, odd}}}}};
    text = Write(made);
    Require(Read(text) == made);
    while (data.ConsumeBool())  // a few typing errors
      text[data.ConsumeIntegralInRange<std::size_t>(0, text.size() - 1)] = data.ConsumeIntegral<char>();
  }
  const auto file = Read(text);
  if (file) Require(Read(Write(*file)) == file);
}

}  // namespace plovix::fuzz
