// The one type of run-time failure, with the customary run-time numbers. Everything below the
// stand-alone program throws nothing else on purpose; the statement runner reports it.
#pragma once

#include <exception>
#include <string>

namespace plovix {

// Numbers under which failures are reported to the host.
namespace failure_number {
inline constexpr int kInvalidCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kInternal = 51;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kReadOnlyProperty = 383;
inline constexpr int kCannotCreateObject = 429;
inline constexpr int kKeyInUse = 457;
inline constexpr int kNoCurrentRow = 3021;
inline constexpr int kNoSuchColumn = 3265;
}  // namespace failure_number

class Failure : public std::exception {
 public:
  // `description` is UTF-8 text for a person.
  Failure(int number, std::string description) : number_(number), description_(std::move(description)) {}

  [[nodiscard]] int Number() const noexcept { return number_; }
  [[nodiscard]] const std::string& Description() const noexcept { return description_; }
  [[nodiscard]] const char* what() const noexcept override;

 private:
  int number_;
  std::string description_;
};

// The exception being handled, as a Failure: memory exhaustion becomes 7, an index error 9, a wrong
// type 13, anything else 51. Call it only inside a catch block.
[[nodiscard]] Failure CurrentFailure();

// Throws Failure 91 when `reference` is empty, else gives it back: every use of a counted reference
// that may be nothing goes through here. Use the result in the same expression.
template <class Pointer>
const Pointer& Set(const Pointer& reference) {
  if (!reference) throw Failure(failure_number::kObjectNotSet, "Object variable not set");
  return reference;  // NOLINT(bugprone-return-const-ref-from-parameter): used in the same expression
}

}  // namespace plovix
