// The categories of a task, and how stored lists of them are read.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "text_collection.h"
#include "value.h"

namespace plovix {

class Category : public HostObject {
 public:
  [[nodiscard]] virtual std::string Tag() = 0;  // language tag that carries the text
  virtual void SetTag(const std::string& tag) = 0;
  [[nodiscard]] virtual std::string Text() = 0;  // the tag's text in the current language
  [[nodiscard]] virtual bool Public() = 0;
};

// Holds its categories by reference.
class CategoryList : public HostObject {
 public:
  [[nodiscard]] virtual std::int32_t Count() = 0;
  // 1-based; fails with 9 outside 1 .. Count().
  [[nodiscard]] virtual std::shared_ptr<Category> Item(std::int32_t index) = 0;
  virtual void Add(std::shared_ptr<Category> category) = 0;
  // A list of its own with copies of the categories; never nothing.
  [[nodiscard]] virtual std::shared_ptr<CategoryList> Clone() = 0;
  // Replaces the categories by those that a stored column value holds; the format is the host's.
  virtual void Load(const std::string& column) = 0;
  // Opens the host's category editor on this list; true when the user changed it. `tagged`: the texts are
  // language tags; `choose_tags`: they are chosen in the tag editor; `known`: tags, or texts, of the
  // categories in use, or nothing.
  [[nodiscard]] virtual bool Edit(bool tagged, bool choose_tags,
                                  const std::shared_ptr<TextCollection>& known) = 0;
};

}  // namespace plovix
