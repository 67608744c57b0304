#include "file_source.h"

#include <plovix/base/failure.h>

namespace plovix {
namespace {

constexpr std::size_t kLongestParameter = 120;  // bytes

void Shorten(std::string& text) {
  if (text.size() <= kLongestParameter) return;
  std::size_t length = kLongestParameter;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  text.resize(length);
  text += "…";
}

}  // namespace

void FileSource::Refuse(std::string_view key, std::vector<std::string> parameters) const {
  for (std::string& parameter : parameters) Shorten(parameter);
  throw Failure(failure_number::kInvalidCall,
                texts.Host("exchange.refused", {name, texts.Host(key, parameters)}));
}

}  // namespace plovix
