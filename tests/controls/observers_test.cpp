// What a surface's observers are told of, and what lies at the ends of the controls' ranges.
#include <gtest/gtest.h>
#include <plovix/controls/user.h>
#include <plovix/designs/design.h>

#include <functional>

namespace plovix {
namespace {

constexpr auto kWatched = MakeDesign("Watched",
                                     {
                                         {"lbl", Kind::kLabel},
                                         {"txt", Kind::kTextBox},
                                         {"chk", Kind::kCheckBox},
                                         {"optA", Kind::kOptionButton},
                                         {"optB", Kind::kOptionButton},
                                         {"cbo", Kind::kComboBox},
                                         {"cboEdit", Kind::kComboBox, "", "", "", Style::kEditable},
                                         {"dtp", Kind::kDateTimePicker},
                                         {"slot", Kind::kHostSlot, "Registered"},
                                     },
                                     {"lbl txt chk optA optB cbo cboEdit dtp slot"});

class ObserversTest : public testing::Test, protected UserListener, FormObserver {
 protected:
  ObserversTest() : form(kWatched.View()) {
    watches.reserve(form.Count());
    for (std::size_t i = 0; i < form.Count(); ++i) {
      watches.push_back({told, form.At(i).Name()});
      form.At(i).Observe(&watches.back());
    }
    form.Observe(this);
  }
  template <class T>
  T& Get(std::string_view name) {
    return dynamic_cast<T&>(form.Get(name));
  }
  void EventBegins() override {}
  void EventEnds() override {}
  void EventFailed(const Failure& failure, std::string_view /*procedure*/) override { throw failure; }
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
  Form form;
  std::vector<Watch> watches;
  User user{*this};
};

TEST_F(ObserversTest, AreToldOfEveryChangeOnce) {
  auto& lbl = Get<Label>("lbl");
  auto& txt = Get<TextBox>("txt");
  auto& cbo = Get<ComboBox>("cbo");
  auto& edit = Get<ComboBox>("cboEdit");
  // Each is done twice; the second time only a repetition tells something.
  const std::vector<std::tuple<std::function<void()>, std::string, bool>> rows = {
      {[&] { lbl.SetCaption("x"); }, "lbl.caption ", false},
      {[&] { lbl.SetLink(true); }, "lbl.look ", false},
      {[&] { lbl.SetVisible(false); }, "lbl.visible ", false},
      {[&] { user.Enter(txt); }, "", false},
      {[&] { user.Type(txt, "x"); }, "txt.text ", false},
      {[&] { txt.SelectAll(); }, "txt.selection ", true},
      {[&] { txt.SetEnabled(false); }, "txt.enabled ", false},
      {[&] { Get<CheckBox>("chk").SetValue(1); }, "chk.value ", false},
      {[&] { Get<OptionButton>("optA").Select(); }, "optA.value ", false},
      {[&] { user.Choose(form.Get("optB")); }, "optA.value optB.value ", false},
      {[&] { cbo.AddItem("x"); }, "cbo.items ", true},
      {[&] { cbo.Select(1); }, "cbo.index ", true},
      {[&] { cbo.SetFocus(); }, "cbo.focus ", true},
      {[&] { cbo.Clear(); }, "cbo.items ", true},
      {[&] { edit.SetText("x"); }, "cboEdit.text ", false},
      {[&] { Get<DateTimePicker>("dtp").SetValue(DateTime{std::chrono::seconds{1}}); }, "dtp.value ", false},
      {[&] { form.SetMousePointer(Pointer::kWait); }, "pointer ", false},
      {[&] { form.Redraw(); }, "redraw ", true},
  };
  for (const auto& [act, expected, again] : rows) {
    act();
    EXPECT_EQ(std::exchange(told, {}), expected);
    act();
    EXPECT_EQ(std::exchange(told, {}), again ? expected : "") << expected << "again";
  }
}

TEST_F(ObserversTest, TheEndsOfTheRanges) {
  std::string kinds, events;
  for (int kind = -1; kind <= 9; ++kind) kinds.append(KindName(static_cast<Kind>(kind))).append(" ");
  for (int event = -1; event <= 5; ++event) events.append(EventName(static_cast<Event>(event))).append(" ");
  EXPECT_EQ(kinds,
            " Label TextBox CheckBox OptionButton ComboBox CommandButton Frame DateTimePicker HostSlot  ");
  EXPECT_EQ(events, " Change Click DblClick DropDown LostFocus  ");
  const ControlInfo unknown[] = {{"odd", static_cast<Kind>(9)}};
  EXPECT_THROW(Form({"Odd", unknown, {}}), Failure);

  auto& cbo = Get<ComboBox>("cbo");
  cbo.AddItem("only");
  cbo.Select(0);
  cbo.Select(-1);
  EXPECT_EQ(cbo.Text() + std::to_string(cbo.Index()), "-1");
  EXPECT_FALSE(user.Pick(cbo, -1));
  try {
    cbo.Select(-2);
    ADD_FAILURE() << "there is no such entry";
  } catch (const std::exception& failure) {
    EXPECT_STREQ(failure.what(), "Invalid property value");
  }
  EXPECT_THROW((void)cbo.ItemText(-1), Failure);
  // What has the focus can be left, usable or not.
  EXPECT_TRUE(user.Enter(form.Get("txt")));
  form.Get("txt").SetEnabled(false);
  EXPECT_TRUE(user.Leave(form.Get("txt")));
  EXPECT_FALSE(user.Leave(form.Get("txt")));
  EXPECT_TRUE(user.Enter(cbo) && user.Leave(form.Get("chk")) && cbo.HasFocus());
  for (const Style style : {Style::kHidden, Style::kDisabled}) EXPECT_TRUE(Has(style | Style::kLink, style));
}

TEST_F(ObserversTest, WhatIsEmbeddedCountsAsTouched) {
  struct Touchable final : HostControl {
    [[nodiscard]] bool Touched() const override { return touched; }
    bool touched = false;
  };
  const auto touchable = std::make_shared<Touchable>();
  for (const std::shared_ptr<HostControl>& embedded :
       {std::make_shared<HostControl>(), std::static_pointer_cast<HostControl>(touchable)}) {
    EXPECT_FALSE(form.Touched());
    Get<HostSlot>("slot").Embed(embedded);
  }
  touchable->touched = true;
  EXPECT_TRUE(form.Touched());
  Get<HostSlot>("slot").Embed(nullptr);
  user.Toggle(form.Get("chk"));
  EXPECT_TRUE(form.Touched()) << "by the user's own doing";
}

}  // namespace
}  // namespace plovix
