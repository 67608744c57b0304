// A value of an exported task together with its place, which the reader checks and reads field by field.
#pragma once

#include <plovix/standalone/tasks/task_fields.h>
#include <plovix/standalone/tasks/text_limits.h>

#include <concepts>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "file_format.h"
#include "file_source.h"
#include "strict_json.h"

namespace plovix {

// Borrows the JSON and the source. Refuses unexpected values through the source.
struct FileValue {
  const nlohmann::json& json;
  std::string place;
  const FileSource& source;

  [[noreturn]] void Refuse(std::string_view key, std::vector<std::string> further = {}) const;
  // Refuses the value, with the value as the second parameter.
  [[noreturn]] void RefuseValue(std::string_view key, std::vector<std::string> further = {}) const;

  // Refuses texts longer than `most` characters.
  void Read(std::string& value, std::size_t most = kLongestName) const;
  void Read(bool& value) const;
  void Read(DateTime& value) const;
  void Read(std::array<bool, 7>& value) const;
  void Read(std::optional<std::chrono::local_days>& value) const;  // null: nothing
  void Read(std::map<std::string, std::string>& value) const;      // names of texts
  template <std::integral Number>
  void Read(Number& value) const {
    constexpr auto kLeast = std::numeric_limits<Number>::min();
    constexpr auto kMost = std::numeric_limits<Number>::max();
    if (!json.is_number_integer()) RefuseValue("exchange.problem.number");
    // A number beyond 64 bits has already become a real number.
    const bool fits = json.is_number_unsigned() ? std::in_range<Number>(json.get<std::uint64_t>())
                                                : std::in_range<Number>(json.get<std::int64_t>());
    if (!fits) RefuseValue("exchange.problem.range", {std::to_string(kLeast), std::to_string(kMost)});
    value = json.get<Number>();
  }

  // Calls read(item) for each item of a list.
  template <class ReadItem>
  void ForEachItem(ReadItem read) const {
    if (!json.is_array()) RefuseValue("exchange.problem.list");
    for (std::size_t i = 0; i < json.size(); ++i) read(FileValue{json[i], ItemPlace(place, i), source});
  }
  // Calls read(name, member) for each member of an object with arbitrary names. Refuses names that decode to
  // the same bytes.
  template <class ReadMember>
  void ForEachMember(ReadMember read) const {
    if (!json.is_object()) RefuseValue("exchange.problem.object");
    std::set<std::string> names;
    for (const auto& [key, member] : json.items()) {
      const FileValue value{member, MemberPlace(place, key), source};
      const auto [name, is_new] = names.insert(value.NameOf(key));
      if (!is_new) value.Refuse("exchange.problem.twice");
      read(*name, value);
    }
  }

 private:
  [[nodiscard]] std::string NameOf(const std::string& key) const;
};

// An object with a fixed set of members: each is read once, then none may be left.
class FileObject {
 public:
  explicit FileObject(FileValue value);
  [[nodiscard]] FileValue Take(std::string_view name);
  void RefuseOthers() const;

  template <class Table, class Record>
  void ReadFields(const Table& fields, Record& record) {
    ForEachField(fields, [&](std::string_view name, auto field) {
      const FileValue value = Take(file_format::MemberName(name));
      if constexpr (std::is_same_v<std::remove_cvref_t<decltype(record.*field)>, std::string>) {
        value.Read(record.*field, LongestIn(field));
      } else {
        value.Read(record.*field);
      }
    });
  }

 private:
  FileValue value_;
  std::set<std::string, std::less<>> taken_;
};

}  // namespace plovix
