// The pages' sources as text: what stands on a line of a named procedure, so that a reported line can be
// held against it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace plovix::testing_support {

class PageSources {
 public:
  PageSources() {
    for (const char* room : {"pages", "framework"}) {
      for (const auto& file :
           std::filesystem::recursive_directory_iterator(std::filesystem::path(PLOVIX_SOURCE_DIR) / room)) {
        if (file.path().extension() == ".cpp") Read(file.path());
      }
    }
  }

  // The line of the page's procedure; empty when it lies elsewhere. A procedure is a function of that
  // name, the page's own or a base's, one that is called with the name as its first argument, or a helper
  // that takes over the procedure's statements.
  [[nodiscard]] std::string Line(const std::string& page, const std::string& procedure, int line) const {
    for (const Function& f : functions_) {
      const std::size_t offset = static_cast<std::size_t>(line - f.first);
      if (line < f.first || offset >= f.lines.size()) continue;
      if (f.class_name != page && !f.class_name.ends_with("Page")) continue;
      if (Serves(f.name, procedure)) return f.lines[offset];
    }
    return {};
  }

 private:
  [[nodiscard]] bool Serves(const std::string& name, const std::string& procedure) const {
    const auto [known, unknown] = serves_.try_emplace({name, procedure}, false);
    if (unknown) known->second = FindsOut(name, procedure);
    return known->second;
  }
  [[nodiscard]] bool FindsOut(const std::string& name, const std::string& procedure) const {
    if (name == procedure || text_.find(name + "(\"" + procedure + "\"") != std::string::npos) return true;
    return std::ranges::any_of(functions_, [&](const Function& caller) {
      const auto hands_on = [&](const std::string& line) {
        return line.find(name + "(run") != std::string::npos;
      };
      return std::ranges::any_of(caller.lines, hands_on) && Serves(caller.name, procedure);
    });
  }

  struct Function {
    std::string class_name, name;
    int first;
    std::vector<std::string> lines;
  };

  // A definition starts at the margin with Class::Name( and ends with the next brace at the margin.
  void Read(const std::filesystem::path& path) {
    static const std::regex definition(R"(^[A-Za-z].*\b(\w+)::(\w+)\()");
    std::ifstream file(path);
    std::string line;
    bool inside = false;
    for (int number = 1; std::getline(file, line); ++number) {
      text_ += line + "\n";
      std::smatch match;
      if (std::regex_search(line, match, definition)) functions_.push_back({match[1], match[2], number, {}});
      inside = !match.empty() || inside;
      if (inside) functions_.back().lines.push_back(line);
      if (line.starts_with("}")) inside = false;
    }
  }

  std::vector<Function> functions_;
  mutable std::map<std::pair<std::string, std::string>, bool> serves_;
  std::string text_;
};

}  // namespace plovix::testing_support
