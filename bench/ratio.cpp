// SPDX-License-Identifier: MIT
#include "ratio.h"

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

namespace quillmere::bench {

namespace {

double Milliseconds(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
  return took.count();
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

bool Wanted(const std::string& name, std::string_view filter) {
  return name.find(filter) != std::string::npos;
}

const char* Verdict(double value, double limit) {
  return limit > 0 && value > limit ? "  ABOVE ITS LIMIT" : "";
}

std::string LimitText(double limit) {
  char text[32] = "-";
  if (limit > 0) std::snprintf(text, sizeof text, "%.2f", limit);
  return text;
}

}  // namespace

double ProcessorMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

std::size_t BytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void RatioTable::AddFigure(std::string name, std::string unit, double limit,
                           std::function<double()> measure) {
  figures_.push_back({std::move(name), std::move(unit), limit, std::move(measure)});
}

void RatioTable::RunAndPrint(std::string_view filter) const {
  std::printf("\n%-44s %13s %13s %8s %8s\n", "name", "subject", "baseline", "ratio", "limit");
  for (const Ratio& ratio : ratios_) {
    if (!Wanted(ratio.name, filter)) continue;
    ratio.baseline();
    ratio.subject();
    std::vector<double> baseline, subject;
    for (int round = 0; round < ratio.rounds; ++round) {
      baseline.push_back(Milliseconds(ratio.baseline));
      subject.push_back(Milliseconds(ratio.subject));
    }
    const double baseline_ms = Median(std::move(baseline));
    const double subject_ms = Median(std::move(subject));
    const double value = subject_ms / baseline_ms;
    std::printf("%-44s %10.3f ms %10.3f ms %8.2f %8s%s\n", ratio.name.c_str(), subject_ms,
                baseline_ms, value, LimitText(ratio.limit).c_str(), Verdict(value, ratio.limit));
    std::fflush(stdout);
  }
  for (const Figure& figure : figures_) {
    if (!Wanted(figure.name, filter)) continue;
    const double value = figure.measure();
    std::printf("%-44s %9.2f %-17s %8s %8s%s\n", figure.name.c_str(), value, figure.unit.c_str(),
                "", LimitText(figure.limit).c_str(), Verdict(value, figure.limit));
  }
}

}  // namespace quillmere::bench
