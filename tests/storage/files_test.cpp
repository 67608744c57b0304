#include <gtest/gtest.h>
#include <plovix/standalone/storage/connection.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <optional>

#include "storage_support.h"

namespace plovix::test {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

TEST(Files, MayHaveAnyName) {
  const TempFolder folder;
  const std::string names[] = {
      "a?b=c&mode=memory", "a#b",         "100%41",         "it's \"quoted\"",
      " spaces ",          ":memory:",    "file:x?mode=ro", "\xC3\xA9\xF0\x9F\x98\x80",
      "semi;colon",        "back\\slash", "-dash"};
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const std::int64_t id = SqliteStorage(folder / name).Save(WholeTask("a"), kNow).id;
    EXPECT_TRUE(fs::is_regular_file(folder / name));
    EXPECT_TRUE(SqliteStorage(folder / name).Load(id).has_value());
  }
  EXPECT_EQ(folder.Bytes().size(), std::size(names));

  const fs::path former = fs::current_path();
  fs::current_path(folder / ".");
  EXPECT_EQ(SqliteStorage(":memory:").List().size(), 1U);
  EXPECT_TRUE(SqliteStorage("file:new?mode=memory").List().empty());
  EXPECT_TRUE(fs::exists("file:new?mode=memory"));
  fs::create_symlink("a#b", "link");
  EXPECT_EQ(SqliteStorage("link").List().size(), 1U);
  fs::current_path(former);
}

TEST(Files, TheDefaultFolderIsCreated) {
  const TempFolder folder;
  setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
  EXPECT_EQ(DefaultDatabasePath(), folder / "data/plovix/tasks.sqlite");
  EXPECT_TRUE(SqliteStorage(DefaultDatabasePath()).List().empty());
  EXPECT_TRUE(fs::exists(folder / "data/plovix/tasks.sqlite"));
  unsetenv("XDG_DATA_HOME");
}

// A user without special rights for as long as it lives, also where the tests run as root.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    constexpr uid_t kNobody = 65534;
    if (former_ == 0) {
      EXPECT_EQ(seteuid(kNobody), 0);
    }
  }
  ~OrdinaryUser() { EXPECT_EQ(seteuid(former_), 0); }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  uid_t former_ = geteuid();
};

// A task file whose last change is still in its log, as after a crash.
void LeaveLog(const std::string& path, const QString& change) {
  const std::string original = path + ".original";
  {
    SqliteStorage storage(original);
    storage.Save(WholeTask("a"), kNow);
    OtherProgram(original).Run(change);
    fs::copy_file(original, path);
    fs::copy_file(original + std::string(kLogSuffix), path + std::string(kLogSuffix));
  }
  fs::remove(original);
}

void ChangedBy(const std::string& path, const QString& sql) {
  SqliteStorage{path}.Save(WholeTask("a"), kNow);
  OtherProgram(path).Run(sql);
}

TEST(Files, ThatCannotBeUsedAreRefusedInWordsAndLeftAsTheyAre) {
  using enum std::filesystem::perms;
  const struct {
    std::string words;
    int number;
    std::function<void(const std::string& path)> make;
  } cases[] = {
      {"not a task file", 321, [](auto& path) { WriteFile(path, "Dear diary"); }},
      {"not a task file", 321, [](auto& path) { WriteFile(path, std::string(9000, '\xA5')); }},
      {"not a task file", 321,
       [](auto& path) { WriteFile(path, "SQLite format 3\0"s + std::string(4096, 'x')); }},
      {"damaged", 321,
       [](auto& path) {
         SqliteStorage{path}.Save(WholeTask("a"), kNow);
         fs::resize_file(path, 5000);
       }},
      {"another program's", 321, [](auto& path) { OtherProgram(path).Run("CREATE TABLE T (X)"); }},
      {"another program's", 321, [](auto& path) { OtherProgram(path).Run("PRAGMA application_id = 7"); }},
      {"another program's", 321, [](auto& path) { OtherProgram(path).Run("PRAGMA user_version = 1"); }},
      {"another program's", 321, [](auto& path) { ChangedBy(path, "PRAGMA application_id = 0"); }},
      {"another program's", 321, [](auto& path) { ChangedBy(path, "PRAGMA user_version = 0"); }},
      {"newer version", 321, [](auto& path) { ChangedBy(path, "PRAGMA user_version = 2"); }},
      {"newer version", 321, [](auto& path) { LeaveLog(path, "PRAGMA user_version = 99"); }},
      {"another program's", 321, [](auto& path) { LeaveLog(path, "PRAGMA application_id = 7"); }},
      {"folder, not", 75, [](auto& path) { fs::create_directory(path); }},
      {"no ordinary file", 75, [](auto& path) { mkfifo(path.c_str(), 0666); }},
      {"cannot be opened", 75, [](auto& path) { fs::create_symlink("/nowhere/file", path); }},
      {"may not read", 70,
       [](auto& path) {
         WriteFile(path, "");
         fs::permissions(path, none);
         fs::permissions(fs::path(path).parent_path(), all);
       }},
      {"write-protected", 70,
       [](auto& path) {
         SqliteStorage{path}.Save(WholeTask("a"), kNow);
         fs::permissions(path, owner_read | group_read | others_read);
         fs::permissions(fs::path(path).parent_path(), all);
       }},
      {"into the folder", 70,
       [](auto& path) {
         WriteFile(path, "");
         fs::permissions(path, all);
         fs::permissions(fs::path(path).parent_path(),
                         owner_read | owner_exec | group_read | group_exec | others_read | others_exec);
       }},
  };
  for (const auto& test : cases) {
    const TempFolder folder;
    const std::string path = folder / "tasks.sqlite";
    test.make(path);
    const auto before = folder.Bytes();
    try {
      std::optional<OrdinaryUser> user;
      if (test.number == 70) user.emplace();
      const SqliteStorage storage(path);
      ADD_FAILURE() << test.words;
    } catch (const Failure& failure) {
      EXPECT_NE(failure.Description().find(test.words), std::string::npos) << failure.Description();
      EXPECT_NE(failure.Description().find(fs::weakly_canonical(path)), std::string::npos)
          << failure.Description();
      EXPECT_EQ(failure.Number(), test.number) << test.words;
    }
    EXPECT_TRUE(folder.Bytes() == before) << test.words;
    fs::permissions(folder / ".", all);
  }
}

TEST(Files, NamesThatNoFileCanHaveAreRefused) {
  const TempFolder folder;
  for (const std::string& path : {""s, "a\0b"s, folder / "\xFF", folder / "no/such/folder/file"}) {
    EXPECT_THROW(SqliteStorage{path}, Failure);
  }
  EXPECT_TRUE(folder.Bytes().empty());
}

}  // namespace
}  // namespace plovix::test
