// What the fuzzers share; each is one source that includes this and states in Try what holds for every input.
#pragma once

#include <plovix/base/failure.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>
#include <string>
#include <string_view>

namespace plovix::fuzz {

void Try(std::string_view input);

// Ends the program if the condition does not hold, so that the input is kept.
inline void Require(bool holds, std::source_location place = std::source_location::current()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%u: this does not hold\n", place.file_name(), static_cast<unsigned>(place.line()));
  std::abort();
}

}  // namespace plovix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The bytes are in a block of exactly this size, so that reading past them is noticed.
  plovix::fuzz::Try({reinterpret_cast<const char*>(data), size});
  return 0;
}
