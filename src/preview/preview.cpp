// SPDX-License-Identifier: MIT
#include "preview/preview.h"

#include <algorithm>
#include <map>
#include <utility>

#include "engine/rewriter.h"
#include "jobs/skip_file.h"
#include "preview/preview_capture.h"

namespace quillmere {
namespace {

constexpr int kMostStatements = 1'000'000;

std::string_view WhyBlocked(const ParsedStatement& parsed, Decision decision) {
  if (decision == Decision::Excluded) return "the job excludes the table";
  if (parsed.owner.empty() || parsed.table.empty()) return "it names no table";
  return "the job does not carry its owner";
}

class LookedAhead final : public Preview {
 public:
  LookedAhead(const EngineContext& engine, std::size_t index,
              const OracleSession::StopCondition& stop)
      : double_(engine, index, kMostStatements) {
    const RestoredRun& found = double_.Restored();
    const std::string name = NameOf(double_.Job());
    if (found.state == JobState::Stopped) {
      why_ = name + " is stopped: it takes what changes on the source from its start on";
    } else if (!found.held.empty() && !found.asks_again) {
      why_ = name + " is held: " + found.held;
    } else if (!Batch().Empty()) {
      ShowPending(found);
    } else {
      ShowCaptured(name, stop);
    }
    notes_ = std::move(double_.Told());
    if (double_.Job().run.unsettled) {
      notes_.emplace_back(
          "Whether the destination took the last pass is not known yet: the next one asks it "
          "first, and may begin further on");
    }
    Count();
  }

  Kind What() const override { return kind_; }
  const std::string& Why() const override { return why_; }
  std::size_t Size() const override { return Batch().Size(); }
  std::size_t Next() const override { return next_; }
  const std::vector<PreviewTable>& Tables() const override { return tables_; }
  std::size_t ToExecute() const override { return to_execute_; }
  std::size_t ToBlock() const override { return Size() - next_ - to_execute_; }
  const std::vector<std::string>& Notes() const override { return notes_; }

  PreviewEntry At(std::size_t index) const override {
    PreviewEntry entry;
    const TransactionMarks::Walk transaction(Batch().Transactions(),
                                             static_cast<std::uint32_t>(index));
    if (transaction.Mark() != nullptr) entry.commit_scn = transaction.Mark()->commit_scn;
    const Judged judged = Judge(index);
    entry.owner = judged.owner;
    entry.table = judged.table;
    entry.why = judged.why;
    entry.statement = judged.text;
    entry.fate = entry.why.empty() ? PreviewEntry::Fate::Execute : PreviewEntry::Fate::Blocked;
    if (entry.fate == PreviewEntry::Fate::Execute) {
      Rewrite(judged.parsed, judged.to, Quotes(), entry.statement);
    }
    if (index < next_) entry.fate = PreviewEntry::Fate::Executed;
    return entry;
  }

 private:
  struct Judged {
    ParsedStatement parsed;
    std::string_view owner, table, text, why, to;
  };

  const PendingBatch& Batch() const { return double_.Job().run.pending_batch; }
  NameQuotes Quotes() const {
    return FollowOf(double_.Job()) == Follow::Commits ? NameQuotes::Kept : NameQuotes::Dropped;
  }

  void ShowCaptured(const std::string& name, const OracleSession::StopCondition& stop) {
    const bool read = CaptureAhead(double_, stop, blocked_, why_);
    kind_ = !Batch().Empty() ? Kind::Captured : read ? Kind::Nothing : Kind::Failed;
    if (kind_ != Kind::Nothing) return;
    why_ = "The next pass of " + name + " has nothing to execute";
    if (FollowOf(double_.Job()) == Follow::Rows) {
      why_ += " yet: what has changed since the last one comes with the pass after it";
    }
  }

  void ShowPending(const RestoredRun& found) {
    kind_ = Kind::Pending;
    next_ = Size() - found.progress.batch_remaining;
    const FileStatus read =
        ReadSkipFile(double_.Context().files, double_.Folder(), double_.Job().run, skips_);
    if (!read) notes_.push_back(read.reason);
  }

  bool IsSkipped(std::size_t entry) const {
    return std::any_of(skips_.begin(), skips_.end(), [&](const SkipMark& mark) {
      return entry >= mark.first && entry - mark.first < mark.count;
    });
  }

  Judged Judge(std::size_t index) const {
    const PendingBatch::Entry entry = Batch()[index];
    if (entry.kind == PendingBatch::Kind::SetAside) {
      const auto found = std::lower_bound(
          blocked_.begin(), blocked_.end(), index,
          [](const BlockedEntry& one, std::size_t place) { return one.entry < place; });
      if (found == blocked_.end()) {
        return {{}, {}, {}, {}, "it was set aside when it was mined; see setaside.sql", {}};
      }
      return {{}, found->owner, found->table, found->text, found->why, {}};
    }
    Judged judged{ParseStatement(entry.text), {}, {}, entry.text, {}, {}};
    judged.owner = judged.parsed.owner;
    judged.table = judged.parsed.table;
    const Verdict verdict = Decide(double_.Job(), judged.parsed);
    judged.to = verdict.owner;
    if (verdict.decision != Decision::Accepted) {
      judged.why = WhyBlocked(judged.parsed, verdict.decision);
    } else if (IsSkipped(index)) {
      judged.why = "it is to be skipped";
    }
    return judged;
  }

  void Count() {
    std::map<std::pair<std::string_view, std::string_view>, PreviewTable> tables;
    for (std::size_t i = next_; i < Size(); ++i) {
      const Judged judged = Judge(i);
      PreviewTable& table = tables[{judged.owner, judged.table}];
      if (!judged.why.empty()) {
        if (table.blocked++ == 0) table.why = judged.why;
        continue;
      }
      ++to_execute_;
      if (table.to.empty()) {
        table.to.append(judged.to).append(".").append(judged.table);
      }
      const Verb verb = judged.parsed.verb;
      ++(verb == Verb::Insert   ? table.inserts
         : verb == Verb::Delete ? table.deletes
                                : table.updates);
    }
    for (auto& [name, table] : tables) {
      table.owner = name.first;
      table.table = name.second;
      tables_.push_back(std::move(table));
    }
  }

  mutable JobDouble double_;  // the decision on a statement takes the lock of its job
  Kind kind_ = Kind::Nothing;
  std::string why_;
  std::vector<std::string> notes_;
  std::vector<BlockedEntry> blocked_;
  std::vector<SkipMark> skips_;
  std::vector<PreviewTable> tables_;
  std::size_t next_ = 0;
  std::size_t to_execute_ = 0;
};

}  // namespace

std::unique_ptr<Preview> LookAhead(const EngineContext& engine, std::size_t index,
                                   const OracleSession::StopCondition& stop) {
  return std::make_unique<LookedAhead>(engine, index, stop);
}

}  // namespace quillmere
