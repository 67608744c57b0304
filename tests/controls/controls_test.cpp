// The controls through the user's door: the contract of the surfaces, what a user is refused, where a
// failing handler goes; and what their observers are told.
#include <plovix/base/utf8.h>

#include <new>

#include "tests/support/failure_of.h"
#include "tests/support/surface_contract.h"

namespace plovix {
namespace {

using namespace testing_support;
using ControlsTest = EveryKindTest;

// The user's verbs, as a surface has to speak them.
class Verbs final : public UserHand {
 public:
  Verbs(const std::shared_ptr<Form>& /*form*/, User& user) : UserHand(user) {}
};
INSTANTIATE_TYPED_TEST_SUITE_P(UsersVerbs, SurfaceContract, Verbs);

TEST_F(ControlsTest, AFailingHandlerReachesTheListenerOnly) {
  failing = true;
  const auto on = [&](const char* name) -> Control& { return form->Get(name); };
  for (const bool done :
       {user.Type(on("txt"), "x"), user.Leave(on("txt")), user.Toggle(on("chk")), user.Choose(on("optA")),
        user.Enter(on("optB")), user.DoubleClick(on("optA")), user.Pick(on("lst"), 0),
        user.DropDown(on("lst")), user.Press(on("cmd")), user.Click(on("lblHelp")),
        user.DoubleClick(on("lblHelp")), user.Set(on("dtp"), kMorning)}) {
    EXPECT_TRUE(done);
  }
  EXPECT_EQ(std::exchange(failures, {}),
            "txt_Change:5 txt_LostFocus:5 chk_Click:5 optA_Click:5 optB_Click:5 optA_DblClick:5 "
            "lst_Click:5 lst_DropDown:5 cmd_Click:5 lblHelp_Click:5 lblHelp_DblClick:5 "
            "dtp_Change:5 ");
  EXPECT_EQ(depth, 0);
  form->OnShow([] { throw std::bad_alloc(); });
  user.Show(*form);
  EXPECT_EQ(failures, "UserControl_Show:7 ");
}

TEST_F(ControlsTest, WrongValuesFailWithTheirNumbers) {
  auto& list = Get<ComboBox>("lst");
  const std::vector<std::pair<int, std::function<void()>>> rows = {
      {380, [&] { Get<CheckBox>("chk").SetValue(2); }},
      {380, [&] { list.Select(3); }},
      {383, [&] { list.SetText("absent"); }},
      {9, [&] { (void)list.ItemText(3); }},
      {380, [&] { list.Select(-2); }},
      {9, [&] { (void)list.ItemText(-1); }},
      {5, [&] { (void)form->Get("txtNowhere"); }},
  };
  for (const auto& [number, act] : rows) EXPECT_EQ(test::FailureOf(act).Number(), number);
  EXPECT_TRUE(events.empty());
}

TEST_F(ControlsTest, TextSelectionCountsCharacters) {
  auto& text = Get<TextBox>("txt");
  text.SetText("tâche \U0001F600");
  text.SelectText(5, 99);
  EXPECT_EQ(text.SelectionLength(), 2);
  text.SelectText(-3, -1);
  EXPECT_EQ(text.SelectionStart() + text.SelectionLength(), 0);
}

TEST(Utf8, IsReadableWhateverBytesThereAre) {
  EXPECT_EQ(CharacterBytes(""), 0U);
  const std::string good = "a\u00E9\u0800\uD7FF\u20AC\U00010000\U0010FFFF";
  EXPECT_EQ(Quoted(good), '"' + good + '"');
  for (const std::string broken : {"\n", "\x7F", "\x80", "\xF5", "\xC3", "\xC3\xC3", "\xE0\x9F\x80",
                                   "\xED\xA0\x80", "\xE2\x82\xC3", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80"}) {
    std::string marks;
    while (marks.size() < broken.size() * 3) marks += "\uFFFD";
    EXPECT_EQ(Readable(broken), marks) << testing::PrintToString(broken);
  }
}

// What a surface's observers are told of.
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
  auto& lst = Get<ComboBox>("lst");
  lst.Select(0);
  lst.Select(-1);
  EXPECT_EQ(lst.Text() + std::to_string(lst.Index()), "-1");
  EXPECT_FALSE(user.Pick(lst, -1) || user.Pick(lst, 3));
  // What has the focus can be left, usable or not.
  EXPECT_TRUE(user.Enter(Get("txt")));
  Get("txt").SetEnabled(false);
  EXPECT_TRUE(user.Leave(Get("txt")) && !user.Leave(Get("txt")));
  EXPECT_TRUE(user.Enter(lst) && user.Leave(Get("chk")) && lst.HasFocus());
}

TEST_F(ObserversTest, TouchedIsTheUsersDoingAndWhatIsEmbedded) {
  Get<TextBox>("txt").SetText("from the page");
  user.Type(form->Get("txt"), "from the page");
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
  user.Type(form->Get("cbo"), "typed");
  EXPECT_TRUE(form->Touched()) << "by the user's own doing";
}

}  // namespace
}  // namespace plovix
