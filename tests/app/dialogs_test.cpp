// The editors of categories, permissions, language tags and users, driven by keyboard.
#include <plovix/standalone/editors/category_dialog.h>
#include <plovix/standalone/editors/permission_dialog.h>
#include <plovix/standalone/editors/release_dialog.h>
#include <plovix/standalone/editors/tag_dialog.h>
#include <plovix/standalone/editors/tag_texts_dialog.h>
#include <plovix/standalone/editors/users_dialog.h>

#include "tests/app/program_support.h"

namespace plovix::app {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// On a disk that may be full.
class FakeTables final : public UsersAndTags {
 public:
  FakeTables() {
    kept_.SaveUsers({{.id = "anna", .name = "Anna", .administrator = true, .groups = {"Sales"}},
                     {.id = "ben", .name = "Ben", .groups = {"Sales", "Stock"}, .create_shared = true}},
                    kept_.Users());
  }
  std::vector<UserRecord> Users() override { return kept_.Users(); }
  void SaveUsers(const std::vector<UserRecord>& users, const std::vector<UserRecord>& read) override {
    NeedRoom(), kept_.SaveUsers(users, read);
  }
  std::vector<TagRecord> Tags() override { return kept_.Tags(); }
  void SaveTag(const TagRecord& tag, const std::map<std::string, std::string>& read) override {
    NeedRoom(), kept_.SaveTag(tag, read);
  }
  bool full = false;

 private:
  void NeedRoom() const {
    if (full) throw Failure(failure_number::kInvalidCall, "The disk is full.");
  }
  MemoryUsersAndTags kept_;
};

class EditorTest : public testing::Test {
 protected:
  void Show(QDialog& dialog) {
    dialog_ = &dialog;
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  }
  // Keys to whatever has the focus, as a person types them; a text may end with Enter.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(dialog_->focusWidget(), key, modifiers);
  }
  void Type(QString text) {
    const bool enter = text.endsWith(u'\n');
    if (enter) text.chop(1);
    QTest::keyClicks(dialog_->focusWidget(), text);
    if (enter) Key(Qt::Key_Return);
  }
  template <class Widget>
  [[nodiscard]] Widget* Find() {
    return dialog_->findChild<Widget*>();
  }
  [[nodiscard]] std::string Told() const { return app::Told(*dialog_); }
  // Alt with the letter; a button is pressed a moment later.
  void Mnemonic(Qt::Key key) {
    Key(key, Qt::AltModifier);
    const auto buttons = dialog_->findChildren<QAbstractButton*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::ranges::none_of(buttons, &QAbstractButton::isDown); }));
  }

  TextTable texts_ = LoadLanguage("en");
  FakeTables tables_;
  QDialog* dialog_ = nullptr;
};

// What an action does cannot be hidden by its own texts, and reading is not releasing.
TEST_F(EditorTest, AnImportedTaskIsShownInFullBeforeItIsReleased) {
  TaskRecord task;
  const std::string program = "/bin/" + std::string(3'000, 'x') + "<b>end</b>";
  task.actions = {{"run-program", "a", 1, 1, {{"path", program}, {"arguments", "-c \xE2\x80\xAE\tx"}}},
                  {"run-sql", "", 1, 1, {{"statement", "DELETE\n2. Write a line"}}},
                  {"other", "", 1, 1, {{"what", "x"}}}};
  ReleaseDialog dialog(texts_, task, "<i>Report</i>", nullptr);
  Show(dialog);
  EXPECT_EQ(FromQt(Find<QPlainTextEdit>()->toPlainText()),
            "1. Run a program (a)\n  Arguments\n    -c \\u{202e}\\u{9}x\n  Program\n    " + program +
                "\n\n2. Run an SQL statement\n  SQL statement\n    DELETE\n    2. Write a line\n\n"
                "3. Unknown kind of action (other)\n  what\n    x");
  Key(Qt::Key_Return);
  EXPECT_TRUE(dialog.isVisible());
  Mnemonic(Qt::Key_L);
  EXPECT_EQ(dialog.result(), QDialog::Rejected);
  Show(dialog);
  Mnemonic(Qt::Key_R);
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(EditorTest, CategoriesAreAddedRenamedMovedAndRemoved) {
  CategorySource source;
  source.known = {"Stock"};
  source.text_of = [](const std::string& tag) { return tag; };
  source.tag_for_text = [](const std::string& old_tag, const std::string& text) {
    return old_tag + ">" + text;
  };
  CategoryDialog dialog(texts_, {{"Sales", true}, {"", true}, {"Old", false}, {"Post", true}}, source,
                        nullptr);
  Show(dialog);
  EXPECT_FALSE(dialog.Changed());
  Key(Qt::Key_Space);
  Key(Qt::Key_Down, Qt::AltModifier);
  Key(Qt::Key_Up);
  Key(Qt::Key_F2);
  Type("sales\n");
  QTest::qWait(0);
  EXPECT_THAT(Told(), HasSubstr("\"sales\" is already in the list"));
  Key(Qt::Key_Return);
  EXPECT_TRUE(dialog.isVisible()) << "two categories of one name";
  Find<QTableWidget>()->setCurrentCell(0, 0);
  Key(Qt::Key_F2);
  Type("Invoices\n");
  QTest::qWait(0);
  EXPECT_TRUE(dialog.isVisible()) << "Enter in a cell only ends the cell";
  Find<QTableWidget>()->setCurrentCell(2, 0);
  Key(Qt::Key_Delete);
  Mnemonic(Qt::Key_N);
  Type("INVOICES\n");
  EXPECT_THAT(Told(), HasSubstr("\"INVOICES\" is already in the list"));
  Type("Stock\n");
  Type("last");
  QTest::keyClick(&dialog, Qt::Key_Return);  // what is typed is not lost
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_THAT(dialog.Categories(),
              ElementsAre(CategoryRecord{"Old>Invoices", false}, CategoryRecord{"Sales", false},
                          CategoryRecord{">Stock", true}, CategoryRecord{">last", true}));
}

TEST_F(EditorTest, CategoriesInTagsComeFromTheTagEditor) {
  std::vector<std::optional<std::string>> chosen = {std::nullopt, "t.b", "t.A2", "t.c"};
  std::vector<std::string> opened;
  CategorySource source;
  source.tagged = true;
  source.text_of = [](const std::string& tag) { return tag == "t.A2" ? std::string("T.A") : tag; };
  source.edit_tag = [&](const std::string& tag, const std::vector<std::string>& /*known*/) {
    if (opened.size() == chosen.size()) throw Failure(failure_number::kInvalidCall, "No tags today.");
    opened.push_back(tag);
    return chosen.at(opened.size() - 1);
  };
  CategoryDialog dialog(texts_, {{"t.a", true}}, source, nullptr);
  Show(dialog);
  Mnemonic(Qt::Key_A);
  EXPECT_FALSE(dialog.Changed()) << "the tag editor was cancelled";
  Mnemonic(Qt::Key_A);
  Mnemonic(Qt::Key_A);
  EXPECT_THAT(Told(), HasSubstr("\"T.A\" is already in the list"));
  Key(Qt::Key_F2);
  Mnemonic(Qt::Key_A);
  EXPECT_THAT(Told(), HasSubstr("No tags today."));
  Key(Qt::Key_Return);
  EXPECT_THAT(opened, ElementsAre("", "", "", "t.b"));
  EXPECT_THAT(dialog.Categories(), ElementsAre(CategoryRecord{"t.a", true}, CategoryRecord{"t.c", true}));
}

TEST_F(EditorTest, PermissionsImplyViewingAndSaySoWhenNobodyHasAny) {
  const PermissionSet set = {{.subject = "gone", .is_group = true, .view = true, .run = true}};
  PermissionDialog dialog(texts_, "Backup", set, tables_, nullptr);
  Show(dialog);
  EXPECT_THAT(FromQt(Find<QTableWidget>()->item(0, 0)->text()), HasSubstr("Group gone (nobody"));
  Key(Qt::Key_Space);
  EXPECT_THAT(dialog.Permissions(), ElementsAre(PermissionRecord{.subject = "gone", .is_group = true}));
  EXPECT_THAT(Told(), HasSubstr("Nobody but administrators"));
  Key(Qt::Key_Delete);
  EXPECT_TRUE(dialog.Permissions().empty());
  Mnemonic(Qt::Key_U);
  Type("carla\n");
  EXPECT_THAT(Told(), HasSubstr("no user or group \"carla\""));
  Find<QLineEdit>()->clear();
  // Enter takes the only suggestion; of several it highlights the first.
  Type("sto\n");
  Type("n");
  for (const bool taken : {false, true}) {
    QTest::keyClick(Find<QComboBox>()->completer()->popup(), Qt::Key_Return);
    EXPECT_EQ(dialog.Permissions().size(), taken ? 2U : 1U);
  }
  Find<QTableWidget>()->setCurrentCell(1, 1);
  Find<QTableWidget>()->setFocus();
  Key(Qt::Key_Delete);
  Mnemonic(Qt::Key_U);
  Type("ben\n");
  Find<QTableWidget>()->setFocus();
  Key(Qt::Key_Space);
  for (const int steps : {3, 0}) {  // delete, checked and unchecked
    for (int i = 0; i < steps; ++i) Key(Qt::Key_Right);
    Key(Qt::Key_Space);
    EXPECT_EQ(dialog.Permissions().at(1),
              (PermissionRecord{.subject = "ben", .view = true, .erase = steps != 0}));
  }
  for (auto* button : dialog.findChildren<QPushButton*>())
    if (FromQt(button->text()).ends_with("Cancel")) button->setFocus();
  {
    const Answers answers({PressKey(Qt::Key_Escape)});
    Key(Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "Enter on Cancel is Cancel, which asks first; Esc goes on";
  }
  Find<QTableWidget>()->setFocus();
  Key(Qt::Key_Return);
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.Permissions().at(0),
            (PermissionRecord{.subject = "Stock", .is_group = true, .view = true}));
}

TEST_F(EditorTest, TagsAreFoundByTheirTextsInEveryLanguageAndMade) {
  for (int i = 0; i < 3000; ++i) tables_.SaveTag({"t" + std::to_string(i), {{"en", "x"}}}, {});
  tables_.SaveTag({"t1234", {{"en", "x"}, {"fr", "Été (1)"}}}, {});
  TagDialog dialog(texts_, "t7", {"t9"}, tables_, {"en", "fr"}, "en", nullptr);
  Show(dialog);
  Key(Qt::Key_Return);
  EXPECT_EQ(dialog.Tag(), "t7");
  Show(dialog);
  Find<QLineEdit>()->setFocus();
  Type("nowhere");
  EXPECT_THAT(Told(), HasSubstr("No tag matches"));
  Key(Qt::Key_Escape);
  QTest::keyClicks(dialog.focusWidget(), QStringLiteral("été (").toUpper());
  EXPECT_THAT(FromQt(Find<QPlainTextEdit>()->toPlainText()), HasSubstr("Français: Été (1)"));
  Key(Qt::Key_Return);
  EXPECT_EQ(dialog.Tag(), "t1234");
  Show(dialog);
  tables_.full = true;
  const Answers answers({[this](QWidget* box) {
    const auto type = [box](const char* text) {
      QTest::keyClicks(box->focusWidget(), text);
      QTest::keyClick(box, Qt::Key_Return);
    };
    for (const auto& [text, told] : {std::pair("", "enter a name"),
                                     {"T9", "already a tag"},
                                     {"made", "enter the text in this language"}}) {
      type(text);
      EXPECT_THAT(FromQt(box->focusWidget()->accessibleDescription()), HasSubstr(told));
    }
    type("Made");
    EXPECT_THAT(FromQt(box->accessibleDescription()), HasSubstr("The disk is full."));
    tables_.full = false;
    type("");
  }});
  Mnemonic(Qt::Key_N);
  EXPECT_EQ(tables_.Tags().front(), (TagRecord{"made", {{"en", "Made"}}}));
  Key(Qt::Key_Return);
  EXPECT_EQ(dialog.Tag(), "made");
}

TEST_F(EditorTest, UsersKeepAnAdministratorAndAreSavedTogether) {
  UsersDialog dialog(texts_, tables_, "anna", nullptr);
  Show(dialog);
  Key(Qt::Key_Delete);
  EXPECT_THAT(Told(), HasSubstr("cannot remove yourself"));
  Mnemonic(Qt::Key_D);
  EXPECT_THAT(Told(), HasSubstr("There must be an administrator"));
  EXPECT_FALSE(dialog.Changed());
  Mnemonic(Qt::Key_A);
  Key(Qt::Key_Return);
  EXPECT_THAT(Told(), HasSubstr("Please enter an id."));
  Type("ben");
  EXPECT_THAT(Told(), HasSubstr("Another user has this id"));
  Type("no");
  Mnemonic(Qt::Key_G);
  Type(" Stock,, New group ,");
  Mnemonic(Qt::Key_P);
  Mnemonic(Qt::Key_D);
  EXPECT_FALSE(Find<QGroupBox>()->findChild<QCheckBox*>()->isEnabled());
  EXPECT_TRUE(Find<QGroupBox>()->findChild<QCheckBox*>()->isChecked()) << "an administrator has every right";
  Find<QListWidget>()->setCurrentRow(1);
  Find<QListWidget>()->setFocus();
  Key(Qt::Key_Delete);
  Find<QListWidget>()->setCurrentRow(0);
  Mnemonic(Qt::Key_D);  // another one is administrator now
  tables_.full = true;
  Key(Qt::Key_Return);
  EXPECT_THAT(Told(), HasSubstr("The disk is full."));
  tables_.full = false;
  Key(Qt::Key_Return);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_THAT(tables_.Users(), ElementsAre(UserRecord{.id = "anna", .name = "Anna", .groups = {"Sales"}},
                                           UserRecord{.id = "benno",
                                                      .name = "",
                                                      .administrator = true,
                                                      .groups = {"New group", "Stock"},
                                                      .create_personal = true}));
}

// Another administrator is faster: what both changed is told and stored at the second OK only, the rest is
// merged.
TEST_F(EditorTest, ChangesOfOthersAreMergedOrTold) {
  const auto other_saves = [this](const std::string& name) {
    auto users = tables_.Users();
    for (UserRecord& user : users) user.name = name;
    tables_.SaveUsers(users, tables_.Users());
  };
  UsersDialog dialog(texts_, tables_, "ben", nullptr);
  Show(dialog);
  Mnemonic(Qt::Key_N);
  Type("Benny");
  other_saves("other");
  Key(Qt::Key_Return);
  EXPECT_THAT(Told(), HasSubstr("changed or removed these users: ben."));
  EXPECT_EQ(tables_.Users().back().name, "other");
  Key(Qt::Key_Return);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(tables_.Users().front().name, "other");
  EXPECT_EQ(tables_.Users().back().name, "Benny");

  const TagRecord tag{"t", {{"en", "one"}, {"fr", "un"}}};
  tables_.SaveTag(tag, {});
  const auto nobody = [](const std::string&) { return false; };
  TagTextsDialog texts(texts_, tag, tables_, {"en", "fr"}, "en", nobody, nullptr);
  Show(texts);
  Type("My ");
  tables_.SaveTag({"t", {{"en", "two"}, {"fr", "deux"}}}, tag.texts);
  QTest::keyClick(&texts, Qt::Key_Return);
  EXPECT_THAT(Told(), HasSubstr("changed the text in these languages: English."));
  QTest::keyClick(&texts, Qt::Key_Return);
  EXPECT_THAT(tables_.Tags(), ElementsAre(TagRecord{"t", {{"en", "My one"}, {"fr", "deux"}}}));
}

}  // namespace
}  // namespace plovix::app
