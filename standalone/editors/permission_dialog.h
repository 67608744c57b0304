// The editor of a permission set: which users and groups may view, run, edit and delete a task.
#pragma once

#include <plovix/standalone/tasks/permission_record.h>
#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/widgets/editor_dialog.h>

#include <optional>

class QTableWidget;
class QTableWidgetItem;

namespace plovix::app {

class AddField;

class PermissionDialog final : public EditorDialog {
 public:
  // Offers the users of `tables` and their groups; fails as Users() does. Subjects of the set that are
  // neither are shown as missing and stay until they are removed. Without a set, everybody may do what their
  // rights allow until somebody is added.
  PermissionDialog(const TextTable& texts, const std::string& title,
                   const std::optional<PermissionSet>& permissions, UsersAndTags& tables, QWidget* parent);

  // To be called before the dialog is shown: the set is read-only, and the dialog says why.
  void MakeReadOnly();

  [[nodiscard]] const PermissionSet& Permissions() const { return permissions_; }
  [[nodiscard]] bool Changed() const override;

  void accept() override;  // first adds what is typed in the field

 private:
  struct Subject {
    std::string id;
    bool is_group = false;
    QString text;
    [[nodiscard]] bool Is(const PermissionRecord& line) const {
      return id == line.subject && is_group == line.is_group;
    }
  };

  void ReadSubjects(UsersAndTags& tables);
  void BuildTable();
  [[nodiscard]] QString TextOf(const PermissionRecord& line) const;
  void AppendRow(const PermissionRecord& line);
  void ShowChecks(int row);
  void Toggled(const QTableWidgetItem& item);
  QString Add(const QString& text);
  void Remove();
  // Updates the choices and the description of the whole set.
  void Update();

  bool has_set_;
  bool read_only_ = false;
  PermissionSet initial_, permissions_;  // a row of the table for each line
  std::vector<Subject> subjects_;
  QTableWidget* table_;
  AddField* add_;
  QPushButton* remove_;
  QLabel *note_, *meaning_;
};

}  // namespace plovix::app
