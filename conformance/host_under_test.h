/// @file
/// What the developer of a host passes to the conformance kit: the host's own objects, and functions that
/// play the user in front of it and the application behind it.
#pragma once

#include <plovix/component/page_registry.h>
#include <plovix/host/action_list_control.h>
#include <plovix/host/auto_task.h>
#include <plovix/host/services.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plovix::conformance {

/// An open wizard of the host, driven by the kit. The captures of the functions keep the wizard alive; the
/// kit drops all three functions to close it.
struct WizardUnderTest {
  /// Presses Next, Back, Finish or Cancel as a user would; does nothing if the button is disabled.
  std::function<void(ChangeDirection button)> press;
  /// Whether the button can be pressed.
  std::function<bool(ChangeDirection button)> enabled;
  /// Clicks on a control of the current page, through the host's own User.
  std::function<void(Control& control)> click;
};

/// Everything is optional; a check that needs a missing member is reported as "not run" with the member's
/// name. Functions that say "from now on" apply until they are called again. The kit calls all of them on the
/// thread on which it was called; no dialog may wait for a person.
struct HostUnderTest {
  /// What the host passes to InstallServices(). The kit installs it and leaves it installed.
  ServicesProvider services;

  /// A task that was never stored, with its own action list and nothing else set.
  std::function<Ref<AutoTask>()> make_task;
  /// The store that the host's wizard shares between pages, empty.
  std::function<Ref<ValueStore>()> make_store;
  /// The control to embed in a slot, by its registered name.
  std::function<std::shared_ptr<HostControl>(std::string_view registered_name)> make_control;
  /// A list with one action for each number, which is its RecordModes; the automation manager may run all of
  /// them.
  std::function<Ref<ActionList>(const std::vector<std::int32_t>& record_modes)> make_actions;
  /// A permission set.
  std::function<Ref<Permissions>()> make_permissions;
  /// Opens the host's wizard on a new task; `registry` holds the kit's own pages and outlives the wizard.
  std::function<WizardUnderTest(const PageRegistry& registry, const std::string& first_page)> open_wizard;

  /// Name of a data object that has a key and that the session may view.
  std::string data_object;
  /// Makes `text` the text of `tag` in the current language.
  std::function<void(const std::string& tag, const std::string& text)> file_tag;
  /// Replaces the stored tasks by one for each text, with one public category of that text.
  std::function<void(const std::vector<std::string>& texts)> store_categories;
  /// Grants or revokes one of the rights 112 to 114.
  std::function<void(int number, bool held)> hold_right;
  /// Grants or denies one of permission_key, on every data object and in general.
  std::function<void(std::string_view key, bool granted)> grant;
  /// Local date and time as the host should know it; if empty, the machine's.
  std::function<DateTime()> wall_clock;

  /// From now on every report gets this answer; any number may come.
  std::function<void(ReportAction answer)> answer_reports;
  /// From now on every message box gets this answer.
  std::function<void(int answer)> answer_boxes;
  /// @{ From now on the editor of tags, of queries, of categories (by their texts) or of permission sets is
  /// confirmed with this; nothing, or false: cancelled.
  std::function<void(const std::optional<std::string>& tag)> answer_tag_editor;
  std::function<void(const std::optional<std::string>& query)> answer_query_builder;
  std::function<void(const std::optional<std::vector<std::string>>& texts)> answer_category_editor;
  std::function<void(bool confirmed)> answer_permission_editor;
  /// @}
  /// Makes the action-list control ask for its context, as it does when a user adds an action.
  std::function<void(ActionListControl& control)> ask_context;
  /// Removes the first action from the action-list control, as its user does.
  std::function<void(ActionListControl& control)> remove_action;

  /// Stores a task that was never stored, as Finish does, and returns it as loaded again. WalkPages uses it,
  /// too, if it is set.
  std::function<Ref<AutoTask>(const Ref<AutoTask>& task)> store_task;
  /// Number of stored tasks.
  std::function<std::size_t()> count_tasks;

  /// Called with the name of each check before it is made. If empty, the name is written to standard error,
  /// so that a crash shows in which check it happened.
  std::function<void(const std::string& check)> before_check;
};

}  // namespace plovix::conformance
