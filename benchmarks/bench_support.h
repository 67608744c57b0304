// What the benchmarks of pages share: a host in memory, and medians.
#pragma once

#include <benchmark/benchmark.h>
#include <plovix/component/entry_points.h>
#include <plovix/component/page_registry.h>
#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/tasks/category_rows.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovix {

inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// The processor time of an act, which other programs lengthen little.
inline double Microseconds(const std::function<void()>& act) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return 1e6 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_nsec);
  };
  const double start = now();
  act();
  return now() - start;
}

// Prints nothing, because the table does.
struct Quiet final : benchmark::BenchmarkReporter {
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& /*runs*/) override {}
};

// The measured code never fails and never asks.
struct NoDialogs final : HostDialogs {
  int MessageBox(const std::string& prompt, int /*buttons*/, const std::string& /*title*/) override {
    throw Failure(failure_number::kInternal, prompt);
  }
  ReportAction Report(const FailureReport& report) override {
    throw Failure(report.number, report.description);
  }
};

// A host that is installed during its lifetime, with a task that has something to show on every page.
struct BenchHost {
  BenchHost() {
    state.dialogs = &dialogs;
    state.marker_file = false;
    for (int id = 1; id < 130; ++id)
      state.texts.page_texts[id] = "A text of the pages, number " + std::to_string(id);
    const auto data = std::make_shared<MemoryDataSource>();
    for (const std::string& name : data_objects) data->entries.push_back({{name, name, "Id"}, {}});
    state.data = data;
    state.open_rows = [this](const std::string& /*query*/) {
      std::vector<std::string> columns;
      for (const std::string& name : categories)
        columns.push_back(R"([{"tag":")" + name + R"(","public":true}])");
      return CategoryRows(columns);
    };
    RegisterPages(registry);
    InstallHost(state);
    task.record_mode = record_mode::kQueryResults;
    task.name = task.description = "Monthly invoices";
    task.categories = {{categories[0]}};
    task.data_object_name = task.data_object_caption = data_objects[0];
    task.allow_automation_manager = true;
    task.query = "SELECT * FROM Customers WHERE City = 'Lyon'";
    RecurrenceRecord& recurrence = task.recurrence.emplace();
    recurrence.recurrence_type = recurrence_type::kWeekly;
    recurrence.time_kind = time_kind::kEveryNMinutes;
    recurrence.pattern = WeeklyRecord{1, {false, true}};  // on Mondays
    for (const char* text : {"one", "two", "three"}) {
      task.actions.push_back(NewAction(*FindActionKind("write-log")));
      task.actions.back().settings["text"] = text;
    }
  }
  ~BenchHost() { InstallServices({}); }
  BenchHost(const BenchHost&) = delete;
  BenchHost& operator=(const BenchHost&) = delete;

  const std::vector<std::string> categories{"Invoices", "Reminders", "Reports"};
  const std::vector<std::string> data_objects{"Customers", "Orders", "Products", "Suppliers"};
  NoDialogs dialogs;
  HostState state;
  PageRegistry registry;
  TaskRecord task;
};

inline std::shared_ptr<HostControl> MakeActionList(std::string_view /*registered_name*/) {
  return std::make_shared<VeloActionList>();
}

}  // namespace plovix
