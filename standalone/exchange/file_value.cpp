#include "file_value.h"

#include <plovix/standalone/text/iso_time.h>
#include <plovix/standalone/text/json_text.h>

#include <utility>

namespace plovix {

void FileValue::Refuse(std::string_view key, std::vector<std::string> further) const {
  further.insert(further.begin(), place);
  source.Refuse(key, std::move(further));
}

void FileValue::RefuseValue(std::string_view key, std::vector<std::string> further) const {
  further.insert(further.begin(), json.dump());
  Refuse(key, std::move(further));
}

void FileValue::Read(std::string& value, std::size_t most) const {
  if (!json.is_string()) RefuseValue("exchange.problem.text");
  value = FromJsonText(json.get_ref<const std::string&>());
  if (IsLongerThan(value, most)) Refuse("exchange.problem.tooLong", {std::to_string(most)});
}

void FileValue::Read(bool& value) const {
  if (!json.is_boolean()) RefuseValue("exchange.problem.switch");
  value = json.get<bool>();
}

void FileValue::Read(DateTime& value) const {
  const auto moment = json.is_string() ? ParseIsoDateTime(json.get_ref<const std::string&>()) : std::nullopt;
  if (!moment) RefuseValue("exchange.problem.moment");
  value = *moment;
}

void FileValue::Read(std::array<bool, 7>& value) const {
  if (!json.is_array() || json.size() != value.size()) RefuseValue("exchange.problem.days");
  std::size_t day = 0;
  ForEachItem([&](const FileValue& item) { item.Read(value.at(day++)); });
}

void FileValue::Read(std::optional<std::chrono::local_days>& value) const {
  value.reset();
  if (json.is_null()) return;
  if (json.is_string()) value = ParseIsoDate(json.get_ref<const std::string&>());
  if (!value) RefuseValue("exchange.problem.day");
}

void FileValue::Read(std::map<std::string, std::string>& value) const {
  value.clear();
  ForEachMember(
      [&](const std::string& name, const FileValue& member) { member.Read(value[name], kLongestText); });
}

std::string FileValue::NameOf(const std::string& key) const {
  std::string name = FromJsonText(key);
  if (IsLongerThan(name, kLongestName)) Refuse("exchange.problem.tooLong", {std::to_string(kLongestName)});
  return name;
}

FileObject::FileObject(FileValue value) : value_(std::move(value)) {
  if (!value_.json.is_object()) value_.RefuseValue("exchange.problem.object");
}

FileValue FileObject::Take(std::string_view name) {
  taken_.emplace(name);
  const auto found = value_.json.find(name);
  const std::string place = MemberPlace(value_.place, name);
  if (found == value_.json.end()) value_.source.Refuse("exchange.problem.missing", {place});
  return {*found, place, value_.source};
}

void FileObject::RefuseOthers() const {
  for (const auto& [name, member] : value_.json.items()) {
    if (taken_.contains(name)) continue;
    value_.source.Refuse("exchange.problem.unknown", {MemberPlace(value_.place, name)});
  }
}

}  // namespace plovix
