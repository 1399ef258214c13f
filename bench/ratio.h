// SPDX-License-Identifier: MIT
// Measures a subject against a baseline in the same run: machines differ, the ratio says something.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::bench {

// Of the whole process, all its threads.
double ProcessorMilliseconds();
// That were allocated and not freed.
std::size_t BytesInUse();

struct Ratio {
  std::string name;
  double limit = 0;  // the most that subject may cost in baselines; 0: none is set
  std::function<void()> baseline;
  std::function<void()> subject;
  int rounds = 15;  // of each, after one to warm up
};

class RatioTable {
 public:
  void Add(Ratio ratio) { ratios_.push_back(std::move(ratio)); }

  // A figure that is measured once and has a limit of its own, like bytes per record.
  void AddFigure(std::string name, std::string unit, double limit, std::function<double()> measure);

  // Runs all whose name contains the filter, baseline and subject by turns, and prints for each one
  // line: name, median of the subject, median of the baseline, ratio, limit.
  void RunAndPrint(std::string_view filter) const;

 private:
  struct Figure {
    std::string name, unit;
    double limit;
    std::function<double()> measure;
  };

  std::vector<Ratio> ratios_;
  std::vector<Figure> figures_;
};

}  // namespace quillmere::bench
