// What is wrong with a line of a script. The runner reports it with the line's place and stops.
#pragma once

#include <stdexcept>

namespace plovix::script {

class LineError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace plovix::script
