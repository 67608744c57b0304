/// @file
/// The users of the stand-alone host and what they may do, as plain values.
#pragma once

#include <plovix/base/requirements.h>

#include <set>
#include <string>
#include <string_view>

namespace plovix {

/// The account under which the automation manager runs tasks. A user of this id works unattended.
inline constexpr std::string_view kAutomationAccount = "automation";

/// A user and their rights; HasRight, May and MayUse evaluate them.
struct UserRecord {
  std::string id;                   ///< unique, never empty
  std::string name;                 ///< as shown; if empty, the id is shown
  bool administrator = false;       ///< has every right, whatever the members below say
  std::set<std::string> groups;     ///< names of groups, none of them empty
  bool edit_categories = false;     ///< right 112
  bool see_all_categories = false;  ///< right 113
  bool go_on_with_tags = false;     ///< right 114
  bool create_personal = false;     ///< may create personal tasks
  bool create_shared = false;       ///< may create shared tasks
  bool run_programs = false;        ///< may save tasks whose actions run programs or SQL
  bool operator==(const UserRecord&) const = default;
};

}  // namespace plovix
