// The plexus command as a user meets it: `plexus parse` run as a process over
// folders of source files, measured whole (start-up, listing folders, reading
// files, parsing, printing diagnostics, exit). Over the sample code of the
// tests, given once (start-up dominates) and many times over (reading and
// parsing dominate); and over generated files full of syntax errors, where
// error recovery and printing diagnostics dominate.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/premise.hpp"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using plexus::bench::require;

/// What one run of the command cost, as the system counted it.
struct ProcessCost {
  double wallSeconds = 0;
  double cpuSeconds = 0;  // user and system time of the process
  double peakMegabytes = 0;
  int exitCode = -1;
};
static_assert(std::is_trivially_copyable_v<ProcessCost>, "sent through a pipe as bytes");

double seconds(timeval const& time) { return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6; }

// Reads or writes all of `size` bytes through a pipe; false at its end.
bool readAll(int from, void* data, std::size_t size) {
  auto* bytes = static_cast<char*>(data);
  while (size > 0) {
    ssize_t const count = ::read(from, bytes, size);
    if (count <= 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

void writeAll(int to, void const* data, std::size_t size) {
  auto const* bytes = static_cast<char const*>(data);
  while (size > 0) {
    ssize_t const count = ::write(to, bytes, size);
    if (count <= 0) std::_Exit(1);
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
}

/// Starts the command from a small process, forked before the benchmarks
/// make anything. The peak memory that the system counts for a process
/// (ru_maxrss) includes that of the process that started it, as it was when
/// it did: started from this process, which holds generated corpora, plexus
/// would seem to take a hundred megabytes. Started from this one it carries
/// only the few megabytes of a program just loaded.
class Launcher {
 public:
  Launcher() {
    int requests[2], replies[2];
    if (pipe2(requests, O_CLOEXEC) != 0 || pipe2(replies, O_CLOEXEC) != 0) return;
    pid_t const pid = fork();
    if (pid == 0) {
      ::close(requests[1]);
      ::close(replies[0]);
      serve(requests[0], replies[1]);
      std::_Exit(0);
    }
    ::close(requests[0]);
    ::close(replies[1]);
    if (pid < 0) {
      ::close(requests[1]);
      ::close(replies[0]);
      return;
    }
    pid_ = pid;
    requests_ = requests[1];
    replies_ = replies[0];
  }
  Launcher(Launcher const&) = delete;
  Launcher& operator=(Launcher const&) = delete;
  ~Launcher() {
    if (pid_ <= 0) return;
    ::close(requests_);  // the launcher stops at the end of its requests
    ::close(replies_);
    waitpid(pid_, nullptr, 0);
  }

  /// Runs `arguments` (the program first), its standard output going to
  /// `output` and its standard error nowhere.
  ProcessCost run(std::vector<std::string> const& arguments, std::string const& output) const {
    require(pid_ > 0, "the launcher process could not be started");
    std::vector<std::string> request{output};
    request.insert(request.end(), arguments.begin(), arguments.end());
    auto const count = static_cast<std::uint32_t>(request.size());
    writeAll(requests_, &count, sizeof count);
    for (std::string const& text : request) {
      auto const length = static_cast<std::uint32_t>(text.size());
      writeAll(requests_, &length, sizeof length);
      writeAll(requests_, text.data(), text.size());
    }
    ProcessCost cost;
    require(readAll(replies_, &cost, sizeof cost), "the launcher process stopped");
    return cost;
  }

 private:
  static void serve(int requests, int replies) {
    for (;;) {
      std::uint32_t count = 0;
      if (!readAll(requests, &count, sizeof count)) return;
      std::vector<std::string> request(count);
      for (std::string& text : request) {
        std::uint32_t length = 0;
        if (!readAll(requests, &length, sizeof length)) return;
        text.resize(length);
        if (!readAll(requests, text.data(), length)) return;
      }
      std::vector<char*> argv;
      for (std::size_t i = 1; i < request.size(); ++i) argv.push_back(request[i].data());
      argv.push_back(nullptr);
      ProcessCost const cost = spawnAndWait(argv, request[0].c_str());
      writeAll(replies, &cost, sizeof cost);
    }
  }

  static ProcessCost spawnAndWait(std::vector<char*> const& argv, char const* output) {
    ProcessCost cost;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    auto const start = std::chrono::steady_clock::now();
    pid_t child = 0;
    int const spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) return cost;  // exit code -1
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child) return cost;
    cost.wallSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    cost.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    cost.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
    cost.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return cost;
  }

  pid_t pid_ = -1;
  int requests_ = -1, replies_ = -1;
};

// Made while the process is still small: before main, before any corpus.
Launcher const launcher;

/// Runs `plexus parse` over `paths`, its standard output going to `output`.
ProcessCost runPlexusParse(std::vector<std::string> const& paths, std::string const& output = "/dev/null") {
  std::vector<std::string> arguments{PLEXUS_BINARY, "parse"};
  arguments.insert(arguments.end(), paths.begin(), paths.end());
  return launcher.run(arguments, output);
}

/// The `.m` files under a folder: how many and how many bytes.
struct SourceCount {
  std::size_t files = 0;
  std::size_t bytes = 0;
};

SourceCount countSources(fs::path const& folder) {
  SourceCount count;
  for (auto const& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && entry.path().extension() == ".m") {
      ++count.files;
      count.bytes += static_cast<std::size_t>(entry.file_size());
    }
  }
  return count;
}

/// Times runs of the command and reports them: megabytes of source per
/// second of wall time and of processor time, the peak memory, as plain
/// numbers.
void measure(benchmark::State& state, std::vector<std::string> const& paths, SourceCount const& sources,
             int expectedExitCode) {
  double wall = 0, cpu = 0, peak = 0;
  for (auto _ : state) {
    ProcessCost const cost = runPlexusParse(paths);
    require(cost.exitCode == expectedExitCode,
            "plexus parse exited with " + std::to_string(cost.exitCode) + ", not " + std::to_string(expectedExitCode));
    state.SetIterationTime(cost.wallSeconds);
    wall += cost.wallSeconds;
    cpu += cost.cpuSeconds;
    peak = std::max(peak, cost.peakMegabytes);
  }
  double const megabytes = static_cast<double>(sources.bytes) * static_cast<double>(state.iterations()) / 1e6;
  state.SetBytesProcessed(static_cast<std::int64_t>(sources.bytes) * state.iterations());
  state.counters["MB_per_s"] = benchmark::Counter(wall > 0 ? megabytes / wall : 0.0);
  state.counters["cpu_MB_per_s"] = benchmark::Counter(cpu > 0 ? megabytes / cpu : 0.0);
  state.counters["peak_MB"] = benchmark::Counter(peak);
  state.counters["files"] = benchmark::Counter(static_cast<double>(sources.files));
  state.counters["source_MB"] = benchmark::Counter(static_cast<double>(sources.bytes) / 1e6);
}

// The sample code of the tests, its folder given `state.range(0)` times.
void BM_PlexusParseSampleCode(benchmark::State& state) {
  static SourceCount const once = countSources(PLEXUS_CORPUS_DIR);
  require(once.files > 0, std::string("no source files under ") + PLEXUS_CORPUS_DIR);
  auto const times = static_cast<std::size_t>(state.range(0));
  std::vector<std::string> const paths(times, PLEXUS_CORPUS_DIR);
  measure(state, paths, {once.files * times, once.bytes * times}, 0);
}

/// Generated files in a folder of their own, each full of syntax errors: one
/// in every few lines of real-looking code is broken. Removed at exit.
class FilesWithErrors {
 public:
  FilesWithErrors() {
    std::string pattern = (fs::temp_directory_path() / "plexus_bench_errors_XXXXXX").string();
    require(mkdtemp(pattern.data()) != nullptr, "cannot make a temporary folder");
    folder_ = pattern;
    plexus::bench::GeneratedCorpus const corpus = plexus::bench::generateCorpus(kBytes);
    for (plexus::bench::GeneratedFile const& file : corpus.files) {
      fs::path const path = folder_ / file.path;
      fs::create_directories(path.parent_path());
      std::ofstream(path, std::ios::binary) << broken(file.source);
    }
    count_ = countSources(folder_);
    // Every file must give errors, or this measures clean parsing.
    fs::path const output = folder_ / "diagnostics.txt";
    require(runPlexusParse({folder_.string()}, output.string()).exitCode == 1, "the broken files parse cleanly");
    std::ifstream diagnostics(output);
    for (std::string line; std::getline(diagnostics, line);) diagnostics_ += line.find(": error: ") != std::string::npos;
    require(diagnostics_ >= count_.files, "fewer syntax errors than broken files");
  }
  FilesWithErrors(FilesWithErrors const&) = delete;
  FilesWithErrors& operator=(FilesWithErrors const&) = delete;
  ~FilesWithErrors() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string folder() const { return folder_.string(); }
  SourceCount const& count() const { return count_; }
  std::size_t diagnostics() const { return diagnostics_; }

 private:
  static constexpr std::size_t kBytes = 8u << 20;

  // Every third line gets an unbalanced bracket and an operator without its
  // operand.
  static std::string broken(std::string const& source) {
    std::string out;
    out.reserve(source.size() + source.size() / 8);
    std::size_t line = 0;
    for (char c : source) {
      if (c == '\n' && line++ % 3 == 0) out += " = ) +";
      out += c;
    }
    return out;
  }

  fs::path folder_;
  SourceCount count_;
  std::size_t diagnostics_ = 0;
};

void BM_PlexusParseFilesWithErrors(benchmark::State& state) {
  static FilesWithErrors const files;
  measure(state, {files.folder()}, files.count(), 1);
  state.counters["diagnostics"] = benchmark::Counter(static_cast<double>(files.diagnostics()));
}

BENCHMARK(BM_PlexusParseSampleCode)->Arg(1)->Arg(200)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_PlexusParseFilesWithErrors)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace
