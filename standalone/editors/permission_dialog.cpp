#include "permission_dialog.h"

#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/tables.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <algorithm>
#include <array>

#include "add_field.h"
#include "user_text.h"

namespace plovix::app {
namespace {

constexpr std::array kRights = {&PermissionRecord::view, &PermissionRecord::run, &PermissionRecord::edit,
                                &PermissionRecord::erase};
constexpr int kView = 1;  // column; the other rights follow
constexpr int kPermissionsWide = 80;
constexpr int kPermissionsHigh = 22;

}  // namespace

PermissionDialog::PermissionDialog(const TextTable& texts, const std::string& title,
                                   const std::optional<PermissionSet>& permissions, UsersAndTags& tables,
                                   QWidget* parent)
    : EditorDialog(texts, title, parent),
      has_set_(permissions.has_value()),
      initial_(permissions.value_or(PermissionSet())),
      permissions_(initial_),
      table_(new QTableWidget),
      add_(new AddField(Text("permission.addLabel"), Text("permission.add"),
                        [this](const QString& text) { return Add(text); })),
      remove_(NewButton("permission.remove", [this] { Remove(); })),
      note_(NewNote("permission.note")),
      meaning_(NewNote("permission.nobody")) {
  Rows()->addWidget(table_, 1);
  auto* below = new QHBoxLayout;
  below->addWidget(add_, 1);
  below->addWidget(remove_, 0, Qt::AlignTop);
  Rows()->addLayout(below);
  Rows()->addWidget(note_);
  Rows()->addWidget(meaning_);
  AddOkAndCancel();
  ReadSubjects(tables);
  BuildTable();
  for (const PermissionRecord& line : permissions_) AppendRow(line);
  table_->setCurrentCell(0, kView);
  if (permissions_.empty()) add_->setFocus();
  Update();
  ResizeToText(*this, font(), kPermissionsWide, kPermissionsHigh);
}

// OK and Cancel then mean the same, so there is only one button.
void PermissionDialog::MakeReadOnly() {
  read_only_ = true;
  const QSignalBlocker quiet(table_);
  for (int row = 0; row < table_->rowCount(); ++row) {
    for (int column = kView; column < table_->columnCount(); ++column)
      table_->item(row, column)->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  }
  auto* why = NewNote("rights.mayNotChangeAccess");
  setAccessibleDescription(why->text());
  Rows()->insertWidget(0, why);
  for (QWidget* editing : std::initializer_list<QWidget*>{add_, remove_, note_}) editing->hide();
  HideCancel();
  table_->setFocus();
}

void PermissionDialog::ReadSubjects(UsersAndTags& tables) {
  std::set<std::string> groups;
  for (const UserRecord& user : tables.Users()) {
    subjects_.push_back({user.id, false, UserText(Texts(), user)});
    groups.insert(user.groups.begin(), user.groups.end());
  }
  for (const std::string& group : groups)
    subjects_.push_back({group, true, Text("permission.group", {group})});
}

void PermissionDialog::BuildTable() {
  PrepareTable(*table_, {Text("permission.column.subject"), Text("permission.column.view"),
                         Text("permission.column.run"), Text("permission.column.edit"),
                         Text("permission.column.delete")});
  table_->setAccessibleName(qt::TitleOf(*this));
  OnKey(*table_, Qt::Key_Delete, [this] { Remove(); });
  connect(table_, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem* item) { Toggled(*item); });
}

QString PermissionDialog::TextOf(const PermissionRecord& line) const {
  for (const Subject& subject : subjects_) {
    if (subject.Is(line)) return subject.text;
  }
  return Text(line.is_group ? "permission.missingGroup" : "permission.missingUser", {line.subject});
}

void PermissionDialog::AppendRow(const PermissionRecord& line) {
  const QSignalBlocker quiet(table_);
  const int row = table_->rowCount();
  table_->insertRow(row);
  QTableWidgetItem* who = NewCell(TextOf(line));
  who->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  table_->setItem(row, 0, who);
  for (int column = kView; column < table_->columnCount(); ++column) {
    table_->setItem(row, column, NewCheckCell(table_->horizontalHeaderItem(column)->text(), false));
  }
  ShowChecks(row);
  table_->setCurrentCell(row, kView);
}

void PermissionDialog::ShowChecks(int row) {
  const QSignalBlocker quiet(table_);
  const PermissionRecord& line = permissions_.at(static_cast<std::size_t>(row));
  for (std::size_t i = 0; i < kRights.size(); ++i) {
    table_->item(row, kView + static_cast<int>(i))
        ->setCheckState(line.*kRights.at(i) ? Qt::Checked : Qt::Unchecked);
  }
  table_->viewport()->update();  // the view was not notified
}

// Running, editing and deleting require viewing.
void PermissionDialog::Toggled(const QTableWidgetItem& item) {
  if (item.column() < kView) return;
  PermissionRecord& line = permissions_.at(static_cast<std::size_t>(item.row()));
  const bool granted = item.checkState() == Qt::Checked;
  line.*kRights.at(static_cast<std::size_t>(item.column() - kView)) = granted;
  if (item.column() != kView && granted) line.view = true;
  if (item.column() == kView && !granted) line.run = line.edit = line.erase = false;
  ShowChecks(item.row());
  Update();
}

QString PermissionDialog::Add(const QString& text) {
  const std::string wanted = Folded(text);
  const auto found = std::ranges::find_if(subjects_, [&wanted](const Subject& subject) {
    return Folded(subject.text) == wanted || FoldCase(subject.id) == wanted;
  });
  if (found == subjects_.end()) {
    return text.isEmpty() ? Text("permission.problem.missing")
                          : Text("permission.problem.unknown", {FromQt(text)});
  }
  for (const PermissionRecord& line : permissions_) {
    if (found->Is(line)) return Text("permission.problem.twice", {FromQt(found->text)});
  }
  permissions_.push_back({.subject = found->id, .is_group = found->is_group, .view = true});
  AppendRow(permissions_.back());
  Update();
  return {};
}

void PermissionDialog::Remove() {
  const int row = table_->currentRow();
  if (row < 0 || read_only_) return;
  permissions_.erase(permissions_.begin() + row);
  table_->removeRow(row);
  Update();
}

void PermissionDialog::Update() {
  QStringList choices;
  for (const Subject& subject : subjects_) {
    if (std::ranges::none_of(permissions_, [&](const auto& line) { return subject.Is(line); }))
      choices += subject.text;
  }
  add_->SetChoices(choices);
  const bool anybody = std::ranges::any_of(permissions_, [](const PermissionRecord& line) {
    return std::ranges::any_of(kRights, [&](auto right) { return line.*right; });
  });
  const bool unrestricted = !has_set_ && permissions_.empty();
  meaning_->setText(Text(anybody        ? "permission.others"
                         : unrestricted ? "permission.none"
                                        : "permission.nobody"));
  EnableBeside(*table_, *remove_, !permissions_.empty());
}

bool PermissionDialog::Changed() const {
  return permissions_ != initial_ || !add_->IsEmpty();
}

void PermissionDialog::accept() {
  if (add_->IsEmpty() || add_->Commit()) QDialog::accept();
}

}  // namespace plovix::app
