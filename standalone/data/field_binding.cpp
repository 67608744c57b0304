#include "field_binding.h"

namespace plovix {
namespace {

class FieldBinder {
 public:
  FieldBinder(Statement& statement, int parameter) : statement_(statement), parameter_(parameter) {}
  void operator()(std::monostate /*null*/) const { statement_.BindNull(parameter_); }
  void operator()(std::int64_t value) const { statement_.BindInteger(parameter_, value); }
  void operator()(double value) const { statement_.BindReal(parameter_, value); }
  void operator()(const std::string& value) const { statement_.BindText(parameter_, value); }
  void operator()(const Blob& value) const { statement_.BindBlob(parameter_, value.bytes); }

 private:
  Statement& statement_;
  int parameter_;
};

}  // namespace

void BindField(Statement& statement, int parameter, const FieldValue& value) {
  std::visit(FieldBinder(statement, parameter), value);
}

FieldValue FieldIn(const Statement& row, int column) {
  switch (row.Type(column)) {
    case ColumnType::kInteger:
      return row.Integer(column);
    case ColumnType::kReal:
      return row.Real(column);
    case ColumnType::kText:
      return std::string(row.Text(column));
    case ColumnType::kBlob:
      return Blob{std::string(row.Text(column))};
    case ColumnType::kNull:
      break;
  }
  return {};
}

}  // namespace plovix
