/// @file
/// The one type of run-time failure, with the customary run-time numbers. Code below the stand-alone program
/// deliberately throws nothing else; the statement runner reports it.
#pragma once

#include <exception>
#include <optional>
#include <string>

#include "requirements.h"

namespace plovix {

/// Numbers under which failures are reported to the host. A host may throw its own numbers, too.
namespace failure_number {
inline constexpr int kInvalidCall = 5;             ///< an argument, or the moment of the call, is wrong
inline constexpr int kOverflow = 6;                ///< a number does not fit
inline constexpr int kOutOfMemory = 7;             ///< std::bad_alloc
inline constexpr int kSubscriptOutOfRange = 9;     ///< no such position in a list
inline constexpr int kTypeMismatch = 13;           ///< a value or an object of another type than needed
inline constexpr int kInternal = 51;               ///< any exception that is not a Failure
inline constexpr int kObjectNotSet = 91;           ///< a reference is null where an object is needed
inline constexpr int kInvalidPropertyValue = 380;  ///< a control has no such value
inline constexpr int kReadOnlyProperty = 383;      ///< the text of a list that cannot be edited
inline constexpr int kCannotCreateObject = 429;    ///< no services, no library, no page
inline constexpr int kKeyInUse = 457;              ///< a collection, or the registry, already has that key
inline constexpr int kNoCurrentRow = 3021;         ///< a recordset is past its last row
inline constexpr int kNoSuchColumn = 3265;         ///< a recordset has no column of that name
}  // namespace failure_number

/// What hosts and controls throw. If a host throws one, it is reported with the host's number and words.
class Failure : public std::exception {
 public:
  /// `description` is UTF-8 text for a person.
  Failure(int number, std::string description) : number_(number), description_(std::move(description)) {}

  /// One of failure_number, or the host's own.
  [[nodiscard]] int Number() const noexcept { return number_; }
  /// UTF-8.
  [[nodiscard]] const std::string& Description() const noexcept { return description_; }
  /// The description.
  [[nodiscard]] const char* what() const noexcept override;

 private:
  int number_;
  std::string description_;
};

/// The exception being handled, as a Failure: memory exhaustion becomes 7, an index error 9, a wrong
/// type 13, anything else 51. Call it only inside a catch block.
[[nodiscard]] Failure CurrentFailure();

/// What `work` throws, as a Failure; nothing when it comes to its end. The exception is gone by then: whoever
/// tells of it may take any time.
template <class Work>
[[nodiscard]] std::optional<Failure> FailureOf(const Work& work) {
  try {
    work();
    return std::nullopt;
  } catch (...) {
    return CurrentFailure();
  }
}

}  // namespace plovix
