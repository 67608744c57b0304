// A task as plain values: what is stored, listed, compared and copied.
#pragma once

#include <plovix/controls/kinds.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace plovix {

struct CategoryRecord {
  std::string tag;  // language tag; a tag without a text of its own is its own text
  bool is_public = true;
  bool operator==(const CategoryRecord&) const = default;
};

struct ActionRecord {
  std::string kind;  // identifier of an ActionKind; may be one that this program does not know
  std::string name;  // what the user calls it; may be empty
  std::int32_t record_modes = 0;
  std::int32_t capabilities = 0;
  std::map<std::string, std::string> settings;  // by the kind's field keys
  bool operator==(const ActionRecord&) const = default;
};

// "No limit": 1899-12-30 00:00:00.
inline constexpr DateTime kZeroDate{std::chrono::local_days{std::chrono::year{1899} / 12 / 30}};

struct TaskRecord {
  std::int64_t id = 0;       // 0: not stored yet
  std::int64_t version = 0;  // counts the saves; a save on an older version is refused
  DateTime modified = kZeroDate;

  std::int16_t record_mode = 0;
  bool uses_language_tags = false;
  std::string name, short_description, description;
  std::string name_tag, short_description_tag, description_tag;
  std::vector<CategoryRecord> categories;
  std::string data_object_name, data_object_caption;
  bool allow_automation_manager = false;
  bool skip_row_selection = false;
  std::int32_t processing_mode = 0;
  bool process_all_records = false;
  bool process_failed_records = false;
  DateTime base_date = kZeroDate;
  std::string query;
  std::string owner;
  std::vector<ActionRecord> actions;

  bool operator==(const TaskRecord&) const = default;
};

}  // namespace plovix
