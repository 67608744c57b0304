// What every surface must do for the controls, kind by kind: which events a user's act or a page's change
// raises and how often, what state the control then has, and that the surface shows exactly this. Run by the
// test programs of the controls and of each surface.
#pragma once

#include <functional>

#include "every_kind.h"
#include "hand.h"

namespace plovix::testing_support {

// `Surface` is a hand on the form, constructed from the form and a User.
template <class Surface>
class SurfaceContract : public EveryKindTest {
 protected:
  using Texts = std::vector<std::string>;

  void Compare(std::string_view name, const Texts& raised, const std::string& held) {
    surface.Settle();
    EXPECT_EQ(std::exchange(events, {}), raised);
    EXPECT_EQ(Held(form->Get(name)), held);
    for (std::size_t i = 0; i < form->Count(); ++i)
      EXPECT_EQ(surface.Seen(form->At(i)), Held(form->At(i))) << form->At(i).Name();
    EXPECT_EQ(surface.Focused(*form), form->Focused());
  }

  void TheUsersActs() {
    using enum Verb;
    const struct Row {
      const char* name;
      Act act;
      Texts raised;
      const char* held;
    } rows[] = {
        {"txt", {kEnter}, {}, ""},
        {"txt", {kType, "one"}, {"txt_Change"}, "one"},
        {"txt", {kType, "one"}, {}, "one"},
        {"memo", {kType, "a\n\u20AC\U0001F600"}, {"txt_LostFocus", "memo_Change"}, "a\n\u20AC\U0001F600"},
        {"memo", {kType, ""}, {"memo_Change"}, ""},
        {"lblHelp", {kClick}, {"lblHelp_Click"}, "text"},
        {"lblHelp", {kDoubleClick}, {"lblHelp_Click", "lblHelp_DblClick"}, "text"},
        {"memo", {kLeave}, {"memo_LostFocus"}, ""},
        {"lblLink", {kClick}, {"lblLink_Click"}, "link"},
        {"chk", {kClick}, {"lblLink_LostFocus", "chk_Click"}, "1"},
        {"chk", {kClick}, {"chk_Click"}, "0"},
        {"chkInside", {kClick}, {"chk_LostFocus", "chkInside_Click"}, "1"},
        {"optA", {kClick}, {"chkInside_LostFocus", "optA_Click"}, "1"},
        {"optA", {kClick}, {}, "1"},
        {"optB", {kEnter}, {"optA_LostFocus", "optB_Click"}, "1"},
        {"optA", {kDoubleClick}, {"optB_LostFocus", "optA_Click", "optA_DblClick"}, "1"},
        {"optA", {kDoubleClick}, {"optA_DblClick"}, "1"},
        {"cmd", {kClick}, {"optA_LostFocus", "cmd_Click"}, ""},
        {"lst", {kDropDown}, {"cmd_LostFocus", "lst_DropDown"}, " -1/3"},
        {"lst", {kPick, "", 1}, {"lst_DropDown", "lst_Click"}, "second 1/3"},
        {"lst", {kPick, "", 1}, {"lst_DropDown", "lst_Click"}, "second 1/3"},
        {"cbo", {kPick, "", 0}, {"lst_LostFocus", "cbo_DropDown", "cbo_Click"}, "first /1"},
        {"cbo", {kType, "other"}, {}, "other /1"},
        {"cbo", {kType, "first"}, {}, "first /1"},
        {"dtp", {kSet, "", 0, kMorning + 24h}, {"cbo_LostFocus", "dtp_Change"}, "20485"},
        {"dtp", {kSet, "", 0, kMorning + 25h}, {}, "20485"},
        {"tim", {kSet, "", 0, kMorning + 25h}, {"dtp_LostFocus", "tim_Change"}, "34215"},
    };
    for (const char* name : {"dtp", "tim"}) Get<DateTimePicker>(name).SetValue(kMorning);
    events.clear();
    for (const Row& row : rows) {
      SCOPED_TRACE(testing::Message() << kVerbs.at(static_cast<std::size_t>(row.act.verb)) << " on "
                                      << row.name << ", row " << &row - rows);
      EXPECT_TRUE(surface.Do(Get(row.name), row.act));
      Compare(row.name, row.raised, row.held);
    }
    EXPECT_EQ(Get<ComboBox>("cbo").Index(), -1) << "typing an entry's text picks nothing";
    // Each picker keeps the part that it does not show.
    EXPECT_EQ(Get<DateTimePicker>("dtp").Value(), kMorning + 24h);
    EXPECT_EQ(Get<DateTimePicker>("tim").Value(), kMorning + 1h);
  }

  // Verbs that a control lacks, or refuses because of its state or its frame's.
  void Refusals() {
    const std::vector<std::function<void()>> states{
        [] {}, [&] { Get("fra").SetEnabled(false); },
        [&] { Get("fra").SetEnabled(true), Get("fra").SetVisible(false); }};
    for (const auto& change : states) {
      change();
      for (std::size_t i = 0; i < form->Count() * kVerbs.size(); ++i) {
        Control& control = form->At(i / kVerbs.size());
        const auto verb = static_cast<Verb>(i % kVerbs.size());
        if (control.Usable() && Fits(verb, control)) continue;
        SCOPED_TRACE(testing::Message() << kVerbs.at(i % kVerbs.size()) << " on " << control.Name());
        EXPECT_FALSE(surface.Do(control, {verb, "x", 0, kMorning}));
        Compare(control.Name(), {}, Held(control));
      }
    }
  }

  void ThePagesChanges() {
    auto& lst = Get<ComboBox>("lst");
    auto& cbo = Get<ComboBox>("cbo");
    const struct Row {
      const char* name;
      std::function<void()> act;
      Texts raised;
      const char* held;
    } rows[] = {
        {"txt", [&] { Get<TextBox>("txt").SetText("one\ntwo"); }, {"txt_Change"}, "one\ntwo"},
        {"txt", [&] { Get<TextBox>("txt").SetText("one\ntwo"); }, {}, "one\ntwo"},
        {"memo", [&] { Get<TextBox>("memo").SetText("one\r\ntwo"); }, {"memo_Change"}, "one\ntwo"},
        {"chk", [&] { Get<CheckBox>("chk").SetValue(1); }, {"chk_Click"}, "1"},
        {"chk", [&] { Get<CheckBox>("chk").SetValue(1); }, {}, "1"},
        {"optB", [&] { Get<OptionButton>("optB").Select(); }, {"optB_Click"}, "1"},
        {"optB", [&] { Get<OptionButton>("optB").Select(); }, {}, "1"},
        {"optA", [&] { Get<OptionButton>("optA").Select(); }, {"optA_Click"}, "1"},
        {"optB", [&] { Get("optB").SetFocus(); }, {"optB_Click"}, "1"},
        {"lst", [&] { lst.Select(2); }, {"lst_Click"}, "third 2/3"},
        {"lst", [&] { lst.Select(2); }, {}, "third 2/3"},
        {"lst", [&] { lst.SetText("first"); }, {"lst_Click"}, "first 0/3"},
        {"lst", [&] { lst.AddItem("new"); }, {}, "first 0/4"},
        {"lst", [&] { lst.Clear(); }, {}, " -1/0"},
        {"cbo", [&] { cbo.SetText("other"); }, {}, "other /1"},
        {"cbo", [&] { cbo.Select(0); }, {"cbo_Click"}, "first /1"},
        {"dtp", [&] { Get<DateTimePicker>("dtp").SetValue(kMorning); }, {"dtp_Change"}, "20484"},
        {"dtp", [&] { Get<DateTimePicker>("dtp").SetValue(kMorning); }, {}, "20484"},
        {"tim", [&] { Get<DateTimePicker>("tim").SetValue(kMorning); }, {"tim_Change"}, "30615"},
        {"lblLink", [&] { Get<Label>("lblLink").SetLink(false); }, {}, "text"},
        {"cmdLater", [&] { Get("cmdLater").SetVisible(true); }, {}, ""},
        {"fra", [&] { Get("fra").SetEnabled(false); }, {}, " unusable"},
        {"chkInside", [&] { Get("chkInside").SetFocus(); }, {}, "0 unusable"},
        {"fra", [&] { Get("fra").SetVisible(false); }, {}, " unusable"},
        {"chkOff", [&] { Get("chkOff").SetEnabled(true); }, {}, "0"},
        {"chkOff", [&] { Get("chkOff").SetFocus(); }, {}, "0"},
    };
    Compare("fra", {}, "");  // the state of the form before the surface was created
    verbs = 0;
    for (const Row& row : rows) {
      SCOPED_TRACE(testing::Message() << row.name << ", row " << &row - rows);
      row.act();
      Compare(row.name, row.raised, row.held);
    }
    EXPECT_EQ(verbs, 0) << "a page's change came back as the user's";
  }

  Surface surface{form, user};
};

TYPED_TEST_SUITE_P(SurfaceContract);
TYPED_TEST_P(SurfaceContract, WhatAUserDoesRaisesTheEventsOfItsKindOnce) {
  this->TheUsersActs();
}
TYPED_TEST_P(SurfaceContract, WhatAControlDoesNotTakeChangesNothing) {
  this->Refusals();
}
TYPED_TEST_P(SurfaceContract, WhatAPageChangesShowsAndDoesNotComeBack) {
  this->ThePagesChanges();
}
REGISTER_TYPED_TEST_SUITE_P(SurfaceContract, WhatAUserDoesRaisesTheEventsOfItsKindOnce,
                            WhatAControlDoesNotTakeChangesNothing, WhatAPageChangesShowsAndDoesNotComeBack);

}  // namespace plovix::testing_support
