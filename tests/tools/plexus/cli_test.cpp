// The plexus command, run as a user runs it.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace {

struct CommandRun {
  int exitCode;
  std::string output;  // stdout and stderr together
};

CommandRun plexus(std::string const& arguments) {
  std::string const command = std::string(PLEXUS_BINARY) + " " + arguments + " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {-1, "popen failed"};
  std::string output;
  std::array<char, 4096> buffer;
  while (std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe)) output.append(buffer.data(), n);
  int const status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

std::string data(std::string const& name) { return std::string(PLEXUS_CLI_DATA) + "/" + name; }

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
  EXPECT_NE(run.output.find(data("nowhere.m") + ": no such file or folder"), std::string::npos) << run.output;
  EXPECT_NE(run.output.find(data("legacy.m") + ":1:1: warning: file is not valid UTF-8"), std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("3 files parsed, 0 with errors"), std::string::npos) << run.output;
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

}  // namespace
