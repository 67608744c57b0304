// The checks of the host's objects, by subject.
#pragma once

#include "examination.h"

namespace plovix::conformance {

void CheckMembers(Examination& exam);      // everything that is set and read back
void CheckLists(Examination& exam);        // everything that is kept by reference
void CheckApplication(Examination& exam);  // services, message boxes, reports, rights, texts
void CheckData(Examination& exam);         // session, database, data objects, editors

// Whether positions outside 1 to Count fail with 9.
template <class List>
bool FailsOutside(List& list) {
  return FailsWith(9, [&] { (void)list.Item(0); }) &&
         FailsWith(9, [&] { (void)list.Item(list.Count() + 1); });
}

}  // namespace plovix::conformance
