// The Qt surface: the contract that every surface keeps; the keys and clicks that toolkits have beyond it.
// And where widgets stand, where the focus goes, who is told, and what is announced.

#include "tests/support/qt_hand.h"
#include "tests/support/surface_contract.h"

namespace plovix::qt {
namespace {

using namespace testing_support;

void Activate(QWidget& widget) {
  widget.show();
  widget.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
}

// The form's widgets in a window with a field of its own.
struct Shown {
  Shown(const std::shared_ptr<Form>& form, User& user) : page(new FormWidget(form, user, {})) {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(page);
    layout->addWidget(outside);
    Activate(window);
    page->FocusFirst();
  }
  QWidget window;
  FormWidget* page;
  QLineEdit* outside = new QLineEdit;
};

class Widgets final : private Shown, public QtHand {
 public:
  Widgets(const std::shared_ptr<Form>& form, User& user)
      : Shown(form, user), QtHand([this] { return page; }, *outside) {}
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, SurfaceContract, Widgets);

// The page in a window, with a control of the host's own.
class PageTest : public EveryKindTest {
 protected:
  PageTest() { Get<HostSlot>("slot").Embed(std::make_shared<HostControl>()); }

  // Draws the form and gives its window the activation.
  void Open() {
    page = new FormWidget(
        form, user, [](HostControl&, QWidget* parent) { return new QLineEdit(parent); }, nullptr, {},
        options);
    layout->addWidget(page);
    page->show();
    window.resize(700, 700);
    Activate(window);
    events.clear();
    verbs = 0;
  }

  template <class Type = QWidget>
  [[nodiscard]] Type* At(std::string_view name) const {
    return dynamic_cast<Type*>(page->WidgetOf(name));
  }
  void Press(std::string_view name, Qt::Key key) const { QTest::keyClick(At(name), key); }
  void Click(std::string_view name) const { ClickOn(At(name)); }
  [[nodiscard]] QRect Place(std::string_view name) const {
    return {At(name)->mapTo(page, QPoint(0, 0)), At(name)->size()};
  }
  // What it is, what is done, and the events that it raises.
  using Act = std::tuple<const char*, std::function<void()>, std::vector<std::string>>;
  void Expect(const std::vector<Act>& acts) {
    for (const auto& [what, act, raised] : acts) {
      events.clear();
      act();
      if (!with_lost_focus)
        std::erase_if(events, [](const auto& event) { return event.ends_with("_LostFocus"); });
      EXPECT_EQ(events, raised) << what;
    }
  }
  [[nodiscard]] static std::string Focused() {
    const QWidget* widget = QApplication::focusWidget();
    return widget == nullptr ? "" : widget->objectName().toStdString();
  }

  SurfaceOptions options;
  bool with_lost_focus = false;  // it has rules of its own, and a test of its own
  QWidget window;
  QVBoxLayout* layout = new QVBoxLayout(&window);
  FormWidget* page = nullptr;  // the window's
};

TEST_F(PageTest, KeysDoWhatTheMouseDoes) {
  Open();
  Get<DateTimePicker>("dtp").SetValue(kMorning);
  Get<DateTimePicker>("tim").SetValue(kMorning);
  Expect({
      {"typing", [&] { QTest::keyClicks(At("txt"), "ab"); }, {"txt_Change", "txt_Change"}},
      {"typing lines", [&] { Press("memo", Qt::Key_Return); }, {"memo_Change"}},
      {"check", [&] { Press("chk", Qt::Key_Space); }, {"chk_Click"}},
      {"option", [&] { Press("optA", Qt::Key_Space); }, {"optA_Click"}},
      {"arrow", [&] { Press("optA", Qt::Key_Down); }, {"optB_Click"}},
      {"button", [&] { Press("cmd", Qt::Key_Space); }, {"cmd_Click"}},
      {"link", [&] { Press("lblLink", Qt::Key_Space); }, {"lblLink_Click"}},
      {"the first key asks for the entries",
       [&] { Press("lst", Qt::Key_Down); },
       {"lst_DropDown", "lst_Click"}},
      {"next entry", [&] { Press("lst", Qt::Key_Down); }, {"lst_Click"}},
      {"typing an entry's text", [&] { QTest::keyClicks(At("cbo"), "first"); }, {}},
      {"leaving it", [&] { Click("txt"); }, {}},
      {"date", [&] { Press("dtp", Qt::Key_Down); }, {"dtp_Change"}},
      {"time", [&] { Press("tim", Qt::Key_Up); }, {"tim_Change"}},
  });
  EXPECT_EQ(Get<TextBox>("txt").Text() + Get<TextBox>("memo").Text(), "ab\n");
  EXPECT_EQ(Held(Get("cbo")), "first /1");
  // Each changed its own part and kept the other.
  const auto moved = Get<DateTimePicker>("dtp").Value() - kMorning;
  EXPECT_TRUE(moved != 0s && moved % 24h == 0s);
  EXPECT_EQ(Get<DateTimePicker>("tim").Value() - kMorning, 1h);
}

// As people type it: digits run on, one letter chooses the half of the day, the rest of the word is harmless.
TEST_F(PageTest, ATimeIsTypedAsTheLocaleHasIt) {
  const QLocale former;
  const std::tuple<const char*, const char*, std::chrono::minutes> cases[] = {{"en_US", "930p", 21h + 30min},
                                                                              {"en_US", "930PM", 21h + 30min},
                                                                              {"en_US", "1215a", 15min},
                                                                              {"de", "0005", 5min}};
  for (const auto& [locale, typed, time] : cases) {
    QLocale::setDefault(QLocale(locale));
    delete page;
    Open();
    Get<DateTimePicker>("tim").SetValue(kMorning);
    At("tim")->setFocus(Qt::TabFocusReason);
    QTest::keyClicks(At("tim"), typed);
    QTest::keyClick(At("tim"), Qt::Key_Return);
    const auto midnight = std::chrono::floor<std::chrono::days>(kMorning);
    EXPECT_EQ(Get<DateTimePicker>("tim").Value() - midnight, time + 15s) << locale << typed;
  }
  QLocale::setDefault(former);
}

TEST_F(PageTest, TextIsNotRewrittenAndSelectionCountsCharacters) {
  Open();
  Get<TextBox>("txt").SetText("line\nbreak");
  Get<TextBox>("memo").SetText("one\r\ntwo");
  for (const char* name : {"txt", "memo", "chk"}) Click(name);
  EXPECT_EQ(Get<TextBox>("txt").Text() + Get<TextBox>("memo").Text(), "line\nbreakone\r\ntwo");
  for (const char* name : {"txt", "memo"}) {
    Get<TextBox>(name).SetText("a\U0001F600b\u20AC");
    Get<TextBox>(name).SelectText(1, 2);
  }
  auto* line = At<QLineEdit>("txt");
  EXPECT_EQ(line->selectedText(), QString::fromUtf8("\U0001F600b"));
  EXPECT_EQ(At<QPlainTextEdit>("memo")->textCursor().selectedText(), QString::fromUtf8("\U0001F600b"));
  QTest::keyClicks(line, "xy");
  EXPECT_EQ(Get<TextBox>("txt").Text(), "axy\u20AC");
  EXPECT_EQ(line->cursorPosition(), 3);
}

// A user's act may take the page away while its widgets are still at work.
TEST_F(PageTest, AnActMayReplaceThePage) {
  const std::vector<std::tuple<const char*, Event, std::function<void()>>> cases{
      {"lblHelp", Event::kDblClick, [&] { DoubleClickOn(At("lblHelp")); }},
      {"optA", Event::kDblClick, [&] { DoubleClickOn(At("optA")); }},
      {"txt", Event::kChange, [&] { Press("txt", Qt::Key_A); }},
      {"lst", Event::kDropDown, [&] { At<QComboBox>("lst")->showPopup(); }},
      {"txt", Event::kLostFocus, [&] { Press("txt", Qt::Key_Tab); }},
  };
  for (const auto& [name, event, act] : cases) {
    page = new FormWidget(form, user, {}, &window);
    page->resize(600, 600);
    page->show();
    Activate(window);
    const QPointer<FormWidget> shown(page);
    const std::weak_ptr<Form> dropped(form);
    form->Get(name).On(event, [&] {
      page->hide();
      page->deleteLater();
      form = std::make_shared<Form>(kEveryKind.View());
    });
    form->Get(name).SetFocus();
    act();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(shown) << name;
    EXPECT_TRUE(dropped.expired()) << name;
  }
}

TEST_F(PageTest, TheWaitPointerEndsWithThePage) {
  form->SetMousePointer(Pointer::kWait);
  Open();
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  delete page;
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  form->Get("txt").SetCaption("nobody listens");
}

// The group is one stop, at the selected button.
TEST_F(PageTest, TabFollowsTheReadingOrderOrThatOfTheDeclaration) {
  Get<OptionButton>("optB").Select();
  const std::pair<TabOrder, std::vector<std::string>> orders[] = {
      {TabOrder::kReading,
       {"txt", "cmd", "cbo", "optB", "lst", "txtDay", "chk", "dtp", "tim", "chkInside", "memo", "lblLink",
        "slot"}},
      {TabOrder::kDeclared,
       {"txt", "lblLink", "slot", "cmd", "memo", "chkInside", "tim", "dtp", "chk", "txtDay", "lst", "optB",
        "cbo"}}};
  for (const auto& [chosen, wanted] : orders) {
    delete page;
    options.tab_order = chosen;
    Open();
    At("txt")->setFocus();
    std::vector<std::string> order{Focused()};
    while (order.size() < wanted.size()) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      order.push_back(Focused());
    }
    EXPECT_EQ(order, wanted);
  }
}

TEST_F(PageTest, ALeftFieldIsToldOnlyWhenTheUserWent) {
  Open();
  QWidget other;
  QPushButton next;
  window.layout()->addWidget(&next);
  QObject::connect(&next, &QPushButton::clicked, &next, [this] { events.push_back("next"); });
  Get<TextBox>("txt").SetFocus();
  with_lost_focus = true;
  Expect({
      {"Tab", [&] { Press("txt", Qt::Key_Tab); }, {"txt_LostFocus"}},
      {"mouse", [&] { Click("txt"); }, {"cmd_LostFocus"}},
      {"a label", [&] { Click("lblHelp"); }, {"lblHelp_Click"}},
      {"another window", [&] { Activate(other); }, {}},
      {"back again", [&] { Activate(window); }, {}},
      {"the page moves it", [&] { Get<ComboBox>("lst").SetFocus(); }, {}},
      {"a popup", [&] { At<QComboBox>("lst")->showPopup(); }, {"lst_DropDown"}},
      {"its end", [&] { At<QComboBox>("lst")->hidePopup(); }, {}},
      {"a button outside", [&] { QTest::mouseClick(&next, Qt::LeftButton); }, {"lst_LostFocus", "next"}},
      {"back to the page", [&] { Click("memo"); }, {}},
      {"the page goes away", [&] { page->hide(); }, {}},
  });
}

TEST_F(PageTest, FirstFocusKeepsToThePageAndSelectsNothing) {
  for (const char* name : {"txt", "cmd", "cbo"}) form->Get(name).SetEnabled(false);
  {
    QDialog dialog;  // tells the first field of a focus that comes later
    FormWidget inside(form, user, {}, &dialog);
    inside.FocusFirst();
    Activate(dialog);
    EXPECT_TRUE(events.empty());
  }
  Open();
  page->FocusFirst();
  EXPECT_EQ(Focused(), "optA");
  Get<TextBox>("memo").SetFocus();
  page->FocusFirst();
  EXPECT_EQ(Focused(), "memo");
  EXPECT_EQ(events, std::vector<std::string>{});
}

TEST_F(PageTest, EnterBelongsToWhatUsesIt) {
  Open();
  std::string takers;
  for (const std::string name : {"txt", "memo", "cmd", "chk", "lst", "lblLink", "slot", "dtp"}) {
    At(name)->setFocus();
    if (page->FocusTakesEnter()) takers += name + " ";
  }
  EXPECT_EQ(takers, "memo cmd lblLink slot ");
}

// Its own name, or that of the label in front of it.
QString Announced(QWidget* widget) {
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
  for (const auto& [label, relation] : access->relations(QAccessible::Label))
    if (qobject_cast<QLabel*>(label->object()) != nullptr) return label->text(QAccessible::Name);
  return access->text(QAccessible::Name);
}

TEST_F(PageTest, EverythingIsAnnounced) {
  Get<ComboBox>("lst").Select(1);
  Open();
  QStringList names;
  for (const char* name :
       {"txt", "cmd", "optA", "optB", "lst", "txtDay", "dtp", "chkInside", "lblLink", "fra"})
    names += Announced(At(name));
  EXPECT_EQ(names.join("|").toStdString(),
            "Name|Name ...|No data|the … … month(s).|the …|… month(s).|Every <b>kind</b> & more|R&D|"
            "Edit the permissions|Settings");
  EXPECT_EQ(At("optA")->accessibleDescription(), "For tasks without records.");
  const auto access = [this](const char* name) { return QAccessible::queryAccessibleInterface(At(name)); };
  EXPECT_EQ(access("lblLink")->role(), QAccessible::Link);
  EXPECT_EQ(access("optB")->role(), QAccessible::RadioButton);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(page)->role(), QAccessible::Grouping);
  access("lblLink")->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  access("optB")->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(events, std::vector<std::string>{}) << "who asks does not wait";
  QTest::qWait(0);
  EXPECT_EQ(events, (std::vector<std::string>{"lblLink_Click", "optB_Click"}));
  EXPECT_TRUE(access("optB")->state().checked);
}

// One rule for every kind: what the widget is given, and what is read of it.
TEST_F(PageTest, CaptionsMarkTheirMnemonicOnce) {
  Open();
  const struct {
    const char *caption, *given, *read;
  } rows[] = {
      {"&&&All", "&&&All", "&All"},
      {"&One &Two", "&One &&Two", "One &Two"},
  };
  for (const auto& row : rows) {
    for (const char* name : {"chk", "optA", "cmd"}) {
      Get(name).SetCaption(row.caption);
      EXPECT_EQ(At<QAbstractButton>(name)->text(), row.given) << name;
    }
    for (const char* name : {"lblName", "lblTitle", "fra"}) Get(name).SetCaption(row.caption);
    EXPECT_EQ(At<QGroupBox>("fra")->title(), row.given);
    EXPECT_EQ(At<QLabel>("lblName")->text(), row.given);
    EXPECT_EQ(At<QLabel>("lblTitle")->text(), row.read) << "names no field";
    for (const char* name : {"chk", "fra", "lblName", "lblTitle"})
      EXPECT_EQ(QAccessible::queryAccessibleInterface(At(name))->text(QAccessible::Name), row.read) << name;
  }
  QTest::keyClick(At("txt"), Qt::Key_R, Qt::AltModifier);
  EXPECT_TRUE(
      QTest::qWaitFor([this] { return Get<CheckBox>("chkInside").Checked(); }));  // pressed for a moment
}

TEST_F(PageTest, LinesBecomeRowsThatWrapAndScrollOnlyDown) {
  Open();
  EXPECT_EQ(Place("txt").left(), Place("cbo").left());
  EXPECT_GT(Place("txt").left(), Place("lblCategory").right());
  EXPECT_LT(Place("txtDay").width(), Place("txt").width() / 2);
  EXPECT_EQ(At("chkInside")->parentWidget(), At("fra"));
  window.setLayoutDirection(Qt::RightToLeft);
  QTest::qWait(0);
  EXPECT_GT(Place("lblName").left(), Place("txt").right());
  window.setLayoutDirection(Qt::LeftToRight);
  QTest::qWait(0);
  page->setFixedWidth(Place("lblMonths").right());
  page->setFixedHeight(page->minimumSizeHint().height());
  QTest::qWait(0);
  EXPECT_GT(Place("lblMonths").top(), Place("txtDay").bottom());
  EXPECT_EQ(page->findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0);
  EXPECT_FALSE(page->rect().contains(Place("memo")));
  Get<TextBox>("memo").SetFocus();
  EXPECT_TRUE(page->rect().contains(Place("memo")));
}

}  // namespace
}  // namespace plovix::qt
