// SPDX-License-Identifier: MIT
// quillmere_bench [--only=TEXT] [options of Google Benchmark]
// First the absolute figures, then the ratios; --only takes the ratios whose name contains TEXT.
#include <benchmark/benchmark.h>

#include <string_view>

#include "benches.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  constexpr std::string_view kOnly = "--only=";
  std::string_view filter;
  if (argc == 2 && std::string_view(argv[1]).starts_with(kOnly)) {
    filter = std::string_view(argv[1]).substr(kOnly.size());
  } else if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  benchmark::RunSpecifiedBenchmarks();

  quillmere::bench::RatioTable table;
  quillmere::bench::AddXmlBenches(table);
  quillmere::bench::AddCatalogueBenches(table);
  quillmere::bench::AddCatalogueReadBenches(table);
  quillmere::bench::AddEngineBenches(table);
  quillmere::bench::AddMemoryBenches(table);
  quillmere::bench::AddRegistryBenches(table);
  quillmere::bench::AddWindowBenches(table);
  table.RunAndPrint(filter);
}
