// The catalogue of a user's database file, the sample database, and running queries on it.
#include <gmock/gmock.h>
#include <plovix/standalone/data/background_data_source.h>
#include <plovix/standalone/data/query_preview.h>
#include <plovix/standalone/data/sample_database.h>
#include <plovix/standalone/data/sqlite_data_source.h>
#include <plovix/standalone/tasks/text_limits.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <thread>

#include "tests/query/query_support.h"

namespace plovix {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
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
  [[nodiscard]] std::string ProblemOf(const std::string& sql, bool reads_hidden = false) const {
    const auto result = RunQuery({path_, reads_hidden}, {sql, {}});
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
  for (const DataObjectRecord& object : source_.List()) EXPECT_EQ(object.key, "id") << object.name;
  EXPECT_EQ(source_.List().size(), 9U);
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

TEST_F(DataTest, AQueryReadsWhatItMayAndDoesNothingElse) {
  Run({"CREATE TABLE a (x)", "INSERT INTO a VALUES (1), (NULL), (x'00ff'), ('é')", "CREATE TABLE _pay (x)",
       "INSERT INTO _pay VALUES (9)", "CREATE VIEW pay AS SELECT x FROM \"_PAY\"",
       "CREATE VIEW paid AS WITH a AS (SELECT * FROM pay) SELECT count(*) AS n FROM a",
       "CREATE VIRTUAL TABLE words USING fts5(w)", "INSERT INTO words VALUES ('b c')",
       "CREATE VIRTUAL TABLE older USING fts4(w)", "INSERT INTO older VALUES ('b c')",
       "CREATE VIRTUAL TABLE places USING rtree(id, x0, x1)", "INSERT INTO places VALUES (1, 2, 3)",
       "CREATE VIRTUAL TABLE pay_words USING fts5(x, content='_pay')",
       "CREATE VIEW \"paid it's\" AS SELECT block AS x FROM pay_words_data",
       "CREATE VIRTUAL TABLE pay_index USING fts4(x, tokenize=simple, content=\"pay\")",
       "CREATE VIRTUAL TABLE pay_more USING fts5(x, content='paid it''s')",
       "CREATE VIEW pay_end AS SELECT x FROM pay_index", "CREATE VIRTUAL TABLE pages USING dbstat"});
  for (const char* unsafe : {"places", "pages"}) EXPECT_EQ(source_.Find(unsafe), std::nullopt) << unsafe;
  constexpr auto kPay = "query.preview.table|_pay";
  const struct {
    std::string sql, problem;
    std::string administrators = problem;
  } cases[] = {
      {"select * from a; -- fine", ""},
      {"values (1)", ""},
      {"with recursive n(i) as (select 1 union all select i + 1 from n limit 9) select count(*) from n", ""},
      {"select upper(x), sum(x) over (), printf('%.2f', x), json_each.value ->> '$' from a, json_each('[1]')",
       ""},
      {"select snippet(words, 0, '', '', '', 5), bm25(words) from words where words match 'c'", ""},
      {"select snippet(older) from older where w match 'c'", ""},
      {"select id from places where x0 > 1", "query.preview.table|places"},
      {"", "query.preview.select|"},
      {"pragma user_version = 5", "query.preview.select|"},
      {"attach 'b.sqlite' as b", "query.preview.select|"},
      {"with t as (select 1) insert into a select * from t", "query.preview.write|"},
      {"select 1; delete from a", "query.preview.second|"},
      {"select 1; pragma hard_heap_limit = 1048576", "query.preview.second|"},
      {"select nosuch from a", "query.preview.sql|no such column: nosuch"},
      {"select load_extension('x')", "query.preview.function|load_extension"},
      {"select fts3_tokenizer('t', x'4141414141414141')", "query.preview.function|fts3_tokenizer"},
      {"select sqlite_compileoption_get(1)", "query.preview.function|sqlite_compileoption_get"},
      {"select sql from sqlite_master", "query.preview.table|sqlite_master"},
      {"with t as (select 1) update sqlite_master set sql = ''",
       "query.preview.sql|table sqlite_master may not be modified"},
      {"select count(*) from sqlite_schema", "query.preview.table|sqlite_schema"},
      {"select 1 from pragma_table_info('a')", "query.preview.table|pragma_table_info"},
      {"select * from pragma_hard_heap_limit(1048576)", "query.preview.table|pragma_hard_heap_limit"},
      {"select * from dbstat", "query.preview.table|dbstat"},
      {"select * from pages", "query.preview.table|pages"},
      {"select * from sqlite_stmt", "query.preview.table|sqlite_stmt"},
      {"select x from _pay", kPay, ""},
      {"select 1 in _Pay", kPay, ""},
      {"select count(*) from main.[_pay]", kPay, ""},
      {"with a as (select * from _pay) select * from a", kPay, ""},
      {"select * from pay", kPay, ""},
      {"select n from paid", kPay, ""},
      {"select block from words_data", "query.preview.table|words_data"},
      {"select c0w from older_content, words", "query.preview.table|older_content"},
      {"select count(*) from 'pay_words_data'", "query.preview.table|pay_words",
       "query.preview.table|pay_words_data"},
      {"select rowid from pay_index where x match '9'", "query.preview.table|pay_index", ""},
      {"select rowid from pay_more where x match '9'", "query.preview.table|pay_more", ""},
      {"select x from pay_words", "query.preview.table|pay_words", ""},
      {"with _pay(b) as (select 1) select b from _pay", ""},
  };
  for (const auto& query : cases) {
    EXPECT_EQ(ProblemOf(query.sql), query.problem) << query.sql;
    EXPECT_EQ(ProblemOf(query.sql, true), query.administrators) << query.sql;
    EXPECT_EQ(CheckQuery({path_}, query.sql).has_value(), !query.problem.empty()) << query.sql;
  }
  const Connection other(path_, 50ms, Access::kReadOnly);
  EXPECT_GT(other.Integer("PRAGMA hard_heap_limit"), 1 << 20) << "a refused statement acted";
  for (const DataObjectRecord& object : source_.List())
    EXPECT_EQ(object.reads_hidden, object.name.starts_with("pa") && object.name != "pages") << object.name;
  const auto rows =
      std::get<QueryRows>(RunQuery({path_}, {"select x, x as y from a where x is not ?", {"z"}}));
  EXPECT_THAT(rows.columns, ElementsAre("x", "y"));
  EXPECT_EQ(rows.count, 4);
  EXPECT_THAT(rows.rows[1], ElementsAre(std::nullopt, std::nullopt));
  EXPECT_EQ(rows.rows[2][0], "x'00FF'");
  fs::remove(path_);
  EXPECT_THAT(ProblemOf("select 1"), HasSubstr("query.preview.file|" + path_));
}

// Each of them kept the database busy for minutes, took all memory, or ended the program.
TEST_F(DataTest, WhatWouldKeepTheDatabaseBusyIsRefusedOrGivenUp) {
  constexpr int kViews = 1000;
  Run({"CREATE TABLE a (x)", "INSERT INTO a VALUES (1)", "CREATE VIEW chain0 AS SELECT * FROM a",
       "CREATE VIEW wide0 AS SELECT x AS id FROM a"});
  {
    const Connection connection(path_, 50ms, Access::kReadWrite);
    connection.Run("BEGIN");
    for (int i = 1; i < kViews; ++i) {
      const std::string below = std::to_string(i - 1);
      connection.Run("CREATE VIEW chain" + std::to_string(i) + " AS SELECT * FROM chain" + below);
      if (i > 40) continue;
      connection.Run("CREATE VIEW wide" + std::to_string(i) + " AS SELECT (SELECT id FROM wide" + below +
                     ") + (SELECT id FROM 'wide" + below + "') AS id");
    }
    connection.Run("COMMIT");
  }
  std::string common = "WITH c0 AS (SELECT 1 AS x)";
  for (int i = 1; i <= 40; ++i) {
    const std::string below = "c" + std::to_string(i - 1);
    common += ", c" + std::to_string(i) + "(x) AS NOT MATERIALIZED (SELECT " + below + ".x FROM " + below +
              " JOIN " + below + " AS b)";
  }
  const std::pair<const char*, std::string> disguises[] = {
      {"hex", "a.id + 0x0 AS id FROM @ a, @ b"},
      {"alias", "a.id FROM a window, @ a, @ b"},
      {"named", "a.id FROM @ a, @ b WINDOW @ AS (ORDER BY 1)"},
      {"inner", "a.id FROM (WITH @ AS (SELECT 1 y) SELECT y FROM @), @ a, @ b"},
      {"mark", "a.id FROM \uFEFF@ a, \uFEFF@ b"},
      {"tab", "a.id FROM \n\v@ a, \n\v@ b"}};
  for (const auto& [name, body] : disguises) {
    std::string below = "wide0";
    for (int i = 1; i <= 12; ++i) {
      std::string text = body;
      for (auto at = text.find('@'); at != std::string::npos; at = text.find('@')) text.replace(at, 1, below);
      below = name + std::to_string(i);
      Run({"CREATE VIEW " + below + " AS SELECT " + text});
    }
    EXPECT_EQ(ProblemOf("SELECT * FROM " + below), "query.preview.nested|") << name;
  }
  Run({"CREATE TABLE \"" + std::string(kLongestName + 1, 'n') + "\" (x)",
       "CREATE VIEW n AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 3) SELECT i "
       "FROM n"});
  const auto started = std::chrono::steady_clock::now();
  const std::pair<std::string, std::string> cases[] = {
      {"SELECT * FROM n", ""},
      {"SELECT $a(') FROM a, wide40 --')", "query.preview.nested|"},
      {"SELECT * FROM chain30", ""},
      {"SELECT * FROM chain999", "query.preview.nested|"},
      {"SELECT * FROM wide5", ""},
      {"SELECT * FROM wide40", "query.preview.nested|"},
      {"SELECT 1 FROM a WHERE x IN main.wide40", "query.preview.nested|"},
      {common + " SELECT * FROM c40", "query.preview.nested|"},
      {"SELECT " + std::string(5000, '(') + "1", "query.preview.nested|"},
      {"SELECT zeroblob(900000000)", "query.preview.file|"},
  };
  for (const auto& [sql, problem] : cases)
    EXPECT_THAT(ProblemOf(sql), StartsWith(problem)) << sql.substr(0, 80);
  EXPECT_EQ(source_.List().size(), 1042U + 6 * 12 + 1);
  EXPECT_EQ(source_.Find("wide5")->key, "id");
  EXPECT_EQ(source_.Find("wide40")->key, "");
  EXPECT_THROW((void)source_.Fields("chain999"), Failure);
  SqliteDataSource hasty(path_, 50ms, 1ms);
  EXPECT_THROW((void)hasty.List(), Failure);
  EXPECT_LT(std::chrono::steady_clock::now() - started, 20s);
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

// A function that computes on and on notices nothing: nobody waits for it, the owner's end included.
TEST_F(DataTest, NobodyWaitsForWorkThatDoesNotEnd) {
  Run({"CREATE TABLE a (x)"});
  const auto started = std::chrono::steady_clock::now();
  const auto is_freed = std::make_shared<std::promise<void>>();
  {
    BackgroundDataSource source(path_, WaitAtMost(1s));
    EXPECT_EQ(source.List().size(), 1U);
    BackgroundDataSource stuck(path_, [](const BackgroundJob&) { return false; });
    EXPECT_THROW((void)stuck.List(), Failure);
    std::vector<std::unique_ptr<BackgroundJob>> jobs;
    const std::shared_future<void> free = is_freed->get_future().share();
    for (int refusals = 0; refusals < 50;) {  // the one that was given up ends meanwhile
      try {
        jobs.push_back(std::make_unique<BackgroundJob>([free](const std::stop_token&) { free.wait(); }));
      } catch (const Failure&) {
        std::this_thread::sleep_for(10ms);
        ++refusals;
      }
    }
    EXPECT_EQ(jobs.size(), std::size_t{kMostJobs});
    EXPECT_FALSE(jobs.front()->WaitFor(1ms));
    std::string problem;
    QueryPreview preview({path_}, [](const std::function<void()>& result) { result(); });
    preview.Ask({"SELECT 1", {}}, [&problem](const QueryPreview::Result& result) {
      problem = std::get<QueryProblem>(result).text;
    });
    EXPECT_EQ(problem, "query.preview.file");
    EXPECT_THROW((void)source.List(), Failure);
    is_freed->set_value();
    EXPECT_TRUE(jobs.front()->WaitFor(10s));
    EXPECT_TRUE(jobs.back()->WaitFor(10s));
    EXPECT_EQ(source.Find("A")->name, "a");
  }
  {
    QueryPreview preview({path_}, [](const std::function<void()>&) { ADD_FAILURE() << "nobody is there"; });
    preview.Ask({"SELECT instr(y, substr(y, 400000) || 'x') FROM (SELECT hex(zeroblob(400000)) AS y)", {}},
                {});
    std::this_thread::sleep_for(100ms);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - started, 5s);
}

TEST_F(DataTest, ANewerQueryOrTheEndInterruptsTheRunningOne) {
  Run({"CREATE TABLE a (x)", "INSERT INTO a VALUES (1)"});
  const BoundQuery endless{"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT * FROM n",
                           {}};
  const BoundQuery silent{endless.sql + " WHERE i < 0", {}};
  std::promise<std::function<void()>> posted;
  {
    QueryPreview preview({path_},
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
    const auto rows = std::get<QueryRows>(RunQuery({path_}, query, {.time = 20ms}));
    EXPECT_FALSE(rows.complete);
    EXPECT_EQ(rows.rows.size(), query.sql == silent.sql ? 0U : 20U);
  }
}

}  // namespace
}  // namespace plovix
