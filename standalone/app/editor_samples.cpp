#include "editor_samples.h"

#include <plovix/standalone/editors/category_dialog.h>
#include <plovix/standalone/editors/permission_dialog.h>
#include <plovix/standalone/editors/release_dialog.h>
#include <plovix/standalone/editors/tag_dialog.h>
#include <plovix/standalone/editors/tag_texts_dialog.h>
#include <plovix/standalone/editors/users_dialog.h>
#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/text/languages.h>

namespace plovix::app {
namespace {

void FillTables(MemoryUsersAndTags& tables) {
  tables.SaveUsers({{.id = "anna", .name = "Anna Berg", .administrator = true, .groups = {"Accounting"}},
                    {.id = "ben",
                     .name = "Ben Roux",
                     .groups = {"Accounting", "Sales"},
                     .edit_categories = true,
                     .create_personal = true},
                    {.id = "night", .name = "", .groups = {}}},
                   tables.Users());
  tables.SaveTag({"text.accounting", {{"en", "Accounting"}, {"fr", "Comptabilité"}}}, {});
  tables.SaveTag({"text.reports", {{"en", "Reports"}, {"fr", "Rapports"}}}, {});
  tables.SaveTag({"task.cleanup.name", {{"en", "Nightly clean-up"}}}, {});
  tables.SaveTag({"task.monthend.name", {{"en", "Month-end reports"}, {"fr", "Rapports de fin de mois"}}},
                 {});
}

using Save = std::function<void(QWidget& editor, const std::string& name)>;

void PictureRelease(const TextTable& texts, const Save& save) {
  TaskRecord imported;
  imported.actions = {{"run-program",
                       "",
                       1,
                       1,
                       {{"path", "/usr/local/bin/month-end"}, {"arguments", "--mail \"{address}\""}}},
                      {"run-sql", "", 1, 1, {{"statement", "DELETE FROM Drafts WHERE Closed = 1"}}}};
  ReleaseDialog release(texts, imported, "Month-end reports", nullptr);
  save(release, "Release");
}

}  // namespace

void PictureEditors(const TextTable& texts,
                    const std::function<void(QWidget& editor, const std::string& name)>& save) {
  MemoryUsersAndTags tables;
  FillTables(tables);
  const std::vector<CategoryRecord> categories = {
      {"Accounting", true}, {"Reports", true}, {"Drafts", false}, {"reports", true}};
  CategorySource source;
  source.known = {"Maintenance", "Sales"};
  source.text_of = [](const std::string& tag) { return tag; };
  CategoryDialog categories_editor(texts, categories, source, nullptr);
  categories_editor.accept();  // shows what is wrong: a text occurs twice
  save(categories_editor, "Categories");

  const PermissionSet permissions = {{.subject = "ben", .view = true, .run = true, .edit = true},
                                     {.subject = "Sales", .is_group = true, .view = true, .run = true},
                                     {.subject = "carla", .view = true}};
  PermissionDialog permissions_editor(texts, "Month-end reports", permissions, tables, nullptr);
  save(permissions_editor, "Permissions");
  PermissionDialog nobody(texts, "Month-end reports", {}, tables, nullptr);
  save(nobody, "PermissionsNobody");
  PermissionDialog read_only(texts, "Month-end reports", permissions, tables, nullptr);
  read_only.MakeReadOnly();
  save(read_only, "PermissionsReadOnly");

  TagDialog tags(texts, "task.monthend.name", {"text.reports"}, tables, LanguageCodes(), texts.code, nullptr);
  save(tags, "Tags");
  TagTextsDialog tag(
      texts, {}, tables, LanguageCodes(), texts.code, [](const std::string& /*name*/) { return false; },
      nullptr);
  tag.accept();  // shows what is missing
  save(tag, "TagTexts");

  PictureRelease(texts, save);

  UsersDialog users(texts, tables, "ben", nullptr);
  save(users, "Users");
  UsersDialog administrator(texts, tables, "anna", nullptr);
  save(administrator, "UsersAdministrator");
}

}  // namespace plovix::app
