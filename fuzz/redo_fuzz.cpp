// SPDX-License-Identifier: MIT
// Any rows of redo, a line each ("\n" in a line stands for a line feed): what becomes a statement
// that is safe to apply keeps its rest when its owner is rewritten, and reads back the same from a
// batch file.
#include <string>
#include <string_view>
#include <vector>

#include "engine/redo_assembler.h"
#include "engine/rewriter.h"
#include "engine/statement_safety.h"
#include "jobs/run_state_files.h"
#include "must.h"
#include "support/memory_files.h"

using namespace quillmere;

namespace {

struct Taker final : RedoAssembler::Taker {
  void OnStatement(std::int64_t, std::string_view text) override {
    taken += text.size() + 1;
    Look(text);
  }
  void OnUnfinished(std::int64_t, std::string_view text) override {
    taken += text.size();
    JudgeStatement(text);
    ParseStatement(text);
  }
  void OnComment(std::int64_t, std::string_view text) override { taken += text.size(); }

  void Look(std::string_view text) {
    const Judgement judgement = JudgeStatement(text);
    if (judgement.safety != Safety::Safe) return;
    MUST(!judgement.kept.empty() && text.starts_with(judgement.kept));
    const ParsedStatement parsed = ParseStatement(judgement.kept);
    MUST(!parsed.owner.empty() && !parsed.table.empty());
    // Only what has the form of redo keeps it.
    if (!parsed.rest.starts_with(parsed.verb == Verb::Insert ? '(' : ' ')) return;
    std::string rewritten;
    Rewrite(parsed, "COPY", NameQuotes::Kept, rewritten);
    const ParsedStatement again = ParseStatement(rewritten);
    MUST(again.owner == "COPY" && again.table == parsed.table);
    MUST(again.rest == parsed.rest);
    batch.Append(judgement.kept);
  }

  PendingBatch batch;
  std::size_t taken = 0;
};

std::vector<std::string> Rows(std::string_view text) {
  std::vector<std::string> rows(1);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\n') {
      rows.emplace_back();
    } else if (text.substr(at).starts_with("\\n")) {
      rows.back() += '\n';
      ++at;
    } else {
      rows.back() += text[at];
    }
  }
  return rows;
}

void ReadsBack(const PendingBatch& batch) {
  static const JobFolder folder("/work", "J");
  testing::MemoryFiles files;
  files.Put(folder.Path() / "block.dat", "");
  std::string error;
  MUST(WriteBatchFile(files, folder, batch, error));
  PendingBatch read;
  MUST(ReadBatchFile(files, folder, read).code == FileCode::Ok);
  MUST(read.Size() == batch.Size());
  for (std::size_t i = 0; i < batch.Size(); ++i) MUST(read[i].text == batch[i].text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Taker taker;
  RedoAssembler assembler(4096);
  bool whole = true;
  std::int64_t scn = 0;
  for (const std::string& row : Rows({reinterpret_cast<const char*>(data), size})) {
    whole = assembler.Add(++scn, row, taker);
    if (!whole) break;
  }
  if (whole) assembler.Finish(taker);
  MUST(taker.taken <= size + 1);
  if (!taker.batch.Empty()) ReadsBack(taker.batch);
  return 0;
}
