#include "text_table.h"

#include <algorithm>
#include <charconv>

namespace plovix {
namespace {

// Replaces "{N}" by the N-th parameter; anything else in braces stays.
std::string Filled(std::string_view text, const std::vector<std::string>& parameters) {
  std::string result;
  while (!text.empty()) {
    const std::size_t open = std::min(text.find('{'), text.size());
    result += text.substr(0, open);
    text.remove_prefix(open);
    if (text.empty()) break;
    std::size_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 1, end, number);
    if (error == std::errc{} && stop != end && *stop == '}' && number >= 1 && number <= parameters.size()) {
      result += parameters[number - 1];
      text.remove_prefix(static_cast<std::size_t>(stop - text.data()) + 1);
    } else {
      result += '{';
      text.remove_prefix(1);
    }
  }
  return result;
}

}  // namespace

std::string BracketedText(std::string_view key, const std::vector<std::string>& parameters) {
  std::string text = "[" + std::string(key);
  for (std::size_t i = 0; i < parameters.size(); ++i) text += (i == 0 ? ":" : ",") + parameters[i];
  return text + "]";
}

TextTable TextTable::Ids() {
  TextTable table;
  table.code = "ids";
  table.name = "ids";
  table.ids_ = true;
  return table;
}

std::optional<std::string> TextTable::Find(int id, const std::vector<std::string>& parameters) const {
  if (removed_.contains(id)) return std::nullopt;
  if (ids_) return BracketedText(std::to_string(id), parameters);
  const auto found = page_texts.find(id);
  if (found == page_texts.end()) return std::nullopt;
  return Filled(found->second, parameters);
}

std::string TextTable::Host(std::string_view key, const std::vector<std::string>& parameters) const {
  const auto found = host_texts.find(key);
  return found == host_texts.end() ? BracketedText(key, parameters) : Filled(found->second, parameters);
}

void TextTable::Remove(int id) {
  removed_.insert(id);
}

}  // namespace plovix
