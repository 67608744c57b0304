// Which records a run takes: the ledger, the processing mode and the base date decide.
#pragma once

#include "manager_ports.h"

namespace plovix {

// What tells that a record was changed since it was processed: its own time of change, else a hash over its
// values.
[[nodiscard]] std::string FingerprintOf(const SourceRecord& record);

enum class RecordChoice { kTake, kDoneBefore, kSkip };  // kDoneBefore: by an earlier attempt of this run

// `known`: the ledger's row of the record.
[[nodiscard]] RecordChoice Choose(const TaskRecord& task, const RunRecord& run, const SourceRecord& record,
                                  const std::optional<LedgerRow>& known);

}  // namespace plovix
