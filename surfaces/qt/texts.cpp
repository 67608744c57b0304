#include "texts.h"

namespace plovix::qt {
namespace {

// The caption with `shown` for each literal '&' and `mark` before the mnemonic: "&&" is one literal '&', the
// first other '&' before a letter or digit marks the mnemonic, and any more are literal.
QString WithMarks(std::string_view utf8, QLatin1StringView shown, QLatin1StringView mark) {
  const QString caption = Text(utf8);
  QString result;
  bool marked = false;
  for (qsizetype i = 0; i < caption.size(); ++i) {
    const QChar next = i + 1 < caption.size() ? caption[i + 1] : QChar();
    if (caption[i] != '&') {
      result += caption[i];
    } else if (next == '&') {
      result += shown;
      ++i;
    } else if (!marked && next.isLetterOrNumber()) {
      result += mark;
      marked = true;
    } else {
      result += shown;
    }
  }
  return result;
}

}  // namespace

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString MnemonicCaption(std::string_view utf8) {
  return WithMarks(utf8, QLatin1StringView("&&"), QLatin1StringView("&"));
}

QString CaptionToRead(std::string_view utf8) {
  return WithMarks(utf8, QLatin1StringView("&"), QLatin1StringView());
}

QString NameBesides(std::string_view utf8) {
  return utf8.find('&') == std::string_view::npos ? QString() : CaptionToRead(utf8);
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
