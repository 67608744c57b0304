// How database files fail. Thrown by connections and statements; told apart by whoever runs SQL that a user
// wrote.
#pragma once

#include <plovix/base/failure.h>

#include <optional>
#include <string>
#include <utility>

namespace plovix {

// Failures of files, by their customary numbers.
namespace failure_number {
inline constexpr int kInterrupted = 18;
inline constexpr int kFileNotFound = 53;
inline constexpr int kDeviceError = 57;
inline constexpr int kDiskFull = 61;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kFileAccess = 75;
inline constexpr int kPathNotFound = 76;
inline constexpr int kInvalidFormat = 321;
}  // namespace failure_number

// What the guard of a connection did not let a statement do.
struct Refusal {
  enum class What {
    kTable,     // read a table or view
    kFunction,  // call a function
    kAction     // anything but reading
  };
  What what = What::kAction;
  std::string name;  // of the table, of the function, or of what would be changed; may be empty
};

// SQL that does not prepare, or cannot be computed: the statement is at fault and not the file.
class SqlFailure final : public Failure {
 public:
  // `offset` is where in the statement the fault was noticed, in bytes; -1 where that is not known.
  SqlFailure(std::string description, std::string words, int offset, std::optional<Refusal> refused = {})
      : Failure(failure_number::kInvalidCall, std::move(description)),
        words_(std::move(words)),
        offset_(offset),
        refused_(std::move(refused)) {}

  // The database's own, such as "no such column: Nmae"; the description has the file's path before them.
  [[nodiscard]] const std::string& Words() const noexcept { return words_; }
  [[nodiscard]] int Offset() const noexcept { return offset_; }
  // By the guard; nothing where it is the database that does not take the statement.
  [[nodiscard]] const std::optional<Refusal>& Refused() const noexcept { return refused_; }

 private:
  std::string words_;
  int offset_;
  std::optional<Refusal> refused_;
};

}  // namespace plovix
