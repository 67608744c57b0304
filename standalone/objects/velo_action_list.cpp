#include "velo_action_list.h"

#include <utility>

#include "arguments.h"
#include "call_gate.h"
#include "task_object.h"

namespace plovix {

void VeloActionList::Load(const Ref<ActionList>& actions) {
  Called("VeloActionList.Load");
  rows_ = OwnObject<ActionListObject>(actions)->records;
  loaded_ = true;
  if (changed_) changed_();
}

Ref<ActionList> VeloActionList::Actions() {
  Called("VeloActionList.Actions");
  if (!loaded_) throw Failure(failure_number::kObjectNotSet, "The actions of the task were not loaded");
  return std::make_shared<ActionListObject>(rows_);
}

void VeloActionList::OnContextRequest(ContextRequest handler) {
  Called("VeloActionList.OnContextRequest");
  request_ = std::move(handler);
}

std::vector<const ActionKind*> VeloActionList::OfferedKinds() {
  Ref<ValueStore> context;
  if (request_) request_(context);
  const auto* values = dynamic_cast<StoreObject*>(context.Get());
  if (values == nullptr) return {};
  const auto type = values->values.find("DesignerObjectType");
  const auto* bit = type == values->values.end() ? nullptr : std::get_if<std::int32_t>(&type->second);
  std::vector<const ActionKind*> kinds;
  for (const ActionKind& kind : ActionKinds()) {
    if (bit != nullptr && (kind.record_modes & *bit) != 0) kinds.push_back(&kind);
  }
  return kinds;
}

void VeloActionList::Append(ActionRecord action) {
  rows_.push_back(std::move(action));
  Edited();
}

void VeloActionList::Replace(std::size_t position, ActionRecord action) {
  rows_.at(position) = std::move(action);
  Edited();
}

void VeloActionList::Remove(std::size_t position) {
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(position));
  Edited();
}

bool VeloActionList::MoveUp(std::size_t position) {
  if (position == 0) return false;
  std::swap(rows_.at(position - 1), rows_.at(position));
  Edited();
  return true;
}

bool VeloActionList::MoveDown(std::size_t position) {
  return position + 1 < rows_.size() && MoveUp(position + 1);
}

void VeloActionList::Edited() {
  touched_ = true;
  if (changed_) changed_();
}

}  // namespace plovix
