// What a page design is, and its compile-time checks. Used by the designs of this room and by the page base.
#pragma once

#include <plovix/controls/form.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace plovix {

template <std::size_t kRows, std::size_t kLines>
struct Design {
  std::string_view page;
  std::array<ControlInfo, kRows> rows;         // in declaration order
  std::array<std::string_view, kLines> lines;  // the names on each line, separated by spaces; top to bottom

  [[nodiscard]] constexpr DesignView View() const { return {page, rows, lines}; }
  // Position of the named row; kRows if there is none.
  [[nodiscard]] constexpr std::size_t IndexOf(std::string_view name) const {
    const auto found = std::ranges::find(rows, name, &ControlInfo::name);
    return static_cast<std::size_t>(found - rows.begin());
  }
};

// Calls `visit` with each name on a line.
template <class Visit>
constexpr void ForEachName(std::string_view line, Visit visit) {
  while (!line.empty()) {
    const std::size_t end = std::min(line.find(' '), line.size());
    visit(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
}

// Checks a design and returns it. Does not compile if a name is empty or occurs twice, a frame or a name in a
// line is unknown, or a control is not on exactly one line.
template <std::size_t kRows, std::size_t kLines>
consteval Design<kRows, kLines> MakeDesign(std::string_view page, const ControlInfo (&rows)[kRows],
                                           const std::string_view (&lines)[kLines]) {
  Design<kRows, kLines> design{page, std::to_array(rows), std::to_array(lines)};
  std::array<int, kRows> seen{};
  for (std::size_t row = 0; row < kRows; ++row) {
    const ControlInfo& info = design.rows[row];
    if (info.name.empty()) throw "a control without a name";
    if (design.IndexOf(info.name) != row) throw "two controls of the same name";
    if (info.frame.empty()) continue;
    const std::size_t frame = design.IndexOf(info.frame);
    if (frame == kRows || design.rows[frame].kind != Kind::kFrame) throw "an unknown frame";
  }
  for (const std::string_view line : design.lines) {
    ForEachName(line, [&](std::string_view name) {
      const std::size_t row = design.IndexOf(name);
      if (row == kRows) throw "a line names an unknown control";
      ++seen[row];
    });
  }
  for (const int count : seen) {
    if (count != 1) throw "a control that does not stand on exactly one line";
  }
  return design;
}

// A name as a template argument: control<"txtName">().
template <std::size_t kSize>
struct ControlName {
  // NOLINTNEXTLINE(*-explicit-*)
  consteval ControlName(const char (&text)[kSize]) { std::copy_n(text, kSize, value); }
  [[nodiscard]] constexpr std::string_view View() const { return {value, kSize - 1}; }
  char value[kSize]{};
};

}  // namespace plovix
