// The query builder's choice between all records and those that match, with the groups of conditions. Used by
// the query builder dialog, which keeps it in step with the SQL text.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "query_group_widget.h"

class QRadioButton;
class QScrollArea;

namespace plovix::app {

class QueryRowsWidget final : public QWidget {
 public:
  // `texts` outlives it. Without fields, only "all records" is possible. `object` is the data object's name.
  QueryRowsWidget(const TextTable& texts, std::string object, std::vector<FieldRecord> fields);

  void Show(const QueryModel& model);
  // Chooses neither of the two.
  void ShowNothing();
  // Disabled if the rows do not define the query.
  void SetInUse(bool in_use);

  // The query of the rows; also "all records" if neither is chosen.
  [[nodiscard]] QueryModel Model() const;
  [[nodiscard]] bool IsInOrder() const;
  // Shows what is wrong in each row and goes to the first wrong one.
  void TellWhatIsWrong();
  [[nodiscard]] const std::vector<FieldRecord>& Fields() const { return fields_.records; }
  [[nodiscard]] std::vector<QWidget*> TabStops() const;

  std::function<void()> changed;  // by the user; set by the widget's owner

 private:
  void BuildChoice();
  void Choose(bool all_records);
  QueryGroupWidget* AddGroup(const Group& group, bool boxed);
  QueryGroupWidget* NewGroup(bool boxed);  // with a condition to fill in
  void GoToNewGroup(bool boxed);
  void Edited();
  void UpdateState();
  [[nodiscard]] std::vector<QueryConditionRow*> Rows() const;

  const TextTable& texts_;
  std::string object_;
  QueryFields fields_;
  QRadioButton *all_, *matching_;
  QComboBox* join_;
  QScrollArea* area_;
  QPushButton *add_condition_, *add_group_;
  MemberList<QueryGroupWidget> groups_;
  bool in_use_ = true;
};

}  // namespace plovix::app
