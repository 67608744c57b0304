// Language files: a refusal names the file and a place, and an accepted file has each of its texts.
#include <plovix/standalone/text/language_file.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

void HoldsWhatTheFileSays(const TextTable& table, const nlohmann::json& file) {
  Require(file["language"] == table.code && file["name"] == table.name);
  Require(file["direction"] == (table.right_to_left ? "rtl" : "ltr"));
  const auto &pages = file["pages"], &host = file["host"];
  Require(pages.is_object() && pages.size() == table.page_texts.size());
  Require(host.is_object() && host.size() == table.host_texts.size());
  for (const auto& [number, text] : table.page_texts) {
    Require(pages.contains(std::to_string(number)) && pages[std::to_string(number)] == text);
    // Without parameters nothing is filled in; with them, each is filled in only once.
    Require(table.Find(number) == text && table.Find(number, {"{1}", "{2}"}) == text);
  }
  for (const auto& [key, text] : table.host_texts) Require(host[key] == text && table.Host(key) == text);
}

}  // namespace

void Try(std::string_view input) {
  constexpr std::string_view kSource = "mine.json: ";
  try {
    const TextTable table = ParseLanguage(input, "mine.json");
    HoldsWhatTheFileSays(table, nlohmann::json::parse(input));
  } catch (const Failure& failure) {
    const std::string& words = failure.Description();
    Require(failure.Number() == failure_number::kInvalidCall && words.starts_with(kSource));
    // The place is a line of the text, or the name of a member.
    Require(words.find("line ") != words.npos || words.find('"') != words.npos ||
            words.find('\'') != words.npos);
  }
}

}  // namespace plovix::fuzz
