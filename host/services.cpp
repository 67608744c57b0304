#include "services.h"

#include <atomic>
#include <mutex>

namespace plovix {
namespace {

struct Installed {
  std::mutex mutex;  // guards the provider
  ServicesProvider provider;
  std::atomic<unsigned> generation = 0;
};

Installed& TheInstalled() {
  static Installed installed;
  return installed;
}

struct ThreadObjects {
  unsigned generation = 0;
  Ref<HostServices> host_services;
  Ref<Utilities> utilities;
};

// The thread's objects, emptied when another provider has been installed since.
ThreadObjects& Current() {
  thread_local ThreadObjects objects;
  const unsigned generation = TheInstalled().generation.load();
  if (objects.generation != generation) objects = {generation, nullptr, nullptr};
  return objects;
}

// `object`, made by the provider's function on first use.
template <class T>
T& Made(Ref<T>& object, std::function<Ref<T>()> ServicesProvider::*member) {
  if (object) return *object;
  std::function<Ref<T>()> make;
  {
    const std::lock_guard lock(TheInstalled().mutex);
    make = TheInstalled().provider.*member;
  }
  if (make) object = make();
  if (!object) throw Failure(failure_number::kCannotCreateObject, "The host has installed no services");
  return *object;
}

}  // namespace

void InstallServices(ServicesProvider provider) {
  const std::lock_guard lock(TheInstalled().mutex);
  TheInstalled().provider = std::move(provider);
  ++TheInstalled().generation;
}

HostServices& Services() {
  return Made(Current().host_services, &ServicesProvider::host_services);
}

Utilities& ServicesUtilities() {
  return Made(Current().utilities, &ServicesProvider::utilities);
}

}  // namespace plovix
