// Converts a member's value to JSON and from a script's word, by its type. Used by the tables of members.
#pragma once

#include <plovix/standalone/text/iso_time.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <type_traits>

#include "words.h"

namespace plovix::script {

inline constexpr std::string_view kNothing = "nothing";  // the word for a member without a value

template <class Type>
[[nodiscard]] nlohmann::ordered_json MemberJson(const Type& value) {
  if constexpr (std::is_same_v<Type, DateTime>) {
    return IsoDateTime(value);
  } else {
    return value;
  }
}

// A word that does not fit the type is a LineError; the value is then unchanged.
template <class Type>
void SetMember(Type& value, const std::string& word) {
  if constexpr (std::is_same_v<Type, std::string>) {
    value = word;
  } else if constexpr (std::is_same_v<Type, bool>) {
    value = SwitchFrom(word);
  } else if constexpr (std::is_same_v<Type, DateTime>) {
    value = DateTimeFrom(word);
  } else {
    value = IntegerFrom<Type>(word);
  }
}

}  // namespace plovix::script
