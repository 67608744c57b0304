// Compares how the details page fills its two lists with only reading the data, in the same run: the
// categories of a million stored tasks with the database's own loop over the column, and the data objects of
// a file with 100,000 tables with the loop over its catalogue. Each act is timed several times and the best
// processor time counts. "--all" adds what takes minutes: a million different categories, and the tables.
// Exit status 1: an act takes longer than its limit.
#include <malloc.h>
#include <plovix/component/entry_points.h>
#include <plovix/controls/user.h>
#include <plovix/standalone/data/sqlite_data_source.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include "bench_support.h"

namespace plovix {
namespace {

constexpr int kRepetitions = 5;
constexpr double kLargestRatio = 4.0;

double BestMilliseconds(const std::function<void()>& act, int repetitions = kRepetitions) {
  double best = 1e9;
  for (int i = 0; i < repetitions; ++i) {
    best = std::min(best, Microseconds(act) / 1000);
  }
  return best;
}

void Check(bool done) {
  if (!done) throw Failure(failure_number::kInternal, "the database refused a statement of the benchmark");
}

// The database itself, without any code of the program.
class Bare {
 public:
  explicit Bare(const std::string& path) { Check(sqlite3_open(path.c_str(), &database_) == SQLITE_OK); }
  ~Bare() { sqlite3_close(database_); }
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;
  void Run(const std::string& sql) const {
    Check(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK);
  }
  // Reads every row's columns as text; returns the number of bytes.
  [[nodiscard]] std::size_t Scan(const char* sql, int columns) const {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) == SQLITE_OK);
    std::size_t bytes = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int column = 0; column < columns; ++column) {
        if (sqlite3_column_text(statement, column) != nullptr)
          bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
      }
    }
    sqlite3_finalize(statement);
    return bytes;
  }

 private:
  sqlite3* database_ = nullptr;
};

struct Silent final : UserListener {
  void EventBegins() override {}
  void EventEnds() override {}
  void EventFailed(const Failure& failure, std::string_view /*procedure*/) override { throw failure; }
};
struct NoWizard final : WizardHost {
  void Refresh(bool /*can_continue*/) override {}
  void MoveNext() override {}
};
// A details page that has been shown, with its list of data objects not yet opened.
struct Shown {
  Shown(HostState& state, const PageRegistry& registry) : page(registry.Create(page_identifier::kDetails)) {
    TaskRecord task;
    task.record_mode = record_mode::kQueryResults;
    const auto store = std::make_shared<StoreObject>();
    store->values = {{store_key::kAutoTask, ObjectRef(MakeTask(state, task))},
                     {store_key::kCreateGroup, true}};
    page->IWizardPage_Initialize(std::make_shared<NoWizard>(), store);
  }
  [[nodiscard]] ComboBox& List(const char* name) const {
    return dynamic_cast<ComboBox&>(page->Controls().Get(name));
  }
  std::shared_ptr<WizardPage> page;
  Silent listener;
  User user{listener};
};

bool Report(const char* what, double bare, double ours, int entries, std::size_t bytes) {
  std::printf("%-42s bare %8.1f ms  page %8.1f ms  ratio %5.2f  entries %7d  memory %6.1f MiB\n", what, bare,
              ours, ours / bare, entries, static_cast<double>(bytes) / 1048576);
  return ours <= kLargestRatio * bare;
}

std::size_t MemoryInUse() {
  return mallinfo2().uordblks + mallinfo2().hblkhd;
}

bool Categories(HostState& state, const PageRegistry& registry, const std::string& folder, int distinct) {
  const std::string path = folder + "/tasks-" + std::to_string(distinct) + ".sqlite";
  TaskRecord task;
  task.name = task.description = "task";
  SqliteStorage storage(path);
  storage.Save(task, {});
  const Bare bare(path);
  bare.Run("CREATE TEMP TABLE One AS SELECT * FROM VeloAutoTasks");
  bare.Run("UPDATE One SET Id = NULL");
  bare.Run(
      "CREATE TEMP TABLE Many AS WITH RECURSIVE N(I) AS (VALUES (1) UNION ALL SELECT I + 1 FROM N WHERE I < "
      "1000000) SELECT I FROM N");
  bare.Run("INSERT INTO VeloAutoTasks SELECT One.* FROM Many, One");
  bare.Run("UPDATE VeloAutoTasks SET Category = '[{\"tag\":\"Category ' || (Id * 7919 % " +
           std::to_string(distinct) + ") || '\",\"public\":true}]'");
  bare.Run("PRAGMA wal_checkpoint(TRUNCATE)");
  state.open_rows = [&storage](const std::string& query) { return storage.OpenRows(query); };
  const double scan =
      BestMilliseconds([&] { static_cast<void>(bare.Scan("SELECT Category FROM VeloAutoTasks", 1)); });
  const double page = BestMilliseconds([&] { const Shown shown(state, registry); });
  const std::size_t before = MemoryInUse();
  const Shown shown(state, registry);
  const std::string what = "1,000,000 tasks, " + std::to_string(distinct) + " categories";
  return Report(what.c_str(), scan, page, shown.List("cboCategory").Count(), MemoryInUse() - before);
}

bool DataObjects(HostState& state, const PageRegistry& registry, const std::string& folder) {
  const std::string path = folder + "/data.sqlite";
  {
    // Creating this many tables with statements would take the database an hour, so its catalogue is written
    // directly. The tables share their first page, which nobody reads.
    const Bare bare(path);
    bare.Run("CREATE TABLE one (id INTEGER PRIMARY KEY, name TEXT, total NUMERIC)");
    bare.Run("PRAGMA writable_schema = ON");
    bare.Run(
        "WITH RECURSIVE N(I) AS (VALUES (1) UNION ALL SELECT I + 1 FROM N WHERE I < 99999) "
        "INSERT INTO sqlite_master SELECT 'table', 'table_' || I, 'table_' || I, rootpage, "
        "replace(sql, 'one', 'table_' || I) FROM N, (SELECT rootpage, sql FROM sqlite_master)");
  }
  state.open_rows = nullptr;
  // Both keep the file open, because on opening the database reads its own catalogue, in a time that grows
  // with the square of the number of tables and would hide everything else.
  const Bare bare(path);
  const double scan = BestMilliseconds(
      [&] { static_cast<void>(bare.Scan("SELECT name, type, rootpage, sql FROM sqlite_master", 4)); });
  state.data = std::make_shared<SqliteDataSource>(path);
  const double page = BestMilliseconds([&] {
    Shown shown(state, registry);
    shown.user.DropDown(shown.List("cboDataObject"));
  });
  const std::size_t before = MemoryInUse();
  Shown shown(state, registry);
  shown.user.DropDown(shown.List("cboDataObject"));
  return Report("100,000 tables", scan, page, shown.List("cboDataObject").Count(), MemoryInUse() - before);
}

bool Measure(bool all) {
  NoDialogs dialogs;
  HostState state;
  state.dialogs = &dialogs;
  state.texts = TextTable::Ids();
  state.marker_file = false;
  InstallHost(state);
  PageRegistry registry;
  RegisterPages(registry);
  const auto folder =
      std::filesystem::temp_directory_path() /
      ("list-benchmark-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
  std::filesystem::create_directory(folder);
  bool within = true;
  for (const int distinct : {200, 10'000}) within = Categories(state, registry, folder, distinct) && within;
  if (all) {
    // If all categories differ, most of the work is storing the texts; there is no limit.
    static_cast<void>(Categories(state, registry, folder, 1'000'000));
    within = DataObjects(state, registry, folder) && within;
  }
  std::filesystem::remove_all(folder);
  InstallServices({});
  return within;
}

}  // namespace
}  // namespace plovix

int main(int argc, char** argv) {
  return plovix::Measure(argc == 2 && std::string_view(argv[1]) == "--all") ? 0 : 1;
}
