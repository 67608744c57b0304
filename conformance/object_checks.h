// The checks of the host's objects, by what they look at.
#pragma once

#include "examination.h"

namespace plovix::conformance {

void CheckMembers(Examination& exam);      // all that is set and read back
void CheckLists(Examination& exam);        // what is kept by reference
void CheckApplication(Examination& exam);  // services, boxes, reports, rights, texts
void CheckData(Examination& exam);         // session, database, data objects, editors

// Whether positions outside 1 to Count fail with 9.
template <class List>
bool FailsOutside(List& list) {
  return FailsWith(9, [&] { (void)list.Item(0); }) &&
         FailsWith(9, [&] { (void)list.Item(list.Count() + 1); });
}

}  // namespace plovix::conformance
