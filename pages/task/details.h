// The page that names the task: texts (literal, or language tags), category, data object and settings.
#pragma once

#include <plovix/designs/task_designs.h>
#include <plovix/framework/page_controls.h>

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

  // Whether the texts are edited as language tags: a task that uses them keeps them; a new one follows
  // the application's mode unless the marker file in the application's folder forces literal texts.
  bool IsTaggedTask();
  // Whether the user may give the task to the automation manager, or take it back.
  [[nodiscard]] bool MayBeAutomatic() const;
  // Opens the tag editor on `tag` and shows the chosen tag's text in `box`.
  void ChooseTag(std::string_view procedure, std::string& tag, TextBox& box);
  void txtName_LostFocus();
  void UserControl_Show();

  bool Importing = false;
  bool TaggedTask = false;
  std::string NameTag;
  std::string DescriptionTag;
  std::string ShortDescriptionTag;

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
