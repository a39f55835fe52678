// The plexus command, run as a user runs it.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "frontend/limits.hpp"
#include "tests/support/scratch_folder.hpp"

namespace {

namespace fs = std::filesystem;
using plexus::testing::ScratchFolder;

struct CommandRun {
  int exitCode;
  std::string output;  // stdout and stderr together
};

// A command that hangs fails after a minute rather than stopping the tests.
CommandRun plexus(std::string const& arguments) {
  std::string const command = "timeout 60 " + std::string(PLEXUS_BINARY) + " " + arguments + " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {-1, "popen failed"};
  std::string output;
  std::array<char, 4096> buffer;
  while (std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe)) output.append(buffer.data(), n);
  int const status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

std::string data(std::string const& name) { return std::string(PLEXUS_CLI_DATA) + "/" + name; }

bool holds(std::string const& output, std::string const& text) { return output.find(text) != std::string::npos; }

TEST(PlexusParse, CleanFolderIsSearchedRecursivelyForSourceFiles) {
  CommandRun const run = plexus("parse " + data("good"));
  EXPECT_EQ(run.exitCode, 0) << run.output;
  EXPECT_EQ(run.output, "2 files parsed, 0 with errors\n");
}

TEST(PlexusParse, ErrorsArePrintedAsPathLineColumnAndMakeTheExitCodeOne) {
  CommandRun const run = plexus("parse " + data("bad.m"));
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.output.find(data("bad.m") + ":1:10: error: expected an expression but found ';'"), std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("1 file parsed, 1 with errors"), std::string::npos) << run.output;
}

TEST(PlexusParse, AMissingPathIsReportedAndTheOtherFilesGoOn) {
  CommandRun const run = plexus("parse " + data("nowhere.m") + " " + data("legacy.m") + " " + data("good"));
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.output.find(data("nowhere.m") + ": error: cannot open: No such file or directory"), std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find(data("legacy.m") + ":1:1: warning: file is not valid UTF-8"), std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("3 files parsed, 0 with errors, 1 could not be read"), std::string::npos) << run.output;
}

TEST(PlexusDump, PrintsTheTreeAndUsageErrorsAreReported) {
  CommandRun const run = plexus("dump " + data("good/sub/b.m"));
  EXPECT_EQ(run.exitCode, 0) << run.output;
  EXPECT_EQ(run.output,
            "(Program\n"
            "  (Function\n"
            "    (Identifier b)\n"
            "    (InputArgument (Identifier v))\n"
            "    (Identifier r)\n"
            "    (Assignment\n"
            "      (Identifier r)\n"
            "      (BinaryOperation .^ (Identifier v) (NumberLiteral 2)))))\n");
  EXPECT_NE(plexus("").exitCode, 0);
  EXPECT_NE(plexus("dump").exitCode, 0);
  CommandRun const missing = plexus("dump " + data("nowhere.m"));
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_NE(missing.output.find("cannot open"), std::string::npos) << missing.output;
}

TEST(PlexusParse, WhatIsNotAReadableFileIsReportedByNameWithTheReasonAndTheRestIsRead) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  folder.write("tree/a.m", "x = 1;\n");
  folder.write("tree/sub/b.m", "y = 2;\n");
  folder.write("tree/notes.txt", "not source\n");
  fs::create_symlink(folder / "tree/gone.m", folder / "tree/dangling.m");
  fs::create_symlink(folder / "tree/loop.m", folder / "tree/loop.m");
  ASSERT_EQ(mkfifo((folder / "tree/pipe.m").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo((folder / "named.m").c_str(), 0600), 0);
  fs::create_directory_symlink(folder / "tree/sub", folder / "tree/linked");  // not followed
  std::string const after = folder.write("after.m", "z = 3;\n");

  // A FIFO given by name and /dev/zero first: neither waited on nor read,
  // and the files after them are read.
  CommandRun const run = plexus("parse " + (folder / "named.m") + " /dev/zero " + (folder / "tree") + " " + after);
  EXPECT_EQ(run.exitCode, 1) << run.output;
  EXPECT_TRUE(holds(run.output, (folder / "named.m") + ": error: is a FIFO, not a regular file; not read")) << run.output;
  EXPECT_TRUE(holds(run.output, "/dev/zero: error: is a character device, not a regular file; not read")) << run.output;
  EXPECT_TRUE(holds(run.output, (folder / "tree/dangling.m") + ": error: cannot open: No such file or directory"))
      << run.output;
  EXPECT_TRUE(holds(run.output, (folder / "tree/loop.m") + ": error: cannot open: Too many levels of symbolic links"))
      << run.output;
  EXPECT_TRUE(holds(run.output, (folder / "tree/pipe.m") + ": error: is a FIFO, not a regular file; not read"))
      << run.output;
  // a.m, sub/b.m and after.m; the linked folder is not walked.
  EXPECT_TRUE(holds(run.output, "3 files parsed, 0 with errors, 5 could not be read\n")) << run.output;
  EXPECT_FALSE(holds(run.output, "linked")) << run.output;

  // A file past the size limit is refused by its size before it is read (a
  // sparse file: it takes no room).
  std::string const huge = folder.write("huge.m", "");
  ASSERT_EQ(truncate(huge.c_str(), (off_t{1} << 30) + 1), 0);
  CommandRun const big = plexus("parse " + huge);
  EXPECT_EQ(big.exitCode, 1) << big.output;
  EXPECT_TRUE(holds(big.output, huge + ": error: file is larger than 1 GiB (1073741825 bytes); not read")) << big.output;
  EXPECT_TRUE(holds(big.output, "0 files parsed, 0 with errors, 1 could not be read")) << big.output;
}

TEST(PlexusParse, PathsBlockedByPermissionsAreReportedWithTheReason) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  folder.write("closed/a.m", "x = 1;\n");
  folder.write("shut/inner/b.m", "x = 1;\n");
  std::string const locked = folder.write("locked.m", "x = 1;\n");
  ASSERT_EQ(chmod((folder / "closed").c_str(), 0), 0);
  ASSERT_EQ(chmod((folder / "shut").c_str(), 0100), 0);  // may be entered, not listed
  ASSERT_EQ(chmod(locked.c_str(), 0), 0);
  if (access(locked.c_str(), R_OK) == 0) GTEST_SKIP() << "permissions do not bind this user (root)";

  CommandRun const alone = plexus("parse " + (folder / "closed"));
  EXPECT_EQ(alone.exitCode, 1) << alone.output;
  EXPECT_EQ(alone.output, (folder / "closed") + ": error: cannot open folder: Permission denied\n"
                          "0 files parsed, 0 with errors, 1 could not be read\n");

  CommandRun const run = plexus("parse " + (folder / "closed/a.m") + " " + locked + " " + (folder / "shut") + " " +
                                (folder / "shut/inner/b.m"));
  EXPECT_EQ(run.exitCode, 1) << run.output;
  EXPECT_TRUE(holds(run.output, (folder / "closed/a.m") + ": error: cannot open: Permission denied")) << run.output;
  EXPECT_TRUE(holds(run.output, locked + ": error: cannot open: Permission denied")) << run.output;
  EXPECT_TRUE(holds(run.output, (folder / "shut") + ": error: cannot open folder: Permission denied")) << run.output;
  EXPECT_TRUE(holds(run.output, "1 file parsed, 0 with errors, 3 could not be read")) << run.output;
}

TEST(PlexusParse, FilesAreParsedInSortedOrderFolderByFolder) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  // Every file has an error, so each shows in the output where it is parsed.
  for (std::string const name : {"b.m", "a.m", "a/z.m", "a/c/d.m", "a-b.m", "c/e.m", "B.m"}) folder.write(name, "x = ;\n");
  CommandRun const run = plexus("parse " + (folder / ""));
  EXPECT_EQ(run.exitCode, 1) << run.output;
  std::vector<std::string> files;
  std::istringstream lines(run.output);
  for (std::string line; std::getline(lines, line);) {
    if (auto const end = line.find(":1:"); end != std::string::npos) files.push_back(line.substr(0, end));
  }
  std::vector<std::string> expected;
  for (std::string const name : {"B.m", "a/c/d.m", "a/z.m", "a-b.m", "a.m", "b.m", "c/e.m"}) expected.push_back(folder / name);
  EXPECT_EQ(files, expected) << run.output;
  EXPECT_TRUE(holds(run.output, "7 files parsed, 7 with errors\n")) << run.output;
}

TEST(PlexusParse, Utf16FilesAreReadAsText) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  std::string const text = "function r = f(v)\n  r = v + 1;\nend\n";
  std::string littleEndian = "\xFF\xFE", bigEndian = "\xFE\xFF", unmarked;
  for (char c : text) {
    littleEndian += {c, '\0'};
    bigEndian += {'\0', c};
    unmarked += {c, '\0'};
  }
  CommandRun const run = plexus("parse " + folder.write("le.m", littleEndian) + " " + folder.write("be.m", bigEndian) +
                                " " + folder.write("unmarked.m", unmarked));
  EXPECT_EQ(run.exitCode, 0) << run.output;
  EXPECT_FALSE(holds(run.output, ": error:")) << run.output;
  EXPECT_TRUE(holds(run.output, "3 files parsed, 0 with errors\n")) << run.output;
}

TEST(PlexusDump, AFolderIsAnErrorAndDeepTreesStayReadable) {
  CommandRun const ofFolder = plexus("dump " + data("good"));
  EXPECT_EQ(ofFolder.exitCode, 1) << ofFolder.output;
  EXPECT_EQ(ofFolder.output, data("good") + ": error: is a folder, not a file\n");

  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  std::string source = "x =";
  for (int i = 0; i < 200; ++i) source += " ~";
  CommandRun const deep = plexus("dump " + folder.write("deep.m", source + " a;\n"));
  EXPECT_EQ(deep.exitCode, 0) << deep.output;
  std::istringstream lines(deep.output);
  std::size_t count = 0, widest = 0;
  for (std::string line; std::getline(lines, line); ++count) widest = std::max(widest, line.find_first_not_of(' '));
  EXPECT_EQ(count, 203u);
  EXPECT_EQ(widest, 2 * frontend::maxDumpIndentDepth);
  EXPECT_TRUE(holds(deep.output, "\n" + std::string(2 * frontend::maxDumpIndentDepth, ' ') +
                                     "[201] (UnaryOperation ~ (Identifier a))"))
      << deep.output;
}

}  // namespace
