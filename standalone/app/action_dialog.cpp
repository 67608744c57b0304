#include "action_dialog.h"

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

#include "qt_dialogs.h"
#include "qt_text.h"

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 48;
constexpr int kLinesOfText = 6;

QString WithoutMnemonic(QString caption) {
  return caption.remove(u'&');
}

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
    : QDialog(parent), texts_(texts), initial_(action), action_(action) {
  setWindowTitle(ToQt(title));
  auto* layout = new QVBoxLayout(this);
  form_ = new QFormLayout;
  form_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  layout->addLayout(form_);
  layout->addStretch();
  BuildKindChoice(kinds);
  name_ = new QLineEdit(ToQt(action.name));
  name_->setPlaceholderText(Text("action.edit.nameHint"));
  name_->setMinimumWidth(fontMetrics().averageCharWidth() * kCharactersWide);
  form_->addRow(Text("action.edit.name"), name_);
  BuildFields();
  BuildButtons();
}

void ActionDialog::BuildKindChoice(const std::vector<const ActionKind*>& kinds) {
  if (kinds.size() < 2) {
    const ActionKind* kind = FindActionKind(action_.kind);
    form_->addRow(WithoutMnemonic(Text("action.edit.kind")),
                  new QLabel(kind != nullptr ? Text(kind->caption)
                                             : ToQt(texts_.Host("action.list.unknown", {action_.kind}))));
    return;
  }
  auto* choice = new QComboBox;
  for (const ActionKind* kind : kinds) {
    choice->addItem(Text(kind->caption));
    if (kind->id == action_.kind) choice->setCurrentIndex(choice->count() - 1);
  }
  connect(choice, &QComboBox::activated, this,
          [this, kinds](int index) { ChooseKind(*kinds.at(static_cast<std::size_t>(index))); });
  form_->addRow(Text("action.edit.kind"), choice);
}

void ActionDialog::BuildButtons() {
  auto* buttons = new QDialogButtonBox;
  layout()->addWidget(buttons);  // first: only a dialog's child can become its default button
  ok_ = buttons->addButton(Text("button.ok"), QDialogButtonBox::AcceptRole);
  cancel_ = buttons->addButton(Text("button.cancel"), QDialogButtonBox::RejectRole);
  cancel_->setAutoDefault(false);  // Enter in a field means OK, wherever the focus has been
  ok_->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &ActionDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &ActionDialog::reject);
  ChainTabStops();
}

// Fields made anew would otherwise come behind the buttons.
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
  chain(ok_);
  chain(cancel_);
}

// What was typed for the former kind is kept, in case the user comes back to it.
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
    field.line = new QLineEdit(value);
  }
  line->addWidget(field.Editor());
  if (info.type == ActionFieldType::kFile || info.type == ActionFieldType::kFolder)
    field.browse = AddBrowseButton(field, line);
  field.problem = new QLabel;
  field.problem->setTextFormat(Qt::PlainText);
  field.problem->setWordWrap(true);
  QFont bold = field.problem->font();
  bold.setBold(true);
  field.problem->setFont(bold);
  field.problem->hide();
  column->addLayout(line);
  column->addWidget(field.problem);
  auto* label = new QLabel(Text(info.caption));
  label->setBuddy(field.Editor());
  field.Editor()->setAccessibleName(WithoutMnemonic(Text(info.caption)));
  static_cast<QFormLayout*>(field_area_->layout())->addRow(label, column);
  fields_.push_back(field);
}

QPushButton* ActionDialog::AddBrowseButton(const Field& field, QLayout* line) {
  auto* browse = new QPushButton(Text("action.edit.browse"));
  browse->setAutoDefault(false);
  browse->setAccessibleName(
      ToQt(texts_.Host("action.edit.browseFor", {FromQt(WithoutMnemonic(Text(field.info->caption)))})));
  connect(browse, &QPushButton::clicked, this, [this, field] { Browse(field); });
  line->addWidget(browse);
  return browse;
}

// A file may be one that does not exist yet: the path is only taken, nothing is opened.
void ActionDialog::Browse(const Field& field) {
  const QString caption = WithoutMnemonic(Text(field.info->caption));
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
  for (const Field& field : fields_) field.problem->hide();
  if (const auto problem = CheckAction(Action())) {
    ShowProblem(*problem);
    return;
  }
  QDialog::accept();
}

void ActionDialog::ShowProblem(const ActionProblem& problem) {
  for (const Field& field : fields_) {
    if (field.info->key != problem.field) continue;
    field.problem->setText(Text(problem.text));
    field.problem->show();
    field.Editor()->setAccessibleDescription(Text(problem.text));
    field.Editor()->setFocus();
    if (field.line != nullptr) field.line->selectAll();
  }
  layout()->activate();
  resize(size().expandedTo(QSize(width(), layout()->totalHeightForWidth(width()))));
}

void ActionDialog::reject() {
  if (Action() != initial_ && !IsSure(texts_, FromQt(windowTitle()), DiscardQuestion(texts_), this)) return;
  QDialog::reject();
}

QString ActionDialog::Text(std::string_view key) const {
  return ToQt(texts_.Host(key));
}

}  // namespace plovix::app
