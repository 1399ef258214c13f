// The list of jobs with their state and progress.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "jobs/job_list.h"
#include "ui/toolkit/row_model.h"

namespace quillmere {

// Shows a copy as of the last Fill.
class JobRows final : public RowModel {
  Q_OBJECT

 public:
  enum Column { Name, Status, TotalDone, NeedToDo, HasDone, Blocked };

  // How much of its batch a job has applied, in thousandths; invalid when it has no batch in work.
  static constexpr int kBatchRole = Qt::UserRole + 1;

  explicit JobRows(QObject* parent = nullptr);

  // All jobs, or the one given.
  void Fill(const JobList& jobs, std::size_t only = JobList::kNotFound);

  std::size_t JobOf(std::size_t source_row) const { return rows_[source_row].job; }

 protected:
  std::size_t SourceRows() const override { return rows_.size(); }
  std::string_view CellText(std::size_t row, int column) const override;
  std::int64_t CellNumber(std::size_t row, int column) const override;
  QVariant CellExtra(std::size_t row, int column, int role) const override;

 private:
  struct Row {
    std::size_t job = 0;
    std::string name;
    JobState state = JobState::Empty;
    std::int64_t applied = 0, blocked = 0;
    JobList::Progress batch;
  };

  static void Append(std::vector<Row>& rows, const JobList& jobs, std::size_t index);
  QVariant BatchDone(const Row& row) const;

  std::vector<Row> rows_;
};

}  // namespace quillmere
