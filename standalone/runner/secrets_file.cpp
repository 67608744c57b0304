#include "secrets_file.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "descriptor.h"

namespace plovix::runner {
namespace {

constexpr std::size_t kLargestSecrets = std::size_t{1024} * 1024;  // bytes of a file

[[noreturn]] void RefuseSecrets(const std::string& path, const std::string& words) {
  throw Failure(failure_number::kInvalidCall, path + ": the secrets cannot be used: " + words);
}

// The file's bytes, if nobody but this user has access to them.
std::string ReadPrivateFile(const std::string& path) {
  constexpr int kHow = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  constexpr mode_t kOthers = S_IRWXG | S_IRWXO;
  const Descriptor file(open(path.c_str(), kHow));
  if (!file.IsOpen()) RefuseSecrets(path, errno == ELOOP ? "the file is a link" : SystemWords(errno));
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) RefuseSecrets(path, SystemWords(errno));
  if (!S_ISREG(status.st_mode)) RefuseSecrets(path, "it is no ordinary file");
  if (status.st_uid != geteuid()) RefuseSecrets(path, "the file belongs to another user");
  if ((status.st_mode & kOthers) != 0)
    RefuseSecrets(path, "others have access to the file; only its owner may: chmod 600");
  std::string bytes;
  std::array<char, 4096> block{};
  ssize_t count = 0;
  while ((count = read(file.Get(), block.data(), block.size())) > 0) {
    bytes.append(block.data(), static_cast<std::size_t>(count));
    if (bytes.size() > kLargestSecrets) RefuseSecrets(path, "the file is larger than 1 MiB");
  }
  if (count < 0) RefuseSecrets(path, SystemWords(errno));
  return bytes;
}

}  // namespace

Secrets ReadSecrets(const std::string& path) {
  const std::string bytes = ReadPrivateFile(path);
  Secrets secrets;
  int number = 1;
  for (std::size_t at = 0; at < bytes.size(); ++number) {
    const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
    std::string_view line = std::string_view(bytes).substr(at, end - at);
    at = end + 1;
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with('#')) continue;
    const std::size_t sign = line.find('=');
    if (sign == 0 || sign == std::string_view::npos)
      RefuseSecrets(path, "line " + std::to_string(number) + " is no NAME=VALUE");
    if (!secrets.try_emplace(std::string(line.substr(0, sign)), line.substr(sign + 1)).second)
      RefuseSecrets(path, "line " + std::to_string(number) + " names a secret again");
  }
  return secrets;
}

Secrets ReadCredentials(const std::string& folder) {
  namespace fs = std::filesystem;
  Secrets secrets;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::string value = ReadPrivateFile(entry->path().string());
    if (value.ends_with('\n')) value.pop_back();
    secrets.emplace(entry->path().filename().string(), std::move(value));
  }
  if (error) RefuseSecrets(folder, SystemWords(error.value()));
  return secrets;
}

}  // namespace plovix::runner
