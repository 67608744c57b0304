// A file descriptor that closes itself, and the words for what the system reports. Used throughout this room.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

namespace plovix::runner {

class Descriptor final {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) Close();
    number_ = std::exchange(other.number_, -1);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  // -1 for none.
  [[nodiscard]] int Get() const noexcept { return number_; }
  [[nodiscard]] bool IsOpen() const noexcept { return number_ >= 0; }
  void Close() noexcept {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }

 private:
  int number_ = -1;
};

// What the error number says, for the end of a sentence.
[[nodiscard]] inline std::string SystemWords(int code) {
  switch (code) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return "the disk is full";
    case EACCES:
    case EPERM:
      return "permission is denied";
    case ENOENT:
    case ENOTDIR:
      return "it does not exist";
    case EISDIR:
      return "it is a folder";
    default:
      return std::generic_category().message(code);
  }
}

}  // namespace plovix::runner
