#include "query_rows_widget.h"

#include <plovix/standalone/query/query_reader.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/accessibility.h>

#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyle>
#include <algorithm>

namespace plovix::app {
namespace {

constexpr int kRowsLines = 11;

}  // namespace

QueryRowsWidget::QueryRowsWidget(const TextTable& texts, std::string object, std::vector<FieldRecord> fields)
    : texts_(texts),
      object_(std::move(object)),
      fields_(std::move(fields)),
      all_(new QRadioButton(ToQt(texts.Host("query.all")))),
      matching_(new QRadioButton(ToQt(texts.Host("query.matching")))),
      join_(NewJoinChoice(texts, Join::kAll)),
      area_(new QScrollArea),
      add_condition_(NewButton(ToQt(texts.Host("query.add")), [this] { GoToNewGroup(false); })),
      add_group_(NewButton(ToQt(texts.Host("query.addGroup")), [this] { GoToNewGroup(true); })),
      groups_(*new QVBoxLayout) {
  qt::AnnounceAs(*this, QAccessible::Grouping);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins({});
  BuildChoice();
  auto* content = new QWidget;
  auto* outer = new QVBoxLayout(content);
  outer->addLayout(&groups_.Column());
  outer->addStretch();
  area_->setWidget(content);
  area_->setWidgetResizable(true);
  area_->setFocusPolicy(Qt::NoFocus);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area_->setMinimumHeight(fontMetrics().lineSpacing() * kRowsLines);
  rows->addWidget(area_, 1);
  rows->addLayout(NewRow({add_condition_, add_group_, nullptr}));
  UpdateState();
}

void QueryRowsWidget::BuildChoice() {
  auto* rows = static_cast<QVBoxLayout*>(layout());
  rows->addWidget(all_);
  rows->addLayout(NewRow({matching_, join_, nullptr}));
  qt::NameComboBox(*join_, ToQt(texts_.Host("query.name.join")));
  connect(all_, &QRadioButton::clicked, this, [this] { Choose(true); });
  connect(matching_, &QRadioButton::clicked, this, [this] { Choose(false); });
  connect(join_, &QComboBox::currentIndexChanged, this, [this] { Edited(); });
}

// The conditions stay, in case the user returns to them.
void QueryRowsWidget::Choose(bool all_records) {
  if (!all_records && groups_.All().empty()) NewGroup(false);
  Edited();
}

QueryGroupWidget* QueryRowsWidget::NewGroup(bool boxed) {
  return AddGroup({Join::kAny, {QueryConditionRow::NewCondition(fields_)}}, boxed);
}

void QueryRowsWidget::GoToNewGroup(bool boxed) {
  QueryGroupWidget* group = NewGroup(boxed);
  Edited();
  group->Rows().front()->TabStops().front()->setFocus();
  layout()->activate();
  area_->widget()->layout()->activate();
  area_->ensureWidgetVisible(group);
}

QueryGroupWidget* QueryRowsWidget::AddGroup(const Group& group, bool boxed) {
  auto* widget = new QueryGroupWidget(texts_, fields_, group, boxed);
  widget->changed = [this] { Edited(); };
  widget->removed = [this, widget] {
    groups_.Remove(widget, *add_condition_);
    Edited();
  };
  return groups_.Add(widget);
}

void QueryRowsWidget::Show(const QueryModel& model) {
  const QSignalBlocker quiet(join_);
  if (!model.groups.empty()) groups_.Clear();
  for (const Group& group : model.groups) AddGroup(group, group.conditions.size() > 1);
  join_->setCurrentIndex(model.outer == Join::kAll ? 0 : 1);
  (model.groups.empty() ? all_ : matching_)->setChecked(true);
  UpdateState();
}

void QueryRowsWidget::ShowNothing() {
  groups_.Clear();
  for (QRadioButton* button : {all_, matching_}) {
    button->setAutoExclusive(false);
    button->setChecked(false);
    button->setAutoExclusive(true);
  }
  UpdateState();
}

void QueryRowsWidget::SetInUse(bool in_use) {
  in_use_ = in_use;
  UpdateState();
}

void QueryRowsWidget::Edited() {
  UpdateState();
  if (changed) changed();
}

void QueryRowsWidget::UpdateState() {
  int number = 0;
  for (QueryConditionRow* row : Rows()) row->SetNumber(++number);
  const bool is_full = static_cast<std::size_t>(number) >= kMostConditions;
  number = 0;
  for (QueryGroupWidget* group : groups_.All()) group->SetNumber(++number);
  all_->setEnabled(in_use_);
  matching_->setEnabled(in_use_ && !fields_.records.empty());
  const bool has_rows = in_use_ && matching_->isChecked();
  join_->setEnabled(has_rows);
  area_->setEnabled(has_rows);
  for (QPushButton* button : {add_condition_, add_group_}) button->setEnabled(has_rows && !is_full);
  setFocusProxy(matching_->isChecked() ? matching_ : all_);
  // Wide enough that nobody has to scroll to the right for a button.
  area_->setMinimumWidth(area_->widget()->minimumSizeHint().width() + 2 * area_->frameWidth() +
                         style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

std::vector<QueryConditionRow*> QueryRowsWidget::Rows() const {
  std::vector<QueryConditionRow*> rows;
  for (const QueryGroupWidget* group : groups_.All())
    rows.insert(rows.end(), group->Rows().begin(), group->Rows().end());
  return rows;
}

QueryModel QueryRowsWidget::Model() const {
  QueryModel model{object_, Join::kAll, {}};
  if (!matching_->isChecked()) return model;
  model.outer = ChosenJoin(*join_);
  for (const QueryGroupWidget* group : groups_.All()) model.groups.push_back(group->Value());
  return model;
}

bool QueryRowsWidget::IsInOrder() const {
  return !matching_->isChecked() || std::ranges::all_of(Rows(), &QueryConditionRow::IsInOrder);
}

void QueryRowsWidget::TellWhatIsWrong() {
  const std::vector<QueryConditionRow*> rows = Rows();
  for (QueryConditionRow* row : rows) row->TellWhatIsWrong();
  const auto wrong = std::ranges::find_if_not(rows, &QueryConditionRow::IsInOrder);
  if (wrong == rows.end()) return;
  (*wrong)->FocusValue();
  area_->ensureWidgetVisible(*wrong);
}

std::vector<QWidget*> QueryRowsWidget::TabStops() const {
  std::vector<QWidget*> stops{all_, matching_, join_};
  groups_.AppendTabStops(stops);
  stops.insert(stops.end(), {add_condition_, add_group_});
  return stops;
}

}  // namespace plovix::app
