// What a page could not read: saving leaves it as it is stored until the user has given another value.
#pragma once

#include <plovix/controls/form.h>

#include <functional>
#include <string>
#include <unordered_map>

namespace plovix {

// What the user can change about the control; of an option button, which one of the page is selected.
[[nodiscard]] std::string ValueNow(const Control& control);
// A member of a page that no control holds is its own value.
template <class Member>
[[nodiscard]] Member ValueNow(const Member& member) requires(!std::is_base_of_v<Control, Member>) {
  return member;
}

// Controls and members of one page, which outlive it.
class Unread {
 public:
  // The thing does not hold what is stored, as long as it keeps the value that it has now.
  template <class Thing>
  void Add(const Thing& thing) {
    things_[&thing] = [&thing, left = ValueNow(thing)] { return ValueNow(thing) == left; };
  }
  // The thing holds what is stored.
  void Remove(const void* thing) { things_.erase(thing); }
  [[nodiscard]] bool Has(const void* thing) const {
    const auto found = things_.find(thing);
    return found != things_.end() && found->second();
  }

 private:
  std::unordered_map<const void*, std::function<bool()>> things_;
};

}  // namespace plovix
