// Failures of database files. Thrown by connections and statements; distinguished by code that runs SQL from
// users.
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

// What the guard of a connection refused to a statement.
struct Refusal {
  enum class What {
    kTable,     // read a table or view
    kFunction,  // call a function
    kAction     // anything but reading
  };
  What what = What::kAction;
  std::string name;  // of the table, the function, or what would be changed; may be empty
};

// SQL that cannot be prepared or computed: the statement is at fault and not the file.
class SqlFailure final : public Failure {
 public:
  // `offset` is where in the statement the fault was noticed, in bytes; -1 if unknown.
  SqlFailure(std::string description, std::string words, int offset, std::optional<Refusal> refused = {})
      : Failure(failure_number::kInvalidCall, std::move(description)),
        words_(std::move(words)),
        offset_(offset),
        refused_(std::move(refused)) {}

  // The database's own words, such as "no such column: Nmae"; the description puts the file's path before
  // them.
  [[nodiscard]] const std::string& Words() const noexcept { return words_; }
  [[nodiscard]] int Offset() const noexcept { return offset_; }
  // What the guard refused; nothing if the database itself rejected the statement.
  [[nodiscard]] const std::optional<Refusal>& Refused() const noexcept { return refused_; }

 private:
  std::string words_;
  int offset_;
  std::optional<Refusal> refused_;
};

}  // namespace plovix
