#include "file_source.h"

#include <plovix/base/failure.h>
#include <plovix/base/utf8.h>

namespace plovix {
namespace {

constexpr std::size_t kLongestParameter = 120;  // bytes

}  // namespace

void FileSource::Refuse(std::string_view key, std::vector<std::string> parameters) const {
  for (std::string& parameter : parameters) parameter = Shortened(parameter, kLongestParameter);
  throw Failure(failure_number::kInvalidCall,
                texts.Host("exchange.refused", {name, texts.Host(key, parameters)}));
}

}  // namespace plovix
