// The page that names the task: texts (literal, or language tags), category, data object and settings.
#pragma once

#include <plovix/designs/task_designs.h>
#include <plovix/framework/page_controls.h>

#include <unordered_set>
#include <utility>
#include <vector>

namespace plovix {

class Details final : public PageWith<kDetailsDesign> {
 public:
  Details();

  void IWizardPage_GetNextPage(std::string& next) override;

 private:
  void Prepare() override;
  Outcome RetrieveValues() override;
  Outcome InitControls();
  Outcome SaveOnBack() override { return Outcome::kCompleted; }  // Back saves nothing here
  bool Validate() override;
  Outcome SaveValues() override;

  // Whether the texts are edited as language tags. A task that uses them keeps them; a new one follows the
  // application's mode, unless the marker file in the application's folder forces literal texts.
  bool IsTaggedTask();
  void Forget();
  // Opens the tag editor on `tag`, with `choices` (may be null), and shows the chosen tag's text in `box`.
  template <class Box>
  void ChooseTag(std::string_view procedure, std::string& tag, const Ref<TextCollection>& choices, Box& box);
  void txtName_LostFocus();
  void UserControl_Show();

  // Categories (details_categories.cpp).
  // Adds the categories of all stored tasks to the list of the box.
  void RetrieveCategories();
  void ListCategories(Statements& run, const std::string& column);
  void ListCategory(Statements& run, CategoryList& list, std::int32_t index);
  [[nodiscard]] bool IsCategoryListed(const std::string& folded) const;
  void RetrieveOwnCategories(Statements& run);
  Outcome ShowCategoryInfo();
  // Copies the box's text into the working list, unless that has several categories.
  Outcome ApplyCategories();
  void ShowCategoriesEditor();
  void cboCategory_DropDown();

  // Settings and data object (details_data.cpp).
  void RetrieveSettings(Statements& run);
  // The kind of a stored task, the kind chosen before for a new one, or the only kind that the user may
  // create. Lets failures through, like the next one.
  [[nodiscard]] bool IsPersonal() const;
  // Whether the user may give the task to the automation manager or take it away.
  [[nodiscard]] bool MayBeAutomatic() const;
  void InitDataObjects(Statements& run);
  // All or nothing: a failure leaves the list and the choice unchanged.
  void RetrieveDataObjects();
  using Entries = std::vector<std::pair<std::string, std::int32_t>>;  // captions and handles
  [[nodiscard]] Entries Listed() const;
  [[nodiscard]] Entries OfferedDataObjects(Statements& run, std::int16_t mode);
  // The first entry with that text, ignoring case; -1 if there is none.
  [[nodiscard]] static int FindEntry(Statements& run, const Entries& entries, const std::string& text);
  void SaveDataObject(Statements& run);
  // Returns the current user's id for a personal task, otherwise an empty one; nothing if it is unknown.
  Outcome GetOwner(std::optional<std::string>& owner);
  bool HasInvalidActions();
  void ClearInvalidActions();
  [[nodiscard]] bool IsInvalid(Action& action, std::int32_t mode_bit) const;
  void cboDataObject_DropDown();
  void cboDataObject_Click();
  void chkPersonalTask_Click();
  void chkAutoMan_Click();
  void lblPermissions_Click();

  bool Loading = false;           // while RetrieveValues runs
  bool RevertingAutoMan = false;  // while chkAutoMan goes back after the user declined
  bool Importing = false;
  bool CreateGroup = false;
  bool CreatePersonal = false;
  bool PersonalTaskEnabled = false;  // what chkPersonalTask is without the automation manager
  bool TaggedTask = false;
  std::string NameTag;
  std::string DescriptionTag;
  std::string ShortDescriptionTag;

  Ref<CategoryList> Categories;  // the working list; the task gets it in SaveValues
  bool MultipleCategories = false;
  std::string CategoryTag;
  Ref<TextCollection> CategoryTags;                  // of the listed categories; nothing before there is one
  std::unordered_set<std::string> ListedCategories;  // their texts, folded
  bool CategoriesLoaded = false;

  Ref<plovix::DataObject> DataObject;
  Ref<DataObjectCollection> DataObjects;
  bool DataObjectsLoaded = false;

  CommandButton& cmdShortDescriptionLangTag = control<"cmdShortDescriptionLangTag">();
  CommandButton& cmdDescriptionLangTag = control<"cmdDescriptionLangTag">();
  CommandButton& cmdNameLangTag = control<"cmdNameLangTag">();
  CommandButton& cmdCategoryLangTag = control<"cmdCategoryLangTag">();
  CheckBox& chkSkipRowSelection = control<"chkSkipRowSelection">();
  CheckBox& chkAutoMan = control<"chkAutoMan">();
  CheckBox& chkPersonalTask = control<"chkPersonalTask">();
  TextBox& txtName = control<"txtName">();
  TextBox& txtDescription = control<"txtDescription">();
  ComboBox& cboCategory = control<"cboCategory">();
  ComboBox& cboDataObject = control<"cboDataObject">();
  TextBox& txtShortDescription = control<"txtShortDescription">();
  Label& lblPermissions = control<"lblPermissions">();
  Label& lblCategory = control<"lblCategory">();
};

}  // namespace plovix
