#include "secret_mask.h"

#include <algorithm>
#include <utility>

namespace plovix::runner {

SecretMask::SecretMask(std::vector<std::string> secrets) : secrets_(std::move(secrets)) {
  std::erase(secrets_, std::string());
  std::ranges::sort(secrets_, std::ranges::greater(), &std::string::size);
  for (const std::string& secret : secrets_) begins_.at(static_cast<unsigned char>(secret.front())) = true;
}

std::string SecretMask::Next(std::string_view bytes) {
  if (secrets_.empty()) return std::string(bytes);
  pending_ += bytes;
  return Mask(false);
}

std::string SecretMask::End() {
  return Mask(true);
}

std::string SecretMask::Mask(bool is_end) {
  const std::string bytes = std::exchange(pending_, {});
  std::string masked;
  masked.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const std::string_view rest = std::string_view(bytes).substr(at);
    const auto begins_here = [rest](const std::string& secret) { return rest.starts_with(secret); };
    const auto may_begin = [rest](const std::string& secret) {
      return secret.size() > rest.size() && secret.starts_with(rest);
    };
    const bool possible = begins_[static_cast<unsigned char>(bytes[at])];
    if (possible && !is_end && std::ranges::any_of(secrets_, may_begin)) {
      pending_ = rest;
      break;
    }
    const auto found = possible ? std::ranges::find_if(secrets_, begins_here) : secrets_.end();
    if (found == secrets_.end()) {
      masked += bytes[at++];
    } else {
      masked += kMasked;
      at += found->size();
    }
  }
  return masked;
}

}  // namespace plovix::runner
