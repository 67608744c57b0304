/// @file
/// The categories of a task, and how stored lists of them are read.
#pragma once

#include <cstdint>
#include <string>

#include "text_collection.h"
#include "value.h"

namespace plovix {

/// Belongs to its list; new ones come from ObjectFactory::NewCategory. Used by the Details page.
class Category : public HostObject {
 public:
  /// @{
  /// Language tag that carries the text.
  [[nodiscard]] virtual std::string Tag() = 0;
  virtual void SetTag(const std::string& tag) = 0;
  /// @}
  [[nodiscard]] virtual std::string Text() = 0;  ///< the tag's text in the current language
  /// Whether everybody may see it; otherwise only users with kRightSeeAllCategories may.
  [[nodiscard]] virtual bool Public() = 0;
};

/// Holds its categories by reference. Used by the Details page.
class CategoryList : public HostObject {
 public:
  /// The number of categories.
  [[nodiscard]] virtual std::int32_t Count() = 0;
  /// 1-based; fails with 9 outside 1 .. Count().
  [[nodiscard]] virtual Ref<Category> Item(std::int32_t index) = 0;
  /// Appends a category, which is never null.
  virtual void Add(Ref<Category> category) = 0;
  /// A separate list with copies of the categories; never null.
  [[nodiscard]] virtual Ref<CategoryList> Clone() = 0;
  /// Replaces the categories by those in a stored column value, whose format the host defines. Called for
  /// every row of the query on stored tasks; fails if the value cannot be read.
  virtual void Load(const std::string& column) = 0;
  /// Opens the host's category editor on this list; true if the user changed it. Modal.
  /// @param tagged       the texts are language tags
  /// @param choose_tags  the tags are chosen in the tag editor
  /// @param known        tags, or texts, of the categories in use; may be null
  [[nodiscard]] virtual bool Edit(bool tagged, bool choose_tags, const Ref<TextCollection>& known) = 0;
};

}  // namespace plovix
