// The file that keeps what a program writes: its beginning and its end, whatever the length, and where it is
// found. Written by the holder, read by the windows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "descriptor.h"

namespace plovix::runner {

inline constexpr std::size_t kFirstOutput = std::size_t{64} * 1024;   // bytes that are kept
inline constexpr std::size_t kLastOutput = std::size_t{1024} * 1024;  // bytes that are kept

// Between the two stands a line that says how many bytes were left out. Everything up to both lengths
// together is in the file as soon as it is added, so that others can follow it.
class OutputFile final {
 public:
  // Creates the file, or empties an ordinary one of this user, with mode 0600. Fails with a Failure in words.
  explicit OutputFile(const std::string& path);

  void Add(std::string_view bytes);
  // Brings the file up to date once bytes had to be left out; costs as much as kLastOutput.
  void Refresh();

  [[nodiscard]] bool NeedsRefresh() const noexcept { return stale_; }
  [[nodiscard]] std::int64_t LeftOut() const noexcept { return left_out_; }
  // Why not all that should be in the file is in it; empty if it is.
  [[nodiscard]] const std::string& Problem() const noexcept { return problem_; }

 private:
  void Write(std::string_view bytes, std::size_t offset);

  Descriptor file_;
  std::size_t first_ = 0;  // bytes of the beginning
  std::string last_;       // the end so far, up to twice as much as is kept
  std::int64_t left_out_ = 0;
  bool stale_ = false;
  std::string problem_;
};

}  // namespace plovix::runner
