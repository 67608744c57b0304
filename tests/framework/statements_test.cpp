// The statement runner and the provider of the services objects, with a reporter of the test's own.
#include <gtest/gtest.h>
#include <plovix/framework/statements.h>
#include <plovix/host/services.h>

#include <deque>
#include <new>
#include <stdexcept>
#include <thread>
#include <variant>
#include <vector>

namespace plovix {
namespace {

struct Report {
  int number;
  std::string description, place;
  int line;
};

class FakeReporter final : public ErrorReporter {
 public:
  ReportAction Report(int number, const std::string& description, std::string_view project,
                      std::string_view page, std::string_view procedure, int line) override {
    EXPECT_EQ(std::current_exception(), nullptr) << "an exception is alive while a dialog may be shown";
    reports.push_back({number, description,
                       std::string(project) + "." + std::string(page) + "." + std::string(procedure), line});
    if (answers.empty()) return ReportAction::kLeave;
    const int answer = answers.front();
    answers.pop_front();
    return static_cast<ReportAction>(answer);
  }
  std::deque<int> answers;
  std::vector<plovix::Report> reports;
};

// Only the reporter is ever asked for here.
class FakeApplication final : public HostApplication {
 public:
  explicit FakeApplication(std::shared_ptr<FakeReporter> reporter) : reporter_(std::move(reporter)) {}
  std::shared_ptr<LanguageTable> Language() override { return nullptr; }
  std::shared_ptr<plovix::Translator> Translator() override { return nullptr; }
  std::shared_ptr<plovix::ErrorReporter> ErrorReporter() override { return reporter_; }
  std::shared_ptr<plovix::UserRights> UserRights() override { return nullptr; }
  std::shared_ptr<ObjectLoader> Loader() override { return nullptr; }
  std::string Title() override { return {}; }
  std::string Path() override { return {}; }
  bool LanguageTagMode() override { return false; }
  DateTime Now() override { return {}; }
  int MsgBox(const std::string&, int, const std::string&, const std::string&) override { return 0; }

 private:
  std::shared_ptr<FakeReporter> reporter_;
};

class FakeServices final : public HostServices {
 public:
  explicit FakeServices(std::shared_ptr<FakeReporter> reporter)
      : application_(std::make_shared<FakeApplication>(std::move(reporter))) {}
  std::shared_ptr<HostApplication> Application() override { return application_; }
  std::shared_ptr<ObjectFactory> Factory() override { return nullptr; }

 private:
  std::shared_ptr<HostApplication> application_;
};

class StatementsTest : public testing::Test {
 protected:
  StatementsTest() {
    InstallServices({[r = reporter] { return std::make_shared<FakeServices>(r); }, {}});
  }
  ~StatementsTest() override { InstallServices({}); }

  std::shared_ptr<FakeReporter> reporter = std::make_shared<FakeReporter>();
};

[[noreturn]] void Fail(int number = 5) {
  throw Failure(number, "no");
}

TEST_F(StatementsTest, TheAnswerDecidesWhatRuns) {
  struct Row {
    std::deque<int> answers;
    int failures;       // of statement b in a row
    const char* trace;  // statements begun
    Outcome outcome;
  };
  const std::vector<Row> rows = {
      {{}, 0, "abc", Outcome::kCompleted},
      {{0}, 1, "abbc", Outcome::kCompleted},
      {{0, 0, 0}, 3, "abbbbc", Outcome::kCompleted},
      {{1}, 1, "abc", Outcome::kCompleted},
      {{0, 1}, 9, "abbc", Outcome::kCompleted},
      {{2}, 1, "ab", Outcome::kLeft},
      {{0, 2}, 9, "abb", Outcome::kLeft},
      {{7}, 1, "ab", Outcome::kLeft},
      {{-1}, 1, "ab", Outcome::kLeft},
  };
  for (const Row& row : rows) {
    reporter->answers = row.answers;
    reporter->reports.clear();
    std::string trace;
    int failures = row.failures;
    int line = 0;
    const Outcome outcome = RunProcedure("Page", "Proc", [&](Statements& run) {
      run([&] { trace += 'a'; });
      line = __LINE__ + 1;
      run([&] {
        trace += 'b';
        if (failures-- > 0) Fail(380);
      });
      run([&] { trace += 'c'; });
    });
    EXPECT_EQ(trace, row.trace);
    EXPECT_EQ(outcome, row.outcome);
    EXPECT_EQ(reporter->reports.size(), row.answers.size());
    EXPECT_TRUE(reporter->answers.empty());
    for (const Report& report : reporter->reports) {
      EXPECT_EQ(report.number, 380);
      EXPECT_EQ(report.description, "no");
      EXPECT_EQ(report.place, "Plovix.Page.Proc");
      EXPECT_EQ(report.line, line);
    }
  }
}

TEST_F(StatementsTest, AFailedConditionThatIsSkippedIsFalse) {
  reporter->answers = {1, 0};
  RunProcedure("Page", "Proc", [&](Statements& run) {
    EXPECT_FALSE(run.If([]() -> bool { Fail(); }));
    int failures = 1;
    EXPECT_TRUE(run.If([&] { return failures-- > 0 ? (Fail(), false) : true; }));
    EXPECT_FALSE(run.If([] { return false; }));
  });
  EXPECT_EQ(reporter->reports.size(), 2U);
}

TEST_F(StatementsTest, ALeftProcedureIsLeftAlone) {
  std::string trace;
  const Outcome outer = RunProcedure("Page", "Outer", [&](Statements& run) {
    run([&] {
      // Called inside a statement of another procedure: leaving it is no failure of that statement.
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
  ASSERT_EQ(reporter->reports.size(), 1U);
  EXPECT_EQ(reporter->reports[0].place, "Plovix.Page.Inner");
}

TEST_F(StatementsTest, WhatIsThrownOutsideAStatementPasses) {
  EXPECT_THROW(RunProcedure("Page", "Proc", [](Statements&) { Fail(); }), Failure);
  EXPECT_TRUE(reporter->reports.empty());
}

TEST_F(StatementsTest, ForeignExceptionsGetTheCustomaryNumbers) {
  const std::vector<std::pair<std::function<void()>, int>> rows = {
      {[] { throw std::bad_alloc(); }, 7},
      {[] { (void)std::vector<int>{}.at(1); }, 9},
      {[] { (void)std::get<int>(std::variant<int, char>('x')); }, 13},
      {[] { throw std::bad_cast(); }, 13},
      {[] { throw std::logic_error("odd"); }, 51},
      {[] { throw 42; }, 51},
      {[] { Set(std::shared_ptr<int>()); }, 91},
  };
  for (const auto& [act, number] : rows) {
    reporter->reports.clear();
    RunProcedure("Page", "Proc", [&](Statements& run) { run(act); });
    ASSERT_EQ(reporter->reports.size(), 1U);
    EXPECT_EQ(reporter->reports[0].number, number);
    EXPECT_FALSE(reporter->reports[0].description.empty());
  }
}

TEST(Services, MadeOncePerThreadAndInstallation) {
  std::atomic<int> made = 0;
  const auto provider = [&made] {
    return ServicesProvider{[&made] {
                              ++made;
                              return std::make_shared<FakeServices>(nullptr);
                            },
                            {}};
  };
  InstallServices(provider());
  const HostServices* here = &Services();
  EXPECT_EQ(here, &Services());
  std::thread([&] { EXPECT_NE(&Services(), here); }).join();
  EXPECT_EQ(made, 2);
  InstallServices(provider());
  (void)Services();
  EXPECT_EQ(made, 3);
  const auto number = [](auto call) {
    try {
      call();
    } catch (const Failure& failure) {
      return failure.Number();
    }
    return 0;
  };
  EXPECT_EQ(number([] { (void)ServicesUtilities(); }), 429);  // this provider makes none
  InstallServices({});
  EXPECT_EQ(number([] { (void)Services(); }), 429);
}

}  // namespace
}  // namespace plovix
