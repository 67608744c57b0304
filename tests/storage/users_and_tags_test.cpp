#include <memory>

#include "storage_support.h"

namespace plovix::test {
namespace {

using namespace std::string_literals;

// Both implementations; the file is opened anew for every use.
class Tables {
 public:
  explicit Tables(bool in_file) : in_file_(in_file) {}
  UsersAndTags& operator*() {
    if (in_file_) tables_ = std::make_unique<SqliteUsersAndTags>(folder_ / "tasks.sqlite");
    return *tables_;
  }

 private:
  TempFolder folder_;
  bool in_file_;
  std::unique_ptr<UsersAndTags> tables_ = std::make_unique<MemoryUsersAndTags>();
};

using Users = std::map<std::string, UserRecord>;
template <class Row>
std::vector<Row> ListOf(const std::map<std::string, Row>& rows) {
  std::vector<Row> list;
  for (const auto& [id, row] : rows) list.push_back(row);
  return list;
}

const std::string kOddTexts[] = {"it's \"x\""s, "a\0b"s, "\xFF\xC3\xD7\xA9 "s,   " \r\n"s, "[]"s, "12"s,
                                 "a"s,          "A"s,    std::string(1'000, 'x')};

TEST(UsersAndTags, KeepUsersAndTagsOfAnyText) {
  for (const bool in_file : {false, true}) {
    Tables tables(in_file);
    EXPECT_EQ((*tables).Users(), std::vector{FirstAdministrator()});
    Users users{{"admin", FirstAdministrator()}};
    std::map<std::string, TagRecord> tags;
    for (const std::string& text : kOddTexts) {
      users[text] = {.id = text, .name = text, .groups = {text, "", "b"}};
      tags[text] = {text, {{"en", text}, {"fr", ""}, {text, "x"}}};
    }
    int flag_number = 0;
    for (bool UserRecord::*const flag :
         {&UserRecord::administrator, &UserRecord::edit_categories, &UserRecord::see_all_categories,
          &UserRecord::go_on_with_tags, &UserRecord::create_personal, &UserRecord::create_shared,
          &UserRecord::run_programs}) {
      UserRecord user{.id = "flag" + std::to_string(++flag_number), .name = "", .groups = {}};
      user.*flag = true;
      users[user.id] = user;
    }
    const auto sorted = ListOf(users);
    (*tables).SaveUsers({sorted.rbegin(), sorted.rend()}, {FirstAdministrator()});
    EXPECT_EQ((*tables).Users(), sorted);
    tags["12"].texts.clear();
    for (const auto& [tag, record] : tags) {
      (*tables).SaveTag({tag, {{"de", "replaced"}}}, {});
      (*tables).SaveTag(record, {{"de", "replaced"}});
    }
    EXPECT_EQ((*tables).Tags(), ListOf(tags));
  }
}

// Two people have read the same rows; one stores, then the other.
TEST(UsersAndTags, TakeWhatWasChangedAndRefuseWhatBothChanged) {
  using Edit = std::function<void(Users&)>;
  const auto name = [](const std::string& id, const std::string& to) -> Edit {
    return [id, to](Users& users) { users[id].id = id, users[id].name = to; };
  };
  const auto administers = [](const std::string& id, bool on) -> Edit {
    return [id, on](Users& users) { users[id].administrator = on; };
  };
  const Edit remove_ben = [](Users& users) { users.erase("ben"); };
  const struct {
    const char* name;
    Edit first, second;
    std::vector<std::string> conflicts = {};
  } cases[] = {{"different rows", name("ben", "B"), name("carl", "C")},
               {"the same in the same way", name("ben", "B"), name("ben", "B")},
               {"the same in two ways", name("ben", "B"), name("ben", "C"), {"ben"}},
               {"changed a removed one", remove_ben, name("ben", "C"), {"ben"}},
               {"removed a changed one", name("ben", "B"), remove_ben, {"ben"}},
               {"removed beside an added one", name("dora", "D"), remove_ben},
               {"added the same twice", name("dora", "D"), name("dora", "E"), {"dora"}},
               {"left each the other's administrator",
                administers("admin", false),
                administers("ben", false),
                {"ben"}}};
  for (const bool in_file : {false, true}) {
    for (const auto& test : cases) {
      SCOPED_TRACE(test.name);
      Tables tables(in_file);
      Users read{{"admin", FirstAdministrator()},
                 {"ben", {.id = "ben", .name = "", .administrator = true, .groups = {}}},
                 {"carl", {.id = "carl", .name = "", .groups = {}}}};
      (*tables).SaveUsers(ListOf(read), {FirstAdministrator()});
      Users first = read, second = read;
      test.first(first);
      test.second(second);
      (*tables).SaveUsers(ListOf(first), ListOf(read));
      std::vector<std::string> conflicts;
      try {
        (*tables).SaveUsers(ListOf(second), ListOf(read));
        test.second(first);
      } catch (const RowConflict& conflict) {
        conflicts = conflict.Rows();
      }
      EXPECT_EQ(conflicts, test.conflicts);
      EXPECT_EQ((*tables).Users(), ListOf(first));
    }
    Tables tables(in_file);
    const std::map<std::string, std::string> read{{"en", "a"}, {"fr", "b"}};
    (*tables).SaveTag({"t", read}, {});
    (*tables).SaveTag({"t", {{"en", "a2"}, {"fr", "b"}}}, read);
    (*tables).SaveTag({"t", {{"en", "a"}, {"de", "c"}}}, read);
    EXPECT_THROW((*tables).SaveTag({"t", {{"en", "a3"}}}, read), RowConflict);
    EXPECT_THROW((*tables).SaveTag({"t", {{"en", "new"}}}, {}), RowConflict);
    EXPECT_EQ((*tables).Tags(), std::vector{(TagRecord{"t", {{"de", "c"}, {"en", "a2"}}})});
  }
}

TEST(UsersAndTags, KeepAnAdministratorAndIdsApart) {
  const UserRecord admin = FirstAdministrator(), user{.id = "u", .name = "", .groups = {}},
                   nameless{.id = "", .name = "n", .groups = {}};
  const std::pair<std::vector<UserRecord>, std::string> cases[] = {
      {{}, "administrator"},
      {{user}, "administrator"},
      {{user, admin, user}, "\"u\""},
      {{admin, nameless}, "needs an id"},
  };
  for (const bool in_file : {false, true}) {
    Tables tables(in_file);
    for (const auto& [users, words] : cases) {
      const Failure failure = FailureOf([&] { (*tables).SaveUsers(users, {admin}); });
      EXPECT_EQ(failure.Number(), failure_number::kInvalidCall);
      EXPECT_NE(failure.Description().find(words), std::string::npos) << failure.Description();
      EXPECT_EQ((*tables).Users(), std::vector{admin});
    }
    EXPECT_EQ(FailureOf([&] {
                (*tables).SaveTag({"", {{"en", "x"}}}, {});
              }).Number(),
              failure_number::kInvalidCall);
    EXPECT_TRUE((*tables).Tags().empty());
  }
}

}  // namespace
}  // namespace plovix::test
