// What the recurrence pages do of their own: the rule of the numeric fields on each page, the deliberate
// asymmetries, the pattern objects' way between pages, store and task.
#include <plovix/framework/page_identifiers.h>
#include <plovix/pages/recurrence/recurrence_pattern.h>

#include "tests/support/faults.h"

namespace plovix {
namespace {

using namespace testing_support;
using namespace page_identifier;
using Texts = std::vector<std::string>;

class SchedulePages : public testing::Test {
 protected:
  Bench& Open(const std::string& page, const std::optional<RecurrenceRecord>& recurrence = RecurrenceRecord{},
              const Entries& entries = {}) {
    TaskRecord task;
    task.recurrence = recurrence;
    bench = std::make_unique<Bench>(scene, page, task, entries);
    scene.dialogs.boxes.clear();
    return bench->Initialize();
  }
  void Type(std::string_view box, const std::string& text) { bench->user.Type((*bench)[box], text); }
  void Choose(std::string_view option) { bench->user.Choose((*bench)[option]); }
  // Chooses a line without what choosing it repairs: every call of the host fails meanwhile.
  void ChooseUnrepaired(std::string_view option) {
    const Injector injector(1, Times::kForEver);
    Choose(option);
  }
  [[nodiscard]] RecurrenceRecord Stored() const { return bench->task->Record().recurrence.value(); }
  template <class Record>
  [[nodiscard]] Record StoredPattern() const {
    return std::get<Record>(Stored().pattern);
  }
  // The names of the selected options, a bar behind each.
  [[nodiscard]] std::string Selected() const {
    std::string names;
    for (const OptionButton* option : bench->Controls().OptionButtons())
      if (option->Selected()) names += std::string(option->Name()) + "|";
    return names;
  }
  Scene scene;
  std::unique_ptr<Bench> bench;
};

TEST_F(SchedulePages, NumericFieldsOnEveryPage) {
  struct Row {
    std::string page, option, box;  // the line that is chosen in the end
    int not_numeric, out_of_range;
    bool day;  // up to 31
  };
  const std::vector<Row> rows = {
      {kDailyRecurrence, "", "txtDays", 17, 18, false},
      {kWeeklyRecurrence, "", "txtWeeks", 95, 96, false},
      {kMonthlyRecurrence, "optSpecificDay", "txtDay", 111, 55, true},
      {kMonthlyRecurrence, "optRelativeDay", "txtSpecificDayMonth", 57, 58, false},  // the idle line's
      {kMonthlyRecurrence, "optRelativeDay", "txtRelativeDayMonth", 57, 58, false},
      {kYearlyRecurrence, "optSpecificDay", "txtSpecificDay", 111, 112, true},
      {kYearlyRecurrence, "optRelativeDay", "txtSpecificDay", 111, 112, true},  // the idle line's
      {kRecurrenceTime, "optEveryNMinute", "txtMinutes", 88, 89, false},
      {kRecurrenceTime, "optEveryNHour", "txtHours", 90, 91, false},
  };
  for (const Row& row : rows) {
    const std::string numeric = "[" + std::to_string(row.not_numeric) + "]/64";
    const std::string range = "[" + std::to_string(row.out_of_range) + "]/64";
    for (const auto& [text, said] : std::map<std::string, Texts>{{"abc", {numeric}},
                                                                 {" ", {numeric}},
                                                                 {"1 2", {numeric}},
                                                                 {"0", {range}},
                                                                 {"-3", {range}},
                                                                 {"32", row.day ? Texts{range} : Texts{}},
                                                                 {" 7 ", {}}}) {
      SCOPED_TRACE(row.page + " " + row.option + " " + row.box + " " + text);
      Open(row.page);
      Type(row.box, text);
      // Only emptiness keeps from going on, and on the weekly page that no day is checked.
      EXPECT_EQ(bench->host->pushes.back(), text != " " && row.page != kWeeklyRecurrence);
      if (!row.option.empty()) ChooseUnrepaired(row.option);
      EXPECT_EQ(bench->Leave(ChangeDirection::kNext), said.empty());
      EXPECT_EQ(scene.dialogs.boxes, said);
      const auto& box = bench->Get<TextBox>(row.box);
      EXPECT_TRUE(said.empty() || (box.HasFocus() && box.SelectionLength() == static_cast<int>(text.size())));
      EXPECT_TRUE(said.empty() || bench->store->values.size() == 1) << "nothing is saved";
      EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
      EXPECT_EQ(box.Text(), said.empty() ? text : "1") << "going back repairs";
    }
  }
}

TEST_F(SchedulePages, NumbersAreRoundedInTheHostsNotation) {
  for (const auto& [text, stored] :
       std::map<std::string, std::int32_t>{{"0.4", 0}, {"1e2", 100}, {"2.5", 2}, {"3.5", 4}, {"2,6", 3}}) {
    scene.state.decimal_separator = text == "2,6" ? "," : ".";
    Open(kDailyRecurrence);
    Type("txtDays", text);
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    EXPECT_EQ(StoredPattern<DailyRecord>().every_n_days, stored) << text;
  }
  // Beyond the 32-bit integers nothing is stored and the page stays.
  Open(kDailyRecurrence);
  Type("txtDays", "2147483647.5");
  EXPECT_FALSE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(scene.dialogs.reports.back().number, failure_number::kOverflow);
  EXPECT_EQ(bench->store->values.size(), 1U);
  // A silent test that was skipped lets through what is no number; it is not stored.
  Open(kDailyRecurrence, Scheduled(DailyRecord{4}));
  Type("txtDays", "abc");
  scene.dialogs.on_report = [](const FailureReport&) { return 1; };
  const Injector injector(1, Times::kOnce);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  EXPECT_EQ(scene.dialogs.reports.back().number, failure_number::kTypeMismatch);
  EXPECT_EQ(StoredPattern<DailyRecord>().every_n_days, 4);
}

TEST_F(SchedulePages, CanContinue) {
  Open(kWeeklyRecurrence);
  bench->user.Toggle((*bench)["chkFriday"]);
  EXPECT_TRUE(bench->host->pushes.back());
  Type("txtWeeks", " ");
  EXPECT_FALSE(bench->host->pushes.back());
  Type("txtWeeks", "0");
  EXPECT_TRUE(bench->host->pushes.back());
  bench->user.Toggle((*bench)["chkFriday"]);
  EXPECT_FALSE(bench->host->pushes.back());
  // On the yearly page the other line always allows it; with no kind of time chosen nothing is pushed.
  Open(kYearlyRecurrence);
  Type("txtSpecificDay", "");
  ChooseUnrepaired("optRelativeDay");
  bench->user.Pick((*bench)["cboDayOfWeek"], 3);
  EXPECT_TRUE(bench->host->pushes.back());
  RecurrenceRecord unknown;
  unknown.time_kind = 7;
  Open(kRecurrenceTime, unknown);
  EXPECT_TRUE(bench->host->pushes.empty());
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(Stored(), unknown) << "an unknown kind is kept";
}

TEST_F(SchedulePages, FreshPatternsGetTheirDefaultsAtOnce) {
  Open(kDailyRecurrence);
  EXPECT_EQ(bench->Text("txtDays"), "1");
  EXPECT_FALSE(bench->Get<CheckBox>("chkWeekdays").Checked());
  EXPECT_TRUE(std::holds_alternative<std::monostate>(Stored().pattern)) << "the task's own waits for saving";
  Open(kDailyRecurrence, Scheduled(DailyRecord{0, true}));
  EXPECT_EQ(StoredPattern<DailyRecord>().every_n_days, 1);
  EXPECT_TRUE(bench->Get<CheckBox>("chkWeekdays").Checked());
  Open(kWeeklyRecurrence, Scheduled(WeeklyRecord{}));
  EXPECT_EQ(StoredPattern<WeeklyRecord>(), (WeeklyRecord{1, {}}));
  Open(kMonthlyRecurrence, Scheduled(MonthlyRecord{}));
  EXPECT_EQ(StoredPattern<MonthlyRecord>(), (MonthlyRecord{1, {false, 1, 0, 1}}));
  EXPECT_EQ(Selected(), "optSpecificDay|");
  EXPECT_TRUE((*bench)["optSpecificDay"].HasFocus());
  Open(kYearlyRecurrence, Scheduled(YearlyRecord{}));
  EXPECT_EQ(StoredPattern<YearlyRecord>(), (YearlyRecord{1, {false, 1, 0, 1}}));
  EXPECT_TRUE(bench->Leave(ChangeDirection::kFinish));
  EXPECT_EQ(StoredPattern<YearlyRecord>(), (YearlyRecord{1, {false, 1, 0, 1}}));
}

// Store first; then the task's own object when it is of the page's kind; else a new one, which becomes the
// task's only when the page saves. The type is not the pattern pages' business.
TEST_F(SchedulePages, TheWorkingPattern) {
  Open(kDailyRecurrence, Scheduled(WeeklyRecord{4, {true}}));
  EXPECT_EQ(bench->Text("txtDays"), "1");
  Type("txtDays", "6");
  bench->user.Toggle((*bench)["chkWeekdays"]);
  EXPECT_EQ(StoredPattern<WeeklyRecord>().every_n_weeks, 4);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  EXPECT_EQ(StoredPattern<DailyRecord>(), (DailyRecord{6, true}));
  EXPECT_EQ(Stored().recurrence_type, recurrence_type::kWeekly);
  const Value kept = bench->store->values.at("DailyRecurrence");
  EXPECT_EQ(ObjectFrom<PatternBase>(kept), bench->task->Recurrence()->Pattern()) << "the very object";

  const Entries entries = {{"DailyRecurrence", kept}};
  Open(kDailyRecurrence, Scheduled(DailyRecord{9, true}), entries);
  EXPECT_EQ(bench->Text("txtDays"), "6") << "the store's comes first";
  Open(kDailyRecurrence, std::nullopt, entries);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext)) << "with the store's there is no need for a recurrence";
  EXPECT_FALSE(bench->task->Record().recurrence);
}

TEST_F(SchedulePages, Weekly) {
  Open(kWeeklyRecurrence, Scheduled(WeeklyRecord{2, {false, false, false, true}}));
  EXPECT_TRUE(bench->Get<CheckBox>("chkWednesday").Checked());
  // Loading only ever checks boxes.
  bench->user.Toggle((*bench)["chkMonday"]);
  bench->Initialize();
  EXPECT_TRUE(bench->Get<CheckBox>("chkMonday").Checked());
  bench->user.Toggle((*bench)["chkFriday"]);
  bench->user.Toggle((*bench)["chkWednesday"]);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(StoredPattern<WeeklyRecord>(),
            (WeeklyRecord{2, {false, true, false, false, false, true, false}}));
}

TEST_F(SchedulePages, ListsAreFilledWithoutBeingCleared) {
  for (const std::string page : {kMonthlyRecurrence, kYearlyRecurrence}) {
    Open(page);
    const auto& days = bench->Get<ComboBox>("cboDayOfWeek");
    EXPECT_EQ(days.ItemText(0) + days.ItemText(9), "[44][53]");
    EXPECT_EQ(bench->Get<ComboBox>("cboRelativeDay").ItemText(4), "[43]");
    bench->Initialize();
    EXPECT_EQ(days.Count(), 20);
  }
  const auto& months = bench->Get<ComboBox>("cboSpecificDayMonth");
  EXPECT_EQ(months.ItemText(0) + months.ItemText(11), "[99][110]");
}

TEST_F(SchedulePages, DaysThatMonthsLackAreWarnedOf) {
  const struct {
    std::string text, day;  // which is warned of
    int answer;
    bool left;
  } rows[] = {{"28.5", "", 0, true}, {"28.6", "29", 1, true}, {"31", "31", 1, true}, {"31", "31", 2, false}};
  for (const auto& [text, day, answer, left] : rows) {
    Open(kMonthlyRecurrence);
    Type("txtDay", text);
    scene.dialogs.answers = {answer};
    EXPECT_EQ(bench->Leave(ChangeDirection::kNext), left) << text;
    EXPECT_EQ(scene.dialogs.boxes, day.empty() ? Texts{} : Texts{"[56:" + day + "]/49"});
    EXPECT_EQ(bench->Get<TextBox>("txtDay").SelectionLength(), left ? 0 : 2);
  }
}

// With the specific day only that day is checked; its interval is repaired when saving.
TEST_F(SchedulePages, TheMonthlyChecksAreAsymmetric) {
  Open(kMonthlyRecurrence);
  Type("txtSpecificDayMonth", "abc");
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(StoredPattern<MonthlyRecord>().every_n_months, 1);
  EXPECT_EQ(bench->Text("txtSpecificDayMonth"), "1");
  Type("txtDay", "9");
  Type("txtSpecificDayMonth", "4");
  EXPECT_TRUE(bench->Leave(ChangeDirection::kFinish));
  EXPECT_EQ(StoredPattern<MonthlyRecord>(), (MonthlyRecord{4, {false, 9, 0, 1}}));
  // With the relative day the idle interval comes first, and the idle day is not checked.
  Open(kMonthlyRecurrence);
  for (const char* box : {"txtDay", "txtSpecificDayMonth", "txtRelativeDayMonth"}) Type(box, "-1");
  EXPECT_EQ(Selected(), "optRelativeDay|");
  EXPECT_FALSE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->Controls().Focused()->Name(), "txtSpecificDayMonth");
  // Saving repairs every field, and stores both lines, whichever is chosen.
  Type("txtRelativeDayMonth", "3");
  bench->user.Pick((*bench)["cboRelativeDay"], 4);
  bench->user.Pick((*bench)["cboDayOfWeek"], 9);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  EXPECT_EQ(StoredPattern<MonthlyRecord>(), (MonthlyRecord{3, {true, 1, 4, 10}}));
}

TEST_F(SchedulePages, WhatCouldNotBeReadWaitsForTheUser) {
  const MonthlyRecord stored{3, {true, 31, 4, 10}};
  scene.dialogs.on_report = [](const FailureReport&) { return 1; };
  {
    const Injector injected("MonthlyPattern.", Times::kForEver);
    Open(kMonthlyRecurrence, Scheduled(stored));
  }
  EXPECT_EQ(Selected(), "");
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  EXPECT_EQ(StoredPattern<MonthlyRecord>(), stored);
  Type("txtDay", "9");
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(StoredPattern<MonthlyRecord>(), (MonthlyRecord{3, {false, 9, 4, 10}}));
}

TEST_F(SchedulePages, YearlyDatesAreThoseOfTheHostsYear) {
  const struct {
    int year, month;
    std::string day;
    bool accepted;
  } rows[] = {{2027, 2, "28", true},   {2027, 2, "29", false},  {2028, 2, "29", true},
              {2028, 2, "30", false},  {2027, 4, "31", false},  {2027, 12, " 31 ", true},
              {2027, 1, "01", true},   {2027, 1, "001", false}, {2027, 1, "1.0", false},
              {2027, 1, "1e1", false}, {2027, 1, "+1", false}};
  for (const auto& [year, month, day, accepted] : rows) {
    scene.state.clock = [in = std::chrono::year{year}] {
      return DateTime{std::chrono::local_days{in / 6 / 15}};
    };
    Open(kYearlyRecurrence);
    bench->user.Pick((*bench)["cboSpecificDayMonth"], month - 1);
    Type("txtSpecificDay", day);
    EXPECT_EQ(bench->Leave(ChangeDirection::kNext), accepted) << year << " " << month << " " << day;
    EXPECT_EQ(scene.dialogs.boxes, accepted ? Texts{} : Texts{"[112]/64"});
    const YearlyRecord typed{month, {false, accepted ? std::stoi(day) : 0, 0, 1}};
    EXPECT_EQ(accepted, Stored().pattern == PatternRecord{typed});
  }
}

TEST_F(SchedulePages, BothListsOfMonthsShareOneMonth) {
  Open(kYearlyRecurrence, Scheduled(YearlyRecord{5, {true, 9, 2, 8}}));
  EXPECT_EQ(Selected(), "optRelativeDay|");
  EXPECT_EQ(bench->Get<ComboBox>("cboSpecificDayMonth").Index(), 4);
  bench->user.Pick((*bench)["cboRelativeDayMonth"], 6);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(StoredPattern<YearlyRecord>(), (YearlyRecord{7, {true, 9, 2, 8}}));
  for (const DayChoice& outside :
       {DayChoice{false, 1, 5, 1}, DayChoice{false, 1, 0, 11}, DayChoice{false, 1, -1, 1},
        DayChoice{false, 1, 0, std::numeric_limits<std::int32_t>::min()}}) {
    for (const std::string page : {kMonthlyRecurrence, kYearlyRecurrence}) {
      scene.dialogs.reports.clear();
      Open(page, page == kYearlyRecurrence ? Scheduled(YearlyRecord{1, outside})
                                           : Scheduled(MonthlyRecord{1, outside}));
      ASSERT_EQ(scene.dialogs.reports.size(), 1U);
      EXPECT_EQ(scene.dialogs.reports[0].procedure, "RetrieveValues");
      EXPECT_EQ(scene.dialogs.reports[0].number, failure_number::kInvalidPropertyValue);
      EXPECT_FALSE(bench->Get<OptionButton>("optRelativeDay").Selected()) << "loading chooses nothing";
    }
  }
}

// Editing a value chooses its line; choosing a line repairs what is not a number on the others, and only
// that.
TEST_F(SchedulePages, EditingChoosesTheLine) {
  struct Row {
    std::string page, edited, option, repaired;
  };
  for (const Row& row :
       std::vector<Row>{{kMonthlyRecurrence, "txtDay", "optSpecificDay", "txtRelativeDayMonth"},
                        {kMonthlyRecurrence, "txtSpecificDayMonth", "optSpecificDay", "txtRelativeDayMonth"},
                        {kMonthlyRecurrence, "cboRelativeDay", "optRelativeDay", "txtDay"},
                        {kMonthlyRecurrence, "cboDayOfWeek", "optRelativeDay", "txtSpecificDayMonth"},
                        {kMonthlyRecurrence, "txtRelativeDayMonth", "optRelativeDay", "txtDay"},
                        {kYearlyRecurrence, "cboSpecificDayMonth", "optSpecificDay", ""},
                        {kYearlyRecurrence, "txtSpecificDay", "optSpecificDay", ""},
                        {kYearlyRecurrence, "cboRelativeDay", "optRelativeDay", "txtSpecificDay"},
                        {kYearlyRecurrence, "cboDayOfWeek", "optRelativeDay", "txtSpecificDay"},
                        {kYearlyRecurrence, "cboRelativeDayMonth", "optRelativeDay", "txtSpecificDay"},
                        {kRecurrenceTime, "dtpTime", "optSpecificTime", "txtMinutes"},
                        {kRecurrenceTime, "dtpTime", "optSpecificTime", "txtHours"},
                        {kRecurrenceTime, "txtMinutes", "optEveryNMinute", "txtHours"},
                        {kRecurrenceTime, "txtHours", "optEveryNHour", "txtMinutes"}}) {
    for (const std::string text : {"abc", "-5"}) {
      SCOPED_TRACE(row.page + " " + row.edited + " " + text);
      Open(row.page);
      const auto choose_others = [&] {
        for (OptionButton* option : bench->Controls().OptionButtons())
          if (option->Name() != row.option) bench->user.Choose(*option);
      };
      choose_others();
      if (!row.repaired.empty()) Type(row.repaired, text);
      Type(row.edited, "2");
      bench->user.Pick((*bench)[row.edited], 1);
      bench->user.Set((*bench)[row.edited], kSomeDay + std::chrono::minutes{1});
      EXPECT_EQ(Selected(), row.option + "|");
      if (row.repaired.empty()) continue;
      EXPECT_EQ(bench->Text(row.repaired), text == "abc" ? "1" : text);
      choose_others();
      ChooseUnrepaired(row.option);
      EXPECT_EQ(scene.dialogs.reports.back().procedure, row.option + "_Click");
    }
  }
}

TEST_F(SchedulePages, TimeOfExecution) {
  Open(kRecurrenceTime, std::nullopt);
  ASSERT_TRUE(bench->task->Record().recurrence) << "no task leaves without one";
  EXPECT_EQ(bench->Text("txtMinutes") + bench->Text("txtHours"), "11");
  EXPECT_EQ(Stored().interval, 0) << "showing 1 changes nothing";
  EXPECT_EQ(Selected(), "optSpecificTime|");

  RecurrenceRecord record = Scheduled(DailyRecord{1, false}, time_kind::kEveryNMinutes);
  Open(kRecurrenceTime, record);
  EXPECT_EQ(Selected(), "optEveryNMinute|");
  EXPECT_EQ(bench->Text("txtMinutes") + bench->Text("txtHours"), "1515");
  Type("txtMinutes", "20");
  record.time_kind = time_kind::kAtTime;  // the interval stays as it was
  record.execution_time = kSomeDay + std::chrono::hours{21};
  bench->user.Set((*bench)["dtpTime"], record.execution_time);
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(Stored(), record);
  Type("txtHours", "48");
  Type("txtMinutes", "0");  // the idle line's is repaired, not refused
  bench->user.Set((*bench)["dtpTime"], kSomeDay);
  Choose("optEveryNHour");
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->Text("txtMinutes"), "1");
  record.time_kind = time_kind::kEveryNHours;
  record.interval = 48;
  record.execution_time = kSomeDay;  // stored with every kind of time
  EXPECT_EQ(Stored(), record);
}

TEST_F(SchedulePages, TheChoiceOfAPattern) {
  const std::vector<std::string> kinds = {"Daily", "Weekly", "Monthly", "Yearly"};
  for (std::int32_t type = 0; type < 4; ++type) {
    const std::string& kind = kinds[static_cast<std::size_t>(type)];
    RecurrenceRecord record;
    record.recurrence_type = type;
    Open(kRecurrencePattern, record);
    EXPECT_EQ(Selected(), "opt" + kind + "|");
    EXPECT_TRUE((*bench)["opt" + kind].HasFocus());
    record.recurrence_type = -1;
    Open(kRecurrencePattern, record);
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(bench->Next("Given.Page"), "Given.Page");
    EXPECT_EQ(bench->Next(""), "Plovix.DailyRecurrence");
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    EXPECT_EQ(Stored().recurrence_type, -1) << "no choice writes nothing";
    Choose("opt" + kind);
    EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
    EXPECT_EQ(Stored().recurrence_type, type);
  }
  bench->page->IWizardPage_Terminate();
  auto& page = dynamic_cast<RecurrencePattern&>(*bench->page);
  EXPECT_EQ(page.GetStore(), nullptr);
  page.SetStore(bench->store);
  page.SetWizard(bench->host);
  EXPECT_EQ(page.GetStore(), bench->store);
  bench->user.DoubleClick((*bench)["optDaily"]);
  EXPECT_EQ(bench->host->moves, 1);
}

}  // namespace
}  // namespace plovix
