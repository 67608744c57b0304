// Where a manager's secrets come from: a file of the user, and the credentials that a service is given.
#pragma once

#include <plovix/standalone/tasks/placeholders.h>

#include <string>

namespace plovix::runner {

// Lines NAME=VALUE; the value is everything behind the first "=". Empty lines and those that begin with "#"
// do not count. Fails with a Failure that names the file, and at most a line's number and never its content:
// it cannot be read, is no ordinary file or larger than 1 MiB, belongs to another user, may be read or
// written by others, or a line is no NAME=VALUE or names a secret again.
[[nodiscard]] Secrets ReadSecrets(const std::string& path);

// Each file of the folder is the secret of its name, without one line end behind it; that is how a service
// manager hands over credentials ($CREDENTIALS_DIRECTORY). Fails as ReadSecrets does.
[[nodiscard]] Secrets ReadCredentials(const std::string& folder);

}  // namespace plovix::runner
