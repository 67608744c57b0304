// The categories on the details page: the list of those in use, and the task's own.
#include "details.h"

namespace plovix {
namespace {

const char* const kCategoryQuery = "SELECT Category FROM VeloAutoTasks";
const char* const kCategoryColumn = "Category";
// The kind of recordset requested from the host.
constexpr std::int32_t kRecordsetType = 4;
constexpr std::int32_t kRecordsetOptions = 0;
constexpr std::int32_t kRecordsetFlags = -1;
constexpr int kTriesOfARow = 2;
const char* const kSeveralCategories = "...";

// A column without a value counts as empty.
std::string TextOf(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr ? *text : std::string();
}

}  // namespace

// A column text is read only once, unless a statement was skipped: hundreds of thousands of tasks may share
// it.
void Details::RetrieveCategories() {
  Procedure("RetrieveCategories", [&](Statements& run) {
    Ref<Recordset> rows;
    run([&] {
      rows = Application()->Database()->Connection()->OpenRecordset(
          kCategoryQuery, kRecordsetType, kRecordsetOptions, std::nullopt, kRecordsetFlags);
    });
    if (run.If([&] { return rows->Bof() && rows->Eof(); })) return;
    if (!CategoryTags) run([&] { CategoryTags = Services().Factory()->NewTextCollection(); });
    const EntryBatch batch(cboCategory);
    std::unordered_set<std::string> met;
    int stuck = 0;  // a row that cannot be left would be read forever
    while (stuck < kTriesOfARow && run.If([&] { return !rows->Eof(); })) {
      const auto column = run.Get([&] { return TextOf(rows->Fields(kCategoryColumn)->Value()); });
      const int skipped = run.Skipped();
      if (!column.empty() && !met.contains(column)) ListCategories(run, column);
      if (run.Skipped() == skipped) met.insert(column);
      stuck = run([&] { rows->MoveNext(); }) ? 0 : stuck + 1;
    }
    CategoriesLoaded = run.Skipped() == 0;  // otherwise the list is read again when it is opened
  });
}

void Details::ListCategories(Statements& run, const std::string& column) {
  const auto list = run.Get([&] { return Services().Factory()->NewCategoryList(); });
  run([&] { list->Load(column); });
  for (std::int32_t index = 1; run.If([&] { return index <= list->Count(); }); ++index) {
    ListCategory(run, *list, index);
  }
}

void Details::ListCategory(Statements& run, CategoryList& list, std::int32_t index) {
  const auto category = run.Get([&] { return list.Item(index); });
  const bool is_public = run.If([&] { return category->Public(); });
  if (!is_public && !run.If([&] { return Application()->UserRights()->HasRight(kRightSeeAllCategories); }))
    return;
  const auto text = run.Read([&] { return category->Text(); });
  if (!text) return;
  const auto folded = run.Read([&] { return ServicesUtilities().FoldCase(*text); });
  if (!folded || IsCategoryListed(*folded)) return;
  const auto tag = run.Read([&] { return TaggedTask ? category->Tag() : *text; });
  if (!tag) return;
  ListedCategories.insert(*folded);
  const int entry = cboCategory.Count();
  cboCategory.AddItem(*text);
  run([&] { CategoryTags->Add(*tag, *tag); });
  if (TaggedTask) run([&] { cboCategory.SetItemData(entry, CategoryTags->Count()); });
}

bool Details::IsCategoryListed(const std::string& folded) const {
  return ListedCategories.contains(folded);
}

void Details::RetrieveOwnCategories(Statements& run) {
  const auto own = run.Read([&] { return Task->Categories(); });
  if (!own) return;
  if (*own) run([&] { Categories = (*own)->Clone(); });
  if (!*own) run([&] { Categories = Services().Factory()->NewCategoryList(); });
}

Outcome Details::ShowCategoryInfo() {
  return Procedure("ShowCategoryInfo", [&](Statements& run) {
    CategoryTag.clear();
    cboCategory.SetText("");
    MarkUnread(CategoryTag);
    MarkUnread(cboCategory);
    const auto count = run.Read([&] { return Categories->Count(); });
    if (!count) return;
    MultipleCategories = *count >= 2;
    cboCategory.SetEnabled(!MultipleCategories && !TaggedTask);
    cmdCategoryLangTag.SetVisible(!MultipleCategories && TaggedTask);
    if (MultipleCategories) {
      cboCategory.SetText(kSeveralCategories);
      return;
    }
    const bool is_one = *count == 1;  // otherwise there is nothing to read
    const bool known =
        Load(run, CategoryTag, [&] { CategoryTag = is_one ? Categories->Item(1)->Tag() : ""; });
    const auto show = [&] {
      cboCategory.SetText(is_one ? Application()->Language()->TagText(CategoryTag, nullptr) : "");
    };
    if (known) Load(run, cboCategory, show);
  });
}

// An empty text gives one category with an empty text, never an empty list.
Outcome Details::ApplyCategories() {
  return Procedure("ApplyCategories", [&](Statements& run) {
    if (MultipleCategories) return;
    const auto count = run.Read([&] { return Categories->Count(); });
    if (!count) return;
    const bool is_new = *count == 0;
    Ref<Category> category;
    run([&] { category = is_new ? Services().Factory()->NewCategory() : Categories->Item(1); });
    const auto file = [&] {
      const auto language = Application()->Language();
      category->SetTag(language->TagForText(category->Tag(), cboCategory.Text(), ""));
    };
    const bool tagged = TaggedTask ? Save(run, CategoryTag, [&] { category->SetTag(CategoryTag); })
                                   : Save(run, cboCategory, file);
    if (is_new && tagged) run([&] { Categories->Add(category); });
  });
}

void Details::ShowCategoriesEditor() {
  Procedure("ShowCategoriesEditor", [&](Statements& run) {
    if (!run.If([&] { return Application()->UserRights()->HasRight(kRightEditCategories); })) return;
    if (ApplyCategories() == Outcome::kLeft) Statements::Leave();
    if (run.If([&] { return Categories->Edit(TaggedTask, TaggedTask, CategoryTags); })) ShowCategoryInfo();
  });
}

void Details::cboCategory_DropDown() {
  Procedure("cboCategory_DropDown", [&](Statements& /*run*/) {
    if (!CategoriesLoaded) RetrieveCategories();
  });
}

}  // namespace plovix
