#include "sample_rows.h"

#include <plovix/standalone/text/iso_time.h>

#include <array>
#include <random>
#include <span>

namespace plovix {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using Row = std::vector<SampleCell>;

constexpr std::int64_t kEmployees = 40;
constexpr std::int64_t kCustomers = 800;
constexpr std::int64_t kProducts = 300;
constexpr std::int64_t kOrders = 2500;
constexpr std::int64_t kPeriod = 730;  // days before today

constexpr auto kFirstNames = std::to_array<std::string_view>(
    {"Anna",  "Björn", "Chloé",      "David", "Élodie", "François", "Greta", "Hélène", "Ivo",   "Jürgen",
     "Karin", "Léa",   "Małgorzata", "Noël",  "Olga",   "Paulo",    "Renée", "Søren",  "Tomás", "Zoë"});
constexpr auto kLastNames = std::to_array<std::string_view>(
    {"Almeida",  "Bézier",  "Côté",     "Dubreuil", "Ekström",   "Fährmann", "Grünbaum",
     "Håkonsen", "Iversen", "Jézéquel", "Kowalik",  "Lindqvist", "Müllner",  "Núñez",
     "O'Dowd",   "Péron",   "Quintela", "Rösler",   "Sørby",     "Vaňková"});
constexpr auto kTrades =
    std::to_array<std::string_view>({"& Sons", "Bakery", "Bicycles", "Books & More", "Café", "Crafts",
                                     "Garden Centre", "Hotel", "Office Supplies", "Workshop"});
constexpr auto kCities =
    std::to_array<std::string_view>({"Aarhus", "Besançon", "Córdoba", "Dublin", "Genève", "Göteborg",
                                     "Kraków", "Liège", "Lisboa", "Münster", "Orléans", "Zürich"});
constexpr auto kJobs =
    std::to_array<std::string_view>({"Accounting", "Purchasing", "Sales", "Service", "Warehouse"});
constexpr auto kMaterials = std::to_array<std::string_view>(
    {"Aluminium", "Beech", "Brass", "Ceramic", "Cotton", "Glass", "Oak", "Steel"});
struct ProductKind {
  std::string_view name, category;
};
constexpr auto kThings = std::to_array<ProductKind>({{"bookend", "Office"},
                                                     {"bowl", "Kitchen"},
                                                     {"box", "Storage"},
                                                     {"chair", "Furniture"},
                                                     {"crate", "Storage"},
                                                     {"hook", "Hardware"},
                                                     {"jug", "Kitchen"},
                                                     {"lamp", "Furniture"},
                                                     {"pencil case", "Office"},
                                                     {"shelf", "Furniture"},
                                                     {"tray", "Kitchen"}});
constexpr auto kWarehouses = std::to_array<std::string_view>({"Main", "Harbour"});
constexpr auto kNotes =
    std::to_array<std::string_view>({"Call before delivery", "Discount of 5% agreed",
                                     "Leave at the \"back\" door", "Très urgent", "Gift wrap"});

SampleCell Date(local_days day) {
  return IsoDate(day);
}

SampleCell Moment(local_days day, std::int64_t minutes) {
  std::string text = IsoDateTime(day + std::chrono::minutes{minutes});
  text[text.find('T')] = ' ';
  return text;
}

SampleCell Money(std::int64_t cents) {
  return static_cast<double>(cents) / 100;
}

class Company {
 public:
  explicit Company(local_days today) : today_(today) {}

  std::vector<SampleTable> Tables() {
    HireEmployees();
    FindCustomers();
    MakeProducts();
    for (std::int64_t id = 1; id <= kOrders; ++id) TakeOrder(id);
    return {employees_, customers_, products_, stock_, orders_, lines_, invoices_};
  }

 private:
  // From 0 to below `sides`; the standard's distributions differ from library to library.
  std::int64_t Roll(std::int64_t sides) {
    return static_cast<std::int64_t>(dice_() % static_cast<std::uint32_t>(sides));
  }
  bool OneIn(std::int64_t sides) { return Roll(sides) == 0; }
  template <typename Cell>
  SampleCell Unless(bool is_missing, Cell cell) {
    return is_missing ? SampleCell() : SampleCell(std::move(cell));
  }
  template <typename Item, std::size_t kCount>
  const Item& Any(const std::array<Item, kCount>& items) {
    return items.at(static_cast<std::size_t>(Roll(kCount)));
  }
  std::string Person() { return std::string(Any(kFirstNames)) + " " + std::string(Any(kLastNames)); }
  local_days DayInPeriod() { return today_ - days{Roll(kPeriod)}; }

  void HireEmployees() {
    constexpr std::int64_t kManagers = 4;
    for (std::int64_t id = 1; id <= kEmployees; ++id) {
      const local_days hired = today_ - days{kPeriod + Roll(3000)};
      employees_.rows.push_back({id, Person(), std::string(Any(kJobs)), Date(hired),
                                 Unless(!OneIn(8), Date(DayInPeriod())), Money(250'000 + Roll(3000) * 100),
                                 Unless(id <= kManagers, 1 + Roll(kManagers))});
    }
  }

  void FindCustomers() {
    for (std::int64_t id = 1; id <= kCustomers; ++id) {
      const std::string name = std::string(Any(kLastNames)) + " " + std::string(Any(kTrades));
      const std::string email = "office" + std::to_string(id) + "@example.com";
      customers_.rows.push_back({id, name, std::string(Any(kCities)), Unless(OneIn(6), email),
                                 Unless(OneIn(4), Money(100'000 * (1 + Roll(50)))), std::int64_t{OneIn(25)},
                                 Date(today_ - days{kPeriod + Roll(2000)}),
                                 Unless(OneIn(10), 1 + Roll(kEmployees))});
    }
  }

  void MakeProducts() {
    for (std::int64_t id = 1; id <= kProducts; ++id) {
      const ProductKind& kind = Any(kThings);
      prices_.push_back(195 + Roll(400) * 50);
      products_.rows.push_back(
          {id, "P-" + std::to_string(1000 + id), std::string(Any(kMaterials)) + " " + std::string(kind.name),
           std::string(kind.category), Money(prices_.back()),
           Unless(OneIn(7), static_cast<double>(1 + Roll(200)) / 10), std::int64_t{OneIn(15)}});
      for (const std::string_view warehouse : kWarehouses) {
        const auto row = static_cast<std::int64_t>(stock_.rows.size()) + 1;
        stock_.rows.push_back({row, id, std::string(warehouse), Roll(250), Unless(OneIn(3), Roll(8) * 10),
                               Unless(OneIn(9), Moment(DayInPeriod(), 420 + Roll(600)))});
      }
    }
  }

  // Older orders are completed, newer ones often open, a few cancelled.
  void TakeOrder(std::int64_t id) {
    const local_days day = today_ - days{(kOrders - id) * kPeriod / kOrders};
    const bool is_cancelled = OneIn(20);
    const bool is_open = !is_cancelled && today_ - day < days{60} && !OneIn(3);
    const std::int64_t total = AddLines(id);
    const local_days shipped = std::min(day + days{1 + Roll(20)}, today_);
    orders_.rows.push_back({id, 1 + Roll(kCustomers), Unless(OneIn(12), 1 + Roll(kEmployees)),
                            std::string(is_cancelled ? "cancelled"
                                        : is_open    ? "open"
                                                     : "shipped"),
                            Moment(day, 480 + Roll(540)), Unless(OneIn(5), Date(day + days{7 + Roll(30)})),
                            Unless(is_cancelled || is_open, Date(shipped)), Money(total),
                            std::int64_t{OneIn(9)}, Unless(!OneIn(6), std::string(Any(kNotes)))});
    if (!is_cancelled && !is_open) SendInvoice(id, shipped, total);
  }

  std::int64_t AddLines(std::int64_t order) {
    std::int64_t total = 0;
    for (std::int64_t position = 1, count = 1 + Roll(3); position <= count; ++position) {
      const std::int64_t product = 1 + Roll(kProducts);
      const std::int64_t price = prices_[static_cast<std::size_t>(product - 1)];
      const std::int64_t quantity = 1 + Roll(24);
      const auto id = static_cast<std::int64_t>(lines_.rows.size()) + 1;
      lines_.rows.push_back({id, order, position, product, quantity, Money(price)});
      total += price * quantity;
    }
    return total;
  }

  void SendInvoice(std::int64_t order, local_days shipped, std::int64_t total) {
    const auto id = static_cast<std::int64_t>(invoices_.rows.size()) + 1;
    const local_days due = shipped + days{30};
    const local_days paid_on = shipped + days{5 + Roll(40)};
    const bool is_paid = paid_on <= today_ && !OneIn(15);
    const std::int64_t reminders = is_paid || due >= today_ ? 0 : 1 + Roll(3);
    invoices_.rows.push_back({id, "INV-" + std::to_string(100'000 + id), order, Date(shipped), Date(due),
                              Money(total), std::int64_t{is_paid}, Unless(!is_paid, Date(paid_on)),
                              reminders});
  }

  local_days today_;
  std::mt19937 dice_{20'240'229};     // NOLINT(*-msc51-cpp): the same company every time
  std::vector<std::int64_t> prices_;  // of the products, in cents
  SampleTable employees_{"employees", {}}, customers_{"customers", {}}, products_{"products", {}},
      stock_{"stock", {}}, orders_{"orders", {}}, lines_{"order_lines", {}}, invoices_{"invoices", {}};
};

}  // namespace

std::vector<SampleTable> SampleTables(local_days today) {
  return Company(today).Tables();
}

}  // namespace plovix
