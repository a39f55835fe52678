// The progress line: what it says, that it is drawn in place once the delay
// has passed and cleared when it stops, and that a quick run draws nothing.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "tests/support/scratch_folder.hpp"
#include "tools/check/progress_line.hpp"

namespace {

using namespace std::chrono_literals;

// Read apart from the stream the line is drawn on, which the ticker writes
// to meanwhile.
std::string contentsOf(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(ProgressLine, SaysFilesFindingsAndTimeBeforeAndAfterTheFilesAreCounted) {
  EXPECT_EQ(plexus::check::progressText(12, 40, 3, 1250ms), "12/40 files, 3 findings, 1.2 s");
  EXPECT_EQ(plexus::check::progressText(1, 2, 1, 0ms), "1/2 files, 1 finding, 0.0 s");
  EXPECT_EQ(plexus::check::progressText(0, 0, 0, 61s), "0 files, 0 findings, 61.0 s");
}

TEST(ProgressLine, IsRedrawnInPlaceAndClearedWhenItStops) {
  plexus::testing::ScratchFolder const folder;
  std::string const path = folder / "stderr";
  std::FILE* const file = std::fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  plexus::check::CheckProgress progress;
  progress.files = 5;
  progress.filesDone = 2;
  progress.findings = 7;
  {
    plexus::check::ProgressLine line(file, progress, 0ms, 1ms);
    // The ticker draws on its own thread: wait for its first line (a minute
    // at most, so that a broken ticker fails instead of hanging).
    auto const giveUp = std::chrono::steady_clock::now() + 60s;
    std::string drawn;
    while (drawn.find("2/5 files") == std::string::npos && std::chrono::steady_clock::now() < giveUp) {
      std::this_thread::sleep_for(1ms);
      drawn = contentsOf(path);
    }
    line.stop();
  }
  std::fclose(file);
  std::string const text = contentsOf(path);
  ASSERT_EQ(text.rfind("\r2/5 files, 7 findings, ", 0), 0u) << text;
  EXPECT_EQ(text.find('\n'), std::string::npos);
  // Cleared: blanks over the whole line, the cursor back at its start.
  std::size_t const width = text.find(" s", 0) + 2 - 1;
  ASSERT_GE(text.size(), width + 2);
  EXPECT_EQ(text.substr(text.size() - width - 2), "\r" + std::string(width, ' ') + "\r") << text;
}

TEST(ProgressLine, ARunShorterThanTheDelayDrawsNothing) {
  plexus::testing::ScratchFolder const folder;
  std::string const path = folder / "stderr";
  std::FILE* const file = std::fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  plexus::check::CheckProgress progress;
  {
    // Stopping does not wait out the hour.
    plexus::check::ProgressLine const line(file, progress, 1h, 100ms);
  }
  std::fclose(file);
  EXPECT_EQ(contentsOf(path), "");
}

}  // namespace
