// The widgets that stand one below the other in a part of the query builder: conditions in a group, groups in
// the list. Each says by `removed` that it is to go.
#pragma once

#include <QBoxLayout>
#include <QWidget>
#include <algorithm>
#include <vector>

namespace plovix::app {

// Member: a widget with TabStops(), its button for removal last.
template <class Member>
class MemberList final {
 public:
  // The layout outlives the list.
  explicit MemberList(QBoxLayout& column) : column_(column) {}

  [[nodiscard]] QBoxLayout& Column() const { return column_; }
  [[nodiscard]] const std::vector<Member*>& All() const { return members_; }

  Member* Add(Member* member) {
    members_.push_back(member);
    column_.addWidget(member);
    member->show();  // at once: it is to take the focus
    return member;
  }
  // Its neighbour gets the focus; `none` where there is no neighbour.
  void Remove(Member* member, QWidget& none) {
    const auto next = members_.erase(std::ranges::find(members_, member));
    Drop(member);
    if (members_.empty()) return none.setFocus();
    (next == members_.end() ? members_.back() : *next)->TabStops().back()->setFocus();
  }
  void Clear() {
    for (Member* member : members_) Drop(member);
    members_.clear();
  }
  // Behind `stops`.
  void AppendTabStops(std::vector<QWidget*>& stops) const {
    for (const Member* member : members_) {
      const std::vector<QWidget*> more = member->TabStops();
      stops.insert(stops.end(), more.begin(), more.end());
    }
  }

 private:
  // It may be running a signal of its own.
  static void Drop(Member* member) {
    member->hide();
    member->deleteLater();
  }

  QBoxLayout& column_;
  std::vector<Member*> members_;
};

}  // namespace plovix::app
