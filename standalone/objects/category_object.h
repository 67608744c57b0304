/// @file
/// The stand-alone host's objects behind Category, CategoryList and TextCollection.
#pragma once

#include <plovix/host/category_list.h>
#include <plovix/standalone/tasks/task_record.h>

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "arguments.h"
#include "gated_fields.h"

namespace plovix {

struct HostState;

/// A category over plain values.
class CategoryObject final : public FieldsObject<Category, CategoryRecord> {
 public:
  /// `state` outlives the object.
  explicit CategoryObject(HostState& state, const CategoryRecord& initial = {})
      : FieldsObject(initial), state_(state) {}
  [[nodiscard]] std::string Tag() override { return Get<&CategoryRecord::tag>(); }
  void SetTag(const std::string& tag) override { Put<&CategoryRecord::tag>(tag); }
  [[nodiscard]] std::string Text() override;
  [[nodiscard]] bool Public() override { return Get<&CategoryRecord::is_public>(); }

 private:
  HostState& state_;
};

/// The categories of a task, or those of a stored column.
class CategoryListObject final : public CategoryList {
 public:
  /// Creates an object for each record; `state` outlives the list.
  explicit CategoryListObject(HostState& state, const std::vector<CategoryRecord>& initial = {})
      : state_(state) {
    Assign(initial);
  }
  [[nodiscard]] std::int32_t Count() override { return Gated("CategoryList.Count", CountOf(items_)); }
  [[nodiscard]] Ref<Category> Item(std::int32_t index) override;
  /// Fails with 13 on a category that this host did not create.
  void Add(Ref<Category> category) override;
  [[nodiscard]] Ref<CategoryList> Clone() override;
  void Load(const std::string& column) override;
  [[nodiscard]] bool Edit(bool tagged, bool choose_tags, const Ref<TextCollection>& known) override;

  /// @{
  /// The host's own view, not gated: reads the values from the objects, or replaces these by new ones.
  [[nodiscard]] std::vector<CategoryRecord> Records() const;
  void Assign(const std::vector<CategoryRecord>& records);
  /// @}

 private:
  HostState& state_;
  std::vector<Ref<CategoryObject>> items_;
};

/// Texts in memory.
class TextCollectionObject final : public TextCollection {
 public:
  void Add(const std::string& text, const std::string& key) override;
  [[nodiscard]] std::int32_t Count() override { return Gated("TextCollection.Count", CountOf(texts_)); }
  [[nodiscard]] std::string Item(std::int32_t index) override;

  /// The host's own view, not gated.
  [[nodiscard]] const std::vector<std::string>& Texts() const noexcept { return texts_; }

 private:
  std::vector<std::string> texts_;
  std::unordered_set<std::string> keys_;
};

/// The texts of a collection that a page passed; none for nullptr or another kind of object.
[[nodiscard]] std::vector<std::string> TextsOf(const HostObject* collection);

}  // namespace plovix
