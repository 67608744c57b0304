#include "strict_json.h"

#include <plovix/base/utf8.h>

#include <algorithm>
#include <utility>

namespace plovix {
namespace {

using Json = nlohmann::json;

// `position` is that of the offending byte, counted from 1; columns count characters.
[[noreturn]] void RefuseAt(std::string_view text, std::size_t position, const FileSource& source) {
  const std::string_view before = text.substr(0, position == 0 ? 0 : position - 1);
  const auto line = std::ranges::count(before, '\n') + 1;
  const std::string_view start = before.substr(before.rfind('\n') + 1);
  const auto column = CharacterCount(start) + 1;
  source.Refuse("exchange.problem.syntax", {std::to_string(line), std::to_string(column)});
}

// Builds the value from the parser's events.
class Builder final : public nlohmann::json_sax<Json> {
 public:
  Builder(std::string_view text, std::size_t levels, const FileSource& source)
      : text_(text), levels_(levels), source_(source) {}
  [[nodiscard]] Json Take() { return std::move(root_); }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(number_integer_t value) override { return Add(value); }
  bool number_unsigned(number_unsigned_t value) override { return Add(value); }
  bool number_float(number_float_t value, const string_t& /*digits*/) override { return Add(value); }
  bool string(string_t& value) override { return Add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }  // not part of textual JSON
  bool start_object(std::size_t /*elements*/) override { return Enter(Json::object()); }
  bool end_object() override { return Leave(); }
  bool start_array(std::size_t /*elements*/) override { return Enter(Json::array()); }
  bool end_array() override { return Leave(); }

  bool key(string_t& name) override {
    Level& level = open_.back();
    level.name = std::move(name);
    if (level.value->contains(level.name)) source_.Refuse("exchange.problem.twice", {Place()});
    return true;
  }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const Json::exception& /*error*/) override {
    RefuseAt(text_, position, source_);
  }

 private:
  struct Level {
    Json* value;       // in root_; its address is stable, because only the innermost level grows
    std::string name;  // of an object's current member
  };

  Json* Insert(Json value) {
    if (open_.empty()) {
      root_ = std::move(value);
      return &root_;
    }
    const Level& level = open_.back();
    if (level.value->is_object()) return &(*level.value)[level.name].operator=(std::move(value));
    level.value->push_back(std::move(value));
    return &level.value->back();
  }

  bool Add(Json value) {
    Insert(std::move(value));
    return true;
  }

  bool Enter(Json value) {
    Json* inserted = Insert(std::move(value));
    if (open_.size() == levels_)
      source_.Refuse("exchange.problem.tooDeep", {Place(), std::to_string(levels_)});
    open_.push_back({inserted, {}});
    return true;
  }

  bool Leave() {
    open_.pop_back();
    return true;
  }

  [[nodiscard]] std::string Place() const {
    std::string place;
    for (const Level& level : open_) {
      place = level.value->is_object() ? MemberPlace(place, level.name)
                                       : ItemPlace(place, std::max<std::size_t>(level.value->size(), 1) - 1);
    }
    return place;
  }

  std::string_view text_;
  std::size_t levels_;
  const FileSource& source_;
  Json root_;
  std::vector<Level> open_;  // outermost first
};

}  // namespace

std::string MemberPlace(const std::string& parent, std::string_view name) {
  const std::string member(name.empty() ? R"("")" : name);
  return parent.empty() ? member : parent + "." + member;
}

std::string ItemPlace(const std::string& parent, std::size_t index) {
  return parent + "[" + std::to_string(index) + "]";
}

Json ParseStrict(std::string_view text, std::size_t levels, const FileSource& source) {
  // The parser would interpret a NUL byte as the end of the text.
  if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos)
    RefuseAt(text, zero + 1, source);
  Builder builder(text, levels, source);
  Json::sax_parse(text, &builder);
  return builder.Take();
}

}  // namespace plovix
