// The calls by which SQLite writes and syncs, in front of the C library's: the dynamic linker takes the
// program's own definitions first.
#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>

#include "storage_support.h"

namespace plovix::test {
namespace {

struct {
  int error = 0;  // 0: the disk is well
  int first = 0, calls = 0;
  bool for_ever = false;
} fault;

bool Fails() {
  if (fault.error == 0) return false;
  ++fault.calls;
  if (fault.for_ever ? fault.calls < fault.first : fault.calls != fault.first) return false;
  errno = fault.error;
  return true;
}

template <class Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

DiskFault::DiskFault(int error, int first, bool for_ever) {
  fault = {error, first, 0, for_ever};
}
DiskFault::~DiskFault() {
  fault = {};
}
bool DiskFault::Happened() const {
  return fault.calls >= fault.first;
}

}  // namespace plovix::test

using plovix::test::Fails;
using plovix::test::Real;

extern "C" ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset) {
  static auto* const real = Real<ssize_t(int, const void*, size_t, off64_t)>("pwrite64");
  return Fails() ? -1 : real(file, bytes, count, offset);
}

extern "C" int fdatasync(int file) {
  static auto* const real = Real<int(int)>("fdatasync");
  return Fails() ? -1 : real(file);
}

extern "C" int ftruncate64(int file, off64_t length) noexcept {
  static auto* const real = Real<int(int, off64_t)>("ftruncate64");
  return Fails() ? -1 : real(file, length);
}
