#include "users_dialog.h"

#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/text_field.h>

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "user_text.h"

namespace plovix::app {
namespace {

struct Right {
  bool UserRecord::*granted;
  const char* caption;
};
constexpr std::array<Right, 6> kUserRights = {{{&UserRecord::edit_categories, "user.editCategories"},
                                               {&UserRecord::see_all_categories, "user.seeAllCategories"},
                                               {&UserRecord::go_on_with_tags, "user.goOnWithTags"},
                                               {&UserRecord::create_personal, "user.createPersonal"},
                                               {&UserRecord::create_shared, "user.createShared"},
                                               {&UserRecord::run_programs, "user.runPrograms"}}};
constexpr int kListWide = 30;  // characters
constexpr int kFieldWide = 44;

std::set<std::string> ReadGroups(const QString& text) {
  std::set<std::string> groups;
  for (const QString& group : text.split(u',')) {
    if (!group.trimmed().isEmpty()) groups.insert(FromQt(group.trimmed()));
  }
  return groups;
}

template <class Lines>
std::vector<UserRecord> UsersOf(const Lines& lines) {
  std::vector<UserRecord> users;
  users.reserve(lines.size());
  for (const auto& line : lines) users.push_back(line.user);
  return users;
}

}  // namespace

UsersDialog::UsersDialog(const TextTable& texts, UsersAndTags& tables, std::string session_user,
                         QWidget* parent)
    : EditorDialog(texts, texts.Host("user.title"), parent),
      tables_(tables),
      session_user_(std::move(session_user)),
      list_(new QListWidget),
      id_(new QLineEdit),
      name_(new QLineEdit),
      groups_(new QLineEdit),
      administrator_(new QCheckBox(Text("user.administrator"))),
      remove_problem_(NewProblemLabel()),
      id_problem_(NewProblemLabel()),
      id_note_(NewNote("user.idStays")),
      administrator_problem_(NewProblemLabel()),
      save_problem_(NewProblemLabel()) {
  for (const UserRecord& user : tables_.Users()) initial_.push_back({user, true});
  lines_ = initial_;
  auto* columns = new QHBoxLayout;
  columns->addLayout(BuildList(), 1);
  columns->addLayout(BuildFields(), 2);
  Rows()->addLayout(columns, 1);
  Rows()->addWidget(save_problem_);
  AddOkAndCancel();
  ShowLines(session_user_);
}

void UsersDialog::ShowLines(const std::string& id) {
  {
    const QSignalBlocker quiet(list_);  // the rows and the lines agree again below
    list_->clear();
    for (const Line& line : lines_)
      list_->addItem(qt::Shortened(UserText(Texts(), line.user), qt::kLongestShown));
    const auto chosen = std::ranges::find(lines_, id, [](const Line& line) { return line.user.id; });
    list_->setCurrentRow(chosen == lines_.end() ? 0 : static_cast<int>(chosen - lines_.begin()));
  }
  ShowUser();
}

QLayout* UsersDialog::BuildList() {
  list_->setAccessibleName(Text("user.list"));
  list_->setMinimumWidth(fontMetrics().averageCharWidth() * kListWide);
  list_->setSpacing(fontMetrics().lineSpacing() / 8);
  OnKey(*list_, Qt::Key_Delete, [this] { Remove(); });
  connect(list_, &QListWidget::currentRowChanged, this, &UsersDialog::ShowUser);
  QVBoxLayout* column = NewColumn({list_});
  column->addLayout(
      NewRow({NewButton("user.add", [this] { Add(); }), NewButton("user.remove", [this] { Remove(); })}));
  column->addWidget(remove_problem_);
  return column;
}

QLayout* UsersDialog::BuildFields() {
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  const auto add = [&](std::string_view key, QLineEdit* field, QLayout* content) {
    form->addRow(NewCaption(Text(key), *field), content);
    connect(field, &QLineEdit::textEdited, this, &UsersDialog::Edited);
  };
  id_->setMinimumWidth(fontMetrics().averageCharWidth() * kFieldWide);
  name_->setPlaceholderText(Text("user.nameHint"));
  groups_->setPlaceholderText(Text("user.groupsHint"));
  add("user.id", id_, NewColumn({id_, id_problem_, id_note_}));
  add("user.name", name_, NewColumn({name_}));
  add("user.groups", groups_, NewColumn({groups_}));
  form->addRow(BuildRights());
  connect(administrator_, &QCheckBox::clicked, this, &UsersDialog::AdministratorClicked);
  return form;
}

QLayout* UsersDialog::BuildRights() {
  auto* group = new QGroupBox(Text("user.rights"));
  auto* column = new QVBoxLayout(group);
  for (std::size_t i = 0; i < kUserRights.size(); ++i) {
    rights_.at(i) = new QCheckBox(Text(kUserRights.at(i).caption));
    column->addWidget(rights_.at(i));
    connect(rights_.at(i), &QCheckBox::clicked, this, &UsersDialog::Edited);
  }
  return NewColumn({administrator_, administrator_problem_, group});
}

UsersDialog::Line& UsersDialog::Current() {
  return lines_.at(static_cast<std::size_t>(list_->currentRow()));
}

bool UsersDialog::IsLastAdministrator() const {
  const auto administrators =
      std::ranges::count_if(lines_, [](const Line& line) { return line.user.administrator; });
  return administrators == 1 && lines_.at(static_cast<std::size_t>(list_->currentRow())).user.administrator;
}

void UsersDialog::Add() {
  lines_.emplace_back();
  list_->addItem(Text("user.new"));
  list_->setCurrentRow(list_->count() - 1);
  id_->setFocus();
}

void UsersDialog::Remove() {
  const int row = list_->currentRow();
  if (row < 0) return;
  const bool self = Current().stored && Current().user.id == session_user_;
  if (self || IsLastAdministrator()) {
    TellProblem(*remove_problem_, *list_, Text(self ? "user.problem.self" : "user.problem.last"));
    return;
  }
  lines_.erase(lines_.begin() + row);
  {
    const QSignalBlocker quiet(list_);  // the rows and the lines agree again below
    delete list_->takeItem(row);
  }
  ShowUser();
}

void UsersDialog::ShowUser() {
  TellProblem(*remove_problem_, *list_, {});
  TellProblem(*administrator_problem_, *administrator_, {});
  TellProblem(*id_problem_, *id_, {});
  if (list_->currentRow() < 0) return;
  const Line& line = Current();
  id_->setText(ToQt(line.user.id));
  id_->setReadOnly(line.stored);
  id_note_->setText(line.stored ? Text("user.idStays") : Text("user.idNote"));
  name_->setText(ToQt(line.user.name));
  groups_->setText(Joined(line.user.groups, ToQt));
  administrator_->setChecked(line.user.administrator);
  ShowRights();
}

void UsersDialog::ShowRights() {
  const UserRecord& user = Current().user;
  for (std::size_t i = 0; i < kUserRights.size(); ++i) {
    rights_.at(i)->setEnabled(!user.administrator);
    rights_.at(i)->setChecked(user.administrator || user.*kUserRights.at(i).granted);
  }
}

void UsersDialog::Edited() {
  Line& line = Current();
  if (!line.stored) line.user.id = FromQt(id_->text().trimmed());
  line.user.name = FromQt(name_->text().trimmed());
  line.user.groups = ReadGroups(groups_->text());
  line.user.administrator = administrator_->isChecked();
  for (std::size_t i = 0; i < kUserRights.size(); ++i) {
    // An administrator's own rights are kept while all boxes are checked.
    if (rights_.at(i)->isEnabled()) line.user.*kUserRights.at(i).granted = rights_.at(i)->isChecked();
  }
  list_->currentItem()->setText(qt::Shortened(
      line.user.id.empty() ? Text("user.new") : UserText(Texts(), line.user), qt::kLongestShown));
  TellProblem(*id_problem_, *id_, line.user.id.empty() ? QString() : UserProblem(list_->currentRow()));
}

void UsersDialog::AdministratorClicked(bool checked) {
  const bool refused = !checked && IsLastAdministrator();
  if (refused) administrator_->setChecked(true);
  TellProblem(*administrator_problem_, *administrator_, refused ? Text("user.problem.last") : QString());
  Edited();
  ShowRights();
}

QString UsersDialog::UserProblem(int row) const {
  const UserRecord& user = lines_.at(static_cast<std::size_t>(row)).user;
  const std::string& id = user.id;
  if (id.empty()) return Text("user.problem.id");
  const auto same = std::ranges::count(lines_, id, [](const Line& line) { return line.user.id; });
  if (same > 1) return Text("user.problem.taken");
  std::vector<std::string> names{id, user.name};
  names.insert(names.end(), user.groups.begin(), user.groups.end());
  for (const std::string& name : names) {
    const std::string problem = LengthProblem(name, kLongestName, Texts());
    if (!problem.empty()) return ToQt(problem);
  }
  return {};
}

void UsersDialog::accept() {
  for (int row = static_cast<int>(lines_.size()) - 1; row >= 0; --row) {  // new users come last
    const QString problem = UserProblem(row);
    if (problem.isEmpty()) continue;
    list_->setCurrentRow(row);
    TellProblem(*id_problem_, *id_, problem);
    id_->setFocus();
    id_->selectAll();
    return;
  }
  const auto save = [this] { tables_.SaveUsers(UsersOf(lines_), UsersOf(initial_)); };
  const auto conflict = [this](const auto& ids) { TakeOver(ids); };
  if (!Changed() || TryToStore("user.failed", *save_problem_, save, conflict)) QDialog::accept();
}

// From now on, entries are compared with what others have stored. Their other changes appear, those of the
// same users are reported, and what was entered here stays.
void UsersDialog::TakeOver(const std::vector<std::string>& conflicts) {
  const auto stored = UsersById(tables_.Users());
  const auto merged = MergeRows(UsersById(UsersOf(initial_)), UsersById(UsersOf(lines_)), stored).rows;
  initial_.clear();
  lines_.clear();
  for (const auto& [id, user] : stored) initial_.push_back({user, true});
  for (const auto& [id, user] : merged) lines_.push_back({user, stored.contains(id)});
  ShowLines(conflicts.front());
  TellProblem(*save_problem_, *this, Text("user.conflict", {FromQt(Joined(conflicts, ToQt))}));
}

}  // namespace plovix::app
