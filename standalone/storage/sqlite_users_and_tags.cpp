#include "sqlite_users_and_tags.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text_list_column.h"

namespace plovix {
namespace {

// The flags in the order of the statements below.
constexpr std::array kUserFlags{
    &UserRecord::administrator,   &UserRecord::edit_categories, &UserRecord::see_all_categories,
    &UserRecord::go_on_with_tags, &UserRecord::create_personal, &UserRecord::create_shared,
    &UserRecord::run_programs,
};
constexpr int kFirstFlag = 3;

constexpr std::string_view kSelectUsers =
    "SELECT Id, Name, GroupNames, Administrator, EditCategories, SeeAllCategories, GoOnWithTags, "
    "CreatePersonal, CreateShared, RunPrograms FROM VeloUsers ORDER BY Id";
constexpr std::string_view kInsertUser =
    "INSERT INTO VeloUsers (Id, Name, GroupNames, Administrator, EditCategories, SeeAllCategories, "
    "GoOnWithTags, CreatePersonal, CreateShared, RunPrograms) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

void InsertUser(Statement& insert, const UserRecord& user) {
  insert.BindText(0, user.id);
  insert.BindText(1, user.name);
  insert.BindText(2, EncodeTexts({user.groups.begin(), user.groups.end()}));
  int parameter = kFirstFlag;
  for (bool UserRecord::*const flag : kUserFlags) insert.BindInteger(parameter++, user.*flag ? 1 : 0);
  insert.Run();
}

std::vector<UserRecord> ReadUsers(const Connection& file) {
  std::vector<UserRecord> users;
  file.Prepare(kSelectUsers).ForEachRow([&](const Statement& row) {
    UserRecord& user = users.emplace_back();
    user.id = row.Text(0);
    user.name = row.Text(1);
    const auto groups = DecodeTexts(row.Text(2));
    if (!groups) {
      file.Refuse(failure_number::kInvalidFormat,
                  "the groups of the user \"" + user.id + "\" are unreadable");
    }
    user.groups = {groups->begin(), groups->end()};
    int column = kFirstFlag;
    for (bool UserRecord::*const flag : kUserFlags) user.*flag = row.Integer(column++) != 0;
  });
  return users;
}

std::vector<TagRecord> ReadTags(const Connection& file) {
  std::vector<TagRecord> tags;
  file.Prepare("SELECT Tag, Language, Text FROM VeloLanguageTags ORDER BY Tag")
      .ForEachRow([&](const Statement& row) {
        if (tags.empty() || tags.back().tag != row.Text(0)) tags.push_back({std::string(row.Text(0)), {}});
        if (row.Type(2) == ColumnType::kNull) return;
        tags.back().texts.emplace(row.Text(1), row.Text(2));
      });
  return tags;
}

std::map<std::string, std::string> ReadTexts(const Connection& file, std::string_view tag) {
  std::map<std::string, std::string> texts;
  Statement select =
      file.Prepare("SELECT Language, Text FROM VeloLanguageTags WHERE Tag = ? AND Text IS NOT NULL");
  select.BindText(0, tag);
  select.ForEachRow([&](const Statement& row) { texts.emplace(row.Text(0), row.Text(1)); });
  return texts;
}

void InsertTag(const Connection& file, const TagRecord& tag) {
  Statement insert = file.Prepare("INSERT INTO VeloLanguageTags (Tag, Language, Text) VALUES (?, ?, ?)");
  insert.BindText(0, tag.tag);
  if (tag.texts.empty()) {
    insert.BindText(1, "");
    insert.BindNull(2);
    return insert.Run();
  }
  for (const auto& [language, text] : tag.texts) {
    insert.BindText(1, language);
    insert.BindText(2, text);
    insert.Run();
  }
}

}  // namespace

SqliteUsersAndTags::SqliteUsersAndTags(const std::string& path, std::chrono::milliseconds patience)
    : file_(OpenTaskFile(path, patience)) {}

std::vector<UserRecord> SqliteUsersAndTags::Users() {
  return ReadUsers(*file_);
}

// The transaction keeps others from changing the stored rows during the merge.
void SqliteUsersAndTags::SaveUsers(const std::vector<UserRecord>& users,
                                   const std::vector<UserRecord>& read) {
  std::vector<UserRecord> merged;
  const auto body = [&] {
    merged = MergedUsers(users, read, Users());
    file_->Run("DELETE FROM VeloUsers");
    Statement insert = file_->Prepare(kInsertUser);
    for (const UserRecord& user : merged) InsertUser(insert, user);
  };
  file_->Write(body, [&] { return Users() == merged; });
}

std::vector<TagRecord> SqliteUsersAndTags::Tags() {
  return ReadTags(*file_);
}

void SqliteUsersAndTags::SaveTag(const TagRecord& tag, const std::map<std::string, std::string>& read_texts) {
  TagRecord merged;
  const auto body = [&] {
    merged = MergedTag(tag, read_texts, ReadTexts(*file_, tag.tag));
    Statement remove = file_->Prepare("DELETE FROM VeloLanguageTags WHERE Tag = ?");
    remove.BindText(0, tag.tag);
    remove.Run();
    InsertTag(*file_, merged);
  };
  file_->Write(body, [&] { return std::ranges::count(Tags(), merged) == 1; });
}

}  // namespace plovix
