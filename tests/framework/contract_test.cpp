// What pages build on: the statement runner, the provider of the services objects, and the rules of values.
#include <plovix/base/text_rules.h>
#include <plovix/framework/in_use.h>
#include <plovix/framework/statements.h>

#include <new>
#include <stdexcept>
#include <thread>
#include <variant>

#include "tests/support/scene.h"

namespace plovix {
namespace {

static_assert(Trimmed("  a b\t\r\n") == "a b" && Trimmed(" \t\r\n").empty() && Trimmed("").empty());

TEST(Values, ObjectsAndTruthValues) {
  struct Apple final : HostObject {};
  struct Pear final : HostObject {};
  const auto apple = std::make_shared<Apple>();
  EXPECT_EQ(ObjectFrom<Apple>(ObjectRef(apple)), apple);
  EXPECT_EQ(ObjectFrom<Apple>(ObjectRef()), nullptr);
  EXPECT_THROW((void)ObjectFrom<Pear>(ObjectRef(apple)), Failure);
  EXPECT_THROW((void)ObjectFrom<Apple>(true), Failure);
  EXPECT_TRUE(BooleanFrom(true) && BooleanFrom(-1) && BooleanFrom(0.5));
  EXPECT_FALSE(BooleanFrom(false) || BooleanFrom(0) || BooleanFrom(0.0));
  EXPECT_THROW((void)BooleanFrom(Value()), Failure);
  EXPECT_THROW((void)BooleanFrom(std::string("true")), Failure);
}

// The dialogs of the scene see to it that no exception is alive while they report.
class StatementsTest : public testing::Test {
 protected:
  testing_support::Scene scene;
  std::vector<FailureReport>& reports = scene.dialogs.reports;
};

[[noreturn]] void Fail() {
  throw Failure(380, "no");
}

TEST_F(StatementsTest, TheAnswerDecidesWhatRuns) {
  struct Row {
    std::deque<int> answers;
    int failures;       // of statement b in a row
    const char* trace;  // statements begun
    Outcome outcome;
  };
  const std::vector<Row> rows = {
      {{}, 0, "abc", Outcome::kCompleted},      {{0, 0, 0}, 3, "abbbbc", Outcome::kCompleted},
      {{1}, 1, "abc", Outcome::kCompleted},     {{2}, 1, "ab", Outcome::kLeft},
      {{0, 1}, 9, "abbc", Outcome::kCompleted}, {{0, 2}, 9, "abb", Outcome::kLeft},
      {{7}, 1, "ab", Outcome::kLeft},           {{-1}, 1, "ab", Outcome::kLeft},
  };
  for (const Row& row : rows) {
    reports.clear();
    scene.dialogs.on_report = [&](const FailureReport&) { return row.answers.at(reports.size() - 1); };
    std::string trace;
    int failures = row.failures;
    int line = 0;
    const Outcome outcome = RunProcedure("Page", "Proc", [&](Statements& run) {
      run([&] { trace += 'a'; });
      line = __LINE__ + 1;
      run([&] {
        trace += 'b';
        if (failures-- > 0) Fail();
      });
      run([&] { trace += 'c'; });
    });
    EXPECT_EQ(trace, row.trace);
    EXPECT_EQ(outcome, row.outcome);
    EXPECT_EQ(reports.size(), row.answers.size());
    for (const FailureReport& report : reports) EXPECT_EQ(report.line, line);
  }
}

TEST_F(StatementsTest, AFailedConditionThatIsSkippedIsFalse) {
  scene.dialogs.on_report = [&](const FailureReport&) { return reports.size() == 1 ? 1 : 0; };
  RunProcedure("Page", "Proc", [&](Statements& run) {
    EXPECT_FALSE(run.If([]() -> bool { Fail(); }));
    int failures = 1;
    EXPECT_TRUE(run.If([&] { return failures-- > 0 ? (Fail(), false) : true; }));
    EXPECT_FALSE(run.If([] { return false; }));
  });
  EXPECT_EQ(reports.size(), 2U);
}

TEST_F(StatementsTest, ALeftProcedureIsNoFailureOfItsCaller) {
  std::string trace;
  const Outcome outer = RunProcedure("Page", "Outer", [&](Statements& run) {
    run([&] {
      const Outcome inner = RunProcedure("Page", "Inner", [&](Statements& inner_run) {
        inner_run([&] { Fail(); });
        trace += "never";
      });
      trace += inner == Outcome::kLeft ? "left " : "completed ";
    });
    run([&] { trace += "on"; });
  });
  EXPECT_EQ(outer, Outcome::kCompleted);
  EXPECT_EQ(trace, "left on");
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].procedure, "Inner");
  EXPECT_EQ(RunProcedure("Page", "Proc", [](Statements& run) { run([] { Statements::Leave(); }); }),
            Outcome::kLeft);
  // What is thrown outside a statement passes.
  EXPECT_THROW(RunProcedure("Page", "Proc", [](Statements&) { Fail(); }), Failure);
  EXPECT_EQ(reports.size(), 1U);
}

TEST_F(StatementsTest, ForeignExceptionsGetTheCustomaryNumbers) {
  const std::vector<std::pair<std::function<void()>, int>> rows = {
      {[] { throw std::bad_alloc(); }, 7},
      {[] { (void)std::vector<int>{}.at(1); }, 9},
      {[] { (void)std::get<int>(std::variant<int, char>('x')); }, 13},
      {[] { throw std::bad_cast(); }, 13},
      {[] { throw std::logic_error("odd"); }, 51},
      {[] { throw 42; }, 51},
      {[] { (void)*Ref<int>(); }, 91},
  };
  for (const auto& [act, number] : rows) {
    reports.clear();
    RunProcedure("Page", "Proc", [&](Statements& run) { run(act); });
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].number, number);
    EXPECT_FALSE(reports[0].description.empty());
  }
}

TEST(InUse, CountsEveryTokenUntilTheLastReferenceIsGone) {
  const int others = InUse::Count();
  std::weak_ptr<int> watcher;
  {
    const InUse token;
    InUse copy = token;
    copy = token;
    const auto object = MakeInUse<int>(7);
    EXPECT_EQ(*object, 7);
    EXPECT_GT(InUse::Count(), others + 2);
    watcher = object;
  }
  EXPECT_GT(InUse::Count(), others) << "a weak reference still needs the code";
  watcher.reset();
  EXPECT_EQ(InUse::Count(), others);
}

TEST(Services, MadeOncePerThreadAndInstallation) {
  struct NoServices final : HostServices {
    Ref<HostApplication> Application() override { return nullptr; }
    Ref<ObjectFactory> Factory() override { return nullptr; }
  };
  std::atomic<int> made = 0;
  const auto make = [&made] { return ++made, std::make_shared<NoServices>(); };
  InstallServices({make, {}});
  const HostServices* here = &Services();
  EXPECT_EQ(here, &Services());
  std::thread([&] { EXPECT_NE(&Services(), here); }).join();
  EXPECT_EQ(made, 2);
  InstallServices({make, {}});
  (void)Services();
  EXPECT_EQ(made, 3);
  EXPECT_THROW((void)ServicesUtilities(), Failure);  // this provider makes none
  InstallServices({});
  EXPECT_THROW((void)Services(), Failure);
}

}  // namespace
}  // namespace plovix
