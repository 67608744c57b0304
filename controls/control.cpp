#include "control.h"

#include "form.h"

namespace plovix {

std::string_view EventName(Event event) {
  constexpr std::array<std::string_view, kEventCount> kNames{"Change", "Click", "DblClick", "DropDown",
                                                             "LostFocus"};
  return kNames.at(static_cast<std::size_t>(event));
}

Control::Control(Form& form, const ControlInfo& info)
    : form_(form),
      info_(info),
      caption_(info.kind == Kind::kHostSlot ? std::string_view{} : info.caption),
      enabled_(!Has(info.style, Style::kDisabled)),
      visible_(!Has(info.style, Style::kHidden)) {}

void Control::SetCaption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Notify(Aspect::kCaption);
}

void Control::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  NotifyWithMembers(Aspect::kEnabled);
}

void Control::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  NotifyWithMembers(Aspect::kVisible);
}

bool Control::Usable() const {
  if (!enabled_ || !visible_) return false;
  return info_.frame.empty() || form_.Get(info_.frame).Usable();
}

void Control::SetFocus() {
  if (!Usable()) return;
  form_.MoveFocus(this);
  Notify(Aspect::kFocus);
  FocusArrived();
}

bool Control::HasFocus() const {
  return form_.Focused() == this;
}

void Control::On(Event event, std::function<void()> handler) {
  handlers_.at(static_cast<std::size_t>(event)) = std::move(handler);
}

void Control::EnterFocus(UserKey /*key*/) {
  if (HasFocus()) return;
  form_.MoveFocus(this);
  FocusArrived();
}

void Control::LeaveFocus(UserKey /*key*/) {
  if (HasFocus()) form_.MoveFocus(nullptr);
  Raise(Event::kLostFocus);
}

void Control::Raise(Event event) {
  if (const auto& handler = handlers_.at(static_cast<std::size_t>(event))) handler();
}

void Control::Notify(Aspect aspect) {
  if (aspect == Aspect::kText || aspect == Aspect::kValue || aspect == Aspect::kIndex) form_.CountChange();
  if (observer_ != nullptr) observer_->Changed(aspect);
}

// What stands in a frame is as usable as its frame.
void Control::NotifyWithMembers(Aspect aspect) {
  Notify(aspect);
  for (const auto& control : form_.controls_) {
    if (control->info_.frame == Name()) control->NotifyWithMembers(aspect);
  }
}

}  // namespace plovix
