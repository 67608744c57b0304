#include "widths.h"

#include <plovix/base/utf8.h>

#include <algorithm>

namespace plovix::surface {

int ListWidth::Of(const ComboBox& list) {
  if (list.Count() < measured_) longest_ = measured_ = 0;
  for (; measured_ < list.Count() && longest_ < kWidestList; ++measured_)
    longest_ = std::min(std::max(longest_, CharacterCount(list.ItemText(measured_))), kWidestList);
  return longest_;
}

}  // namespace plovix::surface
