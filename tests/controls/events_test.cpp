// What raises an event, kind by kind and through both doors; what a user is refused; where a failing
// handler goes.
#include <gtest/gtest.h>
#include <plovix/controls/user.h>
#include <plovix/designs/design.h>

#include <new>

namespace plovix {
namespace {

constexpr auto kSample = MakeDesign("Sample",
                                    {
                                        {"lblHelp", Kind::kLabel, "Help"},
                                        {"txtText", Kind::kTextBox},
                                        {"fraBox", Kind::kFrame, "Box"},
                                        {"chkOne", Kind::kCheckBox, "One", "", "fraBox"},
                                        {"optA", Kind::kOptionButton, "A"},
                                        {"optB", Kind::kOptionButton, "B"},
                                        {"cboList", Kind::kComboBox},
                                        {"cboEdit", Kind::kComboBox, "", "", "", Style::kEditable},
                                        {"cmdGo", Kind::kCommandButton, "Go"},
                                        {"dtpDay", Kind::kDateTimePicker},
                                        {"cmdLater", Kind::kCommandButton, "", "", "", Style::kHidden},
                                        {"txtFixed", Kind::kTextBox, "", "", "", Style::kDisabled},
                                    },
                                    {"lblHelp txtText", "fraBox", "chkOne", "optA optB", "cboList cboEdit",
                                     "cmdGo dtpDay cmdLater txtFixed"});

// A form whose every event is written down, "optA_Click".
class ControlsTest : public testing::Test, protected UserListener {
 protected:
  ControlsTest() : form(kSample.View()) {
    for (std::size_t i = 0; i < form.Count(); ++i) {
      for (std::size_t e = 0; e < kEventCount; ++e) {
        const auto event = static_cast<Event>(e);
        const std::string name = std::string(form.At(i).Name()) + "_" + std::string(EventName(event));
        form.At(i).On(event, [this, name] { events += name + " "; });
      }
    }
    for (const char* name : {"cboList", "cboEdit"}) {
      for (const char* item : {"first", "second"}) Get<ComboBox>(name).AddItem(item);
    }
  }
  void EventBegins() override { ++depth; }
  void EventEnds() override { --depth; }
  void EventFailed(const Failure& failure, std::string_view procedure) override {
    EXPECT_EQ(std::current_exception(), nullptr);
    failures += std::string(procedure) + ":" + std::to_string(failure.Number()) + " ";
  }
  template <class T>
  T& Get(std::string_view name) {
    return dynamic_cast<T&>(form.Get(name));
  }
  std::string Taken() { return std::exchange(events, {}); }

  Form form;
  User user{*this};
  std::string events, failures;
  int depth = 0;
};

constexpr DateTime kDay{std::chrono::seconds{86400}};

TEST_F(ControlsTest, WhatRaisesAnEvent) {
  auto& text = Get<TextBox>("txtText");
  auto& check = Get<CheckBox>("chkOne");
  auto& a = Get<OptionButton>("optA");
  auto& b = Get<OptionButton>("optB");
  auto& list = Get<ComboBox>("cboList");
  auto& edit = Get<ComboBox>("cboEdit");
  auto& day = Get<DateTimePicker>("dtpDay");
  Control& label = form.Get("lblHelp");
  Control& button = form.Get("cmdGo");
  struct Row {
    const char* what;
    std::function<void()> act;
    const char* raised;
  };
  const std::vector<Row> rows = {
      {"page sets text", [&] { text.SetText("x"); }, "txtText_Change "},
      {"page sets the same text", [&] { text.SetText("x"); }, ""},
      {"user types", [&] { user.Type(text, "y"); }, "txtText_Change "},
      {"user types the same", [&] { user.Type(text, "y"); }, ""},
      {"page selects text", [&] { text.SelectAll(); }, ""},
      {"page checks", [&] { check.SetValue(1); }, "chkOne_Click "},
      {"page checks again", [&] { check.SetValue(1); }, ""},
      {"user toggles", [&] { user.Toggle(check); }, "chkOne_Click "},
      {"user clicks a check box", [&] { user.Click(check); }, "chkOne_Click "},
      {"page selects an option", [&] { a.Select(); }, "optA_Click "},
      {"page selects it again", [&] { a.Select(); }, ""},
      {"user chooses the sibling, which goes out silently", [&] { user.Choose(b); }, "optB_Click "},
      {"user chooses it again", [&] { user.Choose(b); }, ""},
      {"focus selects an option", [&] { a.SetFocus(); }, "optA_Click "},
      {"the user's focus does too", [&] { user.Enter(b); }, "optB_Click "},
      {"double click alone", [&] { user.DoubleClick(b); }, "optB_DblClick "},
      {"page selects an entry", [&] { list.Select(0); }, "cboList_Click "},
      {"page selects it again", [&] { list.Select(0); }, ""},
      {"user picks the same entry", [&] { user.Pick(list, 0); }, "cboList_Click "},
      {"user picks another entry", [&] { user.Pick(list, 1); }, "cboList_Click "},
      {"page selects by text", [&] { list.SetText("first"); }, "cboList_Click "},
      {"page selects nothing", [&] { list.Select(-1); }, "cboList_Click "},
      {"user opens the list", [&] { user.DropDown(list); }, "cboList_DropDown "},
      {"page empties a list", [&] { list.Clear(); }, ""},
      {"user types in an editable box", [&] { user.Type(edit, "new"); }, ""},
      {"user presses", [&] { user.Press(button); }, "cmdGo_Click "},
      {"user clicks a button", [&] { user.Click(button); }, "cmdGo_Click "},
      {"user clicks a label", [&] { user.Click(label); }, "lblHelp_Click "},
      {"user double-clicks a label", [&] { user.DoubleClick(label); }, "lblHelp_DblClick "},
      {"page sets a date", [&] { day.SetValue(kDay); }, "dtpDay_Change "},
      {"user sets the same date", [&] { user.Set(day, kDay); }, ""},
      {"user leaves a field", [&] { user.Leave(text); }, "txtText_LostFocus "},
      {"entering another control raises nothing", [&] { user.Enter(text); }, ""},
  };
  for (const Row& row : rows) {
    row.act();
    EXPECT_EQ(Taken(), row.raised) << row.what;
  }
  EXPECT_TRUE(b.Selected() && !a.Selected());
  EXPECT_EQ(edit.Index(), -1);
  EXPECT_EQ(depth, 0);
  EXPECT_EQ(failures, "");
}

TEST_F(ControlsTest, TheUserIsRefused) {
  using Verb = std::function<bool(Control&)>;
  const Verb type = [&](Control& c) { return user.Type(c, "z"); };
  const Verb toggle = [&](Control& c) { return user.Toggle(c); };
  const Verb choose = [&](Control& c) { return user.Choose(c); };
  const Verb press = [&](Control& c) { return user.Press(c); };
  const Verb click = [&](Control& c) { return user.Click(c); };
  const Verb twice = [&](Control& c) { return user.DoubleClick(c); };
  const Verb drop = [&](Control& c) { return user.DropDown(c); };
  const Verb pick = [&](Control& c) { return user.Pick(c, 0); };
  const Verb pick_outside = [&](Control& c) { return user.Pick(c, 2); };
  const Verb set = [&](Control& c) { return user.Set(c, kDay); };
  const Verb leave = [&](Control& c) { return user.Leave(c); };
  const Verb enter = [&](Control& c) { return user.Enter(c); };
  const std::vector<std::pair<const char*, std::vector<Verb>>> wrong = {
      {"lblHelp", {type, toggle, choose, press, drop, pick, set}},
      {"txtText", {toggle, choose, press, click, twice, drop, pick, set}},
      {"chkOne", {type, choose, press, twice, drop, pick, set}},
      {"optA", {type, toggle, press, drop, pick, set}},
      {"cboList", {type, toggle, choose, press, click, twice, pick_outside, set}},
      {"cmdGo", {type, toggle, choose, twice, drop, pick, set}},
      {"dtpDay", {type, toggle, choose, press, click, twice, drop, pick}},
      {"fraBox", {type, toggle, choose, press, click, twice, drop, pick, set}},
      {"cmdLater", {press, click, enter, leave}},  // hidden by its design
      {"txtFixed", {type, enter, leave}},          // disabled by its design
  };
  for (const auto& [name, verbs] : wrong) {
    for (const Verb& verb : verbs) EXPECT_FALSE(verb(form.Get(name))) << name;
  }
  // A frame that is disabled or hidden takes what stands in it along.
  Control& frame = form.Get("fraBox");
  frame.SetEnabled(false);
  EXPECT_FALSE(toggle(form.Get("chkOne")));
  frame.SetEnabled(true);
  frame.SetVisible(false);
  EXPECT_FALSE(toggle(form.Get("chkOne")) || click(form.Get("chkOne")));
  form.Get("chkOne").SetFocus();
  EXPECT_EQ(form.Focused(), nullptr);
  frame.SetVisible(true);
  EXPECT_EQ(Taken(), "");
  EXPECT_TRUE(toggle(form.Get("chkOne")));
}

TEST_F(ControlsTest, AFailingHandlerReachesTheListenerOnly) {
  const auto on = [&](const char* name) -> Control& { return form.Get(name); };
  for (std::size_t i = 0; i < form.Count(); ++i) {
    for (std::size_t e = 0; e < kEventCount; ++e) {
      form.At(i).On(static_cast<Event>(e), [] { throw Failure(failure_number::kInvalidCall, "no"); });
    }
  }
  const std::vector<std::pair<std::function<bool()>, const char*>> rows = {
      {[&] { return user.Type(on("txtText"), "x"); }, "txtText_Change:5 "},
      {[&] { return user.Leave(on("txtText")); }, "txtText_LostFocus:5 "},
      {[&] { return user.Toggle(on("chkOne")); }, "chkOne_Click:5 "},
      {[&] { return user.Choose(on("optA")); }, "optA_Click:5 "},
      {[&] { return user.Enter(on("optB")); }, "optB_Click:5 "},
      {[&] { return user.DoubleClick(on("optA")); }, "optA_DblClick:5 "},
      {[&] { return user.Pick(on("cboList"), 0); }, "cboList_Click:5 "},
      {[&] { return user.DropDown(on("cboList")); }, "cboList_DropDown:5 "},
      {[&] { return user.Press(on("cmdGo")); }, "cmdGo_Click:5 "},
      {[&] { return user.Click(on("lblHelp")); }, "lblHelp_Click:5 "},
      {[&] { return user.DoubleClick(on("lblHelp")); }, "lblHelp_DblClick:5 "},
      {[&] { return user.Set(on("dtpDay"), kDay); }, "dtpDay_Change:5 "},
  };
  for (const auto& [act, reported] : rows) {
    EXPECT_TRUE(act()) << reported;
    EXPECT_EQ(std::exchange(failures, {}), reported);
    EXPECT_EQ(depth, 0);
  }
  form.OnShow([] { throw std::bad_alloc(); });
  user.Show(form);
  EXPECT_EQ(failures, "UserControl_Show:7 ");
}

TEST_F(ControlsTest, TouchedIsTheUsersDoingOnly) {
  Get<TextBox>("txtText").SetText("from the page");
  Get<ComboBox>("cboList").Select(1);
  user.Type(form.Get("txtText"), "from the page");
  user.Press(form.Get("cmdGo"));
  user.Enter(form.Get("txtText"));
  EXPECT_FALSE(form.Touched());
  user.Type(form.Get("cboEdit"), "typed");
  EXPECT_TRUE(form.Touched());

  struct Editor final : HostControl {
    [[nodiscard]] bool Touched() const override { return touched; }
    bool touched = false;
  };
  static constexpr auto kSlot = MakeDesign("Slot", {{"List", Kind::kHostSlot, "Some.List"}}, {"List"});
  Form with_slot(kSlot.View());
  auto& slot = dynamic_cast<HostSlot&>(with_slot.At(0));
  EXPECT_FALSE(with_slot.Touched());  // nothing embedded
  const auto editor = std::make_shared<Editor>();
  slot.Embed(editor);
  EXPECT_EQ(slot.RegisteredName(), "Some.List");
  EXPECT_EQ(slot.Caption(), "");  // the registered name is no text for a user
  EXPECT_FALSE(with_slot.Touched());
  editor->touched = true;
  EXPECT_TRUE(with_slot.Touched());
}

TEST_F(ControlsTest, WrongValuesFailWithTheirNumbers) {
  const auto number = [](const std::function<void()>& act) {
    try {
      act();
    } catch (const Failure& failure) {
      return failure.Number();
    }
    return 0;
  };
  auto& list = Get<ComboBox>("cboList");
  EXPECT_EQ(number([&] { Get<CheckBox>("chkOne").SetValue(2); }), 380);
  EXPECT_EQ(number([&] { list.Select(2); }), 380);
  EXPECT_EQ(number([&] { list.Select(-2); }), 380);
  EXPECT_EQ(number([&] { list.SetText("absent"); }), 383);
  EXPECT_EQ(number([&] { (void)list.ItemText(2); }), 9);
  EXPECT_EQ(number([&] { (void)form.Get("txtNowhere"); }), 5);
  EXPECT_EQ(Taken(), "");
}

TEST_F(ControlsTest, TextSelectionCountsCharacters) {
  auto& text = Get<TextBox>("txtText");
  text.SetText("tâche €");
  text.SelectAll();
  EXPECT_EQ(text.SelectionLength(), 7);
  text.SelectText(5, 99);
  EXPECT_EQ(text.SelectionStart(), 5);
  EXPECT_EQ(text.SelectionLength(), 2);
  text.SelectText(-3, -1);
  EXPECT_EQ(text.SelectionStart() + text.SelectionLength(), 0);
}

TEST_F(ControlsTest, ObserversSeeTheStateAfterTheChange) {
  struct Seen final : ControlObserver {
    explicit Seen(OptionButton& watched) : button(watched) { button.Observe(this); }
    ~Seen() override { button.Observe(nullptr); }
    void Changed(Aspect aspect) override {
      if (aspect == Aspect::kValue) values += button.Selected() ? "on " : "off ";
    }
    OptionButton& button;
    std::string values;
  };
  auto& a = Get<OptionButton>("optA");
  auto& b = Get<OptionButton>("optB");
  const Seen seen(a);
  a.Select();
  b.Select();  // silent for the page, not for what draws it
  a.Select();
  EXPECT_EQ(seen.values, "on off on ");
}

}  // namespace
}  // namespace plovix
