// A database to try tasks on: a small trading company. Used by the program at its first start, and by tests.
#pragma once

#include <chrono>
#include <string>

namespace plovix {

// customers, products, stock, orders, order_lines, invoices, employees, and the views open_orders and
// customer_turnover: about ten thousand records of the two years before `today`, the same for the same day.
// Fails if the file cannot be written, and with kFileAccess if something already exists at the path; after
// any failure the path is unchanged.
void CreateSampleDatabase(const std::string& path, std::chrono::local_days today);

// The default place of the data: beside the user's tasks.
[[nodiscard]] std::string DefaultDataPath();

}  // namespace plovix
