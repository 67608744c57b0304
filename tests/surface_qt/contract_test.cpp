// What a user does to the widgets of each kind raises the events of that kind, once; what a page does
// shows, and does not come back as the user's doing.
#include <QAbstractItemView>
#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTimeEdit>

#include "page_fixture.h"

namespace plovix::qt {
namespace {

using namespace std::chrono_literals;
using Events = std::vector<std::string>;
constexpr DateTime kMorning = std::chrono::local_days{2026y / 1 / 31} + 8h + 30min + 15s;

class ContractTest : public PageTest {
 protected:
  struct Act {
    const char* what;
    std::function<void()> act;
    Events events;
  };
  // Without LostFocus, which has rules of its own.
  Events Raised() {
    std::erase_if(events, [](const std::string& event) { return event.ends_with("_LostFocus"); });
    return std::exchange(events, {});
  }
  void Expect(const std::vector<Act>& acts) {
    for (const Act& act : acts) {
      act.act();
      EXPECT_EQ(Raised(), act.events) << act.what;
    }
  }
};

TEST_F(ContractTest, UserInputRaisesTheEventsOfItsKindOnce) {
  Open();
  Get<DateTimePicker>("dtp").SetValue(kMorning);
  Get<DateTimePicker>("tim").SetValue(kMorning);
  events.clear();
  auto* list = At<QComboBox>("lst");
  Expect({
      {"typing", [&] { QTest::keyClicks(At("txt"), "ab"); }, {"txt_Change", "txt_Change"}},
      {"typing lines", [&] { QTest::keyClick(At("memo"), Qt::Key_Return); }, {"memo_Change"}},
      {"check", [&] { Click("chk"); }, {"chk_Click"}},
      {"check by key", [&] { Press("chk", Qt::Key_Space); }, {"chk_Click"}},
      {"option", [&] { Click("optA"); }, {"optA_Click"}},
      {"same option", [&] { Click("optA"); }, {}},
      {"arrow", [&] { Press("optA", Qt::Key_Down); }, {"optB_Click"}},
      {"arrow round the end", [&] { Press("optB", Qt::Key_Down); }, {"optA_Click"}},
      {"option twice", [&] { DoubleClick("optB"); }, {"optB_Click", "optB_DblClick"}},
      {"button", [&] { Click("cmd"); }, {"cmd_Click"}},
      {"button by key", [&] { Press("cmd", Qt::Key_Space); }, {"cmd_Click"}},
      {"button by Enter", [&] { Press("cmd", Qt::Key_Return); }, {"cmd_Click"}},
      {"label", [&] { Click("lblHelp"); }, {"lblHelp_Click"}},
      {"label twice", [&] { DoubleClick("lblHelp"); }, {"lblHelp_Click", "lblHelp_DblClick"}},
      {"link by key", [&] { Press("lblLink", Qt::Key_Space); }, {"lblLink_Click"}},
      {"text by key", [&] { Press("lblHelp", Qt::Key_Space); }, {}},
      {"next entry", [&] { Press("lst", Qt::Key_Down); }, {"lst_Click"}},
      {"opening", [&] { list->showPopup(); }, {"lst_DropDown"}},
      {"same entry", [&] { QTest::keyClick(list->view(), Qt::Key_Return); }, {"lst_Click"}},
      {"typing an entry's text",
       [&] {
         QTest::keyClicks(At("cbo"), "first");
         Press("cbo", Qt::Key_Return);
       },
       {}},
      {"leaving it", [&] { Click("txt"); }, {}},
      {"date", [&] { Press("dtp", Qt::Key_Down); }, {"dtp_Change"}},
      {"time", [&] { Press("tim", Qt::Key_Up); }, {"tim_Change"}},
  });
  EXPECT_EQ(Get<TextBox>("txt").Text(), "ab");
  EXPECT_EQ(Get<TextBox>("memo").Text(), "\n");
  EXPECT_FALSE(Get<CheckBox>("chk").Checked());
  EXPECT_TRUE(Get<OptionButton>("optB").Selected());
  EXPECT_EQ(Get<ComboBox>("lst").Index(), 0);
  EXPECT_EQ(Get<ComboBox>("cbo").Text(), "first");
  EXPECT_EQ(Get<ComboBox>("cbo").Index(), -1);
  // Each changed its own part and kept the other.
  EXPECT_NE(Get<DateTimePicker>("dtp").Value(), kMorning);
  EXPECT_EQ((Get<DateTimePicker>("dtp").Value() - kMorning) % 24h, 0s);
  EXPECT_EQ(Get<DateTimePicker>("tim").Value() - kMorning, 1h);
}

TEST_F(ContractTest, PageWritesShowAndDoNotComeBack) {
  Open();
  Expect({
      {"text", [&] { Get<TextBox>("txt").SetText("one\ntwo"); }, {"txt_Change"}},
      {"lines", [&] { Get<TextBox>("memo").SetText("one\r\ntwo"); }, {"memo_Change"}},
      {"check", [&] { Get<CheckBox>("chk").SetValue(1); }, {"chk_Click"}},
      {"option", [&] { Get<OptionButton>("optB").Select(); }, {"optB_Click"}},
      {"sibling", [&] { Get<OptionButton>("optA").Select(); }, {"optA_Click"}},
      {"entry", [&] { Get<ComboBox>("lst").Select(2); }, {"lst_Click"}},
      {"new list",
       [&] {
         Get<ComboBox>("lst").Clear();
         Get<ComboBox>("lst").AddItem("only");
       },
       {}},
      {"free text", [&] { Get<ComboBox>("cbo").SetText("other"); }, {}},
      {"date", [&] { Get<DateTimePicker>("dtp").SetValue(kMorning); }, {"dtp_Change"}},
      {"time", [&] { Get<DateTimePicker>("tim").SetValue(kMorning); }, {"tim_Change"}},
      {"caption", [&] { Get<Label>("lblHelp").SetCaption("<i>&1"); }, {}},
      {"focus",
       [&] {
         Get<TextBox>("txt").SetFocus();
         Get<CheckBox>("chk").SetFocus();
       },
       {}},
      {"hiding what has it", [&] { Get<CheckBox>("chk").SetVisible(false); }, {}},
      {"frame", [&] { Get<Frame>("fra").SetEnabled(false); }, {}},
  });
  EXPECT_EQ(verbs, 0);
  EXPECT_EQ(At<QLineEdit>("txt")->text(), "one\ntwo");
  EXPECT_EQ(At<QPlainTextEdit>("memo")->toPlainText(), "one\ntwo");
  EXPECT_TRUE(At<QCheckBox>("chk")->isChecked());
  EXPECT_FALSE(At("chk")->isVisible());
  EXPECT_TRUE(At<QRadioButton>("optA")->isChecked());
  EXPECT_FALSE(At<QRadioButton>("optB")->isChecked());
  EXPECT_EQ(At<QComboBox>("lst")->currentIndex(), -1);
  EXPECT_EQ(At<QComboBox>("lst")->count(), 1);
  EXPECT_EQ(At<QComboBox>("cbo")->currentText(), "other");
  EXPECT_EQ(At<QDateEdit>("dtp")->date(), QDate(2026, 1, 31));
  EXPECT_EQ(At<QTimeEdit>("tim")->time(), QTime(8, 30, 15));
  EXPECT_EQ(At<QLabel>("lblHelp")->text(), "<i>&1");
  EXPECT_FALSE(At("chkInside")->isEnabled());
}

TEST_F(ContractTest, ARefusedUserSeesTheControlAsItIs) {
  Open();
  Get<CheckBox>("chk").SetEnabled(false);
  Get<ComboBox>("lst").Select(1);
  events.clear();
  // A handler that fails the entry: the page takes it back.
  Get<ComboBox>("lst").On(Event::kClick, [&] { Get<ComboBox>("lst").Select(1); });
  Click("chk");
  Press("lst", Qt::Key_Down);
  EXPECT_EQ(events, Events{});
  for (int i = 0; i < 2; ++i) {
    Click("optA");
    EXPECT_TRUE(At<QRadioButton>("optA")->isChecked());
  }
  EXPECT_FALSE(At<QCheckBox>("chk")->isChecked());
  EXPECT_EQ(At<QComboBox>("lst")->currentIndex(), 1);
}

TEST_F(ContractTest, TypingIsNotRewrittenAndTheCursorStays) {
  Open();
  Get<TextBox>("txt").SetText("line\nbreak");
  Get<TextBox>("memo").SetText("one\r\ntwo");
  for (const char* name : {"txt", "memo", "chk"}) Click(name);
  EXPECT_EQ(Get<TextBox>("txt").Text(), "line\nbreak");
  EXPECT_EQ(Get<TextBox>("memo").Text(), "one\r\ntwo");

  Get<TextBox>("txt").SetText("abc");
  auto* line = At<QLineEdit>("txt");
  Click("txt");
  line->setCursorPosition(1);
  QTest::keyClicks(line, "xy");
  EXPECT_EQ(Get<TextBox>("txt").Text(), "axybc");
  EXPECT_EQ(line->cursorPosition(), 3);
  EXPECT_TRUE(line->isUndoAvailable());
}

TEST_F(ContractTest, SelectionCountsCharacters) {
  Open();
  for (const char* name : {"txt", "memo"}) {
    Get<TextBox>(name).SetText("a\U0001F600b\u20AC");
    Get<TextBox>(name).SelectText(1, 2);
  }
  EXPECT_EQ(At<QLineEdit>("txt")->selectedText(), QString::fromUtf8("\U0001F600b"));
  EXPECT_EQ(At<QPlainTextEdit>("memo")->textCursor().selectedText(), QString::fromUtf8("\U0001F600b"));
}

}  // namespace
}  // namespace plovix::qt
