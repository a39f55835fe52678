// Reading source files from disk: only regular files, their size checked
// before anything is read, and every refusal with its reason.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "frontend/analyze.hpp"
#include "frontend/source_file_reader.hpp"
#include "tests/support/scratch_folder.hpp"

namespace {

namespace fs = std::filesystem;
using frontend::SourceFileReader;

using plexus::testing::ScratchFolder;

TEST(SourceFileReader, ReadsFilesOfEverySizeThroughOneBuffer) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  std::string const big(100'000, 'x');
  std::string const paths[] = {folder.write("small.m", "x = 1;\n"), folder.write("big.m", big),
                               folder.write("empty.m", ""), folder.write("again.m", "y = 2;\n")};
  SourceFileReader reader;
  std::string const expected[] = {"x = 1;\n", big, "", "y = 2;\n"};
  for (int i = 0; i < 4; ++i) {
    SourceFileReader::Result const read = reader.read(paths[i].c_str());
    EXPECT_TRUE(read.ok()) << read.error;
    EXPECT_EQ(read.bytes, expected[i]) << paths[i];
  }
  // A file whose size says nothing is read to its end.
  SourceFileReader::Result const proc = reader.read("/proc/self/status");
  ASSERT_TRUE(proc.ok()) << proc.error;
  EXPECT_NE(proc.bytes.find("Name:"), std::string_view::npos);
}

TEST(SourceFileReader, RefusesWhatIsNotARegularFileOfAllowedSizeAndSaysWhy) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  SourceFileReader reader(10);
  EXPECT_TRUE(reader.read(folder.write("ten.m", "0123456789").c_str()).ok());
  EXPECT_EQ(reader.read(folder.write("eleven.m", "0123456789A").c_str()).error,
            "file is larger than 10 bytes (11 bytes); not read");

  SourceFileReader any;
  EXPECT_EQ(any.read((folder / "missing.m").c_str()).error, "cannot open: No such file or directory");
  EXPECT_EQ(any.read((folder / ".").c_str()).error, "is a folder, not a file");
  // Neither waited on nor read without end.
  ASSERT_EQ(mkfifo((folder / "fifo.m").c_str(), 0600), 0);
  EXPECT_EQ(any.read((folder / "fifo.m").c_str()).error, "is a FIFO, not a regular file; not read");
  EXPECT_EQ(any.read("/dev/zero").error, "is a character device, not a regular file; not read");
  // Links: one to nowhere, one to itself.
  fs::create_symlink(folder / "nowhere.m", folder / "dangling.m");
  EXPECT_EQ(any.read((folder / "dangling.m").c_str()).error, "cannot open: No such file or directory");
  fs::create_symlink(folder / "loop.m", folder / "loop.m");
  EXPECT_EQ(any.read((folder / "loop.m").c_str()).error, "cannot open: Too many levels of symbolic links");
  // A sparse file past the limit is refused by its size, before a byte of it
  // is read.
  std::string const huge = folder / "huge.m";
  ASSERT_EQ(truncate(folder.write("huge.m", "").c_str(), static_cast<off_t>(frontend::maxSourceBytes) + 1), 0);
  EXPECT_EQ(any.read(huge.c_str()).error, "file is larger than 1 GiB (1073741825 bytes); not read");
}

TEST(SourceFileReader, AFileWithoutPermissionToReadIsRefusedWithTheReason) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  std::string const locked = folder.write("locked.m", "x = 1;\n");
  ASSERT_EQ(chmod(locked.c_str(), 0), 0);
  if (access(locked.c_str(), R_OK) == 0) GTEST_SKIP() << "permissions do not bind this user (root)";
  EXPECT_EQ(SourceFileReader().read(locked.c_str()).error, "cannot open: Permission denied");
}

TEST(AnalyzeFile, AFolderOrAFifoIsAnErrorNotAnEmptyAnalysis) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  frontend::AnalysisResult const ofFolder = frontend::analyzeFile(folder / ".");
  EXPECT_EQ(ofFolder.analysis, nullptr);
  ASSERT_EQ(ofFolder.diagnostics.size(), 1u);
  EXPECT_TRUE(ofFolder.hasErrors());
  EXPECT_EQ(ofFolder.diagnostics[0].message, "is a folder, not a file");

  ASSERT_EQ(mkfifo((folder / "fifo.m").c_str(), 0600), 0);
  frontend::AnalysisResult const ofFifo = frontend::analyzeFile(folder / "fifo.m");
  EXPECT_TRUE(ofFifo.hasErrors());
  EXPECT_EQ(ofFifo.analysis, nullptr);

  frontend::AnalysisResult const ofFile = frontend::analyzeFile(folder.write("ok.m", "x = 1;\n"));
  EXPECT_FALSE(ofFile.hasErrors());
  EXPECT_NE(ofFile.analysis, nullptr);
}

}  // namespace
