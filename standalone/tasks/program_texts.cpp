// How the texts for a program, its arguments and its variables, are divided.
#include <plovix/base/text_rules.h>

#include <algorithm>
#include <utility>

#include "placeholders.h"

namespace plovix {
namespace {

class ArgumentSplitter {
 public:
  Parsed<std::vector<TextTemplate>> Split(std::string_view text) {
    Parsed<TextTemplate> pieces = ParseText(text);
    for (TextPiece& piece : pieces.value) Take(std::move(piece));
    EndArgument();
    if (pieces.problem) {
      split_.problem = std::move(pieces.problem);
    } else if (in_quotes_) {
      split_.problem = TextProblem{quote_at_, 1, "action.problem.quote", {}};
    }
    return std::move(split_);
  }

 private:
  // Pieces end only at braces, so a mark and the backslash before it are always in the same one.
  void Take(TextPiece piece) {
    if (piece.kind != TextPiece::Kind::kText) {
      argument_.push_back(std::move(piece));
      begun_ = true;
      return;
    }
    for (std::size_t at = 0; at < piece.text.size(); ++at) {
      const char character = piece.text[at];
      const std::string_view next = std::string_view(piece.text).substr(at + 1, 1);
      if (character == '"') {
        in_quotes_ = !in_quotes_;
        quote_at_ = piece.offset + at;
        begun_ = true;
      } else if (!in_quotes_ && std::string_view(" \t\r\n").find(character) != std::string_view::npos) {
        EndArgument();
      } else if (in_quotes_ && character == '\\' && (next == "\"" || next == "\\")) {
        Append(next.front(), piece.offset + at++);
      } else {
        Append(character, piece.offset + at);
      }
    }
  }

  void Append(char character, std::size_t offset) {
    if (argument_.empty() || argument_.back().kind != TextPiece::Kind::kText)
      argument_.push_back({TextPiece::Kind::kText, {}, offset, 0});
    argument_.back().text += character;
    argument_.back().length = offset + 1 - argument_.back().offset;
    begun_ = true;
  }

  void EndArgument() {
    if (begun_) split_.value.push_back(std::exchange(argument_, {}));
    begun_ = false;
  }

  Parsed<std::vector<TextTemplate>> split_;
  TextTemplate argument_;
  bool begun_ = false;  // also by quotes around nothing
  bool in_quotes_ = false;
  std::size_t quote_at_ = 0;
};

bool IsVariableName(std::string_view name) {
  const auto is_letter = [](char sign) {
    return (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z') || sign == '_';
  };
  const auto is_in_name = [&](char sign) { return is_letter(sign) || (sign >= '0' && sign <= '9'); };
  return !name.empty() && is_letter(name.front()) && std::ranges::all_of(name, is_in_name);
}

}  // namespace

Parsed<std::vector<TextTemplate>> ParseArguments(std::string_view text) {
  return ArgumentSplitter().Split(text);
}

Parsed<std::vector<VariableTemplate>> ParseVariables(std::string_view text) {
  Parsed<std::vector<VariableTemplate>> parsed;
  std::size_t offset = 0;
  while (offset < text.size() && !parsed.problem) {
    const std::size_t next = std::min(text.find('\n', offset), text.size());
    std::string_view line = text.substr(offset, next - offset);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t begin = offset;
    offset = next + 1;
    if (Trimmed(line).empty()) continue;
    const std::size_t sign = std::min(line.find('='), line.size());
    const std::string_view name = Trimmed(line.substr(0, sign));
    if (sign == line.size() || !IsVariableName(name) ||
        std::ranges::find(parsed.value, name, &VariableTemplate::name) != parsed.value.end()) {
      parsed.problem = TextProblem{begin, line.size(), "action.problem.variable", {}};
      break;
    }
    Parsed<TextTemplate> value = ParseText(line.substr(sign + 1));
    const std::size_t value_at = begin + sign + 1;
    for (TextPiece& piece : value.value) piece.offset += value_at;
    if (value.problem) value.problem->offset += value_at;
    parsed.problem = std::move(value.problem);
    parsed.value.push_back({std::string(name), std::move(value.value)});
  }
  return parsed;
}

}  // namespace plovix
