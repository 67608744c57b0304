// What a page could not read. Saving leaves the stored value alone until the user has given another one.
#pragma once

#include <plovix/controls/form.h>

#include <functional>
#include <string>
#include <unordered_map>

namespace plovix {

// What the user can change about the control; for an option button, which one on the page is selected.
[[nodiscard]] std::string ValueNow(const Control& control);
// A member of a page without a control is its own value.
template <class Member>
[[nodiscard]] Member ValueNow(const Member& member) requires(!std::is_base_of_v<Control, Member>) {
  return member;
}

// The controls and members of one page that could not be read; they outlive this object.
class Unread {
 public:
  // The thing does not have the stored value, as long as its current value does not change.
  template <class Thing>
  void Add(const Thing& thing) {
    things_[&thing] = [&thing, left = ValueNow(thing)] { return ValueNow(thing) == left; };
  }
  // The thing has the stored value.
  void Remove(const void* thing) { things_.erase(thing); }
  [[nodiscard]] bool Has(const void* thing) const {
    const auto found = things_.find(thing);
    return found != things_.end() && found->second();
  }

 private:
  std::unordered_map<const void*, std::function<bool()>> things_;
};

}  // namespace plovix
