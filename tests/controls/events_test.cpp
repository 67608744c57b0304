// The controls through the user's door: the contract of the surfaces, what a user is refused, where a
// failing handler goes.
#include <plovix/base/utf8.h>

#include <new>

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

TEST_F(ControlsTest, TouchedIsTheUsersDoingOnly) {
  Get<TextBox>("txt").SetText("from the page");
  user.Type(form->Get("txt"), "from the page");
  EXPECT_FALSE(form->Touched());
  user.Type(form->Get("cbo"), "typed");
  EXPECT_TRUE(form->Touched());
}

TEST_F(ControlsTest, WrongValuesFailWithTheirNumbers) {
  auto& list = Get<ComboBox>("lst");
  const std::vector<std::pair<int, std::function<void()>>> rows = {
      {380, [&] { Get<CheckBox>("chk").SetValue(2); }}, {380, [&] { list.Select(3); }},
      {383, [&] { list.SetText("absent"); }},           {9, [&] { (void)list.ItemText(3); }},
      {5, [&] { (void)form->Get("txtNowhere"); }},
  };
  for (const auto& [number, act] : rows) {
    try {
      act();
      ADD_FAILURE() << "wanted " << number;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.Number(), number);
    }
  }
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

}  // namespace
}  // namespace plovix
