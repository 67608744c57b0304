// Replaces secrets in a stream of bytes. Used for what a program writes.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace plovix::runner {

inline constexpr std::string_view kMasked = "***";

// Finds a secret wherever the stream is cut. Where several begin at one place, the longest is replaced. A
// secret in another form (encoded, quoted, in parts) is not found.
class SecretMask final {
 public:
  explicit SecretMask(std::vector<std::string> secrets);

  // The next bytes, masked; keeps back what may be the beginning of a secret.
  [[nodiscard]] std::string Next(std::string_view bytes);
  // The rest at the stream's end.
  [[nodiscard]] std::string End();

 private:
  [[nodiscard]] std::string Mask(bool is_end);

  std::vector<std::string> secrets_;  // the longest first
  std::array<bool, 256> begins_{};    // by byte: whether a secret begins with it
  std::string pending_;
};

}  // namespace plovix::runner
