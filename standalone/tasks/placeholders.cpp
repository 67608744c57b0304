#include "placeholders.h"

#include <plovix/base/failure.h>
#include <plovix/base/same_name.h>
#include <plovix/base/utf8.h>

#include <algorithm>

namespace plovix {
namespace {

constexpr std::string_view kSecretPrefix = "secret:";

class PieceParser {
 public:
  explicit PieceParser(std::string_view text) : text_(text) {}

  Parsed<TextTemplate> Parse() {
    while (at_ < text_.size() && !parsed_.problem) {
      const std::size_t brace = std::min(text_.find_first_of("{}", at_), text_.size());
      if (brace > at_) Add(TextPiece::Kind::kText, text_.substr(at_, brace - at_), brace - at_);
      if (brace < text_.size()) TakeBrace();
    }
    return std::move(parsed_);
  }

 private:
  void Add(TextPiece::Kind kind, std::string_view text, std::size_t length) {
    parsed_.value.push_back({kind, std::string(text), at_, length});
    at_ += length;
  }

  void TakeBrace() {
    const std::string_view rest = text_.substr(at_);
    if (rest.starts_with("{{") || rest.starts_with("}}"))
      return Add(TextPiece::Kind::kText, rest.substr(0, 1), 2);
    const std::size_t end = rest.find_first_of("{}", 1);
    if (rest.front() == '}') return Refuse(1);
    if (end == std::string_view::npos || rest[end] == '{') return Refuse(1);  // not closed
    std::string_view name = rest.substr(1, end - 1);
    const bool is_secret = name.starts_with(kSecretPrefix);
    if (is_secret) name.remove_prefix(kSecretPrefix.size());
    if (name.empty()) return Refuse(end + 1);
    Add(is_secret ? TextPiece::Kind::kSecret : TextPiece::Kind::kField, name, end + 1);
  }

  void Refuse(std::size_t length) { parsed_.problem = TextProblem{at_, length, "action.problem.brace", {}}; }

  std::string_view text_;
  std::size_t at_ = 0;
  Parsed<TextTemplate> parsed_;
};

FieldValue SecretNamed(const std::string& name, const Secrets& secrets) {
  const auto found = secrets.find(name);
  if (found == secrets.end())
    throw Failure(failure_number::kInvalidCall, "There is no secret " + Quoted(name));
  return found->second;
}

}  // namespace

Parsed<TextTemplate> ParseText(std::string_view text) {
  return PieceParser(text).Parse();
}

std::optional<TextProblem> CheckNames(const TextTemplate& pieces, const KnownNames& known) {
  for (const TextPiece& piece : pieces) {
    if (piece.kind == TextPiece::Kind::kSecret && !known.secrets)
      return TextProblem{piece.offset, piece.length, "action.problem.secret", {}};
    if (piece.kind != TextPiece::Kind::kField || known.fields == nullptr) continue;
    const bool exists = std::ranges::any_of(
        *known.fields, [&piece](const FieldRecord& field) { return SameName(field.name, piece.text); });
    if (!exists) return TextProblem{piece.offset, piece.length, "action.problem.field", piece.text};
  }
  return std::nullopt;
}

FieldValue ValueOf(const TextPiece& placeholder, const RecordValues& record, const Secrets& secrets) {
  if (placeholder.kind == TextPiece::Kind::kSecret) return SecretNamed(placeholder.text, secrets);
  const FieldValue* value = FindValue(record, placeholder.text);
  if (value == nullptr)
    throw Failure(failure_number::kNoSuchColumn, "The record has no field " + Quoted(placeholder.text));
  return *value;
}

std::string Fill(const TextTemplate& pieces, const RecordValues& record, const Secrets& secrets) {
  std::string filled;
  for (const TextPiece& piece : pieces) {
    const bool is_text = piece.kind == TextPiece::Kind::kText;
    filled += is_text ? piece.text : TextOf(ValueOf(piece, record, secrets));
  }
  return filled;
}

std::string FillLine(const TextTemplate& pieces, const RecordValues& record) {
  constexpr unsigned char kFirstPrintable = ' ', kDelete = 0x7F;
  const std::string filled = Fill(pieces, record);
  std::string line;
  line.reserve(filled.size());
  for (std::size_t at = 0; at < filled.size(); ++at) {
    const auto byte = static_cast<unsigned char>(filled[at]);
    if (filled.compare(at, 2, "\r\n") == 0) continue;
    line += byte < kFirstPrintable || byte == kDelete ? ' ' : filled[at];
  }
  return line;
}

std::string FillForProgram(const TextTemplate& pieces, const RecordValues& record, const Secrets& secrets) {
  std::string filled = Fill(pieces, record, secrets);
  if (filled.find('\0') == std::string::npos) return filled;
  throw Failure(failure_number::kInvalidCall,
                "A value for the program holds a zero byte, at which the program would cut it off");
}

std::string WithDoubledBraces(std::string_view text) {
  std::string doubled;
  for (const char character : text) {
    doubled += character;
    if (character == '{' || character == '}') doubled += character;
  }
  return doubled;
}

}  // namespace plovix
