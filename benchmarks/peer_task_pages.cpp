// The peer's pages of the task itself: its kind, its details, its records, its query and its actions.
#include <plovix/host/auto_task.h>
#include <plovix/standalone/tasks/action_kinds.h>

#include <QCheckBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimeEdit>
#include <array>
#include <utility>

#include "peer_page.h"

namespace plovix::peer {
namespace {

// Fetches its entries when it is opened.
class LazyComboBox final : public QComboBox {
 public:
  std::function<void()> fetch;
  void showPopup() override {
    if (fetch) std::exchange(fetch, nullptr)();
    QComboBox::showPopup();
  }
};

class TaskTypePage final : public Page {
 public:
  explicit TaskTypePage(TaskWizard& owner) : Page(owner, 6) {
    AddText(7);
    options_ = {AddOption(8, 9, "noData"), AddOption(115, 116, "singleRecord"),
                AddOption(10, 11, "queryResults")};
    lines_->addStretch();
  }
  void initializePage() override {
    if (owner_.task.record_mode == record_mode::kNoData) Choose(options_[0]);
    if (owner_.task.record_mode == record_mode::kSingleRecord) Choose(options_[1]);
    if (owner_.task.record_mode == record_mode::kQueryResults) Choose(options_[2]);
  }
  bool validatePage() override {
    owner_.task.record_mode = options_[0]->isChecked()   ? record_mode::kNoData
                              : options_[1]->isChecked() ? record_mode::kSingleRecord
                                                         : record_mode::kQueryResults;
    return true;
  }
  [[nodiscard]] int nextId() const override { return kDetails; }

 private:
  std::array<QRadioButton*, 3> options_{};
};

class DetailsPage final : public Page {
 public:
  explicit DetailsPage(TaskWizard& owner) : Page(owner, 19) {
    form_ = new QFormLayout;
    lines_->addLayout(form_);
    name_ = AddField(new QLineEdit, 20, "name");
    short_description_ = AddField(new QLineEdit, 123, "shortDescription");
    description_ = AddField(new QPlainTextEdit, 21, "");
    registerField("description", description_, "plainText", SIGNAL(textChanged()));
    description_->setTabChangesFocus(true);
    description_->setFixedHeight(4 * fontMetrics().lineSpacing());
    category_ = AddField(new QComboBox, 22, "");
    registerField("category", category_, "currentText", SIGNAL(currentTextChanged(QString)));
    category_->setEditable(true);
    category_->setInsertPolicy(QComboBox::NoInsert);
    category_->setCompleter(nullptr);
    label_->SetLink(true);
    label_->clicked = [this] { owner_.open_dialog("categories"); };
    data_object_ = AddField(new LazyComboBox, 23, "", false);
    registerField("dataObject", data_object_, "currentText", SIGNAL(currentTextChanged(QString)));
    AddSettings();
    permissions_ = new ClickLabel(Text(25));
    permissions_->SetLink(true);
    permissions_->clicked = [this] { owner_.open_dialog("permissions"); };
    lines_->addWidget(permissions_, 0, Qt::AlignLeft);
    lines_->addStretch();
    connect(name_, &QLineEdit::editingFinished, this, [this] {
      if (description_->toPlainText().isEmpty()) description_->setPlainText(name_->text());
    });
    connect(personal_, &QCheckBox::toggled, permissions_, [this](bool personal) {
      permissions_->SetLink(!personal);
      permissions_->setEnabled(!personal);
    });
    connect(automatic_, &QCheckBox::toggled, personal_, [this](bool automatic) {
      if (automatic) personal_->setChecked(false);
      personal_->setEnabled(!automatic);
    });
  }
  void initializePage() override {
    const TaskRecord& task = owner_.task;
    name_->setText(QString::fromStdString(task.name));
    short_description_->setText(QString::fromStdString(task.short_description));
    description_->setPlainText(QString::fromStdString(task.description));
    category_->clear();
    category_->addItems(owner_.categories);
    category_->setEditText(task.categories.empty() ? QString()
                                                   : QString::fromStdString(task.categories[0].tag));
    data_object_->clear();
    data_object_->addItem(QString::fromStdString(task.data_object_caption));
    data_object_->setEnabled(task.record_mode != record_mode::kNoData);
    data_object_->fetch = [this] {
      for (const QString& object : owner_.data_objects) {
        if (object != data_object_->itemText(0)) data_object_->addItem(object);
      }
    };
    skip_->setEnabled(task.record_mode == record_mode::kQueryResults);
    skip_->setChecked(task.skip_row_selection);
    automatic_->setEnabled(task.record_mode != record_mode::kSingleRecord);
    automatic_->setChecked(task.allow_automation_manager);
    personal_->setChecked(!task.owner.empty());
    name_->setFocus();
  }
  [[nodiscard]] bool validatePage() override {
    if (name_->text().trimmed().isEmpty()) return Refuse(27);
    if (description_->toPlainText().trimmed().isEmpty()) return Refuse(28);
    if (owner_.task.record_mode != record_mode::kNoData && data_object_->currentIndex() < 0)
      return Refuse(29);
    return true;
  }
  [[nodiscard]] int nextId() const override {
    const std::int16_t mode = owner_.task.record_mode;
    if (automatic_->isChecked()) return mode == record_mode::kNoData ? kTime : kRecords;
    return mode == record_mode::kQueryResults ? kQuery : kActions;
  }

 private:
  // A label, its field and the button that edits the field's translations, for tasks that have some.
  template <class Field>
  Field* AddField(Field* field, int text, const QString& name, bool translated = true) {
    label_ = new ClickLabel(Text(text));
    label_->setBuddy(field);
    auto* row = new QHBoxLayout;
    row->addWidget(field, 1);
    if (translated) {
      auto* button = new QPushButton("...");
      button->setAutoDefault(false);
      button->setAccessibleName(Text(text) + " ...");
      connect(button, &QPushButton::clicked, this, [this] { owner_.open_dialog("translations"); });
      row->addWidget(button);
      button->setVisible(owner_.task.uses_language_tags);
    }
    form_->addRow(label_, row);
    if (!name.isEmpty()) registerField(name, field);
    return field;
  }
  void AddSettings() {
    auto* settings = new QGroupBox(Text(118));
    auto* boxes = new QVBoxLayout(settings);
    skip_ = NewButton<QCheckBox>(121, "skipRowSelection");
    automatic_ = NewButton<QCheckBox>(119, "automatic");
    personal_ = NewButton<QCheckBox>(24, "personal");
    for (QCheckBox* box : {skip_, automatic_, personal_}) boxes->addWidget(box);
    lines_->addWidget(settings);
  }
  bool Refuse(int text) {
    QMessageBox::information(this, owner_.windowTitle(), Text(text));
    return false;
  }

  QFormLayout* form_;
  ClickLabel* label_ = nullptr;  // of the last field
  QLineEdit *name_, *short_description_;
  QPlainTextEdit* description_;
  QComboBox* category_;
  LazyComboBox* data_object_;
  QCheckBox *skip_ = nullptr, *automatic_ = nullptr, *personal_ = nullptr;
  ClickLabel* permissions_;
};

class RecordsPage final : public Page {
 public:
  explicit RecordsPage(TaskWizard& owner) : Page(owner, 61) {
    AddText(62);
    modes_ = {NewButton<QRadioButton>(63, "once"), NewButton<QRadioButton>(64, "modified"),
              NewButton<QRadioButton>(65, "everyTime")};
    all_ = NewButton<QCheckBox>(66, "allRecords");
    failed_ = NewButton<QCheckBox>(67, "failedRecords");
    since_ = NewButton<QCheckBox>(68, "since");
    for (QRadioButton* mode : modes_) lines_->addWidget(mode);
    for (QCheckBox* box : {all_, failed_, since_}) lines_->addWidget(box);
    date_ = new QDateEdit;
    date_->setTimeSpec(Qt::UTC);
    date_->setCalendarPopup(true);
    date_->setDisplayFormat("dd/MM/yyyy");
    time_ = new QTimeEdit;
    time_->setTimeSpec(Qt::UTC);
    time_->setDisplayFormat("HH:mm");
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->addRow(Text(69), date_);
    form->addRow(Text(70), time_);
    lines_->addLayout(form);
    lines_->addStretch();
    registerField("sinceDate", date_);
    registerField("sinceTime", time_);
    connect(all_, &QCheckBox::toggled, failed_, &QWidget::setDisabled);
    for (QWidget* part : std::initializer_list<QWidget*>{date_, time_}) {
      part->setEnabled(false);
      connect(since_, &QCheckBox::toggled, part, &QWidget::setEnabled);
    }
  }
  void initializePage() override {
    const TaskRecord& task = owner_.task;
    Choose(modes_.at(static_cast<std::size_t>(task.processing_mode)));
    all_->setChecked(task.process_all_records);
    failed_->setChecked(task.process_failed_records);
    since_->setChecked(task.base_date != kZeroDate);
    date_->setDateTime(QDateTime::currentDateTimeUtc());
    time_->setDateTime(date_->dateTime());
    if (since_->isChecked()) {
      date_->setDateTime(QDateTime::fromSecsSinceEpoch(task.base_date.time_since_epoch().count(), Qt::UTC));
      time_->setDateTime(date_->dateTime());
    }
  }
  [[nodiscard]] int nextId() const override { return kTime; }

 private:
  std::array<QRadioButton*, 3> modes_{};  // by processing mode
  QCheckBox *all_, *failed_, *since_;
  QDateEdit* date_;
  QTimeEdit* time_;
};

class QueryPage final : public Page {
 public:
  explicit QueryPage(TaskWizard& owner) : Page(owner, 59) {
    query_ = new QPlainTextEdit;
    query_->setTabChangesFocus(true);
    query_->setAccessibleName(Text(59));
    registerField("query", query_, "plainText", SIGNAL(textChanged()));
    lines_->addWidget(query_, 1);
    auto* build = new QPushButton(Text(60));
    build->setAutoDefault(false);
    connect(build, &QPushButton::clicked, this, [this] { owner_.open_dialog("query"); });
    lines_->addWidget(build, 0, Qt::AlignLeft);
  }
  void initializePage() override {
    query_->setPlainText(QString::fromStdString(owner_.task.query));
    query_->setFocus();
  }
  [[nodiscard]] int nextId() const override { return kActions; }

 private:
  QPlainTextEdit* query_;
};

class ActionsPage final : public Page {
 public:
  explicit ActionsPage(TaskWizard& owner) : Page(owner, 3), rows_(new QListWidget), hint_(new QLabel) {
    auto* columns = new QHBoxLayout;
    lines_->addLayout(columns, 1);
    auto* left = new QVBoxLayout;
    left->addWidget(rows_);
    left->addWidget(hint_);
    columns->addLayout(left, 1);
    buttons_ = new QVBoxLayout;
    columns->addLayout(buttons_);
    hint_->setWordWrap(true);
    hint_->setText(HostText("action.list.empty"));
    rows_->setAccessibleName(HostText("action.list.name"));
    rows_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    rows_->setTextElideMode(Qt::ElideRight);
    rows_->setSpacing(fontMetrics().lineSpacing() / 8);
    AddButton("action.list.add", [this] { owner_.open_dialog("action"); });
    edit_ = AddButton("action.list.edit", [this] { owner_.open_dialog("action"); });
    remove_ = AddButton("action.list.remove", [this] {
      owner_.task.actions.erase(owner_.task.actions.begin() + rows_->currentRow());
      Redraw(rows_->currentRow());
    });
    up_ = AddButton("action.list.up", [this] { Move(-1); });
    down_ = AddButton("action.list.down", [this] { Move(1); });
    buttons_->addStretch();
    connect(rows_, &QListWidget::itemSelectionChanged, this, &ActionsPage::UpdateButtons);
  }
  void initializePage() override {
    Redraw(0);
    rows_->setFocus();
  }
  [[nodiscard]] int nextId() const override { return -1; }

 private:
  [[nodiscard]] QString HostText(std::string_view key) const {
    return QString::fromStdString(owner_.texts.Host(key));
  }
  template <class Slot>
  QPushButton* AddButton(std::string_view text, Slot slot) {
    auto* button = new QPushButton(HostText(text));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, slot);
    buttons_->addWidget(button);
    return button;
  }
  void Redraw(int row) {
    rows_->clear();
    for (const ActionRecord& action : owner_.task.actions) {
      const ActionKind* kind = FindActionKind(action.kind);
      const std::string& setting = action.settings.at(std::string(kind->fields.front().key));
      auto* item = new QListWidgetItem(
          QString::fromStdString(
              owner_.texts.Host("action.list.row", {owner_.texts.Host(kind->caption), setting}))
              .simplified(),
          rows_);
      item->setToolTip(item->text());
    }
    hint_->setVisible(owner_.task.actions.empty());
    rows_->setCurrentRow(std::min(row, rows_->count() - 1));
    UpdateButtons();
  }
  void Move(int step) {
    const int row = rows_->currentRow();
    std::swap(owner_.task.actions.at(static_cast<std::size_t>(row)),
              owner_.task.actions.at(static_cast<std::size_t>(row + step)));
    Redraw(row + step);
  }
  void UpdateButtons() {
    const int row = rows_->currentRow();
    edit_->setEnabled(row >= 0);
    remove_->setEnabled(row >= 0);
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < rows_->count());
  }

  QListWidget* rows_;
  QLabel* hint_;
  QVBoxLayout* buttons_;
  QPushButton *edit_, *remove_, *up_, *down_;
};

}  // namespace

QWizardPage* NewTaskPage(TaskWizard& owner, PageId id) {
  if (id == kTaskType) return new TaskTypePage(owner);
  if (id == kDetails) return new DetailsPage(owner);
  if (id == kRecords) return new RecordsPage(owner);
  if (id == kQuery) return new QueryPage(owner);
  return id == kActions ? new ActionsPage(owner) : nullptr;
}

}  // namespace plovix::peer
