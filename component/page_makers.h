// Which page each identifier names. Used only by the entry points.
#pragma once

#include <plovix/framework/wizard_page.h>

#include <array>
#include <memory>
#include <string>

namespace plovix {

struct PageMaker {
  std::string identifier;
  std::shared_ptr<WizardPage> (*make)();
};

inline constexpr std::size_t kPageCount = 11;

// In the order in which a wizard can show them.
[[nodiscard]] const std::array<PageMaker, kPageCount>& PageMakers();

}  // namespace plovix
