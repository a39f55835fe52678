#include "tools/check/progress_line.hpp"

#include <fmt/format.h>

namespace plexus::check {

std::string progressText(std::size_t filesDone, std::size_t files, std::size_t findings,
                         std::chrono::steady_clock::duration elapsed) {
  double const seconds = std::chrono::duration<double>(elapsed).count();
  std::string const done = files == 0 ? fmt::format("{} files", filesDone) : fmt::format("{}/{} files", filesDone, files);
  return fmt::format("{}, {} {}, {:.1f} s", done, findings, findings == 1 ? "finding" : "findings", seconds);
}

ProgressLine::ProgressLine(std::FILE* stream, CheckProgress const& progress, std::chrono::milliseconds delay,
                           std::chrono::milliseconds interval)
    : stream_(stream),
      progress_(progress),
      delay_(delay),
      interval_(interval),
      started_(std::chrono::steady_clock::now()),
      ticker_([this](std::stop_token stop) { run(stop); }) {}

void ProgressLine::run(std::stop_token stop) {
  // Waits that a stop request ends at once, so that stopping never waits out
  // the delay.
  std::unique_lock lock(mutex_);
  wake_.wait_for(lock, stop, delay_, [] { return false; });
  while (!stop.stop_requested()) {
    std::string const text =
        progressText(progress_.filesDone.load(std::memory_order_relaxed), progress_.files.load(std::memory_order_relaxed),
                     progress_.findings.load(std::memory_order_relaxed), std::chrono::steady_clock::now() - started_);
    // Blanks over what is left of a longer line drawn before.
    std::string const padding(drawnWidth_ > text.size() ? drawnWidth_ - text.size() : 0, ' ');
    fmt::print(stream_, "\r{}{}", text, padding);
    std::fflush(stream_);
    drawnWidth_ = text.size();
    wake_.wait_for(lock, stop, interval_, [] { return false; });
  }
}

void ProgressLine::stop() {
  if (!ticker_.joinable()) return;
  ticker_.request_stop();
  ticker_.join();
  if (drawnWidth_ > 0) {
    fmt::print(stream_, "\r{}\r", std::string(drawnWidth_, ' '));
    std::fflush(stream_);
    drawnWidth_ = 0;
  }
}

}  // namespace plexus::check
