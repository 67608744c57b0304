// Runs scripts on texts that are their numbers, and compares what they print with what is wanted of it.
#pragma once

#include <gtest/gtest.h>
#include <plovix/standalone/script/script_runner.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace plovix::script_test {

using Json = nlohmann::json;

struct Ran {
  int status;
  std::vector<Json> printed;
  std::string messages;
};

inline Ran Play(const std::string& script, TaskStorage& storage, bool interactive = false) {
  std::istringstream in(script);
  std::ostringstream out, err;
  Ran ran{RunScript(in, out, err, {&storage, TextTable::Ids(), interactive, "test.txt"}), {}, {}};
  std::istringstream lines(out.str());
  for (std::string line; std::getline(lines, line);) ran.printed.push_back(Json::parse(line));
  ran.messages = err.str();
  return ran;
}

inline Ran Play(const std::string& script) {
  MemoryStorage storage;
  return Play(script, storage);
}

// Whether `given` is `wanted`; of an object only the wanted members count.
inline bool Matches(const Json& wanted, const Json& given) {
  if (wanted.is_array() && given.is_array() && wanted.size() == given.size()) {
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (!Matches(wanted[i], given[i])) return false;
    }
    return true;
  }
  if (!wanted.is_object() || !given.is_object()) return wanted == given;
  for (const auto& [key, value] : wanted.items()) {
    if (!given.contains(key) || !Matches(value, given[key])) return false;
  }
  return true;
}

struct Case {
  std::string name;
  std::string script;
  std::vector<std::string> wanted;  // for each printed line, what must be in it
};

inline void Check(const std::vector<Case>& cases) {
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    const Ran ran = Play(each.script);
    EXPECT_EQ(ran.status, 0) << ran.messages;
    ASSERT_EQ(ran.printed.size(), each.wanted.size());
    for (std::size_t i = 0; i < each.wanted.size(); ++i) {
      EXPECT_TRUE(Matches(Json::parse(each.wanted[i]), ran.printed[i]))
          << "wanted " << each.wanted[i] << "\ngiven  " << ran.printed[i].dump();
    }
  }
}

}  // namespace plovix::script_test
