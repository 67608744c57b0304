#include "action_dialog.h"

#include <plovix/standalone/query/sql_template.h>
#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <algorithm>

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 48;
constexpr int kLinesOfText = 6;

}  // namespace

ActionDialog::ActionDialog(const TextTable& texts, const std::string& title,
                           const std::vector<const ActionKind*>& kinds, const ActionRecord& action,
                           QWidget* parent, std::optional<std::vector<FieldRecord>> fields)
    : EditorDialog(texts, title, parent),
      initial_(action),
      action_(action),
      known_fields_(std::move(fields)),
      name_(action.name, kLongestName) {
  form_ = new QFormLayout;
  form_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  Rows()->addLayout(form_);
  Rows()->addStretch();
  BuildKindChoice(kinds);
  QLineEdit* name = name_.Line();
  name->setPlaceholderText(Text("action.edit.nameHint"));
  name->setMinimumWidth(fontMetrics().averageCharWidth() * kCharactersWide);
  form_->addRow(NewCaption(Text("action.edit.name"), *name), NewColumn({name, name_.ProblemLabel()}));
  BuildFields();
  AddOkAndCancel();
  ChainTabStops();
  (kinds.size() < 2 ? static_cast<QWidget*>(name) : findChild<QComboBox*>())->setFocus();
}

void ActionDialog::BuildKindChoice(const std::vector<const ActionKind*>& kinds) {
  if (kinds.size() < 2) {
    const ActionKind* kind = FindActionKind(action_.kind);
    const QString what = kind != nullptr ? Text(kind->caption) : Text("action.list.unknown", {action_.kind});
    form_->addRow(qt::NewLabel(Caption("action.edit.kind")),
                  qt::NewWrappedLabel(qt::Shortened(what, qt::kLongestShown)));
    return;
  }
  auto* choice = new QComboBox;
  for (const ActionKind* kind : kinds) {
    choice->addItem(Text(kind->caption));
    if (kind->id == action_.kind) choice->setCurrentIndex(choice->count() - 1);
  }
  connect(choice, &QComboBox::activated, this,
          [this, kinds](int index) { ChooseKind(*kinds.at(static_cast<std::size_t>(index))); });
  form_->addRow(NewCaption(Text("action.edit.kind"), *choice), choice);
}

// New fields would otherwise come after the buttons.
void ActionDialog::ChainTabStops() {
  QWidget* last = name_.Editor();
  const auto chain = [&last](QWidget* next) {
    setTabOrder(last, next);
    last = next;
  };
  for (const Field& field : fields_) {
    chain(field.text.Editor());
    if (field.button != nullptr) chain(field.button);
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
  const bool is_path = info.type == ActionFieldType::kFile || info.type == ActionFieldType::kFolder;
  const int lines = info.type == ActionFieldType::kMultiLine ? kLinesOfText : 0;
  const TextField text(action_.settings[std::string(info.key)], kLongestText, lines);
  QHBoxLayout* line = NewRow({text.Editor()});
  QPushButton* button = is_path ? NewBrowseButton(info, text) : NewInsertButton(info, text);
  if (button != nullptr) line->addWidget(button, 0, Qt::AlignTop);
  auto* column = new QVBoxLayout;
  column->addLayout(line);
  column->addWidget(text.ProblemLabel());
  static_cast<QFormLayout*>(field_area_->layout())
      ->addRow(NewCaption(Text(info.caption), *text.Editor()), column);
  fields_.push_back({&info, text, button});
}

QPushButton* ActionDialog::NewBrowseButton(const ActionField& info, const TextField& text) {
  QPushButton* button =
      app::NewButton(Text("action.edit.browse"), [this, &info, text] { Browse(info, text); });
  button->setAccessibleName(Text("action.edit.browseFor", {FromQt(Caption(info.caption))}));
  return button;
}

// The menu also opens where the name is wanted, by a key.
QPushButton* ActionDialog::NewInsertButton(const ActionField& info, const TextField& text) {
  if (info.placeholders == Placeholders::kNone || !known_fields_ || known_fields_->empty()) return nullptr;
  auto* button = new QPushButton(Text("action.edit.insert"));
  button->setAutoDefault(false);
  button->setAccessibleName(Text("action.edit.insertFor", {FromQt(Caption(info.caption))}));
  button->setToolTip(qt::ToolTip(Text("action.edit.insertHint")));
  auto* menu = new QMenu(button);
  for (const FieldRecord& field : *known_fields_) {
    if (field.name.find_first_of("{}") != std::string::npos) continue;  // nothing would find it
    const QString name = qt::Shortened(ToQt(field.name), qt::kLongestShown);
    menu->addAction(QString(name).replace(u'&', QStringLiteral("&&")),
                    [text, inserted = ToQt("{" + field.name + "}")] { text.Insert(inserted); });
  }
  button->setMenu(menu);
  OnKey(*text.Editor(), QKeyCombination(Qt::CTRL, Qt::Key_Space), [button] { button->showMenu(); });
  return button;
}

// The file need not exist yet: only the path is used, nothing is opened.
void ActionDialog::Browse(const ActionField& info, const TextField& text) {
  QFileDialog dialog(this, Caption(info.caption), text.Text());
  dialog.setFileMode(info.type == ActionFieldType::kFolder ? QFileDialog::Directory : QFileDialog::AnyFile);
  dialog.setLabelText(QFileDialog::Accept, Text("button.ok"));
  if (const QString path = ChoosePath(dialog); !path.isEmpty()) text.SetText(path);
}

ActionRecord ActionDialog::Action() const {
  ActionRecord action = action_;
  action.name = FromQt(name_.Text());
  for (const Field& field : fields_)
    action.settings[std::string(field.info->key)] = FromQt(field.text.Text());
  return action;
}

void ActionDialog::accept() {
  name_.Tell({});
  for (const Field& field : fields_) field.text.Tell({});
  const auto is_short = [this](const TextField& text) { return text.Accepts(text.TooLong(Texts())); };
  if (!is_short(name_) || !std::ranges::all_of(fields_, is_short, &Field::text)) return;
  const auto problem = CheckStatementToo(Action(), known_fields_ ? &*known_fields_ : nullptr);
  if (!problem) return QDialog::accept();
  for (const Field& field : fields_) {
    if (field.info->key != problem->field) continue;
    (void)field.text.Accepts(Text(problem->text, {problem->parameter}));
    if (problem->length > 0) field.text.Select(problem->offset, problem->length);
  }
}

}  // namespace plovix::app
