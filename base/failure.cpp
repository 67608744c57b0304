#include "failure.h"

#include <new>
#include <stdexcept>
#include <typeinfo>
#include <variant>

namespace plovix {

// Not inline, so that only one library contains the class information that handling an exception needs.
const char* Failure::what() const noexcept {
  return description_.c_str();
}

Failure CurrentFailure() {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return {failure_number::kOutOfMemory, "Out of memory"};
  } catch (const std::out_of_range& error) {
    return {failure_number::kSubscriptOutOfRange, error.what()};
  } catch (const std::bad_variant_access& error) {
    return {failure_number::kTypeMismatch, error.what()};
  } catch (const std::bad_cast& error) {
    return {failure_number::kTypeMismatch, error.what()};
  } catch (const std::exception& error) {
    return {failure_number::kInternal, error.what()};
  } catch (...) {
    return {failure_number::kInternal, "Unknown failure"};
  }
}

}  // namespace plovix
