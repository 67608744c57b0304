#include "texts.h"

namespace plovix::qt {
namespace {

// Position of the mnemonic's mark; -1 when every '&' is just a character.
qsizetype MarkOf(const QString& caption) {
  const qsizetype mark = caption.indexOf('&');
  const bool single = mark >= 0 && mark == caption.lastIndexOf('&');
  return single && mark + 1 < caption.size() && caption[mark + 1].isLetterOrNumber() ? mark : -1;
}

}  // namespace

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString LiteralCaption(std::string_view utf8) {
  return Text(utf8).replace('&', "&&");
}

QString MnemonicCaption(std::string_view utf8) {
  const QString caption = Text(utf8);
  return MarkOf(caption) >= 0 ? caption : LiteralCaption(utf8);
}

QString CaptionToRead(std::string_view utf8) {
  QString caption = Text(utf8);
  if (const qsizetype mark = MarkOf(caption); mark >= 0) caption.remove(mark, 1);
  return caption;
}

QString NameBesides(std::string_view utf8) {
  return utf8.find('&') == std::string_view::npos ? QString() : Text(utf8);
}

QString FirstCharacters(std::string_view utf8, int count) {
  std::size_t end = 0;
  const auto continues = [&] { return (static_cast<unsigned char>(utf8[end]) & 0xC0U) == 0x80U; };
  for (; count > 0 && end < utf8.size(); --count) {
    do {
      ++end;
    } while (end < utf8.size() && continues());
  }
  return Text(utf8.substr(0, end));
}

}  // namespace plovix::qt
