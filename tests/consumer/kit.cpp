// A host that has only texts: the kit finds nothing wrong, and says what it could not check.
#include <plovix/conformance/conformance.h>
#include <plovix/standalone/text/languages.h>

#include <iostream>

int main() {
  if (plovix::LoadLanguage("en").Find(4).value_or("").empty()) return 3;
  return plovix::conformance::Print(plovix::conformance::CheckHost({}), std::cout) == 2 ? 0 : 1;
}
