#include "query_group_widget.h"

#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/accessibility.h>

#include <QComboBox>
#include <QPushButton>

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
    : texts_(texts), fields_(fields), column_(new QVBoxLayout(this)), rows_(*column_) {
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
  join_ = NewJoinChoice(texts_, join);
  add_ = NewButton(ToQt(texts_.Host("query.group.add")), [this] {
    QueryConditionRow* row = AddRow(QueryConditionRow::NewCondition(fields_));
    changed();
    row->TabStops().front()->setFocus();
  });
  remove_ = NewButton(ToQt(texts_.Host("query.group.remove")), [this] { removed(); });
  column_->addLayout(NewRow({join_, nullptr, add_, remove_}));
  connect(join_, &QComboBox::currentIndexChanged, this, [this] { changed(); });
}

QueryConditionRow* QueryGroupWidget::AddRow(const Condition& condition) {
  auto* row = new QueryConditionRow(texts_, fields_, condition);
  row->changed = [this] { changed(); };
  row->removed = [this, row] { RemoveRow(row); };
  return rows_.Add(row);
}

void QueryGroupWidget::RemoveRow(QueryConditionRow* row) {
  if (Rows().size() == 1) return removed();
  rows_.Remove(row, *this);
  changed();
}

Group QueryGroupWidget::Value() const {
  Group group{join_ != nullptr ? ChosenJoin(*join_) : Join::kAll, {}};
  for (const QueryConditionRow* row : Rows()) group.conditions.push_back(row->Value());
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
  rows_.AppendTabStops(stops);
  return stops;
}

}  // namespace plovix::app
