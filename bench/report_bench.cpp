// Writing the reports of plexus check: the cost per finding of each format
// (text with its caret lines, JSON, SARIF) as the number of findings grows
// tenfold twice, which should stay flat: every format is one pass over the
// findings, and SARIF's rule metadata is written once.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "tools/check/reports/report_format.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using plexus::bench::require;
using plexus::bench::UnitCost;
using plexus::check::CheckReport;
using plexus::check::reports::ReportFormat;

// Counts what is written to it and keeps none of it, so that what is timed
// is the writing of the report, not the growth of a buffer that holds it.
class CountingBuffer final : public std::streambuf {
 public:
  std::size_t bytes = 0;
  std::size_t lineEnds = 0;

 protected:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) count(traits_type::to_char_type(c));
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(char const* s, std::streamsize n) override {
    for (std::streamsize i = 0; i < n; ++i) count(s[i]);
    return n;
  }

 private:
  void count(char c) {
    ++bytes;
    if (c == '\n') ++lineEnds;
  }
};

// `count` findings in files of a hundred findings each, in folders with a
// blank in their names (for SARIF's percent-encoding), each on a line with a
// tab and a multi-byte character before its span.
CheckReport reportOf(std::size_t count) {
  CheckReport report;
  plexus::rules::RuleDefinition const& rule = *plexus::rules::findRule("global-declaration");
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t const line = static_cast<std::uint32_t>(i % 100 + 1);
    report.findings.push_back({"src/my folder " + std::to_string(i / 1000) + "/+pkg/file" + std::to_string(i / 100) +
                                   ".m",
                               {line, 18, line, 25},
                               &rule,
                               rule.severity,
                               "'counter' is declared global",
                               "\ts = '\xC3\xBC'; global counter % and a comment after it"});
  }
  report.files = (count + 99) / 100;
  return report;
}

void BM_WriteReport(benchmark::State& state) {
  auto const format = static_cast<ReportFormat>(state.range(0));
  auto const count = static_cast<std::size_t>(state.range(1));
  CheckReport const report = reportOf(count);
  std::size_t bytes = 0;
  UnitCost cost;
  for (auto _ : state) {
    CountingBuffer buffer;
    std::ostream out(&buffer);
    plexus::check::reports::writeReport(out, report, format, false, "/work/project");
    bytes = buffer.bytes;
    if (format == ReportFormat::Text) {
      require(buffer.lineEnds == 3 * count, "the text report has not three lines per finding");
    }
    benchmark::DoNotOptimize(bytes);
  }
  cost.report(state, "ns_per_finding", static_cast<double>(count), 1e-9);
  state.counters["bytes_per_finding"] = static_cast<double>(bytes) / static_cast<double>(count);
}

BENCHMARK(BM_WriteReport)
    ->ArgNames({"format", "findings"})
    ->ArgsProduct({{static_cast<long>(ReportFormat::Text), static_cast<long>(ReportFormat::Json),
                    static_cast<long>(ReportFormat::Sarif)},
                   {1000, 10000, 100000}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
