#include "category_object.h"

#include <plovix/standalone/tasks/category_column.h>

#include "host_state.h"

namespace plovix {

std::string CategoryObject::Text() {
  Called("Category.Text");
  return state_.TagText(record.tag);
}

Ref<Category> CategoryListObject::Item(std::int32_t index) {
  Called("CategoryList.Item");
  return ItemAt(items_, index);
}

void CategoryListObject::Add(Ref<Category> category) {
  Called("CategoryList.Add");
  items_.push_back(OwnObject<CategoryObject>(category));
}

Ref<CategoryList> CategoryListObject::Clone() {
  Called("CategoryList.Clone");
  return std::make_shared<CategoryListObject>(state_, Records());
}

void CategoryListObject::Load(const std::string& column) {
  Called("CategoryList.Load");
  Assign(DecodeCategories(column));
}

bool CategoryListObject::Edit(bool tagged, bool /*choose_tags*/, const Ref<TextCollection>& known) {
  Called("CategoryList.Edit");
  const auto edited = state_.dialogs->EditCategories(Records(), tagged, TextsOf(known.Get()));
  if (edited) Assign(*edited);
  return edited.has_value();
}

std::vector<CategoryRecord> CategoryListObject::Records() const {
  std::vector<CategoryRecord> records;
  records.reserve(items_.size());
  for (const auto& item : items_) records.push_back(item->record);
  return records;
}

void CategoryListObject::Assign(const std::vector<CategoryRecord>& records) {
  items_.clear();
  for (const CategoryRecord& record : records)
    items_.push_back(std::make_shared<CategoryObject>(state_, record));
}

void TextCollectionObject::Add(const std::string& text, const std::string& key) {
  Called("TextCollection.Add");
  if (!keys_.insert(key).second) {
    throw Failure(failure_number::kKeyInUse, "This key is already associated with an element: " + key);
  }
  texts_.push_back(text);
}

std::string TextCollectionObject::Item(std::int32_t index) {
  Called("TextCollection.Item");
  return ItemAt(texts_, index);
}

std::vector<std::string> TextsOf(const HostObject* collection) {
  const auto* own = dynamic_cast<const TextCollectionObject*>(collection);
  return own != nullptr ? own->Texts() : std::vector<std::string>();
}

}  // namespace plovix
