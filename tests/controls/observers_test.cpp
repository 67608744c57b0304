// What a surface's observers are told of, and what lies at the ends of the controls' ranges.
#include <gmock/gmock.h>

#include "tests/support/every_kind.h"

namespace plovix {
namespace {

using namespace testing_support;

class ObserversTest : public EveryKindTest, FormObserver {
 protected:
  ObserversTest() {
    watches.reserve(form->Count());
    for (std::size_t i = 0; i < form->Count(); ++i) {
      watches.push_back({told, form->At(i).Name()});
      form->At(i).Observe(&watches.back());
    }
    form->Observe(this);
  }
  void PointerChanged() override { told += "pointer "; }
  void RedrawRequested() override { told += "redraw "; }

  struct Watch final : ControlObserver {
    Watch(std::string& told_to, std::string_view control) : told(told_to), name(control) {}
    void Changed(Aspect aspect) override {
      constexpr const char* kAspects[] = {"caption",   "enabled", "visible", "focus", "text",
                                          "selection", "value",   "items",   "index", "look"};
      told.append(name).append(".").append(kAspects[static_cast<int>(aspect)]).append(" ");
    }
    std::string& told;
    std::string_view name;
  };
  std::string told;
  std::vector<Watch> watches;
};

TEST_F(ObserversTest, AreToldOfEveryChangeOnce) {
  auto& lbl = Get<Label>("lblName");
  auto& txt = Get<TextBox>("txt");
  auto& lst = Get<ComboBox>("lst");
  auto& cbo = Get<ComboBox>("cbo");
  // Each is done twice; the second time only a repetition tells something.
  const std::vector<std::tuple<std::function<void()>, std::string, bool>> rows = {
      {[&] { lbl.SetCaption("x"); }, "lblName.caption ", false},
      {[&] { lbl.SetLink(true); }, "lblName.look ", false},
      {[&] { lbl.SetVisible(false); }, "lblName.visible ", false},
      {[&] { user.Enter(txt); }, "", false},
      {[&] { user.Type(txt, "x"); }, "txt.text ", false},
      {[&] { txt.SelectAll(); }, "txt.selection ", true},
      {[&] { txt.SetEnabled(false); }, "txt.enabled ", false},
      {[&] { Get<CheckBox>("chk").SetValue(1); }, "chk.value ", false},
      {[&] { Get<OptionButton>("optA").Select(); }, "optA.value ", false},
      {[&] { user.Choose(form->Get("optB")); }, "optA.value optB.value ", false},
      {[&] { Get("fra").SetEnabled(false); }, "fra.enabled chkInside.enabled ", false},
      {[&] { Get("fra").SetVisible(false); }, "fra.visible chkInside.visible ", false},
      {[&] { lst.AddItem("x"); }, "lst.items ", true},
      {[&] {
         const EntryBatch batch(lst), nested(lst);
         for (const char* text : {"x", "y"}) lst.AddItem(text);
         lst.Select(lst.Count() - 1);
         for (const char* text : {"x", "y"}) lst.AddItem(text);
       },
       "lst.items lst.index lst.items ", true},
      {[&] { lst.Select(1); }, "lst.index ", true},
      {[&] { lst.SetFocus(); }, "lst.focus ", true},
      {[&] { lst.Clear(); }, "lst.items ", true},
      {[&] { cbo.SetText("x"); }, "cbo.text ", false},
      {[&] { Get<DateTimePicker>("dtp").SetValue(DateTime{std::chrono::seconds{1}}); }, "dtp.value ", false},
      {[&] { form->SetMousePointer(Pointer::kWait); }, "pointer ", false},
      {[&] { form->Redraw(); }, "redraw ", true},
  };
  for (const auto& [act, expected, again] : rows) {
    act();
    EXPECT_EQ(std::exchange(told, {}), expected);
    act();
    EXPECT_EQ(std::exchange(told, {}), again ? expected : "") << expected << "again";
  }
}

TEST_F(ObserversTest, TheEndsOfTheRanges) {
  std::string kinds, events_named;
  for (int kind = -1; kind <= 9; ++kind) kinds.append(KindName(static_cast<Kind>(kind))).append(" ");
  for (int event = -1; event <= 5; ++event)
    events_named.append(EventName(static_cast<Event>(event))).append(" ");
  EXPECT_EQ(kinds,
            " Label TextBox CheckBox OptionButton ComboBox CommandButton Frame DateTimePicker HostSlot  ");
  EXPECT_EQ(events_named, " Change Click DblClick DropDown LostFocus  ");
  const ControlInfo unknown[] = {{"odd", static_cast<Kind>(9)}};
  EXPECT_THROW(Form({"Odd", unknown, {}}), Failure);

  auto& lst = Get<ComboBox>("lst");
  lst.Select(0);
  lst.Select(-1);
  EXPECT_EQ(lst.Text() + std::to_string(lst.Index()), "-1");
  EXPECT_FALSE(user.Pick(lst, -1) || user.Pick(lst, 3));
  EXPECT_THAT([&] { lst.Select(-2); }, testing::ThrowsMessage<Failure>("Invalid property value"));
  EXPECT_THROW((void)lst.ItemText(-1), Failure);
  // What has the focus can be left, usable or not.
  EXPECT_TRUE(user.Enter(Get("txt")));
  Get("txt").SetEnabled(false);
  EXPECT_TRUE(user.Leave(Get("txt")) && !user.Leave(Get("txt")));
  EXPECT_TRUE(user.Enter(lst) && user.Leave(Get("chk")) && lst.HasFocus());
  for (const Style style : {Style::kHidden, Style::kDisabled}) EXPECT_TRUE(Has(style | Style::kLink, style));
}

TEST_F(ObserversTest, WhatIsEmbeddedCountsAsTouched) {
  struct Touchable final : HostControl {
    [[nodiscard]] bool Touched() const override { return touched; }
    bool touched = false;
  };
  const auto touchable = std::make_shared<Touchable>();
  for (const std::shared_ptr<HostControl>& embedded : {std::make_shared<HostControl>(), {touchable}}) {
    EXPECT_FALSE(form->Touched());
    Get<HostSlot>("slot").Embed(embedded);
  }
  touchable->touched = true;
  EXPECT_TRUE(form->Touched());
  Get<HostSlot>("slot").Embed(nullptr);
  user.Toggle(Get("chk"));
  EXPECT_TRUE(form->Touched()) << "by the user's own doing";
}

}  // namespace
}  // namespace plovix
