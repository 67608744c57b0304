// A database to try tasks on: a small trading company. Used by the program at its first start, and by tests.
#pragma once

#include <chrono>
#include <string>

namespace plovix {

// customers, products, stock, orders, order_lines, invoices, employees, and the views open_orders and
// customer_turnover: about ten thousand records of the two years before `today`, the same for the same day.
// Fails when the file cannot be written, and with kFileAccess when something stands at the path already; then
// as after any failure the path is as it was.
void CreateSampleDatabase(const std::string& path, std::chrono::local_days today);

// Where the program looks for the data when it is told nothing else: beside the user's tasks.
[[nodiscard]] std::string DefaultDataPath();

}  // namespace plovix
