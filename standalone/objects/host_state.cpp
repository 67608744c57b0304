#include "host_state.h"

#include <plovix/base/same_name.h>
#include <plovix/standalone/text/fold_case.h>

#include <algorithm>
#include <charconv>
#include <ctime>
#include <filesystem>

#include "call_gate.h"
#include "category_object.h"
#include "session_object.h"

namespace plovix {
namespace {

constexpr std::string_view kMarkerFile = "forceusertask.txt";

// A file that cannot be accessed counts as missing.
bool IsFile(const std::filesystem::path& path) {
  std::error_code unreadable;
  return std::filesystem::is_regular_file(path, unreadable);
}

class LanguageObject final : public LanguageTable {
 public:
  explicit LanguageObject(HostState& state) : state_(state) {}

  [[nodiscard]] std::string GetString(int id, std::string_view module,
                                      const std::vector<std::string>& parameters) override {
    Called("LanguageTable.GetString");
    std::optional<std::string> text;
    if (module == kModule) text = state_.texts.Find(id, parameters);
    return text ? *text : BracketedText(std::to_string(id), parameters);
  }

  [[nodiscard]] std::string EditTag(const std::string& tag, const ObjectRef& choices) override {
    Called("LanguageTable.EditTag");
    return state_.dialogs->EditTag(tag, TextsOf(choices.get())).value_or(tag);
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

 private:
  HostState& state_;
};

class TranslatorObject final : public Translator {
 public:
  explicit TranslatorObject(HostState& state) : state_(state) {}

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

 private:
  HostState& state_;
};

// Not gated, because reporting a failure must not fail itself.
class ReporterObject final : public ErrorReporter {
 public:
  explicit ReporterObject(HostState& state) : state_(state) {}
  [[nodiscard]] ReportAction Report(int number, const std::string& description, std::string_view project,
                                    std::string_view page, std::string_view procedure, int line) override {
    return state_.dialogs->Report(
        {number, description, std::string(project), std::string(page), std::string(procedure), line});
  }

 private:
  HostState& state_;
};

class RightsObject final : public UserRights {
 public:
  explicit RightsObject(HostState& state) : state_(state) {}
  [[nodiscard]] bool HasRight(int number) override {
    Called("UserRights.HasRight");
    const auto found = state_.rights.find(number);
    return found == state_.rights.end() || found->second;
  }

 private:
  HostState& state_;
};

class ApplicationObject final : public HostApplication {
 public:
  explicit ApplicationObject(HostState& state)
      : state_(state),
        language_(std::make_shared<LanguageObject>(state)),
        translator_(std::make_shared<TranslatorObject>(state)),
        reporter_(std::make_shared<ReporterObject>(state)),
        rights_(std::make_shared<RightsObject>(state)),
        session_(std::make_shared<SessionObject>(state)),
        database_(std::make_shared<DatabaseObject>(state)),
        catalog_(std::make_shared<CatalogObject>(state)),
        loader_(std::make_shared<LoaderObject>(state)) {}

  [[nodiscard]] std::shared_ptr<LanguageTable> Language() override {
    Called("HostApplication.Language");
    return language_;
  }
  [[nodiscard]] std::shared_ptr<plovix::Translator> Translator() override {
    Called("HostApplication.Translator");
    return translator_;
  }
  [[nodiscard]] std::shared_ptr<plovix::ErrorReporter> ErrorReporter() override { return reporter_; }
  [[nodiscard]] std::shared_ptr<plovix::UserRights> UserRights() override {
    Called("HostApplication.UserRights");
    return rights_;
  }
  [[nodiscard]] std::shared_ptr<plovix::Session> Session() override {
    Called("HostApplication.Session");
    return session_;
  }
  [[nodiscard]] std::shared_ptr<plovix::Database> Database() override {
    Called("HostApplication.Database");
    return database_;
  }
  [[nodiscard]] std::shared_ptr<plovix::DataObjectCatalog> DataObjectCatalog() override {
    Called("HostApplication.DataObjectCatalog");
    return catalog_;
  }
  [[nodiscard]] std::shared_ptr<ObjectLoader> Loader() override {
    Called("HostApplication.Loader");
    return loader_;
  }
  [[nodiscard]] std::string Title() override {
    Called("HostApplication.Title");
    return state_.title;
  }
  [[nodiscard]] std::string Path() override {
    Called("HostApplication.Path");
    return state_.path;
  }
  [[nodiscard]] bool LanguageTagMode() override {
    Called("HostApplication.LanguageTagMode");
    return state_.language_tag_mode;
  }
  [[nodiscard]] std::string DecimalSeparator() override {
    Called("HostApplication.DecimalSeparator");
    return state_.decimal_separator;
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
  HostState& state_;
  std::shared_ptr<LanguageTable> language_;
  std::shared_ptr<plovix::Translator> translator_;
  std::shared_ptr<plovix::ErrorReporter> reporter_;
  std::shared_ptr<plovix::UserRights> rights_;
  std::shared_ptr<plovix::Session> session_;
  std::shared_ptr<plovix::Database> database_;
  std::shared_ptr<plovix::DataObjectCatalog> catalog_;
  std::shared_ptr<ObjectLoader> loader_;
};

class FactoryObject final : public ObjectFactory {
 public:
  explicit FactoryObject(HostState& state) : state_(state) {}
  [[nodiscard]] std::shared_ptr<ActionList> NewActionList() override {
    Called("ObjectFactory.NewActionList");
    return std::make_shared<ActionListObject>();
  }
  [[nodiscard]] std::shared_ptr<ValueStore> NewValueStore() override {
    Called("ObjectFactory.NewValueStore");
    return std::make_shared<StoreObject>();
  }
  [[nodiscard]] std::shared_ptr<Recurrence> NewRecurrence() override {
    Called("ObjectFactory.NewRecurrence");
    return std::make_shared<RecurrenceObject>();
  }
  [[nodiscard]] std::shared_ptr<DailyPattern> NewDailyPattern() override {
    Called("ObjectFactory.NewDailyPattern");
    return std::make_shared<DailyPatternObject>();
  }
  [[nodiscard]] std::shared_ptr<WeeklyPattern> NewWeeklyPattern() override {
    Called("ObjectFactory.NewWeeklyPattern");
    return std::make_shared<WeeklyPatternObject>();
  }
  [[nodiscard]] std::shared_ptr<MonthlyPattern> NewMonthlyPattern() override {
    Called("ObjectFactory.NewMonthlyPattern");
    return std::make_shared<MonthlyPatternObject>();
  }
  [[nodiscard]] std::shared_ptr<YearlyPattern> NewYearlyPattern() override {
    Called("ObjectFactory.NewYearlyPattern");
    return std::make_shared<YearlyPatternObject>();
  }
  [[nodiscard]] std::shared_ptr<CategoryList> NewCategoryList() override {
    Called("ObjectFactory.NewCategoryList");
    return std::make_shared<CategoryListObject>(state_);
  }
  [[nodiscard]] std::shared_ptr<Category> NewCategory() override {
    Called("ObjectFactory.NewCategory");
    return std::make_shared<CategoryObject>(state_);
  }
  [[nodiscard]] std::shared_ptr<TextCollection> NewTextCollection() override {
    Called("ObjectFactory.NewTextCollection");
    return std::make_shared<TextCollectionObject>();
  }
  [[nodiscard]] std::shared_ptr<PermissionEditor> NewPermissionEditor() override {
    Called("ObjectFactory.NewPermissionEditor");
    return std::make_shared<PermissionEditor>();
  }
  [[nodiscard]] std::shared_ptr<QueryDefinition> NewQueryDefinition() override {
    Called("ObjectFactory.NewQueryDefinition");
    return std::make_shared<QueryDefinitionObject>();
  }
  [[nodiscard]] std::shared_ptr<QueryBuilder> NewQueryBuilder() override {
    Called("ObjectFactory.NewQueryBuilder");
    return std::make_shared<QueryBuilderObject>(state_);
  }

 private:
  HostState& state_;
};

class ServicesObject final : public HostServices {
 public:
  explicit ServicesObject(HostState& state)
      : application_(std::make_shared<ApplicationObject>(state)),
        factory_(std::make_shared<FactoryObject>(state)) {}
  // Reporting a failure needs the application, too, so only its members are gated.
  [[nodiscard]] std::shared_ptr<HostApplication> Application() override { return application_; }
  [[nodiscard]] std::shared_ptr<ObjectFactory> Factory() override {
    Called("HostServices.Factory");
    return factory_;
  }

 private:
  std::shared_ptr<HostApplication> application_;
  std::shared_ptr<ObjectFactory> factory_;
};

class UtilitiesObject final : public Utilities {
 public:
  explicit UtilitiesObject(HostState& state) : state_(state) {}
  [[nodiscard]] std::string BuildPath(const std::string& folder, const std::string& file) override {
    Called("Utilities.BuildPath");
    return (std::filesystem::path(folder) / file).string();
  }
  [[nodiscard]] bool FileExists(const std::string& path) override {
    Called("Utilities.FileExists");
    if (state_.marker_file && path.ends_with(kMarkerFile)) return *state_.marker_file;
    return IsFile(path);
  }
  [[nodiscard]] int BoolToCheck(bool value) override {
    Called("Utilities.BoolToCheck");
    return value ? 1 : 0;
  }
  [[nodiscard]] bool CheckToBool(int value) override {
    Called("Utilities.CheckToBool");
    return value != 0;
  }
  [[nodiscard]] ObjectRef ObjectFromHandle(std::int32_t handle) override {
    Called("Utilities.ObjectFromHandle");
    return Set(state_.handles->Find(handle));
  }
  [[nodiscard]] std::string FoldCase(const std::string& text) override {
    Called("Utilities.FoldCase");
    return plovix::FoldCase(text);
  }

 private:
  HostState& state_;
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

std::shared_ptr<TaskObject> MakeTask(HostState& state, const TaskRecord& record) {
  return std::make_shared<TaskObject>(state, record);
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
