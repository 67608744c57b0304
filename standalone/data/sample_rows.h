// The content of the sample database.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace plovix {

using SampleCell = std::variant<std::monostate, std::int64_t, double, std::string>;

struct SampleTable {
  std::string_view name;
  std::vector<std::vector<SampleCell>> rows;  // in the order of the table's columns; never empty
};

// Ordered so that every row comes after those to which it refers.
[[nodiscard]] std::vector<SampleTable> SampleTables(std::chrono::local_days today);

}  // namespace plovix
