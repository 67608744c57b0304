#include "host_state.h"

#include <plovix/base/same_name.h>
#include <plovix/standalone/text/fold_case.h>

#include <algorithm>
#include <charconv>
#include <ctime>
#include <filesystem>

#include "call_gate.h"
#include "category_object.h"
#include "recurrence_object.h"
#include "session_object.h"
#include "state_object.h"

namespace plovix {
namespace {

constexpr std::string_view kMarkerFile = "forceusertask.txt";

// A file that cannot be accessed counts as missing.
bool IsFile(const std::filesystem::path& path) {
  std::error_code unreadable;
  return std::filesystem::is_regular_file(path, unreadable);
}

class LanguageObject final : public StateObject<LanguageTable> {
 public:
  using StateObject::StateObject;

  [[nodiscard]] std::string GetString(int id, std::string_view module,
                                      const std::vector<std::string>& parameters) override {
    Called("LanguageTable.GetString");
    std::optional<std::string> text;
    if (module == kModule) text = state_.texts.Find(id, parameters);
    return text ? *text : BracketedText(std::to_string(id), parameters);
  }

  [[nodiscard]] std::string EditTag(const std::string& tag, const ObjectRef& choices) override {
    Called("LanguageTable.EditTag");
    return state_.dialogs->EditTag(tag, TextsOf(choices.Get())).value_or(tag);
  }

  [[nodiscard]] std::string TagText(const std::string& tag, const ObjectRef& /*context*/) override {
    Called("LanguageTable.TagText");
    return state_.TagText(tag);
  }

  // The texts of other languages are edited with their tag.
  [[nodiscard]] std::string TagForText(const std::string& tag, const std::string& text,
                                       const std::string& language) override {
    Called("LanguageTable.TagForText");
    if (!language.empty()) throw Failure(failure_number::kInvalidCall, "Only the current language is filed");
    return state_.TagForText(tag, text);
  }
};

class TranslatorObject final : public StateObject<Translator> {
 public:
  using StateObject::StateObject;

  void TranslateControls(Form& form, std::string_view module, int /*flag*/) override {
    Called("Translator.TranslateControls");
    if (module != kModule) return;
    for (std::size_t i = 0; i < form.Count(); ++i) {
      const std::optional<int> number = TextNumber(form.At(i).Tag());
      std::optional<std::string> text;
      if (number) text = state_.texts.Find(*number);
      if (text) form.At(i).SetCaption(*text);
    }
  }

  void SetLinkStyle(Label& label, bool on) override {
    Called("Translator.SetLinkStyle");
    label.SetLink(on);
  }
};

// Not gated, because reporting a failure must not fail itself.
class ReporterObject final : public StateObject<ErrorReporter> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] ReportAction Report(int number, const std::string& description, std::string_view project,
                                    std::string_view page, std::string_view procedure, int line) override {
    return state_.dialogs->Report(
        {number, description, std::string(project), std::string(page), std::string(procedure), line});
  }
};

class RightsObject final : public StateObject<UserRights> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] bool HasRight(int number) override {
    Called("UserRights.HasRight");
    const auto found = state_.rights.find(number);
    return found == state_.rights.end() || found->second;
  }
};

class ApplicationObject final : public StateObject<HostApplication> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] Ref<LanguageTable> Language() override {
    return Gated("HostApplication.Language", language_);
  }
  [[nodiscard]] Ref<plovix::Translator> Translator() override {
    return Gated("HostApplication.Translator", translator_);
  }
  [[nodiscard]] Ref<plovix::ErrorReporter> ErrorReporter() override { return reporter_; }
  [[nodiscard]] Ref<plovix::UserRights> UserRights() override {
    return Gated("HostApplication.UserRights", rights_);
  }
  [[nodiscard]] Ref<plovix::Session> Session() override { return Gated("HostApplication.Session", session_); }
  [[nodiscard]] Ref<plovix::Database> Database() override {
    return Gated("HostApplication.Database", database_);
  }
  [[nodiscard]] Ref<plovix::DataObjectCatalog> DataObjectCatalog() override {
    return Gated("HostApplication.DataObjectCatalog", catalog_);
  }
  [[nodiscard]] Ref<ObjectLoader> Loader() override { return Gated("HostApplication.Loader", loader_); }
  [[nodiscard]] std::string Title() override { return Gated("HostApplication.Title", state_.title); }
  [[nodiscard]] std::string Path() override { return Gated("HostApplication.Path", state_.path); }
  [[nodiscard]] bool LanguageTagMode() override {
    return Gated("HostApplication.LanguageTagMode", state_.language_tag_mode);
  }
  [[nodiscard]] std::string DecimalSeparator() override {
    return Gated("HostApplication.DecimalSeparator", state_.decimal_separator);
  }
  [[nodiscard]] DateTime Now() override {
    Called("HostApplication.Now");
    return state_.Now();
  }
  [[nodiscard]] int MsgBox(const std::string& prompt, int buttons, const std::string& title,
                           const std::string& /*help_file*/) override {
    Called("HostApplication.MsgBox");
    return state_.dialogs->MessageBox(prompt, buttons, title);
  }

 private:
  const Ref<LanguageTable> language_ = std::make_shared<LanguageObject>(state_);
  const Ref<plovix::Translator> translator_ = std::make_shared<TranslatorObject>(state_);
  const Ref<plovix::ErrorReporter> reporter_ = std::make_shared<ReporterObject>(state_);
  const Ref<plovix::UserRights> rights_ = std::make_shared<RightsObject>(state_);
  const Ref<plovix::Session> session_ = std::make_shared<SessionObject>(state_);
  const Ref<plovix::Database> database_ = std::make_shared<DatabaseObject>(state_);
  const Ref<plovix::DataObjectCatalog> catalog_ = std::make_shared<CatalogObject>(state_);
  const Ref<ObjectLoader> loader_ = std::make_shared<LoaderObject>(state_);
};

template <class Object, class... Arguments>
Ref<Object> Made(HostMember member, Arguments&... arguments) {
  Called(member);
  return std::make_shared<Object>(arguments...);
}

class FactoryObject final : public StateObject<ObjectFactory> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] Ref<ActionList> NewActionList() override {
    return Made<ActionListObject>("ObjectFactory.NewActionList");
  }
  [[nodiscard]] Ref<ValueStore> NewValueStore() override {
    return Made<StoreObject>("ObjectFactory.NewValueStore");
  }
  [[nodiscard]] Ref<Recurrence> NewRecurrence() override {
    return Made<RecurrenceObject>("ObjectFactory.NewRecurrence");
  }
  [[nodiscard]] Ref<DailyPattern> NewDailyPattern() override {
    return Made<DailyPatternObject>("ObjectFactory.NewDailyPattern");
  }
  [[nodiscard]] Ref<WeeklyPattern> NewWeeklyPattern() override {
    return Made<WeeklyPatternObject>("ObjectFactory.NewWeeklyPattern");
  }
  [[nodiscard]] Ref<MonthlyPattern> NewMonthlyPattern() override {
    return Made<MonthlyPatternObject>("ObjectFactory.NewMonthlyPattern");
  }
  [[nodiscard]] Ref<YearlyPattern> NewYearlyPattern() override {
    return Made<YearlyPatternObject>("ObjectFactory.NewYearlyPattern");
  }
  [[nodiscard]] Ref<CategoryList> NewCategoryList() override {
    return Made<CategoryListObject>("ObjectFactory.NewCategoryList", state_);
  }
  [[nodiscard]] Ref<Category> NewCategory() override {
    return Made<CategoryObject>("ObjectFactory.NewCategory", state_);
  }
  [[nodiscard]] Ref<TextCollection> NewTextCollection() override {
    return Made<TextCollectionObject>("ObjectFactory.NewTextCollection");
  }
  [[nodiscard]] Ref<PermissionEditor> NewPermissionEditor() override {
    return Made<PermissionEditor>("ObjectFactory.NewPermissionEditor");
  }
  [[nodiscard]] Ref<QueryDefinition> NewQueryDefinition() override {
    return Made<QueryDefinitionObject>("ObjectFactory.NewQueryDefinition");
  }
  [[nodiscard]] Ref<QueryBuilder> NewQueryBuilder() override {
    return Made<QueryBuilderObject>("ObjectFactory.NewQueryBuilder", state_);
  }
};

class ServicesObject final : public HostServices {
 public:
  explicit ServicesObject(HostState& state)
      : application_(std::make_shared<ApplicationObject>(state)),
        factory_(std::make_shared<FactoryObject>(state)) {}
  // Reporting a failure needs the application, too, so only its members are gated.
  [[nodiscard]] Ref<HostApplication> Application() override { return application_; }
  [[nodiscard]] Ref<ObjectFactory> Factory() override { return Gated("HostServices.Factory", factory_); }

 private:
  Ref<HostApplication> application_;
  Ref<ObjectFactory> factory_;
};

class UtilitiesObject final : public StateObject<Utilities> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] std::string BuildPath(const std::string& folder, const std::string& file) override {
    Called("Utilities.BuildPath");
    return (std::filesystem::path(folder) / file).string();
  }
  [[nodiscard]] bool FileExists(const std::string& path) override {
    Called("Utilities.FileExists");
    if (state_.marker_file && path.ends_with(kMarkerFile)) return *state_.marker_file;
    return IsFile(path);
  }
  [[nodiscard]] int BoolToCheck(bool value) override { return Gated("Utilities.BoolToCheck", value ? 1 : 0); }
  [[nodiscard]] bool CheckToBool(int value) override { return Gated("Utilities.CheckToBool", value != 0); }
  [[nodiscard]] ObjectRef ObjectFromHandle(std::int32_t handle) override {
    Called("Utilities.ObjectFromHandle");
    return ObjectRef(state_.handles->Find(handle)).OrFail();
  }
  [[nodiscard]] std::string FoldCase(const std::string& text) override {
    Called("Utilities.FoldCase");
    return plovix::FoldCase(text);
  }
};

}  // namespace

bool HostState::NewTasksUseTags() const {
  return language_tag_mode &&
         !(marker_file ? *marker_file : IsFile(std::filesystem::path(path) / kMarkerFile));
}

DateTime HostState::Now() const {
  if (clock) return clock();
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  using namespace std::chrono;
  const auto date = year{local.tm_year + 1900} / (local.tm_mon + 1) / local.tm_mday;
  return local_days{date} + hours{local.tm_hour} + minutes{local.tm_min} + seconds{local.tm_sec};
}

std::string HostState::TagText(const std::string& tag) const {
  const auto found = tag_texts.find(tag);
  return found == tag_texts.end() ? tag : found->second;
}

std::string HostState::TagForText(const std::string& tag, const std::string& text) {
  if (TagText(tag) == text) return tag;
  const auto carries = [&](const auto& filed) { return filed.second == text; };
  const auto found = std::ranges::find_if(tag_texts, carries);
  if (found != tag_texts.end()) return found->first;
  std::string filed = text;
  for (int count = 2; tag_texts.contains(filed); ++count) filed = text + " (" + std::to_string(count) + ")";
  if (filed == text) return filed;
  if (tag_filed) tag_filed(filed, text);
  tag_texts[filed] = text;
  return filed;
}

std::shared_ptr<HostDataObject> HostState::MakeDataObject(DataObjectRecord record) const {
  return std::make_shared<HostDataObject>(handles, std::move(record));
}

ServicesProvider ProviderOf(HostState& state) {
  return {[&state] { return std::make_shared<ServicesObject>(state); },
          [&state] { return std::make_shared<UtilitiesObject>(state); }};
}

void InstallHost(HostState& state) {
  InstallServices(ProviderOf(state));
}

std::optional<int> TextNumber(std::string_view tag) {
  constexpr std::string_view kPrefix = "lng=";
  if (!SameName(tag.substr(0, kPrefix.size()), kPrefix)) return std::nullopt;
  tag.remove_prefix(kPrefix.size());
  if (tag.ends_with(';')) tag.remove_suffix(1);
  int number = 0;
  const auto [end, error] = std::from_chars(tag.data(), tag.data() + tag.size(), number);
  if (error != std::errc{} || end != tag.data() + tag.size()) return std::nullopt;
  return number;
}

}  // namespace plovix
