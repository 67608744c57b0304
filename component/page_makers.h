// Which page each identifier names. Used only by the entry points.
#pragma once

#include <plovix/framework/wizard_page.h>

#include <memory>
#include <span>
#include <string>

namespace plovix {

struct PageMaker {
  std::string identifier;
  std::shared_ptr<WizardPage> (*make)();
};

// All pages, in the order in which a wizard can show them.
[[nodiscard]] std::span<const PageMaker> PageMakers();

}  // namespace plovix
