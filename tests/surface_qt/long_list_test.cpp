// Combo boxes with very many entries: which of them a search shows, what keys and the mouse do in the popup
// and on the closed box, and how often a list that is being filled is drawn.
#include <gtest/gtest.h>
#include <plovix/designs/design.h>
#include <plovix/surfaces/qt/entry_popup.h>
#include <plovix/surfaces/qt/form_widget.h>

#include <QAccessible>
#include <QComboBox>
#include <QSignalSpy>
#include <QTest>

namespace plovix::qt {
namespace {

constexpr auto kTwoLists = MakeDesign("TwoLists",
                                      {{"lblList", Kind::kLabel, "List"},
                                       {"lst", Kind::kComboBox},
                                       {"lblBox", Kind::kLabel, "Box"},
                                       {"cbo", Kind::kComboBox, "", "", "", Style::kEditable}},
                                      {"lblList lst", "lblBox cbo"});
constexpr int kMany = 1000;

class LongListTest : public testing::Test, private UserListener {
 protected:
  LongListTest() {
    for (const auto& [list, event, name] : {std::tuple{&lst, Event::kClick, "Click "},
                                            {&lst, Event::kDropDown, "DropDown "},
                                            {&cbo, Event::kClick, "cbo_Click "}}) {
      list->On(event, [this, name = name] { events += name; });
    }
  }
  // "entry 0" ... with one of another kind in front of the last.
  static void Fill(ComboBox& list) {
    for (int i = 0; i < kMany; ++i) list.AddItem(i == kMany - 2 ? "Ärger & 😀" : "entry " + std::to_string(i));
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
  [[nodiscard]] static EntryPopup* Popup() {
    return dynamic_cast<EntryPopup*>(QApplication::activePopupWidget());
  }
  static void Type(const QString& text, const std::vector<Qt::Key>& keys) {
    auto* field = Popup()->findChild<QLineEdit*>();
    field->setText(text);
    for (const Qt::Key key : keys) QTest::keyClick(field, key);
  }

  std::shared_ptr<Form> form = std::make_shared<Form>(kTwoLists.View());
  ComboBox& lst = dynamic_cast<ComboBox&>(form->Get("lst"));
  ComboBox& cbo = dynamic_cast<ComboBox&>(form->Get("cbo"));
  std::string events;
  User user{*this};
  FormWidget page{form, user, {}, nullptr, {.search = "Find", .no_match = "none", .more = [](auto& count) {
                                              return "and " + count;
                                            }}};

 private:
  void EventFailed(const Failure&, std::string_view) override { ADD_FAILURE(); }
  void EventBegins() override {}
  void EventEnds() override {}
};

TEST_F(LongListTest, ASearchShowsTheBestMatchAmongItsNeighbours) {
  for (const char* text : {"a river", "Riverside", "RIVER", "die Öse", "öse", "x"}) lst.AddItem(text);
  lst.Select(4);
  struct Case {
    const char* typed;
    std::optional<int> around;
    std::vector<int> entries;
    int row, hidden;
  };
  for (const Case& at : {Case{"river", {}, {1, 2}, 1, 1},
                         {"rivers", {}, {1}, 0, 0},
                         {"ÖSE", {}, {3, 4}, 1, 0},
                         {"river", 0, {0, 1}, 0, 1},
                         {"river", 9, {1, 2}, 1, 1},
                         {"y", {}, {}, -1, 0},
                         {"y", 0, {}, -1, 0},
                         {"", {}, {3, 4}, 1, 4}}) {
    const Matches found = FindMatches(lst, QString::fromUtf8(at.typed), at.around, 2);
    EXPECT_EQ(found.entries, at.entries) << at.typed;
    EXPECT_EQ(std::pair(found.row, found.hidden), std::pair(at.row, at.hidden)) << at.typed;
  }
}

TEST_F(LongListTest, KeysChooseOrCloseWithoutChoosing) {
  Fill(lst);
  Open();
  using enum Qt::Key;
  const std::vector<std::tuple<const char*, std::vector<Qt::Key>, int>> cases{
      {"", {Key_Return}, 500},
      {"", {Key_Down, Key_Enter}, 501},
      {"", {Key_Up, Key_Return}, 499},
      {"", {Key_Home, Key_Return}, 0},
      {"", {Key_End, Key_Return}, 999},
      {"ÄRGER", {Key_Return}, 998},
      {"Y 99", {Key_Return}, 99},
      {"Y 99", {Key_End, Key_Return}, 999},
      {"no", {Key_Return, Key_Escape}, -1},
      {"", {Key_Down, Key_Escape}, -1},
      {"", {Key_Tab}, -1},
      {"", {Key_F4}, -1},
      {"", std::vector(150, Key_Down), -2},
      {"", std::vector(60, Key_PageUp), -3}};
  for (const auto& [typed, keys, chosen] : cases) {
    lst.Select(500);
    events.clear();
    QTest::keyClick(&Box(), Key_Down, Qt::AltModifier);
    ASSERT_NE(Popup(), nullptr);
    Type(QString::fromUtf8(typed), keys);
    if (chosen < -1)
      QTest::keyClick(Popup()->findChild<QLineEdit*>(), Key_Return);  // beyond the rows at first
    EXPECT_EQ(Popup(), nullptr) << typed;
    EXPECT_EQ(events, chosen == -1 ? "DropDown " : "DropDown Click ") << typed;
    EXPECT_EQ(lst.Index(), chosen == -1 ? 500 : chosen == -2 ? 650 : chosen == -3 ? 0 : chosen) << typed;
  }
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
  EXPECT_EQ(events + cbo.Text(), "typed");
  box.showPopup();
  auto* list = Popup()->findChild<QListView*>();
  EXPECT_FALSE(list->currentIndex().isValid());
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                    list->visualRect(list->model()->index(2, 0)).center());
  EXPECT_EQ(events + box.currentText().toStdString(), "cbo_Click entry 2");
}

TEST_F(LongListTest, AListThatIsBeingFilledIsDrawnOnce) {
  Open();
  const QSignalSpy drawn(Box().model(), &QAbstractItemModel::rowsInserted);
  Fill(lst);
  EXPECT_EQ(drawn.count(), 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(std::pair(drawn.count(), Box().count()), std::pair(qsizetype{1}, kMany));
  EXPECT_EQ(Box().currentIndex(), -1);
  lst.AddItem("last");
  lst.Select(kMany);  // shows at once
  EXPECT_EQ(Box().currentText(), "last");
  lst.Clear();
  EXPECT_EQ(Box().currentText(), "");
  lst.On(Event::kDropDown, [&] { Fill(lst); });
  Box().showPopup();
  EXPECT_EQ(drawn.count(), 3);
  ASSERT_NE(Popup(), nullptr);
  EXPECT_EQ(Popup()->findChild<QLabel*>()->text(), "and 800");
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(Popup()->findChild<QListView*>());
  EXPECT_EQ(std::pair(list->role(), list->childCount()), std::pair(QAccessible::List, 200));
  EXPECT_EQ(list->text(QAccessible::Name) + list->child(1)->text(QAccessible::Name), "Listentry 1");
  Type("nowhere", {});
  EXPECT_EQ(Popup()->findChild<QLabel*>()->text(), "none");
  lst.SetEnabled(false);
  EXPECT_EQ(Popup(), nullptr);
}

TEST_F(LongListTest, ALetterOnTheClosedBoxGoesToTheNextEntryThatBeginsWithIt) {
  Fill(lst);
  lst.AddItem("Beta");
  lst.Select(3);
  Open();
  QTest::keyClick(&Box(), Qt::Key_B);
  EXPECT_EQ(events + lst.Text(), "Click Beta");
  QTest::keyClick(&Box(), Qt::Key_Up);
  EXPECT_EQ(lst.Index(), kMany - 1);
}

}  // namespace
}  // namespace plovix::qt
