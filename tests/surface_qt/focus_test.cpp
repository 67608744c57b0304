// Where the focus goes, which field is told that it was left, and how widgets are announced.
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "page_fixture.h"

namespace plovix::qt {
namespace {

using Events = std::vector<std::string>;

class FocusTest : public PageTest {};

TEST_F(FocusTest, TabFollowsTheReadingOrder) {
  Get<OptionButton>("optB").Select();
  Open();
  page->FocusFirst();
  Events order{Focused()};
  for (int i = 0; i < 12; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    order.push_back(Focused());
  }
  // The group is one stop, at the selected button.
  EXPECT_EQ(order, (Events{"txt", "cmd", "cbo", "optB", "lst", "txtDay", "chk", "dtp", "tim", "chkInside",
                           "memo", "lblLink", "slot"}));
}

TEST_F(FocusTest, ALeftFieldIsToldOnlyWhenTheUserWent) {
  Open();
  QWidget other;
  QPushButton next;
  window.layout()->addWidget(&next);
  QObject::connect(&next, &QPushButton::clicked, &next, [this] { events.push_back("next"); });
  Get<TextBox>("txt").SetFocus();
  struct Case {
    const char* what;
    std::function<void()> act;
    Events events;
  };
  const std::vector<Case> cases{
      {"Tab", [&] { Press("txt", Qt::Key_Tab); }, {"txt_LostFocus"}},
      {"mouse", [&] { Click("txt"); }, {"cmd_LostFocus"}},
      {"finishing it", [&] { page->FinishField(); }, {"txt_LostFocus"}},
      {"a label", [&] { Click("lblHelp"); }, {"lblHelp_Click"}},
      {"another window", [&] { Activate(other); }, {}},
      {"back again", [&] { Activate(window); }, {}},
      {"the page moves it", [&] { Get<ComboBox>("lst").SetFocus(); }, {}},
      {"a popup",
       [&] {
         At<QComboBox>("lst")->showPopup();
         At<QComboBox>("lst")->hidePopup();
       },
       {"lst_DropDown"}},
      {"the window's button", [&] { QTest::mouseClick(&next, Qt::LeftButton); }, {"lst_LostFocus", "next"}},
      {"back to the page", [&] { Click("memo"); }, {}},
      {"the page goes away", [&] { page->hide(); }, {}},
  };
  for (const Case& test : cases) {
    events.clear();
    test.act();
    EXPECT_EQ(events, test.events) << test.what;
  }
}

TEST_F(FocusTest, FirstFocusKeepsToThePageAndSelectsNothing) {
  for (const char* name : {"txt", "cmd", "cbo"}) form->Get(name).SetEnabled(false);
  Open();
  page->FocusFirst();
  EXPECT_EQ(Focused(), "optA");
  Get<OptionButton>("optB").Select();
  page->FocusFirst();
  EXPECT_EQ(Focused(), "optB");
  Get<TextBox>("memo").SetFocus();
  page->FocusFirst();
  EXPECT_EQ(Focused(), "memo");
  EXPECT_EQ(events, Events{"optB_Click"});  // by Select
}

TEST_F(FocusTest, EnterBelongsToWhatUsesIt) {
  Open();
  const std::vector<std::pair<const char*, bool>> cases{{"txt", false}, {"memo", true}, {"cmd", true},
                                                        {"chk", false}, {"lst", false}, {"lblLink", true},
                                                        {"slot", true}, {"dtp", false}};
  for (const auto& [name, takes] : cases) {
    At(name)->setFocus();
    EXPECT_EQ(page->FocusTakesEnter(), takes) << name;
  }
}

// Its own name, or that of the label in front of it.
QString Announced(QWidget* widget) {
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
  for (const auto& [label, relation] : access->relations(QAccessible::Label)) {
    if (qobject_cast<QLabel*>(label->object()) != nullptr) return label->text(QAccessible::Name);
  }
  return access->text(QAccessible::Name);
}

TEST_F(FocusTest, EverythingIsAnnounced) {
  Get<ComboBox>("lst").Select(1);
  Open();
  const std::vector<std::pair<const char*, const char*>> cases{{"txt", "Name"},
                                                               {"cmd", "Name ..."},
                                                               {"cbo", "Category"},
                                                               {"optA", "No data"},
                                                               {"lst", "the … … month(s)."},
                                                               {"txtDay", "the … … month(s)."},
                                                               {"dtp", "Every <b>kind</b> & more"},
                                                               {"chkInside", "R&D"},
                                                               {"memo", "Every <b>kind</b> & more"},
                                                               {"lblLink", "Edit the permissions"},
                                                               {"fra", "Settings"},
                                                               {"lblTitle", "Every <b>kind</b> & more"}};
  for (const auto& [name, text] : cases) EXPECT_EQ(Announced(At(name)).toStdString(), text) << name;
  for (QWidget* widget : page->findChildren<QWidget*>()) {
    const bool interactive = widget->focusPolicy() != Qt::NoFocus && widget->objectName() != "slot";
    if (!interactive || !widget->isVisible()) continue;
    EXPECT_FALSE(Announced(widget).isEmpty()) << widget->metaObject()->className();
  }
  EXPECT_EQ(At("optA")->accessibleDescription(), "For tasks without records.");
  QAccessibleInterface* link = QAccessible::queryAccessibleInterface(At("lblLink"));
  EXPECT_EQ(link->role(), QAccessible::Link);
  link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(events, Events{"lblLink_Click"});
  EXPECT_EQ(page->Heading(), "Every <b>kind</b> & more");
}

}  // namespace
}  // namespace plovix::qt
