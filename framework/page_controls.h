// Access to a page's controls by name, with their types taken from the design at compile time.
#pragma once

#include <plovix/designs/design.h>

#include "page_base.h"

namespace plovix {

// Base of a page with the given design. A page binds each control once, as a member of the same name:
//   TextBox& txtDays = control<"txtDays">();
// A name that the design lacks does not compile.
template <const auto& kDesign, class Base = CommonPage>
class PageWith : public Base {
 public:
  static constexpr std::string_view kPageName = kDesign.page;

  PageWith() : Base(kDesign.View()) {}

 protected:
  template <ControlName kName>
  [[nodiscard]] auto& control() {
    constexpr std::size_t kIndex = kDesign.IndexOf(kName.View());
    static_assert(kIndex < kDesign.rows.size(), "the design has no control of this name");
    return static_cast<ControlOf<kDesign.rows[kIndex].kind>&>(this->Controls().At(kIndex));
  }
};

}  // namespace plovix
