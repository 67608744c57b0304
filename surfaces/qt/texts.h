// Converts between the controls' UTF-8 texts and the widgets' strings: captions, mnemonics, positions. Used
// by the bindings.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace plovix::qt {

[[nodiscard]] QString Text(std::string_view utf8);

// For widgets that interpret '&' as the mark of a mnemonic. In a caption "&&" means '&', and the first other
// '&' before a letter or digit marks the mnemonic.
[[nodiscard]] QString MnemonicCaption(std::string_view utf8);
[[nodiscard]] QString CaptionToRead(std::string_view utf8);  // as shown, without the mark
// The name to announce for such a widget if its caption would be read with an '&' in it; otherwise empty.
[[nodiscard]] QString NameBesides(std::string_view utf8);

// The first `count` characters (code points); its size is a position in UTF-16 units.
[[nodiscard]] QString FirstCharacters(std::string_view utf8, int count);

}  // namespace plovix::qt
