/// @file
/// The component-wide services objects: created on first use, once per thread, by the provider that the host
/// installs before the first page.
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

/// Creates the objects that pages need. Every member returns a new object, never null; the page drops it or
/// passes it to the task or the store.
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

/// What Services() returns: the host's objects of one thread.
class HostServices {
 public:
  virtual ~HostServices() = default;
  /// Never null. Reporting an error needs it, too, so it must not fail.
  [[nodiscard]] virtual Ref<HostApplication> Application() = 0;
  /// Never nothing.
  [[nodiscard]] virtual Ref<ObjectFactory> Factory() = 0;
};

/// What ServicesUtilities() returns: small services of the host. All texts are UTF-8.
class Utilities {
 public:
  virtual ~Utilities() = default;
  /// The path of a file in a folder; Details asks for a file in HostApplication::Path.
  [[nodiscard]] virtual std::string BuildPath(const std::string& folder, const std::string& file) = 0;
  /// Also false for a file that cannot be accessed.
  [[nodiscard]] virtual bool FileExists(const std::string& path) = 0;
  /// @{
  /// Converts between a Boolean and a check box value (0, 1); any value but 0 is true.
  [[nodiscard]] virtual int BoolToCheck(bool value) = 0;
  [[nodiscard]] virtual bool CheckToBool(int value) = 0;
  /// @}
  /// The object that a handle identifies; fails with 91 if it no longer exists or never did.
  [[nodiscard]] virtual ObjectRef ObjectFromHandle(std::int32_t handle) = 0;
  /// The text without case differences, by Unicode's default folding: equal results for texts that differ
  /// only in case or in the encoding of their accents.
  [[nodiscard]] virtual std::string FoldCase(const std::string& text) = 0;
};

/// What the host installs. Each function is called at most once per thread and installation, on that thread,
/// and must not return null.
struct ServicesProvider {
  std::function<Ref<HostServices>()> host_services;   ///< makes what Services() answers with
  std::function<Ref<plovix::Utilities>()> utilities;  ///< makes what ServicesUtilities() answers with
};

/// Installs a provider; objects from an earlier one are dropped on each thread's next use. An empty provider
/// uninstalls. The host calls it before its first page and, with an empty one, after its last, from any
/// thread, but not while a page is being called.
void InstallServices(ServicesProvider provider);

/// @{
/// The thread's services objects. Both fail with 429 if no provider is installed. The reference stays valid
/// until another provider is installed.
[[nodiscard]] HostServices& Services();
[[nodiscard]] Utilities& ServicesUtilities();
/// @}

}  // namespace plovix
