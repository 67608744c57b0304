// Every road through the wizard, walked in the real window and walked again on the stored task.
#include <gmock/gmock.h>
#include <plovix/framework/page_identifiers.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "tests/app/program_support.h"

namespace plovix::app {
namespace {

using testing::ElementsAreArray;
using namespace page_identifier;

struct Road {
  const char* name;
  std::int16_t mode;
  bool automatic, tags, importing;
  const char* pattern;  // the option of the pattern page; nullptr for a task without a schedule
  std::vector<std::string> pages;
};

class RoadTest : public ProgramTest {
 protected:
  RoadTest() {
    data_->entries = {{{"customers", "Customers", "id"}, {}}, {{"orders", "Orders", "id"}, {}}};
    user_ = {};
    user_.id = "ann";
    user_.edit_categories = user_.create_personal = user_.create_shared = true;
    SetUser(state_, user_);
    for (const char* tag : {"t.name", "t.short", "t.long", "t.category"})
      tables_.SaveTag({tag, {{"en", std::string("Text of ") + tag}}});
    ReadTags(state_, tables_, "en");
  }

  [[nodiscard]] QWidget* Widget(const char* name) const { return Wizard()->Page()->WidgetOf(name); }
  void Press(const char* name) const { qobject_cast<QAbstractButton*>(Widget(name))->click(); }
  // What a person types into a field, whatever stood there.
  void Fill(const char* name, const QString& text) const {
    QWidget* field = Widget(name);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, text);
  }
  // Opens the list by keyboard and takes the entry `down` below the first.
  void PickFromList(const char* name, int down) const {
    auto* box = qobject_cast<QComboBox*>(Widget(name));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    QWidget* list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    QWidget* entries = list->focusWidget() != nullptr ? list->focusWidget() : list;
    QTest::keyClick(entries, Qt::Key_Home);
    for (int i = 0; i < down; ++i) QTest::keyClick(entries, Qt::Key_Down);
    QTest::keyClick(entries, Qt::Key_Return);
  }

  // Enters on the current page what the road wants there.
  void Enter(const Road& road) const {
    const std::string page = Wizard()->Wizard().Identifier();
    if (page == kAutoTaskType) {
      Press(
          std::array{"optNoData", "optSingleRecord", "optQueryResults"}[static_cast<std::size_t>(road.mode)]);
    } else if (page == kDetails) {
      EnterDetails(road);
    } else if (page == kRecords) {
      Press("optModified");
      Press("chkProcessAll");
    } else if (page == kRecurrenceTime) {
      Press("optEveryNHour");
      Fill("txtHours", "5");
    } else if (page == kRecurrencePattern) {
      Press(road.pattern);
    } else if (page == kDailyRecurrence) {
      Fill("txtDays", "3");
    } else if (page == kWeeklyRecurrence) {
      Press("chkFriday");
      Fill("txtWeeks", "2");
    } else if (page == kQuery) {
      Fill("txtQuery", "SELECT * FROM \"orders\" WHERE \"total\" > 1.5");
    }
  }
  void EnterDetails(const Road& road) const {
    if (!road.tags) {
      Fill("txtName", "Name 'x' %1");
      Fill("txtShortDescription", "Short");
      Fill("txtDescription", "Long");
      Fill("cboCategory", "Month end");
    }
    if (road.mode != record_mode::kNoData && !road.importing) PickFromList("cboDataObject", 1);
    auto* automatic = qobject_cast<QAbstractButton*>(Widget("chkAutoMan"));
    if (automatic->isEnabled() && automatic->isChecked() != road.automatic) automatic->click();
    if (road.mode == record_mode::kQueryResults) Press("chkSkipRowSelection");
  }

  // Goes from page to page to the end, entering what the road wants; gives the pages' identifiers.
  [[nodiscard]] std::vector<std::string> Walk(const Road* road) const {
    std::vector<std::string> pages;
    while (Wizard() != nullptr && pages.size() < 12) {
      pages.push_back(Wizard()->Wizard().Identifier());
      if (road != nullptr) Enter(*road);
      auto* next = Wizard()->findChild<QPushButton*>("next");
      (next->isEnabled() ? next : Wizard()->findChild<QPushButton*>("finish"))->click();
      if (Wizard() != nullptr && Wizard()->Wizard().Identifier() == pages.back()) {
        ADD_FAILURE() << "stays on " << pages.back();
        Wizard()->Wizard().Cancel();
        break;
      }
    }
    return pages;
  }
};

const Road kRoads[] = {
    {"without data", 0, false, false, false, nullptr, {kAutoTaskType, kDetails, kActions}},
    {"single record", 1, false, false, false, nullptr, {kAutoTaskType, kDetails, kActions}},
    {"query results", 2, false, false, false, nullptr, {kAutoTaskType, kDetails, kQuery, kActions}},
    {"scheduled without data",
     0,
     true,
     false,
     false,
     "optDaily",
     {kAutoTaskType, kDetails, kRecurrenceTime, kRecurrencePattern, kDailyRecurrence, kActions}},
    {"scheduled on query results",
     2,
     true,
     false,
     false,
     "optWeekly",
     {kAutoTaskType, kDetails, kRecords, kRecurrenceTime, kRecurrencePattern, kWeeklyRecurrence, kQuery,
      kActions}},
    {"scheduled, tags, without the right to go on",
     2,
     true,
     true,
     false,
     "optMonthly",
     {kAutoTaskType, kDetails, kRecords, kRecurrenceTime, kRecurrencePattern, kMonthlyRecurrence}},
    {"tags, not scheduled", 2, false, true, false, nullptr, {kAutoTaskType, kDetails, kQuery, kActions}},
    {"imported", 2, true, false, true, nullptr, {kDetails}},
};

TEST_F(RoadTest, EveryRoadEndsInTheFileAndOpensAsItWasLeft) {
  for (const Road& road : kRoads) {
    SCOPED_TRACE(road.name);
    TaskRecord task;
    if (road.tags) task.uses_language_tags = true, task.categories = {{"t.category", false}};
    task.name_tag = "t.name";
    task.short_description_tag = "t.short";
    task.description_tag = "t.long";
    if (road.importing) {
      task.record_mode = road.mode;
      task.data_object_name = "orders";
      task.data_object_caption = "Orders";
      task.allow_automation_manager = true;
      task.recurrence = RecurrenceRecord{.pattern = YearlyRecord{4, {true, 1, 4, 9}}};
    }
    list_->Open(task, road.pages.front(), {{store_key::kImporting, road.importing}});
    ASSERT_TRUE(QTest::qWaitForWindowActive(Wizard()));
    EXPECT_THAT(Walk(&road), ElementsAreArray(road.pages));
    const auto stored = storage_->List();
    ASSERT_FALSE(stored.empty());
    const TaskRecord& saved = stored.back();
    EXPECT_EQ(saved.record_mode, road.mode);
    EXPECT_EQ(saved.data_object_caption, road.mode == record_mode::kNoData ? "" : "Orders");
    EXPECT_EQ(saved.allow_automation_manager, road.automatic);
    EXPECT_EQ(saved.recurrence.has_value(), road.automatic);
    EXPECT_EQ(saved.skip_row_selection, road.mode == record_mode::kQueryResults);
    EXPECT_EQ(state_.TagText(saved.categories.at(0).tag), road.tags ? "Text of t.category" : "Month end");

    Reopen();
    list_->Open(saved, road.pages.front(), {{store_key::kImporting, road.importing}});
    ASSERT_TRUE(QTest::qWaitForWindowActive(Wizard()));
    EXPECT_THAT(Walk(nullptr), ElementsAreArray(road.pages));
    TaskRecord again = storage_->Load(saved.id).value();
    again.version = saved.version;
    again.modified = saved.modified;
    EXPECT_TRUE(again == saved) << "walking through a stored task changes nothing";
    storage_->Delete(saved.id);
  }
}

}  // namespace
}  // namespace plovix::app
