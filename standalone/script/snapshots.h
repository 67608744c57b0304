// What a script sees of the wizard and the shared store, as JSON.
#pragma once

#include <plovix/standalone/wizard/velo_wiz.h>

#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace plovix::script {

// The current page with its controls. `wizard` is nullptr if none was ever opened.
[[nodiscard]] nlohmann::ordered_json PageJson(const VeloWiz* wizard);

// Numbers objects in the order in which they were first seen, without keeping them alive.
class ObjectNumbers {
 public:
  [[nodiscard]] int Of(const ObjectRef& object);

 private:
  std::map<std::weak_ptr<HostObject>, int, std::owner_less<>> numbers_;
};

// Keys with values; objects are printed by kind and number.
[[nodiscard]] nlohmann::ordered_json StoreJson(const std::map<std::string, Value>& values,
                                               ObjectNumbers& numbers);

}  // namespace plovix::script
