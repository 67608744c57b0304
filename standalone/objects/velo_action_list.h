/// @file
/// The stand-alone host's action list: the state behind the editing control, without a toolkit. A surface
/// draws it and calls the editing members; the page sees it as an ActionListControl.
#pragma once

#include <plovix/host/action_list_control.h>
#include <plovix/standalone/tasks/action_kinds.h>

#include <functional>
#include <memory>
#include <vector>

namespace plovix {

/// Actions as plain values, for the slot of the Actions page.
class VeloActionList final : public ActionListControl {
 public:
  void Load(const Ref<ActionList>& actions) override;
  /// Fails with 91 until a list is loaded, because a list that could not be read must not be saved as empty.
  [[nodiscard]] Ref<ActionList> Actions() override;
  void OnContextRequest(ContextRequest handler) override;
  [[nodiscard]] bool Touched() const override { return touched_; }

  /// The actions as edited so far, in the order in which they run.
  [[nodiscard]] const std::vector<ActionRecord>& Rows() const noexcept { return rows_; }
  /// Asks the page for its context and returns the kinds whose record modes fit it; none without a context.
  [[nodiscard]] std::vector<const ActionKind*> OfferedKinds();

  /// @{
  /// Editing; positions are 0-based and must exist.
  void Append(ActionRecord action);
  void Replace(std::size_t position, ActionRecord action);
  void Remove(std::size_t position);
  /// @}
  /// @{
  /// Moves a row one place up or down; false, without a change, at the end of the list.
  bool MoveUp(std::size_t position);
  bool MoveDown(std::size_t position);
  /// @}

  /// Sets the one observer, called after the rows have changed: the widget that draws the list.
  void OnChanged(std::function<void()> observer) { changed_ = std::move(observer); }

 private:
  void Edited();
  ContextRequest request_;
  std::vector<ActionRecord> rows_;
  std::function<void()> changed_;
  bool loaded_ = false;
  bool touched_ = false;
};

}  // namespace plovix
