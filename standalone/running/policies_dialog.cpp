#include "policies_dialog.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTimeZone>
#include <algorithm>
#include <array>
#include <limits>

namespace plovix::app {
namespace {

using std::chrono::seconds;

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kPoliciesWide = 110;
constexpr int kPoliciesHigh = 44;

// The entries of the limit's box, behind "none".
constexpr std::array kLimitUnits{seconds{1}, seconds{std::chrono::minutes{1}},
                                 seconds{std::chrono::hours{1}}};

// The largest unit that gives the limit whole, as an entry of the box; 0: none.
int LimitEntry(seconds limit) {
  int entry = limit > seconds{0} ? 1 : 0;
  for (std::size_t unit = 1; entry > 0 && unit < kLimitUnits.size(); ++unit)
    if (limit % kLimitUnits.at(unit) == seconds{0}) entry = static_cast<int>(unit) + 1;
  return entry;
}

int LimitNumber(seconds limit) {
  const int entry = LimitEntry(limit);
  if (entry == 0) return 1;
  return static_cast<int>(
      std::min<std::int64_t>(limit / kLimitUnits.at(static_cast<std::size_t>(entry) - 1), kMost));
}

TaskPolicies ReadPolicies(const RunParts& parts, std::int64_t task) {
  const auto state = parts.runs.State(task);
  if (!state) throw Failure(failure_number::kInvalidCall, "the task is no longer there");
  return state->policies;
}

template <class Enum>
Enum ChosenIn(const QComboBox& box) {
  return static_cast<Enum>(box.currentIndex());
}

// What `mine` changed of `base`; of the rest, `theirs`.
TaskPolicies Merged(const TaskPolicies& mine, const TaskPolicies& base, const TaskPolicies& theirs) {
  TaskPolicies merged = theirs;
  const auto take = [&](auto member) {
    if (mine.*member != base.*member) merged.*member = mine.*member;
  };
  take(&TaskPolicies::missed);
  take(&TaskPolicies::missed_count);
  take(&TaskPolicies::overlap);
  take(&TaskPolicies::retries);
  take(&TaskPolicies::interrupted);
  take(&TaskPolicies::short_month);
  take(&TaskPolicies::limit);
  return merged;
}

}  // namespace

PoliciesDialog::PoliciesDialog(RunParts parts, std::int64_t task, QWidget* parent)
    : EditorDialog(parts.texts, parts.texts.Host("policies.title", {parts.name(task).value_or("")}), parent),
      parts_(std::move(parts)),
      task_(task),
      stored_(ReadPolicies(parts_, task)),
      missed_count_(NewNumber("policies.missedCount", 1, kMost)),
      retries_(NewNumber("policies.retries", 0, kMost)),
      limit_number_(NewNumber("policies.limitNumber", 1, kMost)) {
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  Rows()->addWidget(NewNote("policies.note"));
  Rows()->addLayout(form);
  AddChoices(*form);
  AddZone(*form);
  Rows()->addStretch();
  problem_ = NewProblemLabel();
  Rows()->addWidget(problem_);
  AddOkAndCancel();
  Show(stored_);
  if (!parts_.may(task_, TaskRight::kEdit)) MakeReadOnly();
  missed_.box->setFocus();
  ResizeToText(*this, font(), kPoliciesWide, kPoliciesHigh);
}

void PoliciesDialog::AddChoices(QFormLayout& form) {
  missed_ = AddChoice(
      form, "policies.missed", {"policies.missed.once", "policies.missed.none", "policies.missed.all"},
      {"policies.missed.onceNote", "policies.missed.noneNote", "policies.missed.allNote"}, missed_count_);
  overlap_ = AddChoice(form, "policies.overlap", {"policies.overlap.skip", "policies.overlap.queue"},
                       {"policies.overlap.skipNote", "policies.overlap.queueNote"});
  AddRetries(form);
  interrupted_ =
      AddChoice(form, "policies.interrupted", {"policies.interrupted.repeat", "policies.interrupted.leave"},
                {"policies.interrupted.repeatNote", "policies.interrupted.leaveNote"});
  short_month_ =
      AddChoice(form, "policies.shortMonth", {"policies.shortMonth.last", "policies.shortMonth.skip"},
                {"policies.shortMonth.lastNote", "policies.shortMonth.skipNote"});
  limit_ = AddChoice(
      form, "policies.limit",
      {"policies.limit.none", "policies.limit.seconds", "policies.limit.minutes", "policies.limit.hours"},
      {"policies.limit.noneNote", "policies.limit.note", "policies.limit.note", "policies.limit.note"},
      limit_number_);
}

QSpinBox* PoliciesDialog::NewNumber(const char* name, int least, int most) {
  auto* number = new QSpinBox;
  number->setObjectName(name);
  number->setRange(least, most);
  number->setMaximumWidth(number->fontMetrics().averageCharWidth() * 16);
  connect(number, &QSpinBox::valueChanged, this, [this] { ShowNotes(); });
  return number;
}

PoliciesDialog::Choice PoliciesDialog::AddChoice(QFormLayout& form, const char* caption,
                                                 const std::vector<const char*>& entries,
                                                 const std::vector<const char*>& notes, QSpinBox* number) {
  const Choice choice{new QComboBox, qt::NewWrappedLabel(), notes};
  choice.box->setObjectName(caption);
  choice.box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  for (const char* entry : entries) choice.box->addItem(Text(entry));
  connect(choice.box, &QComboBox::currentIndexChanged, this, [this] { ShowNotes(); });
  QHBoxLayout* row = NewRow({choice.box});
  row->setStretch(0, 1);
  if (number != nullptr) row->addWidget(number);
  auto* column = new QVBoxLayout;
  column->addLayout(row);
  column->addWidget(choice.note);
  form.addRow(NewCaption(Text(caption), *choice.box), column);
  return choice;
}

void PoliciesDialog::AddRetries(QFormLayout& form) {
  retries_note_ = qt::NewWrappedLabel();
  QVBoxLayout* column = NewColumn({retries_, retries_note_});
  column->setAlignment(retries_, Qt::AlignLeft);
  form.addRow(NewCaption(Text("policies.retries"), *retries_), column);
}

// Whoever may not change it sees it.
void PoliciesDialog::AddZone(QFormLayout& form) {
  const QString name = qt::Shortened(ToQt(parts_.zone.Name()), qt::kLongestShown);
  if (!parts_.set_zone) {
    form.addRow(qt::NewLabel(Caption("policies.zone")),
                NewColumn({qt::NewWrappedLabel(name), NewNote("policies.zoneOfAll")}));
    return;
  }
  zone_problem_ = NewProblemLabel();
  zone_ = new QComboBox;
  zone_->setObjectName("policies.zone");
  zone_->setEditable(true);
  zone_->setInsertPolicy(QComboBox::NoInsert);
  zone_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  for (const QByteArray& id : QTimeZone::availableTimeZoneIds()) zone_->addItem(QString::fromUtf8(id));
  zone_->setCurrentText(name);
  zone_->completer()->setFilterMode(Qt::MatchContains);
  zone_->completer()->setCompletionMode(QCompleter::PopupCompletion);
  zone_->lineEdit()->setAccessibleName(Caption("policies.zone"));
  form.addRow(NewCaption(Text("policies.zone"), *zone_),
              NewColumn({zone_, zone_problem_, NewNote("policies.zoneOfAll")}));
}

// OK and Cancel then mean the same, so there is only one button.
void PoliciesDialog::MakeReadOnly() {
  read_only_ = true;
  auto* why = NewNote("policies.mayNotChange");
  setAccessibleDescription(why->text());
  Rows()->insertWidget(0, why);
  for (QWidget* field :
       std::initializer_list<QWidget*>{missed_.box, missed_count_, overlap_.box, retries_, interrupted_.box,
                                       short_month_.box, limit_.box, limit_number_})
    field->setEnabled(false);
  if (zone_ != nullptr) zone_->setEnabled(false);
  HideCancel();
}

void PoliciesDialog::Show(const TaskPolicies& policies) {
  missed_.box->setCurrentIndex(static_cast<int>(policies.missed));
  missed_count_->setValue(policies.missed_count);
  overlap_.box->setCurrentIndex(static_cast<int>(policies.overlap));
  retries_->setValue(policies.retries);
  interrupted_.box->setCurrentIndex(static_cast<int>(policies.interrupted));
  short_month_.box->setCurrentIndex(static_cast<int>(policies.short_month));
  limit_.box->setCurrentIndex(LimitEntry(policies.limit));
  limit_number_->setValue(LimitNumber(policies.limit));
  ShowNotes();
}

void PoliciesDialog::ShowNotes() {
  if (limit_.box == nullptr || problem_ == nullptr) return;  // not all is there yet
  const auto show = [this](const Choice& choice, const std::string& number = {}) {
    choice.note->setText(
        Text(choice.notes.at(static_cast<std::size_t>(choice.box->currentIndex())), {number}));
    choice.box->setAccessibleDescription(choice.note->text());
  };
  show(missed_, std::to_string(missed_count_->value()));
  show(overlap_);
  show(interrupted_);
  show(short_month_);
  show(limit_);
  missed_count_->setVisible(ChosenIn<MissedPolicy>(*missed_.box) == MissedPolicy::kAll);
  limit_number_->setVisible(limit_.box->currentIndex() > 0);
  missed_count_->setAccessibleName(Caption("policies.missedCount"));
  limit_number_->setAccessibleName(Caption("policies.limitNumber"));
  const int retries = retries_->value();
  retries_note_->setText(retries == 0 ? Text("policies.retriesNone")
                                      : Text("policies.retriesNote", {std::to_string(retries)}));
  retries_->setAccessibleDescription(retries_note_->text());
}

TaskPolicies PoliciesDialog::Policies() const {
  TaskPolicies policies = stored_;
  policies.missed = ChosenIn<MissedPolicy>(*missed_.box);
  policies.missed_count = missed_count_->value();
  policies.overlap = ChosenIn<OverlapPolicy>(*overlap_.box);
  policies.retries = retries_->value();
  policies.interrupted = ChosenIn<InterruptedPolicy>(*interrupted_.box);
  policies.short_month = ChosenIn<ShortMonth>(*short_month_.box);
  const int entry = limit_.box->currentIndex();
  // A limit beyond what the field can show stays as long as the field does.
  if (entry == 0)
    policies.limit = seconds{0};
  else if (entry != LimitEntry(stored_.limit) || limit_number_->value() != LimitNumber(stored_.limit))
    policies.limit = kLimitUnits.at(static_cast<std::size_t>(entry) - 1) * limit_number_->value();
  return policies;
}

std::string PoliciesDialog::ZoneName() const {
  return zone_ == nullptr ? parts_.zone.Name() : FromQt(zone_->currentText().trimmed());
}

bool PoliciesDialog::Changed() const {
  return !read_only_ && (Policies() != stored_ || ZoneName() != parts_.zone.Name());
}

bool PoliciesDialog::CheckZone() {
  if (zone_ == nullptr) return true;
  const bool known = ZoneName() == parts_.zone.Name() || Zone::Named(ZoneName()).has_value();
  TellProblem(*zone_problem_, *zone_, known ? QString() : Text("policies.problem.zone"));
  if (!known) zone_->setFocus();
  return known;
}

bool PoliciesDialog::CheckStored() {
  const TaskPolicies now = ReadPolicies(parts_, task_);
  if (now == stored_) return true;
  const TaskPolicies merged = Merged(Policies(), stored_, now);
  stored_ = now;
  Show(merged);
  TellProblem(*problem_, *missed_.box, Text("policies.conflict"));
  return false;
}

void PoliciesDialog::accept() {
  if (!Changed()) return QDialog::accept();
  if (!CheckZone()) return;
  bool stored = false;
  const bool tried = Try("policies.failed", *problem_, [&] {
    if (!CheckStored()) return;
    if (Policies() != stored_) parts_.control.SetPolicies(task_, Policies());
    if (ZoneName() != parts_.zone.Name()) parts_.set_zone(ZoneName());
    stored = true;
  });
  if (tried && stored) QDialog::accept();
}

}  // namespace plovix::app
