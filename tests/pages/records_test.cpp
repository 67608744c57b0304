// The records settings: modes, histories and the base date.
#include <plovix/framework/page_identifiers.h>

#include "tests/support/faults.h"

namespace plovix {
namespace {

using namespace testing_support;

class RecordsTest : public testing::Test {
 protected:
  void Open() {
    bench = std::make_unique<Bench>(scene, page_identifier::kRecords, task), bench->Initialize();
  }
  Scene scene;
  TaskRecord task = CompleteTask(2);
  std::unique_ptr<Bench> bench;
};

TEST_F(RecordsTest, ModesAndHistories) {
  const std::vector<std::string> options = {"optOnce", "optModified", "optEveryTime"};
  for (std::int32_t mode = -1; mode < 4; ++mode) {
    for (const bool all : {false, true}) {
      task.processing_mode = mode;
      task.process_all_records = all;
      task.process_failed_records = true;
      Open();
      for (std::int32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(bench->Get<OptionButton>(options[static_cast<std::size_t>(i)]).Selected(), i == mode);
      }
      EXPECT_EQ((*bench)["chkFailedRecords"].Enabled(), !all);
      EXPECT_EQ(bench->Get<CheckBox>("chkFailedRecords").Checked(), !all);
      EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
      TaskRecord expected = task;
      expected.process_failed_records = !all;  // all records include the failed ones
      EXPECT_EQ(bench->task->Record(), expected);
      bench->user.Toggle((*bench)["chkProcessAll"]);
      EXPECT_EQ((*bench)["chkFailedRecords"].Enabled(), all);
      EXPECT_TRUE(
          bench->Leave(ChangeDirection::kNext));  // a box that is checked and moot counts as not checked
      EXPECT_FALSE(bench->task->Record().process_failed_records);
    }
  }
}

TEST_F(RecordsTest, TheBaseDate) {
  const DateTime eight = kSomeDay + std::chrono::hours{8};
  Open();
  EXPECT_FALSE((*bench)["dtpDate"].Enabled() || (*bench)["dtpTime"].Enabled());
  for (const char* picker : {"dtpDate", "dtpTime"}) {
    EXPECT_EQ(bench->Get<DateTimePicker>(picker).Value(), scene.state.Now());
  }
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->task->Record().base_date, kZeroDate);
  bench->user.Toggle((*bench)["chkUseBaseDate"]);
  EXPECT_TRUE((*bench)["dtpDate"].Enabled() && (*bench)["dtpTime"].Enabled());
  bench->user.Toggle((*bench)["chkUseBaseDate"]);
  EXPECT_FALSE((*bench)["dtpDate"].Enabled() || (*bench)["dtpTime"].Enabled());
  bench->user.Toggle((*bench)["chkUseBaseDate"]);
  bench->user.Set((*bench)["dtpDate"],
                  kSomeDay + std::chrono::hours{23});                   // only the date of the one counts,
  bench->user.Set((*bench)["dtpTime"], eight + std::chrono::days{40});  // only the time of the other
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->task->Record().base_date, eight);
  // Stored back as it was when nothing is edited: before 1970, at both ends of a day, at midnight.
  for (const DateTime date :
       {eight, kZeroDate + std::chrono::seconds{1}, kZeroDate - std::chrono::seconds{1}, DateTime{kSomeDay},
        DateTime{std::chrono::local_days{std::chrono::year{9999} / 12 / 31}}}) {
    task.base_date = date;
    Open();
    EXPECT_TRUE(bench->Get<CheckBox>("chkUseBaseDate").Checked());
    EXPECT_TRUE(bench->Leave(ChangeDirection::kFinish));
    EXPECT_EQ(bench->task->Record().base_date, date);
  }
}

}  // namespace
}  // namespace plovix
