#include <memory>

#include "storage_support.h"

namespace plovix::test {
namespace {

using namespace std::string_literals;

// Both implementations; the file is opened anew for every use.
class Tables {
 public:
  explicit Tables(bool in_file) : in_file_(in_file) {}
  HostTables& operator*() {
    if (in_file_) tables_ = std::make_unique<SqliteHostTables>(folder_ / "tasks.sqlite");
    return *tables_;
  }

 private:
  TempFolder folder_;
  bool in_file_;
  std::unique_ptr<HostTables> tables_ = std::make_unique<MemoryHostTables>();
};

const std::string kOddTexts[] = {"it's \"x\""s, "a\0b"s, "\xFF\xC3\xD7\xA9 "s,   " \r\n"s, "[]"s, "12"s,
                                 "a"s,          "A"s,    std::string(1'000, 'x')};

TEST(HostTables, KeepUsersAndTagsOfAnyText) {
  for (const bool in_file : {false, true}) {
    Tables tables(in_file);
    EXPECT_EQ((*tables).Users(), std::vector{FirstAdministrator()});
    std::map<std::string, UserRecord> users{{"admin", FirstAdministrator()}};
    std::map<std::string, TagRecord> tags;
    for (const std::string& text : kOddTexts) {
      users[text] = {.id = text, .name = text, .groups = {text, "", "b"}};
      tags[text] = {text, {{"en", text}, {"fr", ""}, {text, "x"}}};
    }
    int flag_number = 0;
    for (bool UserRecord::*const flag :
         {&UserRecord::administrator, &UserRecord::edit_categories, &UserRecord::see_all_categories,
          &UserRecord::go_on_with_tags, &UserRecord::create_personal, &UserRecord::create_shared}) {
      UserRecord user{.id = "flag" + std::to_string(++flag_number), .name = "", .groups = {}};
      user.*flag = true;
      users[user.id] = user;
    }
    std::vector<UserRecord> sorted;
    for (const auto& [id, user] : users) sorted.push_back(user);
    (*tables).SaveUsers({sorted.rbegin(), sorted.rend()});
    EXPECT_EQ((*tables).Users(), sorted);
    tags["12"].texts.clear();
    for (const auto& [tag, record] : tags) {
      (*tables).SaveTag({tag, {{"de", "replaced"}}});
      (*tables).SaveTag(record);
    }
    std::vector<TagRecord> stored;
    for (const auto& [tag, record] : tags) stored.push_back(record);
    EXPECT_EQ((*tables).Tags(), stored);
  }
}

TEST(HostTables, KeepAnAdministratorAndIdsApart) {
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
      const Failure failure = FailureOf([&] { (*tables).SaveUsers(users); });
      EXPECT_EQ(failure.Number(), failure_number::kInvalidCall);
      EXPECT_NE(failure.Description().find(words), std::string::npos) << failure.Description();
      EXPECT_EQ((*tables).Users(), std::vector{admin});
    }
    EXPECT_EQ(FailureOf([&] {
                (*tables).SaveTag({"", {{"en", "x"}}});
              }).Number(),
              failure_number::kInvalidCall);
    EXPECT_TRUE((*tables).Tags().empty());
  }
}

}  // namespace
}  // namespace plovix::test
