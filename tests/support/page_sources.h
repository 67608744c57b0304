// The pages' sources as text: where a named procedure's body lies, so that a reported line can be held
// against it.
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
        if (file.path().extension() == ".cpp" || file.path().extension() == ".h") Read(file.path());
      }
    }
  }

  // Whether `line` stands inside the procedure of the page: in a function of that name, the page's own or
  // a base's, or in one that the page's source calls with the procedure's name as its first argument.
  [[nodiscard]] bool Holds(const std::string& page, const std::string& procedure, int line) {
    const auto [answer, is_new] = known_.try_emplace(page + "/" + procedure + "/" + std::to_string(line));
    if (is_new) answer->second = Find(page, procedure, line);
    return answer->second;
  }

  // The text of a line of the procedure; empty when it lies elsewhere.
  [[nodiscard]] std::string Line(const std::string& page, const std::string& procedure, int line) const {
    for (const Function& f : functions_) {
      if (!f.Has(line) || !(f.class_name == page || (f.Base() && f.name == procedure))) continue;
      return f.lines[static_cast<std::size_t>(line - f.first)];
    }
    return {};
  }

 private:
  struct Function {
    std::string class_name, name;
    int first;
    std::vector<std::string> lines;
    [[nodiscard]] bool Has(int line) const {
      return line >= first && line < first + static_cast<int>(lines.size());
    }
    [[nodiscard]] bool Base() const { return class_name.ends_with("Page"); }
  };

  // A definition starts at the margin with Class::Name( and ends with the next brace at the margin.
  void Read(const std::filesystem::path& path) {
    static const std::regex definition(R"(^[A-Za-z].*\b(\w+)(<.*>)?::(\w+)\()");
    std::ifstream file(path);
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
      text_[path.stem().string()] += line + "\n";
      std::smatch match;
      if (!std::regex_search(line, match, definition)) continue;
      Function function{match[1], match[3], number, {line}};
      const bool one_line = line.ends_with("}");
      while (!one_line && !line.starts_with("}") && std::getline(file, line)) {
        ++number;
        text_[path.stem().string()] += line + "\n";
        function.lines.push_back(line);
      }
      functions_.push_back(std::move(function));
    }
  }

  [[nodiscard]] bool Find(const std::string& page, const std::string& procedure, int line) const {
    return std::ranges::any_of(functions_, [&](const Function& f) {
      if (!f.Has(line) || (f.class_name != page && !f.Base())) return false;
      const std::string call = f.name + "(\"" + procedure + "\"";
      return f.name == procedure || std::ranges::any_of(text_, [&](const auto& file) {
               return file.second.find(page + "::") != std::string::npos &&
                      file.second.find(call) != std::string::npos;
             });
    });
  }

  std::vector<Function> functions_;
  std::map<std::string, std::string> text_;  // by the file's stem
  std::map<std::string, bool> known_;
};

}  // namespace plovix::testing_support
