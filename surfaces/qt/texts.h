// Between the controls' UTF-8 texts and the widgets' strings: captions and their mnemonics. Used by the
// by the bindings.
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
[[nodiscard]] QString CaptionToRead(std::string_view utf8);  // as shown, without the mark
// The name to announce for such a widget if its caption would be read with an '&' in it; otherwise empty.
[[nodiscard]] QString NameBesides(std::string_view utf8);

}  // namespace plovix::qt
