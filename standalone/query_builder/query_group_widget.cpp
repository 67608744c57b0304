#include "query_group_widget.h"

#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/accessibility.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <algorithm>

namespace plovix::app {

QComboBox* NewJoinChoice(const TextTable& texts, Join join) {
  auto* choice = new QComboBox;
  choice->addItem(ToQt(texts.Host("query.join.all")));
  choice->addItem(ToQt(texts.Host("query.join.any")));
  choice->setCurrentIndex(join == Join::kAll ? 0 : 1);
  return choice;
}

Join ChosenJoin(const QComboBox& choice) {
  return choice.currentIndex() == 0 ? Join::kAll : Join::kAny;
}

QueryGroupWidget::QueryGroupWidget(const TextTable& texts, QueryFields& fields, const Group& group,
                                   bool boxed)
    : texts_(texts), fields_(fields), column_(new QVBoxLayout(this)) {
  if (boxed) {
    qt::AnnounceAs(*this, QAccessible::Grouping);
    setFrameShape(QFrame::StyledPanel);
    BuildHeader(group.inner);
  } else {
    column_->setContentsMargins({});
  }
  for (const Condition& condition : group.conditions) AddRow(condition);
}

void QueryGroupWidget::BuildHeader(Join join) {
  const auto button = [this](std::string_view key) {
    auto* made = new QPushButton(ToQt(texts_.Host(key)));
    made->setAutoDefault(false);
    return made;
  };
  join_ = NewJoinChoice(texts_, join);
  add_ = button("query.group.add");
  remove_ = button("query.group.remove");
  auto* line = new QHBoxLayout;
  line->addWidget(join_);
  line->addStretch();
  line->addWidget(add_);
  line->addWidget(remove_);
  column_->addLayout(line);
  connect(join_, &QComboBox::currentIndexChanged, this, [this] { changed(); });
  connect(remove_, &QPushButton::clicked, this, [this] { removed(); });
  connect(add_, &QPushButton::clicked, this, [this] {
    QueryConditionRow* row = AddRow(QueryConditionRow::NewCondition(fields_));
    changed();
    row->TabStops().front()->setFocus();
  });
}

QueryConditionRow* QueryGroupWidget::AddRow(const Condition& condition) {
  auto* row = new QueryConditionRow(texts_, fields_, condition);
  row->changed = [this] { changed(); };
  row->removed = [this, row] { RemoveRow(row); };
  rows_.push_back(row);
  column_->addWidget(row);
  row->show();  // at once, because it will take the focus
  return row;
}

// The row is running its own button's signal, so it is deleted later.
void QueryGroupWidget::RemoveRow(QueryConditionRow* row) {
  if (rows_.size() == 1) return removed();
  const auto found = std::ranges::find(rows_, row);
  const auto next = rows_.erase(found);
  row->hide();
  row->deleteLater();
  (next == rows_.end() ? rows_.back() : *next)->TabStops().back()->setFocus();
  changed();
}

Group QueryGroupWidget::Value() const {
  Group group{join_ != nullptr ? ChosenJoin(*join_) : Join::kAll, {}};
  for (const QueryConditionRow* row : rows_) group.conditions.push_back(row->Value());
  return group;
}

void QueryGroupWidget::SetNumber(int number) {
  const std::vector<std::string> parameter{std::to_string(number)};
  if (join_ == nullptr) return;
  setAccessibleName(ToQt(texts_.Host("query.name.group", parameter)));
  qt::NameComboBox(*join_, accessibleName());
  add_->setAccessibleName(ToQt(texts_.Host("query.name.addToGroup", parameter)));
  remove_->setAccessibleName(ToQt(texts_.Host("query.name.removeGroup", parameter)));
}

std::vector<QWidget*> QueryGroupWidget::TabStops() const {
  std::vector<QWidget*> stops;
  if (join_ != nullptr) stops = {join_, add_, remove_};
  for (const QueryConditionRow* row : rows_) {
    const std::vector<QWidget*> more = row->TabStops();
    stops.insert(stops.end(), more.begin(), more.end());
  }
  return stops;
}

}  // namespace plovix::app
