// The catalogue of a user's database file, the sample database, and running queries on it.
#include <gmock/gmock.h>
#include <plovix/standalone/data/query_preview.h>
#include <plovix/standalone/data/sample_database.h>
#include <plovix/standalone/data/sqlite_data_source.h>
#include <plovix/standalone/query/query_reader.h>

#include <filesystem>
#include <fstream>
#include <future>

#include "tests/query/query_support.h"

namespace plovix {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr std::chrono::local_days kToday{std::chrono::year{2026} / 1 / 5};

class DataTest : public testing::Test {
 protected:
  DataTest() : folder_(fs::temp_directory_path() / ("plovix-data-" + std::to_string(getpid()))) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~DataTest() override { fs::remove_all(folder_); }
  void Run(const std::vector<std::string>& statements) const {
    const Connection connection(path_, 50ms, Access::kReadWrite);
    for (const std::string& sql : statements) connection.Run(sql);
  }
  [[nodiscard]] std::string FailureOfList() {
    try {
      (void)source_.List();
    } catch (const Failure& failure) {
      EXPECT_THAT(failure.Description(), HasSubstr(path_));
      return failure.Description();
    }
    return {};
  }
  [[nodiscard]] std::string ProblemOf(const std::string& sql) const {
    const auto result = RunQuery(path_, {sql, {}});
    const auto* problem = std::get_if<QueryProblem>(&result);
    return problem == nullptr ? "" : std::string(problem->text) + "|" + problem->detail;
  }

  fs::path folder_;
  std::string path_ = folder_ / "my ?#%'é.sqlite";
  SqliteDataSource source_{path_, 50ms};
};

TEST_F(DataTest, TablesAndViewsAreOfferedWithTheirKeysAndFields) {
  Run({"CREATE TABLE order_lines (a, nr INT PRIMARY KEY) WITHOUT ROWID", "CREATE TABLE \"éa\"\"'%\" (x BOOL)",
       "CREATE TABLE pair (a, b, PRIMARY KEY (a, b))", "CREATE VIRTUAL TABLE words USING fts5(w)",
       "CREATE VIEW with_id AS SELECT nr AS Id, a || 'x' AS t, nr + 1 AS n, nr FROM order_lines",
       "CREATE VIEW broken AS SELECT * FROM nosuch", "INSERT INTO order_lines VALUES ('a', 1)",
       "CREATE TABLE types (a TINYINT, b VARCHAR(5), c Numeric(5), d Boolean, e date, f TIMESTAMP, g BLOB, "
       "h, i AS (a + 1), j DATETIME)"});
  std::vector<std::string> seen;
  for (const DataObjectRecord& object : source_.List())
    seen.push_back(object.name + "|" + object.caption + "|" + object.key);
  EXPECT_THAT(seen, ElementsAre("broken|Broken|", "order_lines|Order lines|nr", "pair|Pair|", "types|Types|",
                                "with_id|With id|Id", "words|Words|", "éa\"'%|Éa\"'%|"));
  using enum FieldType;
  EXPECT_THAT(source_.Fields("TYPES"),
              ElementsAre(FieldRecord{"a", kInteger}, FieldRecord{"b", kText}, FieldRecord{"c", kReal},
                          FieldRecord{"d", kBoolean}, FieldRecord{"e", kDate}, FieldRecord{"f", kDateTime},
                          FieldRecord{"g", kBinary}, FieldRecord{"h", kText}, FieldRecord{"i", kText},
                          FieldRecord{"j", kDateTime}));
  EXPECT_THAT(source_.Fields("with_id"), ElementsAre(FieldRecord{"Id", kInteger}, FieldRecord{"t", kText},
                                                     FieldRecord{"n", kReal}, FieldRecord{"nr", kInteger}));
  EXPECT_THAT(source_.Fields("nosuch"), IsEmpty());
  EXPECT_EQ(source_.Find("PAIR")->name, "pair");
  EXPECT_EQ(source_.Find("words_data"), std::nullopt);
  Run({"DROP TABLE pair"});
  EXPECT_EQ(source_.Find("pair"), std::nullopt);
}

TEST_F(DataTest, AKeyIsReadFromTheStatementThatMadeTheTable) {
  const std::string definitions[] = {
      "(a INTEGER PRIMARY KEY, b)",
      "(a DECIMAL(5, 2) DEFAULT (1 + 2) CHECK (a IN (1, 2)), [b c] TEXT NOT NULL primary /* */ key DESC)",
      "('a' INT, \"x\"\"(\" INT, CONSTRAINT k UNIQUE (a) PRIMARY KEY (\"X\"\"(\" COLLATE nocase))",
      "(a, b, PRIMARY KEY (a, b))", "(a DEFAULT 'PRIMARY KEY', b REFERENCES c (d) -- PRIMARY KEY\n)"};
  for (const std::string& definition : definitions) {
    Run({"DROP TABLE IF EXISTS t", "CREATE TABLE t " + definition});
    const auto key =
        Connection(path_, 50ms, Access::kReadOnly)
            .Text("SELECT max(name) FROM pragma_table_info('t') WHERE pk > 0 HAVING count(*) = 1");
    EXPECT_EQ(source_.Find("t")->key, key.value_or("")) << definition;
  }
}

TEST_F(DataTest, AFileThatCannotBeReadIsNamedAndReadOnceItIsBack) {
  EXPECT_THAT(FailureOfList(), HasSubstr("not exist"));
  EXPECT_FALSE(fs::exists(path_));
  std::ofstream(path_) << std::string(5000, 'x');
  EXPECT_THAT(FailureOfList(), HasSubstr("not a database"));
  fs::remove(path_);
  fs::create_directory(path_);
  EXPECT_THAT(FailureOfList(), HasSubstr("folder"));
  fs::remove(path_);
  Run({"CREATE TABLE a (x)"});
  EXPECT_EQ(FailureOfList(), "");
  {
    const Connection other(path_, 50ms, Access::kReadWrite);
    other.Run("BEGIN EXCLUSIVE");
    EXPECT_EQ(FailureOfList(), "") << "nothing has changed since it was read";
    other.Run("CREATE TABLE c (x)");
    EXPECT_THAT(FailureOfList(), HasSubstr("another program"));
  }
  fs::rename(path_, path_ + ".away");
  EXPECT_THAT(FailureOfList(), HasSubstr("not exist"));
  Run({"CREATE TABLE b (x)"});
  EXPECT_EQ(source_.List().front().name, "b");
  fs::rename(path_ + ".away", path_);
  EXPECT_EQ(source_.List().front().name, "a");
}

TEST_F(DataTest, TheSampleIsWholeAndNeverReplacesAFile) {
  CreateSampleDatabase(path_, kToday);
  const Connection connection(path_, 50ms, Access::kReadOnly);
  EXPECT_EQ(connection.Text("PRAGMA integrity_check"), "ok");
  EXPECT_EQ(connection.Text("PRAGMA foreign_key_check"), std::nullopt);
  std::int64_t rows = 0;
  for (const DataObjectRecord& object : source_.List()) {
    EXPECT_EQ(object.key, "id") << object.name;
    rows += *connection.Integer("SELECT count(*) FROM " + QuotedName(object.name));
  }
  EXPECT_EQ(source_.List().size(), 9U);
  EXPECT_NEAR(static_cast<double>(rows), 11'000, 1500);
  EXPECT_EQ(
      connection.Integer("SELECT count(*) FROM orders WHERE round(total, 2) <> (SELECT "
                         "round(sum(quantity * price), 2) FROM order_lines WHERE order_id = orders.id)"),
      0);
  EXPECT_EQ(connection.Text("SELECT max(ordered_at) < '2026-01-06' AND min(ordered_at) > '2024-01-05' AND "
                            "count(due) < count(*) FROM orders"),
            "1");
  EXPECT_EQ(source_.Fields("customer_turnover").back().type, FieldType::kReal);
  EXPECT_THROW(CreateSampleDatabase(path_, kToday), Failure);
  EXPECT_THROW(CreateSampleDatabase(folder_ / "nosuch" / "x", kToday), Failure);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1);
}

TEST_F(DataTest, AQueryThatWouldChangeAnythingIsRefusedInWords) {
  Run({"CREATE TABLE a (x)", "INSERT INTO a VALUES (1), (NULL), (x'00ff'), ('é')"});
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"select * from a; -- fine", ""},
      {"values (1)", ""},
      {"", "query.preview.select|"},
      {"pragma user_version = 5", "query.preview.select|"},
      {"attach 'b.sqlite' as b", "query.preview.select|"},
      {"with t as (select 1) insert into a select * from t", "query.preview.write|"},
      {"select 1; delete from a", "query.preview.second|"},
      {"select nosuch from a", "query.preview.sql|no such column: nosuch"},
      {"select load_extension('x')", "query.preview.sql|not authorized"}};
  for (const auto& [sql, problem] : cases) {
    EXPECT_EQ(ProblemOf(sql), problem) << sql;
    // An extension is refused only when it is to be loaded.
    const bool is_known_before = !problem.empty() && problem.find("authorized") == std::string::npos;
    EXPECT_EQ(CheckQuery(path_, sql).has_value(), is_known_before) << sql;
  }
  const auto rows = std::get<QueryRows>(RunQuery(path_, {"select x, x as y from a where x is not ?", {"z"}}));
  EXPECT_THAT(rows.columns, ElementsAre("x", "y"));
  EXPECT_EQ(rows.count, 4);
  EXPECT_THAT(rows.rows[1], ElementsAre(std::nullopt, std::nullopt));
  EXPECT_EQ(rows.rows[2][0], "x'00FF'");
  fs::remove(path_);
  EXPECT_THAT(ProblemOf("select 1"), HasSubstr("query.preview.file|" + path_));
}

// Every text, typed or mutated, finds the same records as what is written for the model that is read from it.
TEST_F(DataTest, WhatIsReadFromATextMeansWhatTheTextMeans) {
  Run(
      {"CREATE TABLE orders (id INTEGER, status TEXT, whole INT, total DECIMAL, paid BOOL, due DATE, "
       "at DATETIME, photo BLOB, \"odd \"\"]\" TEXT, \"SELECT\" INT, \"%_' -- é😀\" TEXT)"});
  test::Dice dice(7);
  {
    const Connection filler(path_, 50ms, Access::kReadWrite);
    Statement insert = filler.Prepare("INSERT INTO orders VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    for (int id = 0; id < 60; ++id) {
      insert.BindInteger(0, id);
      for (int column = 1; const FieldRecord& field : test::kFields) {
        const std::string value = test::RandomValue(dice, field.type);
        test::Roll(dice, 4) == 0 ? insert.BindNull(column) : insert.BindText(column, value);
        ++column;
      }
      insert.Run();
    }
  }
  const Connection connection(path_, 50ms, Access::kReadOnly);
  const auto records = [&connection](const BoundQuery& query) -> std::optional<std::string> {
    std::string ids;
    try {
      Statement statement = connection.Prepare(query.sql);
      int parameter = 0;
      for (const BoundValue& value : query.values) {
        if (const auto* whole = std::get_if<std::int64_t>(&value)) statement.BindInteger(parameter, *whole);
        if (const auto* real = std::get_if<double>(&value)) statement.BindReal(parameter, *real);
        if (const auto* text = std::get_if<std::string>(&value)) statement.BindText(parameter, *text);
        ++parameter;
      }
      statement.ForEachRow([&ids](const Statement& row) { ids += std::string(row.Text(0)) + " "; });
    } catch (const SqlFailure&) {
      return std::nullopt;
    }
    return ids;
  };
  const std::vector<std::string> parts = {
      " NOT ", "(",      ")",  " AND ", " OR ", "'",     "\"",    "--",  "/*",    "*/", "%", "_",
      "\\",    " ",      "1",  " = ",   ";",    ".",     " NULL", "[",   "]",     "`",  "a", "-",
      "e",     " LIKE ", "\n", "<",     ">",    "total", "paid",  "IS ", "x'61'", "+",  ",", " TRUE "};
  int kept = 0;
  for (int round = 0; round < 4000; ++round) {
    const QueryModel model = test::RandomModel(dice);
    std::string text = QueryText(model, test::kFields);
    EXPECT_EQ(test::Read(text), test::ReadResult(model)) << text;
    EXPECT_EQ(records({text, {}}), records(BindQuery(model, test::kFields))) << text;
    for (std::size_t count = test::Roll(dice, 4); count > 0; --count) {
      const std::size_t from = 22 + test::Roll(dice, text.size() - 21);  // behind SELECT * FROM "orders"
      text.replace(std::min(from, text.size()), test::Roll(dice, 5), test::AnyOf(dice, parts));
    }
    const auto read = test::Read(text);
    const auto* mutated = std::get_if<QueryModel>(&read);
    if (mutated == nullptr) continue;
    ++kept;
    const std::string rewritten = QueryText(*mutated, test::kFields);
    EXPECT_EQ(test::Read(rewritten), read) << text;
    EXPECT_EQ(records({rewritten, {}}), records({text, {}})) << text << "\n" << rewritten;
  }
  EXPECT_GT(kept, 1000);
}

TEST_F(DataTest, ANewerQueryOrTheEndInterruptsTheRunningOne) {
  Run({"CREATE TABLE a (x)", "INSERT INTO a VALUES (1)"});
  const BoundQuery endless{"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT * FROM n",
                           {}};
  const BoundQuery silent{endless.sql + " WHERE i < 0", {}};
  std::promise<std::function<void()>> posted;
  {
    QueryPreview preview(path_,
                         [&posted](std::function<void()> result) { posted.set_value(std::move(result)); });
    std::int64_t count = 0;
    const auto nobody = [](const QueryPreview::Result&) { ADD_FAILURE() << "nobody waits for this"; };
    for (const BoundQuery& query : {endless, silent}) preview.Ask(query, nobody);
    preview.Ask({"SELECT * FROM a", {}},
                [&count](const QueryPreview::Result& result) { count = std::get<QueryRows>(result).count; });
    posted.get_future().get()();
    EXPECT_EQ(count, 1);
    preview.Ask(silent, nobody);
  }
  for (const BoundQuery& query : {endless, silent}) {
    const auto rows = std::get<QueryRows>(RunQuery(path_, query, {.time = 20ms}));
    EXPECT_FALSE(rows.complete);
    EXPECT_EQ(rows.rows.size(), query.sql == silent.sql ? 0U : 20U);
  }
}

}  // namespace
}  // namespace plovix
