// SPDX-License-Identifier: MIT
// The pending batch on disk, sqlcmds.txt.
#include <optional>

#include "foundation/quote_scanner.h"
#include "jobs/batch_lines.h"
#include "jobs/run_state_files.h"

namespace quillmere {
namespace {

// Takes the lines of a batch of whole transactions that are no statements off the text. Null, or
// what is wrong.
const char* TakeBatchLine(std::string_view line, PendingBatch& batch,
                          std::optional<BatchHeader>& header) {
  if (!header) {
    header = ReadBatchHeader(line);
    if (!header) return " has a first line that is wrong";
    batch.SetRange(header->range);
    return nullptr;
  }
  const auto transaction = ReadTransactionLine(line);
  if (!transaction) return " has a line of a transaction that is wrong";
  batch.BeginTransaction(*transaction);
  return nullptr;
}

// Null, or what is wrong with the text, to be read behind the file's name.
const char* TakeBatchText(std::string_view text, PendingBatch& batch) {
  std::optional<BatchHeader> header;
  QuoteScanner scanner;
  const bool whole_transactions = text.starts_with(kBatchLine);
  std::size_t begin = 0;
  std::size_t end = 0;
  while ((end = scanner.Find(text, begin, '\n', '\n')) != std::string_view::npos) {
    const std::string_view line = text.substr(begin, end - begin);
    if (whole_transactions && line.starts_with(kBatchLine)) {
      if (const char* const wrong = TakeBatchLine(line, batch, header)) return wrong;
    } else if (line.empty()) {
      batch.AppendSetAside();
    } else {
      batch.Append(line);
    }
    begin = end + 1;
  }
  if (begin != text.size()) return " ends inside a statement";
  if (header && header->entries != batch.Size())
    return " does not hold as much as its first line says";
  return nullptr;
}

}  // namespace

bool WriteBatchFile(FileSystem& files, const JobFolder& folder, const PendingBatch& batch,
                    std::string& error) {
  constexpr std::size_t kPieceBytes = std::size_t{1} << 18;
  std::string piece;
  std::size_t next = 0;
  if (batch.TakenFrom()) {
    piece = BatchHeaderLine({*batch.TakenFrom(), batch.Size()}) + "\n";
  }
  TransactionMarks::Walk transaction(batch.Transactions());
  const auto next_piece = [&]() -> std::string_view {
    if (next > 0) piece.clear();
    while (next < batch.Size() && piece.size() < kPieceBytes) {
      if (transaction.Mark() != nullptr && transaction.Mark()->first == next) {
        piece += TransactionLine(*transaction.Mark()) + "\n";
        transaction.Next();
      }
      piece.append(batch[next++].text).push_back('\n');
    }
    return piece;
  };
  // The statements are the operator's data: nobody else is to read them.
  const std::filesystem::path path = folder.File(JobFile::Batch);
  if (folder.Make(files, error) &&
      ReplaceFileFrom(files, path, next_piece, FileAccess::OwnerOnly, error)) {
    return true;
  }
  error = "Can not create " + PathText(path) + " (" + error + ")";
  return false;
}

FileStatus ReadBatchFile(FileSystem& files, const JobFolder& folder, PendingBatch& batch) {
  const std::filesystem::path path = folder.File(JobFile::Batch);
  std::string content;
  FileStatus status = ReadFile(files, path, content);
  if (!status) return status;
  const char* const wrong = TakeBatchText(content, batch);
  if (wrong == nullptr) return {};
  return {FileCode::Damaged, PathText(path) + wrong};
}

}  // namespace quillmere
