#include "category_rows.h"

#include <utility>

namespace plovix {
namespace {

class CategoryRowsCursor final : public RowCursor {
 public:
  CategoryRowsCursor(std::vector<std::string> columns, std::unique_ptr<RowCursor> before)
      : columns_(std::move(columns)), before_(std::move(before)) {}
  [[nodiscard]] bool Next() override {
    if (before_ && before_->Next()) return true;
    before_.reset();
    return next_++ < columns_.size();
  }
  [[nodiscard]] std::size_t Columns() const override { return 1; }
  [[nodiscard]] std::string_view Name(std::size_t /*column*/) const override { return "Category"; }
  [[nodiscard]] std::string_view Text(std::size_t column) const override {
    return before_ ? before_->Text(column) : std::string_view(columns_.at(next_ - 1));
  }

 private:
  std::vector<std::string> columns_;
  std::unique_ptr<RowCursor> before_;
  std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<RowCursor> CategoryRows(std::vector<std::string> columns, std::unique_ptr<RowCursor> before) {
  return std::make_unique<CategoryRowsCursor>(std::move(columns), std::move(before));
}

}  // namespace plovix
