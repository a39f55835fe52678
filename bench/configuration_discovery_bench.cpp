// Finding each checked file's plexus.toml, per file: 10,000 files in one
// folder eight levels below the configuration. With one discovery for the
// run, every folder is looked in once; with a discovery per file, as a walk
// without the cache would do, each file pays the walk up and the parse.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "tools/check/configuration_discovery.hpp"

namespace {

namespace fs = std::filesystem;
using plexus::bench::require;
using plexus::bench::UnitCost;
using plexus::check::ConfigurationDiscovery;

constexpr int fileCount = 10000;

// A project with its configuration at the top and the files deep below,
// removed when the benchmark ends. The files need not exist: discovery only
// looks at folders.
class DeepProject {
 public:
  DeepProject() {
    std::string pattern = (fs::temp_directory_path() / "plexus_bench_XXXXXX").string();
    require(mkdtemp(pattern.data()) != nullptr, "cannot make a scratch folder");
    root_ = pattern;
    std::ofstream(root_ / "plexus.toml") << "exclude = [\"generated\"]\n\n[rules]\ndisable = [\"syntax-error\"]\n";
    fs::path folder = root_;
    for (int level = 0; level < 8; ++level) folder /= "level" + std::to_string(level);
    fs::create_directories(folder);
    for (int i = 0; i < fileCount; ++i) files_.push_back((folder / ("f" + std::to_string(i) + ".m")).string());
  }
  DeepProject(DeepProject const&) = delete;
  DeepProject& operator=(DeepProject const&) = delete;
  ~DeepProject() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }

  std::vector<std::string> const& files() const { return files_; }

 private:
  fs::path root_;
  std::vector<std::string> files_;
};

void BM_ConfigurationDiscoveryCached(benchmark::State& state) {
  DeepProject const project;
  UnitCost cost;
  for (auto _ : state) {
    ConfigurationDiscovery discovery = ConfigurationDiscovery::nearest();
    for (std::string const& file : project.files()) benchmark::DoNotOptimize(discovery.configurationFor(file));
    require(discovery.foldersSearched() == 9, "each folder is looked in once");
  }
  cost.report(state, "ns_per_file", fileCount, 1e-9);
}
BENCHMARK(BM_ConfigurationDiscoveryCached)->Unit(benchmark::kMillisecond);

void BM_ConfigurationDiscoveryPerFile(benchmark::State& state) {
  DeepProject const project;
  UnitCost cost;
  for (auto _ : state) {
    for (std::string const& file : project.files()) {
      ConfigurationDiscovery discovery = ConfigurationDiscovery::nearest();
      benchmark::DoNotOptimize(discovery.configurationFor(file));
    }
  }
  cost.report(state, "ns_per_file", fileCount, 1e-9);
}
BENCHMARK(BM_ConfigurationDiscoveryPerFile)->Unit(benchmark::kMillisecond);

}  // namespace
