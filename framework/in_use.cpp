#include "in_use.h"

namespace plovix {

std::atomic<int> InUse::count_ = 0;

}  // namespace plovix
