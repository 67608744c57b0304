#include "offset_text.h"

#include <array>
#include <cstdio>

namespace plovix::script {

std::string OffsetText(std::chrono::seconds offset) {
  const std::chrono::hh_mm_ss<std::chrono::seconds> time(offset);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%c%02d:%02d:%02d", time.is_negative() ? '-' : '+',
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  std::string result = text.data();
  if (time.seconds().count() == 0) result.resize(result.size() - 3);
  return result;
}

}  // namespace plovix::script
