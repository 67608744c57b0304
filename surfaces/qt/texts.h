// Between the controls' UTF-8 texts and the widgets' strings: captions, mnemonics, positions. Used by the
// bindings.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace plovix::qt {

[[nodiscard]] QString Text(std::string_view utf8);

// For widgets that read '&' as the mark of a mnemonic. In a caption "&&" stands for '&', and the first other
// '&' before a letter or digit marks it.
[[nodiscard]] QString MnemonicCaption(std::string_view utf8);
[[nodiscard]] QString CaptionToRead(std::string_view utf8);  // as it is seen, without the mark
// What such a widget is to be announced as where its own caption would be read otherwise, with an '&' in it;
// empty elsewhere.
[[nodiscard]] QString NameBesides(std::string_view utf8);

// The first `count` characters (code points); its size is a position in UTF-16 units.
[[nodiscard]] QString FirstCharacters(std::string_view utf8, int count);

}  // namespace plovix::qt
