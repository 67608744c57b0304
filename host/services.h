/// @file
/// The component-wide services objects: made on first use, once per thread, by the provider that the
/// host installs before the first page.
#pragma once

#include <functional>
#include <string>

#include "action_list.h"
#include "category_list.h"
#include "host_application.h"
#include "query_builder.h"
#include "recurrence.h"
#include "value_store.h"

namespace plovix {

/// Makes the new objects that pages need. Every member gives an object of its own, never nothing; the page
/// drops it or hands it to the task or the store.
class ObjectFactory {
 public:
  virtual ~ObjectFactory() = default;
  [[nodiscard]] virtual Ref<ActionList> NewActionList() = 0;              ///< empty
  [[nodiscard]] virtual Ref<ValueStore> NewValueStore() = 0;              ///< empty
  [[nodiscard]] virtual Ref<CategoryList> NewCategoryList() = 0;          ///< empty
  [[nodiscard]] virtual Ref<Category> NewCategory() = 0;                  ///< public, without a tag
  [[nodiscard]] virtual Ref<TextCollection> NewTextCollection() = 0;      ///< empty
  [[nodiscard]] virtual Ref<PermissionEditor> NewPermissionEditor() = 0;  ///< for one use
  [[nodiscard]] virtual Ref<QueryDefinition> NewQueryDefinition() = 0;    ///< without a text
  [[nodiscard]] virtual Ref<QueryBuilder> NewQueryBuilder() = 0;          ///< for one use
  /// With the host's initial values; without a pattern.
  [[nodiscard]] virtual Ref<Recurrence> NewRecurrence() = 0;
  /// @{
  /// With nothing set: every number 0, every choice off.
  [[nodiscard]] virtual Ref<DailyPattern> NewDailyPattern() = 0;
  [[nodiscard]] virtual Ref<WeeklyPattern> NewWeeklyPattern() = 0;
  [[nodiscard]] virtual Ref<MonthlyPattern> NewMonthlyPattern() = 0;
  [[nodiscard]] virtual Ref<YearlyPattern> NewYearlyPattern() = 0;
  /// @}
};

/// What Services() answers with: the host's objects of one thread.
class HostServices {
 public:
  virtual ~HostServices() = default;
  /// Never nothing. Also on the way to the error reporter, so it must not fail.
  [[nodiscard]] virtual Ref<HostApplication> Application() = 0;
  /// Never nothing.
  [[nodiscard]] virtual Ref<ObjectFactory> Factory() = 0;
};

/// What ServicesUtilities() answers with: small services of the host. All texts are UTF-8.
class Utilities {
 public:
  virtual ~Utilities() = default;
  /// The path of a file in a folder; Details asks for one in HostApplication::Path.
  [[nodiscard]] virtual std::string BuildPath(const std::string& folder, const std::string& file) = 0;
  /// False also for a file that cannot be looked at.
  [[nodiscard]] virtual bool FileExists(const std::string& path) = 0;
  /// @{
  /// A truth value as a check box has it (0, 1), and back; anything but 0 is true.
  [[nodiscard]] virtual int BoolToCheck(bool value) = 0;
  [[nodiscard]] virtual bool CheckToBool(int value) = 0;
  /// @}
  /// The object that a handle stands for; fails with 91 when it is gone or there never was one.
  [[nodiscard]] virtual ObjectRef ObjectFromHandle(std::int32_t handle) = 0;
  /// The text without differences of case, by Unicode's default folding: equal results for texts that
  /// differ in case alone, or in how their accents are encoded.
  [[nodiscard]] virtual std::string FoldCase(const std::string& text) = 0;
};

/// What the host installs. Each function is called at most once per thread and installation, on that
/// thread, and must not return nothing.
struct ServicesProvider {
  std::function<Ref<HostServices>()> host_services;   ///< makes what Services() answers with
  std::function<Ref<plovix::Utilities>()> utilities;  ///< makes what ServicesUtilities() answers with
};

/// Installs a provider; objects made by an earlier one are dropped on each thread's next use. An empty
/// provider uninstalls. The host calls it before its first page and, with an empty one, after its last; from
/// any thread, while no page is being called.
void InstallServices(ServicesProvider provider);

/// @{
/// The thread's services objects. Both fail with 429 when no provider is installed. The reference stays
/// good until another provider is installed.
[[nodiscard]] HostServices& Services();
[[nodiscard]] Utilities& ServicesUtilities();
/// @}

}  // namespace plovix
