// The cost of a page without a toolkit: creating it, initializing it, and leaving it with Next, which
// validates and saves; with a host in memory. It is compared with creating only the page's controls, in the
// same run. Exit status 1: a page costs many times the usual. "--table" prints the table of
// docs/performance.md.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>

#include "bench_support.h"

namespace plovix {
namespace {

constexpr double kLimit = 60;

struct NoWizard final : WizardHost {
  void Refresh(bool /*can_continue*/) override {}
  void MoveNext() override {}
};

double Now() {
  const std::chrono::duration<double, std::nano> now = std::chrono::steady_clock::now().time_since_epoch();
  return now.count();
}

struct Row {
  std::string page;
  std::vector<double> controls, create, initialize, leave;  // nanoseconds of each visit
  [[nodiscard]] double Ratio() const {
    return (Median(create) + Median(initialize) + Median(leave)) / Median(controls);
  }
};

void Visit(BenchHost& host, Row& row) {
  const auto store = std::make_shared<StoreObject>();
  store->values = {{store_key::kAutoTask, ObjectRef(MakeTask(host.state, host.task))}};
  const auto wizard = std::make_shared<NoWizard>();
  const double start = Now();
  auto page = host.registry.Create(row.page);
  const double created = Now();
  for (std::size_t i = 0; i < page->Controls().Count(); ++i) {
    if (auto* slot = dynamic_cast<HostSlot*>(&page->Controls().At(i))) slot->Embed(MakeActionList({}));
  }
  page->IWizardPage_Initialize(wizard, store);
  const double initialized = Now();
  if (!page->IWizardPage_CanChangePage(ChangeDirection::kNext))
    throw Failure(failure_number::kInternal, row.page + " holds the user back");
  page->IWizardPage_Terminate();
  const DesignView& design = page->Controls().Design();
  page.reset();
  const double left = Now();
  std::make_unique<Form>(design).reset();
  row.controls.push_back(Now() - left);
  row.create.push_back(created - start);
  row.initialize.push_back(initialized - created);
  row.leave.push_back(left - initialized);
}

void Measure(benchmark::State& state, BenchHost& host, Row& row) {
  row = {row.page, {}, {}, {}, {}};
  for ([[maybe_unused]] auto _ : state) {
    Visit(host, row);
    state.SetIterationTime(1e-9 * (row.create.back() + row.initialize.back() + row.leave.back()));
  }
  state.counters["ratio"] = row.Ratio();
}

int Run(int argc, char** argv) {
  const bool table = argc > 1 && std::strcmp(argv[1], "--table") == 0;
  benchmark::Initialize(&argc, argv);
  BenchHost host;
  std::vector<Row> rows;
  for (const std::string& page : host.registry.Identifiers()) rows.push_back({page, {}, {}, {}, {}});
  for (Row& row : rows)
    benchmark::RegisterBenchmark(row.page.c_str(), Measure, std::ref(host), std::ref(row))->UseManualTime();
  Quiet quiet;
  benchmark::RunSpecifiedBenchmarks(table ? &quiet : nullptr);
  bool within = true;
  if (table)
    std::printf(
        "| page | create ns | initialize ns | leave ns | its controls alone ns | ratio |\n"
        "|---|---:|---:|---:|---:|---:|\n");
  for (const Row& row : rows) {
    if (row.create.empty()) continue;  // filtered out
    within = within && row.Ratio() <= kLimit;
    if (table)
      std::printf("| %s | %.0f | %.0f | %.0f | %.0f | %.1f |\n", row.page.c_str(), Median(row.create),
                  Median(row.initialize), Median(row.leave), Median(row.controls), row.Ratio());
  }
  return within ? 0 : 1;
}

}  // namespace
}  // namespace plovix

int main(int argc, char** argv) {
  return plovix::Run(argc, argv);
}
