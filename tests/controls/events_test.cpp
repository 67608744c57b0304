// What raises an event, kind by kind and through both doors; what a user is refused; where a failing
// handler goes.
#include <gtest/gtest.h>
#include <plovix/controls/user.h>
#include <plovix/designs/design.h>

#include <new>
#include <sstream>

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
        form.At(i).On(event, [this, name] {
          events += name + " ";
          if (failing) throw Failure(failure_number::kInvalidCall, "no");
        });
      }
    }
    for (const char* item : {"first", "second"}) Get<ComboBox>("cboList").AddItem(item);
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
  bool failing = false;
  int depth = 0;
};

constexpr DateTime kDay{std::chrono::seconds{86400}};

TEST_F(ControlsTest, WhatRaisesAnEvent) {
  auto& text = Get<TextBox>("txtText");
  auto& check = Get<CheckBox>("chkOne");
  auto& a = Get<OptionButton>("optA");
  auto& b = Get<OptionButton>("optB");
  auto& list = Get<ComboBox>("cboList");
  auto& day = Get<DateTimePicker>("dtpDay");
  const std::vector<std::tuple<const char*, std::function<void()>, const char*>> rows = {
      {"page sets text", [&] { text.SetText("x"); }, "txtText_Change "},
      {"page sets the same text", [&] { text.SetText("x"); }, ""},
      {"user types", [&] { user.Type(text, "y"); }, "txtText_Change "},
      {"user types the same", [&] { user.Type(text, "y"); }, ""},
      {"page checks", [&] { check.SetValue(1); }, "chkOne_Click "},
      {"page checks again", [&] { check.SetValue(1); }, ""},
      {"user toggles", [&] { user.Toggle(check); }, "chkOne_Click "},
      {"page selects an option", [&] { a.Select(); }, "optA_Click "},
      {"page selects it again", [&] { a.Select(); }, ""},
      {"user chooses the sibling, which goes out silently", [&] { user.Choose(b); }, "optB_Click "},
      {"focus selects an option", [&] { a.SetFocus(); }, "optA_Click "},
      {"the user's focus does too", [&] { user.Enter(b); }, "optB_Click "},
      {"double click alone", [&] { user.DoubleClick(b); }, "optB_DblClick "},
      {"page selects an entry", [&] { list.Select(0); }, "cboList_Click "},
      {"page selects it again", [&] { list.Select(0); }, ""},
      {"user picks the same entry", [&] { user.Pick(list, 0); }, "cboList_Click "},
      {"user picks another entry", [&] { user.Pick(list, 1); }, "cboList_Click "},
      {"page selects by text", [&] { list.SetText("first"); }, "cboList_Click "},
      {"user types in an editable box", [&] { user.Type(form.Get("cboEdit"), "new"); }, ""},
      {"page sets a date", [&] { day.SetValue(kDay); }, "dtpDay_Change "},
      {"user sets the same date", [&] { user.Set(day, kDay); }, ""},
  };
  for (const auto& [what, act, raised] : rows) {
    act();
    EXPECT_EQ(Taken(), raised) << what;
  }
  EXPECT_TRUE(b.Selected() && !a.Selected());
  EXPECT_EQ(Get<ComboBox>("cboEdit").Index(), -1);
  EXPECT_EQ(depth, 0);
  EXPECT_EQ(failures, "");
}

TEST_F(ControlsTest, TheUserIsRefused) {
  // Verbs, and controls that do not take them; one is hidden, one disabled by its design.
  const std::vector<std::pair<std::function<bool(Control&)>, const char*>> rows = {
      {[&](Control& c) { return user.Type(c, "z"); },
       "lblHelp chkOne optA cboList cmdGo dtpDay fraBox txtFixed"},
      {[&](Control& c) { return user.Toggle(c); }, "lblHelp txtText optA cboList cmdGo dtpDay fraBox"},
      {[&](Control& c) { return user.Choose(c); }, "lblHelp txtText chkOne cboList cmdGo dtpDay fraBox"},
      {[&](Control& c) { return user.Press(c); },
       "lblHelp txtText chkOne optA cboList dtpDay fraBox cmdLater"},
      {[&](Control& c) { return user.Click(c); }, "txtText cboList dtpDay fraBox cmdLater"},
      {[&](Control& c) { return user.DoubleClick(c); }, "txtText chkOne cboList cmdGo dtpDay fraBox"},
      {[&](Control& c) { return user.DropDown(c); }, "lblHelp txtText chkOne optA cmdGo dtpDay fraBox"},
      {[&](Control& c) { return user.Pick(c, 0); }, "lblHelp txtText chkOne optA cmdGo dtpDay fraBox"},
      {[&](Control& c) { return user.Pick(c, 2); }, "cboList"},
      {[&](Control& c) { return user.Set(c, kDay); }, "lblHelp txtText chkOne optA cboList cmdGo fraBox"},
      {[&](Control& c) { return user.Leave(c) || user.Enter(c); }, "cmdLater txtFixed"},
  };
  for (const auto& [verb, names] : rows) {
    std::istringstream words(names);
    for (std::string name; words >> name;) EXPECT_FALSE(verb(form.Get(name))) << name << " of " << names;
  }
  // A frame that is disabled or hidden takes what stands in it along.
  Control& frame = form.Get("fraBox");
  frame.SetEnabled(false);
  EXPECT_FALSE(user.Toggle(form.Get("chkOne")));
  frame.SetEnabled(true);
  frame.SetVisible(false);
  EXPECT_FALSE(user.Toggle(form.Get("chkOne")) || user.Click(form.Get("chkOne")));
  form.Get("chkOne").SetFocus();
  EXPECT_EQ(form.Focused(), nullptr);
  frame.SetVisible(true);
  EXPECT_EQ(Taken(), "");
  EXPECT_TRUE(user.Toggle(form.Get("chkOne")));
}

TEST_F(ControlsTest, AFailingHandlerReachesTheListenerOnly) {
  failing = true;
  const auto on = [&](const char* name) -> Control& { return form.Get(name); };
  for (const bool done :
       {user.Type(on("txtText"), "x"), user.Leave(on("txtText")), user.Toggle(on("chkOne")),
        user.Choose(on("optA")), user.Enter(on("optB")), user.DoubleClick(on("optA")),
        user.Pick(on("cboList"), 0), user.DropDown(on("cboList")), user.Press(on("cmdGo")),
        user.Click(on("lblHelp")), user.DoubleClick(on("lblHelp")), user.Set(on("dtpDay"), kDay)}) {
    EXPECT_TRUE(done);
  }
  EXPECT_EQ(std::exchange(failures, {}),
            "txtText_Change:5 txtText_LostFocus:5 chkOne_Click:5 optA_Click:5 optB_Click:5 optA_DblClick:5 "
            "cboList_Click:5 cboList_DropDown:5 cmdGo_Click:5 lblHelp_Click:5 lblHelp_DblClick:5 "
            "dtpDay_Change:5 ");
  EXPECT_EQ(depth, 0);
  form.OnShow([] { throw std::bad_alloc(); });
  user.Show(form);
  EXPECT_EQ(failures, "UserControl_Show:7 ");
}

TEST_F(ControlsTest, TouchedIsTheUsersDoingOnly) {
  Get<TextBox>("txtText").SetText("from the page");
  user.Type(form.Get("txtText"), "from the page");
  EXPECT_FALSE(form.Touched());
  user.Type(form.Get("cboEdit"), "typed");
  EXPECT_TRUE(form.Touched());
}

TEST_F(ControlsTest, WrongValuesFailWithTheirNumbers) {
  auto& list = Get<ComboBox>("cboList");
  const std::vector<std::pair<int, std::function<void()>>> rows = {
      {380, [&] { Get<CheckBox>("chkOne").SetValue(2); }},
      {380, [&] { list.Select(2); }},
      {383, [&] { list.SetText("absent"); }},
      {9, [&] { (void)list.ItemText(2); }},
      {5, [&] { (void)form.Get("txtNowhere"); }},
  };
  for (const auto& [number, act] : rows) {
    try {
      act();
      ADD_FAILURE() << "wanted " << number;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.Number(), number);
    }
  }
  EXPECT_EQ(Taken(), "");
}

TEST_F(ControlsTest, TextSelectionCountsCharacters) {
  auto& text = Get<TextBox>("txtText");
  text.SetText("tâche \U0001F600");
  text.SelectText(5, 99);
  EXPECT_EQ(text.SelectionLength(), 2);
  text.SelectText(-3, -1);
  EXPECT_EQ(text.SelectionStart() + text.SelectionLength(), 0);
}

}  // namespace
}  // namespace plovix
