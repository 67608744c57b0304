// A prepared SQL statement: its parameters and its rows. Created by a Connection; used to read or write a
// database file.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

struct sqlite3_stmt;

namespace plovix {

class Connection;

enum class ColumnType { kInteger, kReal, kText, kBlob, kNull };

// Parameters and columns are counted from 0. It belongs to its connection's thread, must be destroyed before
// the connection, and fails as the connection does.
class Statement final {
 public:
  // Values stay bound until others replace them; a text, which may contain any bytes, and bytes are copied.
  void BindInteger(int parameter, std::int64_t value);
  void BindReal(int parameter, double value);
  void BindText(int parameter, std::string_view value);
  void BindBlob(int parameter, std::string_view bytes);
  void BindNull(int parameter);

  // Goes to the first or next row; false if there is none left, after which the next call starts again. Until
  // then, or until Reset, the statement sees and holds one state of the file.
  [[nodiscard]] bool Step();
  void Reset() noexcept;
  // Runs the statement to its end. Even after a failure it then holds nothing.
  void Run();
  void ForEachRow(const std::function<void(const Statement& row)>& row);

  [[nodiscard]] int Columns() const noexcept;
  [[nodiscard]] std::string_view Name(int column) const;
  // The declared type of the table's column in the result; empty for anything else.
  [[nodiscard]] std::string_view DeclaredType(int column) const;
  // The current row's values. Text is the value's bytes, a number as SQL writes it, empty for NULL; it is
  // valid until the next Step or Reset.
  [[nodiscard]] ColumnType Type(int column) const noexcept;
  [[nodiscard]] std::int64_t Integer(int column) const noexcept;
  [[nodiscard]] double Real(int column) const noexcept;
  [[nodiscard]] std::string_view Text(int column) const;

  // Whether running the statement leaves the file unchanged.
  [[nodiscard]] bool IsReadOnly() const noexcept;

 private:
  friend class Connection;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept;
  };
  using Handle = std::unique_ptr<sqlite3_stmt, Finalize>;
  Statement(const Connection& connection, Handle handle);
  void Check(int code) const;

  const Connection* connection_;
  Handle handle_;
  bool may_run_;
};

}  // namespace plovix
