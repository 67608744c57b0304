// A group of conditions of the query builder: in its own box, or a single condition without a box. Used by
// the builder's list of groups.
#pragma once

#include <QFrame>
#include <functional>
#include <vector>

#include "member_list.h"
#include "query_condition_row.h"

namespace plovix::app {

// A choice of "all" and "any".
[[nodiscard]] QComboBox* NewJoinChoice(const TextTable& texts, Join join);
[[nodiscard]] Join ChosenJoin(const QComboBox& choice);

class QueryGroupWidget final : public QFrame {
 public:
  // `texts` and `fields` outlive it; `group` has at least one condition.
  QueryGroupWidget(const TextTable& texts, QueryFields& fields, const Group& group, bool boxed);

  [[nodiscard]] Group Value() const;
  [[nodiscard]] const std::vector<QueryConditionRow*>& Rows() const { return rows_.All(); }
  // Counted from 1.
  void SetNumber(int number);
  [[nodiscard]] std::vector<QWidget*> TabStops() const;

  // Set by the group's owner. `removed`: it has no conditions any more, or the user removed it.
  std::function<void()> changed, removed;

 private:
  void BuildHeader(Join join);
  QueryConditionRow* AddRow(const Condition& condition);
  void RemoveRow(QueryConditionRow* row);

  const TextTable& texts_;
  QueryFields& fields_;
  QBoxLayout* column_;
  QComboBox* join_ = nullptr;  // only with a box, like the buttons
  QPushButton *add_ = nullptr, *remove_ = nullptr;
  MemberList<QueryConditionRow> rows_;
};

}  // namespace plovix::app
