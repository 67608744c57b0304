// The categories of the details page: the list of those in use, and the task's own.
#include "details.h"

namespace plovix {
namespace {

const char* const kCategoryQuery = "SELECT Category FROM VeloAutoTasks";
const char* const kCategoryColumn = "Category";
// The kind of recordset that the host is asked for.
constexpr std::int32_t kRecordsetType = 4;
constexpr std::int32_t kRecordsetOptions = 0;
constexpr std::int32_t kRecordsetFlags = -1;
const char* const kSeveralCategories = "...";

// A column without a value counts as empty.
std::string TextOf(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr ? *text : std::string();
}

}  // namespace

// A column text that has been met brings nothing new, unless something was skipped at it: hundreds of
// thousands of tasks may share it.
void Details::RetrieveCategories() {
  Procedure("RetrieveCategories", [&](Statements& run) {
    std::shared_ptr<Recordset> rows;
    run([&] {
      rows = Set(Set(Application()->Database())->Connection())
                 ->OpenRecordset(kCategoryQuery, kRecordsetType, kRecordsetOptions, std::nullopt,
                                 kRecordsetFlags);
    });
    if (run.If([&] { return Set(rows)->Bof() && rows->Eof(); })) return;
    run([&] { CategoryTags = Set(Services().Factory())->NewTextCollection(); });
    std::unordered_set<std::string> met;
    while (run.If([&] { return !Set(rows)->Eof(); })) {
      std::string column;
      run([&] { column = TextOf(Set(rows->Fields(kCategoryColumn))->Value()); });
      const int skipped = run.Skipped();
      if (!column.empty() && !met.contains(column)) ListCategories(run, column);
      if (run.Skipped() == skipped) met.insert(column);
      run([&] { rows->MoveNext(); });
    }
    CategoriesLoaded = true;
  });
}

void Details::ListCategories(Statements& run, const std::string& column) {
  std::shared_ptr<CategoryList> list;
  run([&] { list = Set(Services().Factory())->NewCategoryList(); });
  run([&] { Set(list)->Load(column); });
  for (std::int32_t index = 1; run.If([&] { return index <= Set(list)->Count(); }); ++index) {
    ListCategory(run, *list, index);
  }
}

void Details::ListCategory(Statements& run, CategoryList& list, std::int32_t index) {
  std::shared_ptr<Category> category;
  run([&] { category = list.Item(index); });
  const bool is_public = run.If([&] { return Set(category)->Public(); });
  if (!is_public &&
      !run.If([&] { return Set(Application()->UserRights())->HasRight(kRightSeeAllCategories); }))
    return;
  if (run.If([&] { return IsCategoryListed(Set(category)->Text()); })) return;
  const int entry = cboCategory.Count();
  std::string text;
  run([&] {
    text = Set(category)->Text();
    if (ListedCategories.insert(ServicesUtilities().FoldCase(text)).second) cboCategory.AddItem(text);
  });
  if (cboCategory.Count() == entry) return;
  if (TaggedTask) {
    run([&] {
      const std::string tag = Set(category)->Tag();
      Set(CategoryTags)->Add(tag, tag);
    });
    run([&] { cboCategory.SetItemData(entry, Set(CategoryTags)->Count()); });
  } else {
    run([&] { Set(CategoryTags)->Add(text, text); });
  }
}

bool Details::IsCategoryListed(const std::string& text) const {
  return ListedCategories.contains(ServicesUtilities().FoldCase(text));
}

void Details::RetrieveOwnCategories(Statements& run) {
  std::shared_ptr<CategoryList> own;
  run([&] { own = Set(Task)->Categories(); });
  if (own) run([&] { Categories = own->Clone(); });
  if (!own) run([&] { Categories = Set(Services().Factory())->NewCategoryList(); });
}

Outcome Details::ShowCategoryInfo() {
  return Procedure("ShowCategoryInfo", [&](Statements& run) {
    std::int32_t count = 0;
    run([&] { count = Set(Categories)->Count(); });
    MultipleCategories = count >= 2;
    cboCategory.SetEnabled(!MultipleCategories && !TaggedTask);
    cmdCategoryLangTag.SetVisible(!MultipleCategories && TaggedTask);
    if (MultipleCategories) {
      cboCategory.SetText(kSeveralCategories);
      return;
    }
    std::string tag;
    if (count == 1) run([&] { tag = Set(Categories->Item(1))->Tag(); });
    std::string text;
    if (count == 1) run([&] { text = Set(Application()->Language())->TagText(tag, nullptr); });
    cboCategory.SetText(text);
    if (TaggedTask) CategoryTag = tag;  // none where the editor has emptied the list
  });
}

// Without a text there is one category with an empty text, never an empty list.
Outcome Details::ApplyCategories() {
  return Procedure("ApplyCategories", [&](Statements& run) {
    if (MultipleCategories) return;
    std::shared_ptr<Category> category;
    if (run.If([&] { return Set(Categories)->Count() > 0; })) {
      run([&] { category = Categories->Item(1); });
    } else {
      run([&] { category = Set(Services().Factory())->NewCategory(); });
      run([&] { Set(Categories)->Add(Set(category)); });
    }
    if (TaggedTask) {
      run([&] { Set(category)->SetTag(CategoryTag); });
      return;
    }
    run([&] {
      Set(category)->SetTag(
          Set(Application()->Language())->TagForText(category->Tag(), cboCategory.Text(), ""));
    });
  });
}

void Details::ShowCategoriesEditor() {
  Procedure("ShowCategoriesEditor", [&](Statements& run) {
    if (!run.If([&] { return Set(Application()->UserRights())->HasRight(kRightEditCategories); })) return;
    if (ApplyCategories() == Outcome::kLeft) Statements::Leave();
    if (run.If([&] { return Set(Categories)->Edit(TaggedTask, TaggedTask, CategoryTags); }))
      ShowCategoryInfo();
  });
}

void Details::cboCategory_DropDown() {
  Procedure("cboCategory_DropDown", [&](Statements& /*run*/) {
    if (!CategoriesLoaded) RetrieveCategories();
  });
}

}  // namespace plovix
