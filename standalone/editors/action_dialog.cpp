#include "action_dialog.h"

#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/entry_rules.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 48;
constexpr int kLinesOfText = 6;
constexpr int kLongestLine = 1 << 24;  // the default limit would cut stored text

}  // namespace

QString ActionDialog::Field::Value() const {
  return line != nullptr ? line->text() : text->toPlainText();
}

QWidget* ActionDialog::Field::Editor() const {
  return line != nullptr ? static_cast<QWidget*>(line) : static_cast<QWidget*>(text);
}

ActionDialog::ActionDialog(const TextTable& texts, const std::string& title,
                           const std::vector<const ActionKind*>& kinds, const ActionRecord& action,
                           QWidget* parent)
    : EditorDialog(texts, title, parent),
      initial_(action),
      action_(action),
      name_problem_(NewProblemLabel()) {
  form_ = new QFormLayout;
  form_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  Rows()->addLayout(form_);
  Rows()->addStretch();
  BuildKindChoice(kinds);
  name_ = new QLineEdit(ToQt(action.name));
  name_->setPlaceholderText(Text("action.edit.nameHint"));
  name_->setMinimumWidth(fontMetrics().averageCharWidth() * kCharactersWide);
  QLabel* label = qt::NewLabel(Text("action.edit.name"));
  label->setBuddy(name_);
  auto* column = new QVBoxLayout;
  column->addWidget(name_);
  column->addWidget(name_problem_);
  form_->addRow(label, column);
  BuildFields();
  AddOkAndCancel();
  ChainTabStops();
  (kinds.size() < 2 ? static_cast<QWidget*>(name_) : findChild<QComboBox*>())->setFocus();
}

void ActionDialog::BuildKindChoice(const std::vector<const ActionKind*>& kinds) {
  QLabel* label = qt::NewLabel(Text("action.edit.kind"));
  if (kinds.size() < 2) {
    const ActionKind* kind = FindActionKind(action_.kind);
    const QString what = kind != nullptr ? Text(kind->caption) : Text("action.list.unknown", {action_.kind});
    label->setText(Caption("action.edit.kind"));
    form_->addRow(label, qt::NewWrappedLabel(qt::Shortened(what, qt::kLongestShown)));
    return;
  }
  auto* choice = new QComboBox;
  for (const ActionKind* kind : kinds) {
    choice->addItem(Text(kind->caption));
    if (kind->id == action_.kind) choice->setCurrentIndex(choice->count() - 1);
  }
  connect(choice, &QComboBox::activated, this,
          [this, kinds](int index) { ChooseKind(*kinds.at(static_cast<std::size_t>(index))); });
  label->setBuddy(choice);
  form_->addRow(label, choice);
}

// New fields would otherwise come after the buttons.
void ActionDialog::ChainTabStops() {
  QWidget* last = name_;
  const auto chain = [&last](QWidget* next) {
    setTabOrder(last, next);
    last = next;
  };
  for (const Field& field : fields_) {
    chain(field.Editor());
    if (field.browse != nullptr) chain(field.browse);
  }
  chain(findChild<QDialogButtonBox*>());
}

// The entries for the former kind are kept, in case the user returns to it.
void ActionDialog::ChooseKind(const ActionKind& kind) {
  const ActionRecord former = Action();
  if (former.kind == kind.id) return;
  drafts_[former.kind] = former;
  const auto draft = drafts_.find(std::string(kind.id));
  action_ = draft != drafts_.end() ? draft->second : NewAction(kind);
  BuildFields();
  ChainTabStops();
}

void ActionDialog::BuildFields() {
  fields_.clear();
  if (field_area_ != nullptr) form_->removeRow(field_area_);
  field_area_ = new QWidget;
  auto* rows = new QFormLayout(field_area_);
  rows->setContentsMargins({});
  rows->setRowWrapPolicy(QFormLayout::WrapAllRows);
  rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form_->addRow(field_area_);
  const ActionKind* kind = FindActionKind(action_.kind);
  if (kind == nullptr) return;
  for (const ActionField& info : kind->fields) AddField(info);
}

void ActionDialog::AddField(const ActionField& info) {
  Field field{&info};
  const QString value = ToQt(action_.settings[std::string(info.key)]);
  auto* column = new QVBoxLayout;
  auto* line = new QHBoxLayout;
  if (info.type == ActionFieldType::kMultiLine) {
    field.text = new QPlainTextEdit(value);
    field.text->setTabChangesFocus(true);
    field.text->setMinimumHeight(fontMetrics().lineSpacing() * kLinesOfText);
  } else {
    field.line = new QLineEdit;
    field.line->setMaxLength(kLongestLine);
    field.line->setText(value);
  }
  line->addWidget(field.Editor());
  if (info.type == ActionFieldType::kFile || info.type == ActionFieldType::kFolder)
    field.browse = AddBrowseButton(field, line);
  field.problem = NewProblemLabel();
  column->addLayout(line);
  column->addWidget(field.problem);
  QLabel* label = qt::NewLabel(Text(info.caption));
  label->setBuddy(field.Editor());
  field.Editor()->setAccessibleName(Caption(info.caption));
  static_cast<QFormLayout*>(field_area_->layout())->addRow(label, column);
  fields_.push_back(field);
}

QPushButton* ActionDialog::AddBrowseButton(const Field& field, QLayout* line) {
  auto* browse = new QPushButton(Text("action.edit.browse"));
  browse->setAutoDefault(false);
  browse->setAccessibleName(Text("action.edit.browseFor", {FromQt(Caption(field.info->caption))}));
  connect(browse, &QPushButton::clicked, this, [this, field] { Browse(field); });
  line->addWidget(browse);
  return browse;
}

// The file need not exist yet: only the path is used, nothing is opened.
void ActionDialog::Browse(const Field& field) {
  const QString caption = Caption(field.info->caption);
  QFileDialog dialog(this, caption, field.line->text());
  dialog.setFileMode(field.info->type == ActionFieldType::kFolder ? QFileDialog::Directory
                                                                  : QFileDialog::AnyFile);
  dialog.setLabelText(QFileDialog::Accept, Text("button.ok"));
  if (const QString path = ChoosePath(dialog); !path.isEmpty()) field.line->setText(path);
}

ActionRecord ActionDialog::Action() const {
  ActionRecord action = action_;
  action.name = FromQt(name_->text());
  for (const Field& field : fields_) action.settings[std::string(field.info->key)] = FromQt(field.Value());
  return action;
}

void ActionDialog::accept() {
  TellProblem(*name_problem_, *name_, {});
  for (const Field& field : fields_) TellProblem(*field.problem, *field.Editor(), {});
  if (!CheckLengths()) return;
  const auto problem = CheckAction(Action());
  const auto wrong = std::ranges::find_if(
      fields_, [&](const Field& field) { return problem && field.info->key == problem->field; });
  if (wrong != fields_.end()) {
    ShowProblem(*wrong, Text(problem->text));
  } else if (!problem) {
    QDialog::accept();
  }
}

bool ActionDialog::CheckLengths() {
  const QString long_name = ToQt(LengthProblem(FromQt(name_->text()), kLongestName, Texts()));
  if (!long_name.isEmpty()) {
    TellProblem(*name_problem_, *name_, long_name);
    name_->setFocus();
    return false;
  }
  for (const Field& field : fields_) {
    const QString problem = ToQt(LengthProblem(FromQt(field.Value()), kLongestText, Texts()));
    if (problem.isEmpty()) continue;
    ShowProblem(field, problem);
    return false;
  }
  return true;
}

void ActionDialog::ShowProblem(const Field& field, const QString& problem) {
  TellProblem(*field.problem, *field.Editor(), problem);
  field.Editor()->setFocus();
  if (field.line != nullptr) field.line->selectAll();
}

}  // namespace plovix::app
