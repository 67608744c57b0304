#include "fold_case.h"

#include <plovix/base/same_name.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <algorithm>

namespace plovix {
namespace {

bool IsUtf8(std::string_view text) {
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t length = 0;
  u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<std::int32_t>(text.size()), &error);
  return error == U_BUFFER_OVERFLOW_ERROR || U_SUCCESS(error);
}

}  // namespace

std::string FoldCase(std::string_view text) {
  std::string folded(text);
  if (std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
    std::ranges::transform(folded, folded.begin(), LowerAscii);
    return folded;
  }
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(error);
  if (U_FAILURE(error) || !IsUtf8(text)) return folded;
  const auto unicode = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  icu::UnicodeString normal = nfc->normalize(unicode, error);
  if (U_FAILURE(error)) return folded;
  folded.clear();
  normal.foldCase(U_FOLD_CASE_DEFAULT).toUTF8String(folded);
  return folded;
}

}  // namespace plovix
