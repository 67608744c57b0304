// The query model: written as SQL, read back, checked. What the texts mean to a database is held in
// tests/data.
#include <gmock/gmock.h>
#include <plovix/standalone/query/query_text.h>

#include <tuple>

#include "query_support.h"

namespace plovix {
namespace {

using test::kFields;
using test::Read;

TEST(Query, IsReadFromWhatAPersonTypesAndWrittenInOneWay) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"select * from ORDERS", ""},
      {"SELECT*FROM[orders];;", ""},
      {"select * from `orders` where Status='it''s'", R"("status" = 'it''s')"},
      {"select * from orders where [status] != 'a' and total==-5", R"("status" <> 'a' AND "total" = -5)"},
      {"select * from orders -- all\n where/* x */total>=+1.50", R"("total" >= 1.50)"},
      {R"(select * from "orders" where status = 'a' or total < .5 and due is null)",
       R"("status" = 'a' OR ("total" < .5 AND "due" IS NULL))"},
      {"select * from orders where ((total <= 1)) and (status = '' or (due isnull))",
       R"("total" <= 1 AND ("status" = '' OR "due" IS NULL))"},
      {"select * from orders where ((total > 1) and (paid = true or paid <> FALSE))",
       R"("total" > 1 AND ("paid" = 1 OR "paid" <> 0))"},
      {"select * from orders where (total > 1 or total < 0)", R"(("total" > 1 OR "total" < 0))"},
      {"select * from orders where status like '%a' or status like 'a%' or status like '%a%'",
       R"("status" LIKE '%a' OR "status" LIKE 'a%' OR "status" LIKE '%a%')"},
      {R"(select * from orders where status like '%5!%\%' escape '!')",
       R"("status" LIKE '%5\%\\%' ESCAPE '\')"},
      {R"(select * from orders where "odd ""]" = cast(x'610062' as text))",
       R"("odd ""]" = CAST(x'610062' AS TEXT))"},
      {"select * from orders where due > '2024-02-29' and photo notnull",
       R"("due" > '2024-02-29' AND "photo" IS NOT NULL)"},
      {"select * from orders where at < '2024-02-29T10:00'", R"("at" < '2024-02-29T10:00')"}};
  for (const auto& [typed, where] : cases) {
    const auto read = Read(typed);
    const auto* model = std::get_if<QueryModel>(&read);
    ASSERT_NE(model, nullptr) << typed << ": " << std::get<NotExpressible>(read).reason;
    const std::string text = QueryText(*model, kFields);
    EXPECT_EQ(text, R"(SELECT * FROM "orders")" + (where.empty() ? "" : " WHERE " + where));
    EXPECT_EQ(Read(text), read) << text;
  }
  for (const char* blank : {"", " \n\t", "-- nothing", "/* */ -- x"})
    EXPECT_TRUE(std::holds_alternative<NothingAsked>(Read(blank))) << blank;
}

TEST(Query, SaysWhyRowsCannotShowAText) {
  const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"delete from orders", "select", ""},
      {"select status from orders", "columns", ""},
      {"select * from customers", "object", "customers"},
      {"select * from main.orders", "object", "main"},
      {"select * from orders, customers", "several", ""},
      {"select * from orders o", "alias", ""},
      {"select * from orders order by 1", "clause", "order"},
      {"select * from orders; select 1", "statements", ""},
      {"select * from orders where not total = 1", "not", ""},
      {"select * from orders where status not like 'a%'", "not", ""},
      {"select * from orders where upper(status) = 'A'", "function", "upper"},
      {"select * from orders where total in (1, 2)", "operator", "in"},
      {"select * from orders where total = 1 + 1", "expression", ""},
      {"select * from orders where 1 = total", "expression", ""},
      {"select * from orders where paid", "syntax", ""},
      {"select * from orders where total = 1 and (paid = 1 or (paid = 0 and total = 2))", "depth", ""},
      {"select * from orders where " + std::string(100'000, '('), "depth", ""},
      {"select * from orders where nosuch = 1", "field", "nosuch"},
      {"select * from orders where total = paid", "fields", ""},
      {R"(select * from orders where status = "open")", "quotes", "open"},
      {"select * from orders where total = NULL", "null", ""},
      {"select * from orders where total = '1'", "type", "total"},
      {"select * from orders where photo = 'a'", "type", "photo"},
      {"select * from orders where status like 'a_c'", "pattern", ""},
      {"select * from orders where status like 'abc'", "pattern", ""},
      {R"(select * from orders where status like '%a\' escape '\')", "pattern", ""},
      {"select * from orders where status = 'a", "syntax", ""},
      {std::string("select * from orders\0 where total = 1", 37), "syntax", ""},
      {"select * from orders where total = 1x", "syntax", ""},
      {"select * from orders where status = 'a' and", "syntax", ""}};
  for (const auto& [text, reason, detail] : cases) {
    const auto read = Read(text);
    const auto* refused = std::get_if<NotExpressible>(&read);
    ASSERT_NE(refused, nullptr) << text;
    EXPECT_EQ(refused->reason, "query.reason." + reason) << text;
    EXPECT_EQ(refused->detail, detail) << text;
  }
}

TEST(Query, TellsWhatIsWrongWithAValue) {
  using enum Comparison;
  const std::vector<std::tuple<FieldType, Comparison, std::string, std::string>> cases = {
      {FieldType::kInteger, kEquals, "1.5", "integer"},
      {FieldType::kInteger, kLess, "9223372036854775808", "integerRange"},
      {FieldType::kInteger, kContains, "1", "comparison"},
      {FieldType::kReal, kEquals, "1e999", "real"},
      {FieldType::kReal, kEquals, "1,5", "real"},
      {FieldType::kBoolean, kEquals, "yes", "boolean"},
      {FieldType::kDate, kEquals, "2023-02-29", "date"},
      {FieldType::kDate, kEquals, "", "missing"},
      {FieldType::kDateTime, kEquals, "2024-02-29 25:00", "dateTime"},
      {FieldType::kText, kEquals, "", ""},
      {FieldType::kText, kContains, "", "missing"},
      {FieldType::kText, kContains, std::string("a\0b", 3), "zero"},
      {FieldType::kBinary, kIsEmpty, "", ""}};
  for (const auto& [type, comparison, value, problem] : cases) {
    EXPECT_EQ(CheckCondition({"x", comparison, value}, type).value_or(""),
              problem.empty() ? "" : "query.problem." + problem)
        << value;
  }
}

}  // namespace
}  // namespace plovix
