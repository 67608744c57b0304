// The editor of the users and their rights.
#pragma once

#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/widgets/editor_dialog.h>

#include <array>
#include <string>
#include <vector>

class QCheckBox;
class QLineEdit;
class QListWidget;

namespace plovix::app {

class UsersDialog final : public EditorDialog {
 public:
  // `session_user` is the id of the program's current user. Fails as Users() does. `tables` outlives the
  // dialog.
  UsersDialog(const TextTable& texts, UsersAndTags& tables, std::string session_user, QWidget* parent);

  [[nodiscard]] bool Changed() const override { return lines_ != initial_; }

  // Stores all changes at once. Stays open if that fails, and if somebody else has meanwhile changed the same
  // users: this is reported, and the next OK overwrites their changes.
  void accept() override;

 private:
  struct Line {
    UserRecord user;
    bool stored = false;  // tasks and permissions refer to its id
    bool operator==(const Line&) const = default;
  };

  [[nodiscard]] QLayout* BuildList();
  [[nodiscard]] QLayout* BuildFields();
  [[nodiscard]] QLayout* BuildRights();
  void ShowLines(const std::string& id);
  void TakeOver(const std::vector<std::string>& conflicts);
  void Add();
  void Remove();
  void ShowUser();
  void ShowRights();
  void Edited();
  void AdministratorClicked(bool checked);
  [[nodiscard]] Line& Current();
  [[nodiscard]] bool IsLastAdministrator() const;
  // Why the id of a row is invalid; empty if it is valid.
  [[nodiscard]] QString UserProblem(int row) const;

  UsersAndTags& tables_;
  std::string session_user_;
  std::vector<Line> initial_, lines_;  // a row of the list for each
  QListWidget* list_;
  QLineEdit *id_, *name_, *groups_;
  QCheckBox* administrator_;
  std::array<QCheckBox*, 6> rights_{};
  QLabel *remove_problem_, *id_problem_, *id_note_, *administrator_problem_, *save_problem_;
};

}  // namespace plovix::app
