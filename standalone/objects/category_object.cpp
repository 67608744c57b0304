#include "category_object.h"

#include <plovix/standalone/tasks/category_column.h>

#include "call_gate.h"
#include "host_state.h"
#include "list_position.h"

namespace plovix {

std::string CategoryObject::Tag() {
  Called("Category.Tag");
  return record.tag;
}

void CategoryObject::SetTag(const std::string& tag) {
  Called("Category.SetTag");
  record.tag = tag;
}

std::string CategoryObject::Text() {
  Called("Category.Text");
  return state_.TagText(record.tag);
}

bool CategoryObject::Public() {
  Called("Category.Public");
  return record.is_public;
}

std::int32_t CategoryListObject::Count() {
  Called("CategoryList.Count");
  return static_cast<std::int32_t>(items_.size());
}

std::shared_ptr<Category> CategoryListObject::Item(std::int32_t index) {
  Called("CategoryList.Item");
  return items_[ListPosition(index, items_.size())];
}

void CategoryListObject::Add(std::shared_ptr<Category> category) {
  Called("CategoryList.Add");
  auto own = std::dynamic_pointer_cast<CategoryObject>(category);
  if (!own) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  items_.push_back(std::move(own));
}

std::shared_ptr<CategoryList> CategoryListObject::Clone() {
  Called("CategoryList.Clone");
  return std::make_shared<CategoryListObject>(state_, Records());
}

void CategoryListObject::Load(const std::string& column) {
  Called("CategoryList.Load");
  Assign(DecodeCategories(column));
}

bool CategoryListObject::Edit(bool tagged, bool /*choose_tags*/,
                              const std::shared_ptr<TextCollection>& known) {
  Called("CategoryList.Edit");
  const auto edited = state_.dialogs->EditCategories(Records(), tagged, TextsOf(known.get()));
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

std::int32_t TextCollectionObject::Count() {
  Called("TextCollection.Count");
  return static_cast<std::int32_t>(texts_.size());
}

std::string TextCollectionObject::Item(std::int32_t index) {
  Called("TextCollection.Item");
  return texts_[ListPosition(index, texts_.size())];
}

std::vector<std::string> TextsOf(const HostObject* collection) {
  const auto* own = dynamic_cast<const TextCollectionObject*>(collection);
  return own != nullptr ? own->Texts() : std::vector<std::string>();
}

}  // namespace plovix
