// Between the controls' UTF-8 texts and the widgets' strings: captions and their mnemonics. Used by the
// bindings.
#pragma once

#include <plovix/surfaces/common/captions.h>

#include <QString>
#include <string_view>

namespace plovix::qt {

[[nodiscard]] QString Text(std::string_view utf8);

// What the toolkit knows of characters.
[[nodiscard]] const surface::Unicode& Characters();

// For widgets that read '&' as the mark of a mnemonic.
[[nodiscard]] QString MnemonicCaption(std::string_view utf8);
[[nodiscard]] QString CaptionToRead(std::string_view utf8);  // as it is seen, without the mark
// What such a widget is to be announced as where its own caption would be read otherwise, with an '&' in it;
// empty elsewhere.
[[nodiscard]] QString NameBesides(std::string_view utf8);

}  // namespace plovix::qt
