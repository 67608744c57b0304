// Combo boxes with very many entries: what keys and the mouse do in the popup
// and on the closed box, and how often a list that is being filled is drawn.
#include <plovix/surfaces/qt/entry_popup.h>
#include <plovix/surfaces/qt/form_widget.h>

#include <QtTest>
#include <QtWidgets>
#include <map>

#include "tests/support/every_kind.h"

namespace plovix::qt {
namespace {

constexpr int kMany = 1000;

// A key by its sign, so that a case is a word.
Qt::Key KeyOf(char sign) {
  const std::map<char, Qt::Key> keys{{'d', Qt::Key_Down}, {'u', Qt::Key_Up},     {'p', Qt::Key_PageUp},
                                     {'h', Qt::Key_Home}, {'e', Qt::Key_End},    {'t', Qt::Key_Tab},
                                     {'4', Qt::Key_F4},   {'.', Qt::Key_Return}, {'x', Qt::Key_Escape}};
  return keys.at(sign);
}

class LongListTest : public testing_support::EveryKindTest {
 protected:
  LongListTest() {
    for (ComboBox* list : {&lst, &cbo}) list->Clear();
  }
  static void Fill(ComboBox& list) {
    const EntryBatch batch(list);
    for (int i = 0; i < kMany - 2; ++i) list.AddItem("entry " + std::to_string(i));
    for (const char* text : {"Ärger & 😀", "Beta"}) list.AddItem(text);
  }
  void Open() {
    page.show();
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    page.WidgetOf("lst")->setFocus();
    events.clear();
  }
  [[nodiscard]] QComboBox& Box(const char* name = "lst") const {
    return dynamic_cast<QComboBox&>(*page.WidgetOf(name));
  }
  [[nodiscard]] static QWidget* Popup() {
    return dynamic_cast<EntryPopup*>(QApplication::activePopupWidget());
  }
  [[nodiscard]] static QString Note() { return Popup()->findChild<QLabel*>()->text(); }

  using Texts = std::vector<std::string>;
  ComboBox& lst = Get<ComboBox>("lst");
  ComboBox& cbo = Get<ComboBox>("cbo");
  FormWidget page{form, user, {}, nullptr, {.more = [](auto& count) { return "and " + count; }}};
};

// The list that is opened is most of what a box costs: only an opened box has one.
TEST_F(LongListTest, AClosedBoxHasRoomForItsEntriesAndNoListYet) {
  Open();
  for (const char* entry : {"one", "a far longer entry"}) {
    cbo.AddItem(entry);
    QComboBox same;
    same.setFont(Box("cbo").font());
    same.setEditable(true);
    same.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    same.setMinimumContentsLength(static_cast<int>(std::string_view(entry).size()));
    EXPECT_EQ(Box("cbo").sizeHint(), same.sizeHint()) << entry;
  }
  Box("cbo").setFocus();
  EXPECT_FALSE(page.FocusTakesEnter());
  EXPECT_TRUE(page.findChildren<QAbstractItemView*>().empty());
  Box("cbo").showPopup();
  EXPECT_TRUE(page.FocusTakesEnter());
}

TEST_F(LongListTest, KeysChooseOrCloseWithoutChoosing) {
  Fill(lst);
  Open();
  constexpr int kNone = -1;
  const std::string far_down = std::string(150, 'd') + '.', far_up = std::string(60, 'p') + '.';
  const std::vector<std::tuple<const char*, std::string, int>> cases{
      {"", ".", 500},      {"", "d.", 501},   {"", "u.", 499},     {"", "h.", 0},       {"", "e.", 999},
      {"ÄRGER", ".", 998}, {"Y 99", ".", 99}, {"Y 99", "e.", 997}, {"no", ".x", kNone}, {"", "dx", kNone},
      {"", "t", kNone},    {"", "4", kNone},  {"", far_down, 650}, {"", far_up, 0}};
  for (const auto& [typed, keys, chosen] : cases) {
    lst.Select(500);
    events.clear();
    QTest::keyClick(&Box(), Qt::Key_Down, Qt::AltModifier);
    ASSERT_NE(Popup(), nullptr);
    auto* field = Popup()->findChild<QLineEdit*>();
    field->setText(QString::fromUtf8(typed));
    for (const char key : keys) QTest::keyClick(field, KeyOf(key));
    EXPECT_EQ(Popup(), nullptr) << typed << keys;
    EXPECT_EQ(events, (chosen == kNone ? Texts{"lst_DropDown"} : Texts{"lst_DropDown", "lst_Click"}))
        << typed << keys;
    EXPECT_EQ(lst.Index(), chosen == kNone ? 500 : chosen) << typed << keys;
  }
  QTest::keyClick(&Box(), Qt::Key_B);  // on the closed box
  EXPECT_EQ(lst.Text(), "Beta");
}

TEST_F(LongListTest, TheMouseOpensChoosesAndCloses) {
  Fill(cbo);
  cbo.SetText("typed");
  Open();
  QComboBox& box = Box("cbo");
  QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.width() - 5, 8));
  ASSERT_NE(Popup(), nullptr);
  QTest::mousePress(Popup(), Qt::LeftButton, {}, Popup()->mapFromGlobal(box.mapToGlobal(QPoint(8, 8))));
  EXPECT_EQ(Popup(), nullptr);
  EXPECT_EQ(cbo.Text(), "typed");
  box.showPopup();
  auto* list = Popup()->findChild<QListView*>();
  EXPECT_FALSE(list->currentIndex().isValid());
  const QPoint third = list->visualRect(list->model()->index(2, 0)).center();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, third);
  EXPECT_EQ(box.currentText().toStdString(), "entry 2");
  std::erase(events, "lst_LostFocus");
  EXPECT_EQ(events, (Texts{"cbo_DropDown", "cbo_DropDown", "cbo_Click"}));
}

TEST_F(LongListTest, AListThatIsBeingFilledIsDrawnOnce) {
  Open();
  const QSignalSpy drawn(Box().model(), &QAbstractItemModel::rowsInserted);
  Fill(lst);
  EXPECT_EQ(std::tuple(drawn.count(), Box().count(), Box().currentIndex()), std::tuple(1, kMany, -1));
  lst.AddItem("last");
  lst.Select(kMany);  // shows at once
  EXPECT_EQ(Box().currentText(), "last");
  lst.Clear();
  EXPECT_EQ(Box().currentText(), "");
  lst.On(Event::kDropDown, [&] { Fill(lst); });
  Box().showPopup();
  ASSERT_NE(Popup(), nullptr);
  EXPECT_EQ(drawn.count(), 3);
  EXPECT_EQ(Note(), "and 800");
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(Popup()->findChild<QListView*>());
  EXPECT_EQ(std::pair(list->role(), list->childCount()), std::pair(QAccessible::List, 200));
  EXPECT_EQ(list->text(QAccessible::Name) + list->child(1)->text(QAccessible::Name), "the …entry 1");
  Popup()->findChild<QLineEdit*>()->setText("nowhere");
  EXPECT_EQ(Note(), "No entry contains this text");
  lst.SetEnabled(false);
  EXPECT_EQ(Popup(), nullptr);
}

}  // namespace
}  // namespace plovix::qt
