#include "sample_database.h"

#include <plovix/standalone/sqlite/connection.h>
#include <unistd.h>

#include <QStandardPaths>
#include <array>
#include <filesystem>

#include "sample_rows.h"

namespace plovix {
namespace {

namespace fs = std::filesystem;

constexpr auto kSampleSchema = std::to_array<std::string_view>({
    "CREATE TABLE employees (id INTEGER PRIMARY KEY, name TEXT NOT NULL, job TEXT NOT NULL, hired DATE NOT "
    "NULL, "
    "left_on DATE, salary DECIMAL(10,2) NOT NULL, manager_id INTEGER REFERENCES employees (id))",
    "CREATE TABLE customers (id INTEGER PRIMARY KEY, name TEXT NOT NULL, city TEXT NOT NULL, email TEXT, "
    "credit_limit DECIMAL(10,2), blocked BOOLEAN NOT NULL, since DATE NOT NULL, "
    "employee_id INTEGER REFERENCES employees (id))",
    "CREATE TABLE products (id INTEGER PRIMARY KEY, code TEXT NOT NULL UNIQUE, name TEXT NOT NULL, "
    "category TEXT NOT NULL, price DECIMAL(10,2) NOT NULL, weight_kg REAL, discontinued BOOLEAN NOT NULL)",
    "CREATE TABLE stock (id INTEGER PRIMARY KEY, product_id INTEGER NOT NULL REFERENCES products (id), "
    "warehouse TEXT NOT NULL, quantity INTEGER NOT NULL, minimum INTEGER, counted_at DATETIME)",
    "CREATE TABLE orders (id INTEGER PRIMARY KEY, customer_id INTEGER NOT NULL REFERENCES customers (id), "
    "employee_id INTEGER REFERENCES employees (id), status TEXT NOT NULL, ordered_at DATETIME NOT NULL, "
    "due DATE, shipped DATE, total DECIMAL(10,2) NOT NULL, urgent BOOLEAN NOT NULL, note TEXT)",
    "CREATE TABLE order_lines (id INTEGER PRIMARY KEY, order_id INTEGER NOT NULL REFERENCES orders (id), "
    "position INTEGER NOT NULL, product_id INTEGER NOT NULL REFERENCES products (id), "
    "quantity INTEGER NOT NULL, price DECIMAL(10,2) NOT NULL, UNIQUE (order_id, position))",
    "CREATE TABLE invoices (id INTEGER PRIMARY KEY, number TEXT NOT NULL UNIQUE, "
    "order_id INTEGER NOT NULL REFERENCES orders (id), issued DATE NOT NULL, due DATE NOT NULL, "
    "amount DECIMAL(10,2) NOT NULL, paid BOOLEAN NOT NULL, paid_on DATE, reminders INTEGER NOT NULL)",
    "CREATE INDEX orders_customer ON orders (customer_id)",
    "CREATE VIEW open_orders AS SELECT orders.id, customers.name AS customer, orders.ordered_at, orders.due, "
    "orders.total, orders.urgent FROM orders JOIN customers ON customers.id = orders.customer_id "
    "WHERE orders.status = 'open'",
    "CREATE VIEW customer_turnover AS SELECT customers.id, customers.name, customers.city, "
    "count(orders.id) AS orders, round(coalesce(sum(orders.total), 0), 2) AS turnover "
    "FROM customers LEFT JOIN orders ON orders.customer_id = customers.id AND orders.status <> 'cancelled' "
    "GROUP BY customers.id",
});

// A file with a temporary name that is removed unless it gets its final one.
class NewFile {
 public:
  explicit NewFile(const std::string& path) : path_(path), temporary_(path + "." + std::to_string(getpid())) {
    Remove();
  }
  ~NewFile() { Remove(); }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  [[nodiscard]] const std::string& Temporary() const { return temporary_; }
  void Keep() const {
    std::error_code error;
    fs::rename(temporary_, path_, error);
    if (error)
      throw Failure(failure_number::kFileAccess, path_ + ": the file cannot be made: " + error.message());
  }

 private:
  void Remove() const noexcept {
    std::error_code ignored;
    fs::remove(temporary_, ignored);
    fs::remove(temporary_ + "-journal", ignored);
  }
  std::string path_, temporary_;
};

void BindCell(Statement& statement, int parameter, const SampleCell& cell) {
  statement.BindNull(parameter);
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) statement.BindInteger(parameter, *whole);
  if (const auto* real = std::get_if<double>(&cell)) statement.BindReal(parameter, *real);
  if (const auto* text = std::get_if<std::string>(&cell)) statement.BindText(parameter, *text);
}

void InsertRows(const Connection& connection, const SampleTable& table) {
  std::string sql = "INSERT INTO " + std::string(table.name) + " VALUES (?";
  for (std::size_t column = 1; column < table.rows.front().size(); ++column) sql += ", ?";
  Statement insert = connection.Prepare(sql + ")");
  for (const std::vector<SampleCell>& row : table.rows) {
    for (std::size_t column = 0; column < row.size(); ++column)
      BindCell(insert, static_cast<int>(column), row[column]);
    insert.Run();
  }
}

}  // namespace

void CreateSampleDatabase(const std::string& path, std::chrono::local_days today) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(path, error)))
    throw Failure(failure_number::kFileAccess, path + ": there is something of that name; choose another");
  const NewFile file(path);
  {
    Connection connection(file.Temporary(), std::chrono::milliseconds{0}, Access::kReadWrite);
    connection.Run("PRAGMA foreign_keys = ON");
    connection.Write(
        [&connection, today] {
          for (const std::string_view sql : kSampleSchema) connection.Run(sql);
          for (const SampleTable& table : SampleTables(today)) InsertRows(connection, table);
        },
        [] { return false; });
  }
  file.Keep();
}

std::string DefaultDataPath() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return (folder + QStringLiteral("/plovix/sample.sqlite")).toStdString();
}

}  // namespace plovix
