#include "qt_dialogs.h"

#include <plovix/standalone/editors/category_dialog.h>
#include <plovix/standalone/editors/permission_dialog.h>
#include <plovix/standalone/editors/tag_dialog.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/query_builder/query_builder_dialog.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/widgets/message_boxes.h>

#include <QApplication>

namespace plovix::app {

int QtDialogs::MessageBox(const std::string& prompt, int buttons, const std::string& title) {
  return Ask(*MakeMessageBox(texts_, prompt, buttons, title));
}

ReportAction QtDialogs::Report(const FailureReport& report) {
  return static_cast<ReportAction>(Ask(*MakeReportBox(texts_, report)));
}

std::optional<std::string> QtDialogs::EditTag(const std::string& tag,
                                              const std::vector<std::string>& choices) {
  TagDialog dialog(texts_, tag, choices, *tables_, LanguageCodes(), texts_.code,
                   QApplication::activeWindow());
  const bool accepted = dialog.exec() == QDialog::Accepted;
  ReadTags(state_, *tables_, texts_.code);  // edited tags are stored, whatever was chosen
  return accepted ? std::optional(dialog.Tag()) : std::nullopt;
}

std::optional<std::vector<CategoryRecord>> QtDialogs::EditCategories(
    const std::vector<CategoryRecord>& categories, bool tagged, const std::vector<std::string>& known) {
  const CategorySource source{
      .tagged = tagged,
      .known = known,
      .text_of = [this](const std::string& tag) { return state_.TagText(tag); },
      .tag_for_text = [this](const std::string& tag,
                             const std::string& text) { return state_.TagForText(tag, text); },
      .edit_tag = [this](const std::string& tag,
                         const std::vector<std::string>& choices) { return EditTag(tag, choices); }};
  CategoryDialog dialog(texts_, categories, source, QApplication::activeWindow());
  if (dialog.exec() != QDialog::Accepted || dialog.Categories() == categories) return std::nullopt;
  return dialog.Categories();
}

std::optional<std::string> QtDialogs::BuildQuery(const std::string& text, const DataObjectRecord& object) {
  QueryBuilderDialog dialog(texts_, *state_.data, object, text,
                            {.path = data_, .reads_hidden = MayReadHidden(state_)},
                            QApplication::activeWindow());
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.Query();
}

// A task without a set keeps none as long as nobody is added, because an empty set would lock everybody out.
std::optional<PermissionSet> QtDialogs::EditPermissions(const std::optional<PermissionSet>& permissions,
                                                        const std::string& title) {
  PermissionDialog dialog(texts_, title, permissions, *tables_, QApplication::activeWindow());
  if (state_.permissions_locked) dialog.MakeReadOnly();
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  if (!permissions && dialog.Permissions().empty()) return std::nullopt;
  return dialog.Permissions();
}

}  // namespace plovix::app
