#include "run_columns.h"

#include <array>

#include "column_values.h"

namespace plovix {
namespace {

template <class Record, auto kMember>
constexpr auto MemberColumn(std::string_view name) {
  return Column<[](auto& record) { return &(record.*kMember); }, Record>(name);
}

// For a member of a member.
template <class Record, auto kPart, auto kMember>
constexpr auto PartColumn(std::string_view name) {
  return Column<[](auto& record) { return &(record.*kPart.*kMember); }, Record>(name);
}

// For a member of something that a record may lack; NULL in all its columns if it does.
template <class Record, auto kPart, auto kMember>
constexpr ColumnOf<Record> OptionalColumn(std::string_view name) {
  return {name,
          [](Statement& statement, int parameter, const Record& record) {
            const auto& part = record.*kPart;
            if (!part) return statement.BindNull(parameter);
            ToFile{statement, parameter}((*part).*kMember);
          },
          [](Record& record, const Statement& row, int column) {
            if (IsNull(row, column)) return true;
            auto& part = record.*kPart;
            if (!part) part.emplace();
            return FromFile{row, column}((*part).*kMember);
          }};
}

template <class Record>
constexpr std::array kPauseColumns{
    OptionalColumn<Record, &Record::paused, &Pause::since>("PausedSince"),
    OptionalColumn<Record, &Record::paused, &Pause::person>("PausedBy"),
    OptionalColumn<Record, &Record::paused, &Pause::reason>("PauseReason"),
};

template <auto kMember>
constexpr auto OfRun = MemberColumn<RunRecord, kMember>;
constexpr std::array kRunColumns{
    OfRun<&RunRecord::task>("TaskId"),
    OfRun<&RunRecord::due>("Due"),
    OfRun<&RunRecord::origin>("Origin"),
    OfRun<&RunRecord::state>("State"),
    OfRun<&RunRecord::not_before>("NotBefore"),
    OfRun<&RunRecord::attempt>("Attempt"),
    OfRun<&RunRecord::failures>("Failures"),
    OfRun<&RunRecord::repeats>("Repeats"),
    OfRun<&RunRecord::epoch>("Epoch"),
    OfRun<&RunRecord::manager>("Manager"),
    OfRun<&RunRecord::started>("Started"),
    OfRun<&RunRecord::ended>("Ended"),
    OfRun<&RunRecord::reason>("Reason"),
    OfRun<&RunRecord::person>("Person"),
    OfRun<&RunRecord::keys>("Keys"),
    OfRun<&RunRecord::cancel>("Cancel"),
    PartColumn<RunRecord, &RunRecord::records, &RecordCounts::found>("Found"),
    PartColumn<RunRecord, &RunRecord::records, &RecordCounts::done>("Done"),
    PartColumn<RunRecord, &RunRecord::records, &RecordCounts::failed>("Failed"),
    PartColumn<RunRecord, &RunRecord::records, &RecordCounts::skipped>("Skipped"),
    OptionalColumn<RunRecord, &RunRecord::missed, &MissedSpan::from>("MissedFrom"),
    OptionalColumn<RunRecord, &RunRecord::missed, &MissedSpan::to>("MissedTo"),
    OptionalColumn<RunRecord, &RunRecord::missed, &MissedSpan::count>("MissedCount"),
    OfRun<&RunRecord::planned>("Planned"),
};

template <auto kMember>
constexpr auto OfState = MemberColumn<TaskState, kMember>;
template <auto kMember>
constexpr auto OfPolicies = PartColumn<TaskState, &TaskState::policies, kMember>;
constexpr std::array kStateColumns{
    OfState<&TaskState::schedule>("Schedule"),
    OfState<&TaskState::next_due>("NextDue"),
    OfState<&TaskState::planned>("Planned"),
    OfState<&TaskState::paused_row>("PausedRow"),
    OfState<&TaskState::running_run>("RunningRun"),
    OfState<&TaskState::retrying>("Retrying"),
    OfState<&TaskState::queued>("Queued"),
    OfState<&TaskState::runs>("Runs"),
    OfPolicies<&TaskPolicies::missed>("Missed"),
    OfPolicies<&TaskPolicies::missed_count>("MissedCount"),
    OfPolicies<&TaskPolicies::overlap>("Overlap"),
    OfPolicies<&TaskPolicies::retries>("Retries"),
    OfPolicies<&TaskPolicies::interrupted>("Interrupted"),
    OfPolicies<&TaskPolicies::short_month>("ShortMonth"),
    OfPolicies<&TaskPolicies::limit>("TimeLimit"),
    kPauseColumns<TaskState>[0],
    kPauseColumns<TaskState>[1],
    kPauseColumns<TaskState>[2],
};

template <auto kMember>
constexpr auto OfLedger = MemberColumn<LedgerRow, kMember>;
constexpr std::array kLedgerColumns{
    OfLedger<&LedgerRow::record>("Record"), OfLedger<&LedgerRow::state>("State"),
    OfLedger<&LedgerRow::fingerprint>("Fingerprint"), OfLedger<&LedgerRow::run>("RunId"),
    OfLedger<&LedgerRow::reason>("Reason")};

template <auto kMember>
constexpr auto OfAudit = MemberColumn<AuditEntry, kMember>;
constexpr std::array kAuditColumns{
    OfAudit<&AuditEntry::at>("At"),     OfAudit<&AuditEntry::person>("Person"),
    OfAudit<&AuditEntry::deed>("Deed"), OfAudit<&AuditEntry::task>("TaskId"),
    OfAudit<&AuditEntry::run>("RunId"), OfAudit<&AuditEntry::detail>("Detail")};

template <auto kMember>
constexpr auto OfFile = MemberColumn<FileSettings, kMember>;
constexpr std::array kFileSettingsColumns{
    OfFile<&FileSettings::id>("FileId"),
    OfFile<&FileSettings::zone>("Zone"),
    OfFile<&FileSettings::last_manager>("LastManager"),
    kPauseColumns<FileSettings>[0],
    kPauseColumns<FileSettings>[1],
    kPauseColumns<FileSettings>[2],
    OfFile<&FileSettings::ran_on>("RanOn"),
    OfFile<&FileSettings::data>("Data"),
};

template <auto kMember>
constexpr auto OfManager = MemberColumn<ManagerRecord, kMember>;
constexpr std::array kManagerColumns{
    OfManager<&ManagerRecord::kind>("Kind"),       OfManager<&ManagerRecord::host>("Host"),
    OfManager<&ManagerRecord::account>("Account"), OfManager<&ManagerRecord::process>("Pid"),
    OfManager<&ManagerRecord::since>("Since"),
};

}  // namespace

std::span<const ColumnOf<RunRecord>> RunColumns() {
  return kRunColumns;
}

std::span<const ColumnOf<TaskState>> StateColumns() {
  return kStateColumns;
}

std::span<const ColumnOf<LedgerRow>> LedgerColumns() {
  return kLedgerColumns;
}

std::span<const ColumnOf<AuditEntry>> AuditColumns() {
  return kAuditColumns;
}

std::span<const ColumnOf<FileSettings>> FileSettingsColumns() {
  return kFileSettingsColumns;
}

std::span<const ColumnOf<ManagerRecord>> ManagerColumns() {
  return kManagerColumns;
}

}  // namespace plovix
