// A store of runs whose next change can be made to fail, before or after it is stored, and that tells what
// managers do with it.
#pragma once

#include <plovix/base/failure.h>
#include <plovix/standalone/runs/run_store.h>

namespace plovix::test {

class FaultyStore final : public RunStore {
 public:
  // Told of what was stored, also if the caller then learns that it failed.
  struct Listener {
    std::function<void()> changes;  // before each change: others may be faster
    std::function<void(const RunRecord& run)> claimed;
    std::function<void(const RunEnd& end)> ended;
  };
  FaultyStore(RunStore& store, Listener listener) : store_(store), listener_(std::move(listener)) {}

  // The change that comes after so many others fails.
  void FailLater(int changes, bool stored) {
    left_ = changes + 1;
    stored_ = stored;
  }
  void Heal() { left_ = 0; }

  std::vector<TaskState> States() override { return store_.States(); }
  std::optional<TaskState> State(std::int64_t task) override { return store_.State(task); }
  std::vector<std::int64_t> Unplanned() override { return store_.Unplanned(); }
  std::vector<std::int64_t> Due(Instant now) override { return store_.Due(now); }
  std::optional<Instant> NextWake() override { return store_.NextWake(); }
  bool MoveCursor(const CursorMove& move) override {
    return Change([&] { return store_.MoveCursor(move); });
  }
  void SetPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by) override {
    store_.SetPolicies(task, policies, by);
  }
  void SetPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by) override {
    store_.SetPause(task, pause, by);
  }
  void SetPauseOfAll(const std::optional<Pause>& pause, const Doer& by) override {
    store_.SetPauseOfAll(pause, by);
  }
  bool Release(std::int64_t task, std::int64_t version, const Doer& by) override {
    return store_.Release(task, version, by);
  }
  std::optional<Pause> PauseOfAll() override { return store_.PauseOfAll(); }
  RunRecord Request(RunRecord run) override { return store_.Request(std::move(run)); }
  bool Cancel(std::int64_t run, const std::string& reason, const Doer& by) override {
    return store_.Cancel(run, reason, by);
  }
  bool CloseByForce(const RunEnd& end, const Doer& by) override {
    const bool closed = store_.CloseByForce(end, by);
    if (closed) listener_.ended(end);
    return closed;
  }
  void BringForward(Instant now, std::chrono::seconds most) override { store_.BringForward(now, most); }
  bool Trim(std::int64_t most, std::int64_t batch) override { return store_.Trim(most, batch); }
  void Audit(AuditEntry entry) override { store_.Audit(std::move(entry)); }
  std::vector<AuditEntry> Audits(const AuditFilter& filter) override { return store_.Audits(filter); }
  Turn EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                   std::int64_t manager) override {
    return Change([&] {
      Turn turn = store_.EndAndClaim(ends, most, now, manager);
      for (std::size_t i = 0; i < ends.size(); ++i)
        if (turn.ended[i]) listener_.ended(ends[i]);
      for (const auto& claimed : turn.claimed) listener_.claimed(claimed.run);
      return turn;
    });
  }
  std::int64_t ChangeCount() override { return store_.ChangeCount(); }
  std::vector<RunRecord> UnderWay() override { return store_.UnderWay(); }
  std::vector<RunRecord> History(std::optional<std::int64_t> task) override { return store_.History(task); }
  std::optional<RunRecord> Run(std::int64_t run) override { return store_.Run(run); }
  std::vector<RunRecord> Recent(const RunFilter& filter) override { return store_.Recent(filter); }
  std::vector<RunRecord> LatestOfEach() override { return store_.LatestOfEach(); }
  std::vector<LedgerRow> Ledger(std::int64_t task) override { return store_.Ledger(task); }
  std::optional<LedgerRow> LedgerOf(std::int64_t task, const std::string& record) override {
    return store_.LedgerOf(task, record);
  }
  std::vector<LedgerRow> LedgerOfRun(const LedgerFilter& filter) override {
    return store_.LedgerOfRun(filter);
  }
  bool Write(const RunRecord& run, const std::vector<LedgerRow>& rows) override {
    return Change([&] { return store_.Write(run, rows); });
  }
  bool ClearLedger(const RunRecord& run, bool only_failed) override {
    return Change([&] { return store_.ClearLedger(run, only_failed); });
  }
  bool Decide(std::int64_t task, const std::string& record, bool done, const Doer& by) override {
    return store_.Decide(task, record, done, by);
  }

 private:
  template <class Work>
  std::invoke_result_t<Work> Change(const Work& work) {
    listener_.changes();
    const bool fails = left_ > 0 && --left_ == 0;
    if (fails && !stored_) throw Failure(57, "the disk is away");
    auto result = work();
    if (fails) throw Failure(57, "the disk went away");
    return result;
  }

  RunStore& store_;
  Listener listener_;
  int left_ = 0;  // changes until one fails; 0: none will
  bool stored_ = false;
};

}  // namespace plovix::test
