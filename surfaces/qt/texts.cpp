#include "texts.h"

namespace plovix::qt {

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

const surface::Unicode& Characters() {
  static const surface::Unicode characters = [] {
    surface::Unicode qt;
    qt.is_letter_or_digit = [](char32_t character) { return QChar::isLetterOrNumber(character); };
    qt.fold = [](char32_t character) { return QChar::toCaseFolded(character); };
    return qt;
  }();
  return characters;
}

QString MnemonicCaption(std::string_view utf8) {
  const surface::Caption caption = surface::ReadCaption(utf8, Characters());
  const std::string_view text = caption.text;
  const auto literal = [](std::string_view part) { return Text(part).replace('&', "&&"); };
  if (caption.mnemonic == std::string_view::npos) return literal(text);
  return literal(text.substr(0, caption.mnemonic)) + '&' + literal(text.substr(caption.mnemonic));
}

QString CaptionToRead(std::string_view utf8) {
  return Text(surface::ReadCaption(utf8, Characters()).text);
}

QString NameBesides(std::string_view utf8) {
  return utf8.find('&') == std::string_view::npos ? QString() : CaptionToRead(utf8);
}

}  // namespace plovix::qt
