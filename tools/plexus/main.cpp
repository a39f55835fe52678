// The plexus command: parses, dumps and checks files of the analysed language.

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "frontend/source_file_reader.hpp"
#include "frontend/tree_dump.hpp"
#include "tools/plexus/source_files.hpp"

namespace {

// Reports a path that could not be read, after the diagnostics printed so
// far, so that both streams read in order when they go to one place.
void reportUnreadable(frontend::Diagnostic const& problem) {
  std::fflush(stdout);
  fmt::print(stderr, "{}\n", frontend::formatDiagnostic(problem));
}

int runParse(std::vector<std::string> const& paths) {
  frontend::SourceFileReader reader;
  std::size_t parsed = 0, withErrors = 0, unreadable = 0;
  plexus::cli::SourceVisitor visitor;
  visitor.problem = [&unreadable](frontend::Diagnostic const& problem) {
    reportUnreadable(problem);
    ++unreadable;
  };
  visitor.file = [&](std::string const& path) {
    frontend::SourceFileReader::Result const read = reader.read(path.c_str());
    if (!read.ok()) {
      visitor.problem(read.diagnostic(path));
      return;
    }
    frontend::ParseResult const result = frontend::parse(read.bytes, path);
    for (frontend::Diagnostic const& diagnostic : result.diagnostics) {
      fmt::print("{}\n", frontend::formatDiagnostic(diagnostic));
    }
    ++parsed;
    if (result.hasErrors()) ++withErrors;
  };
  plexus::cli::walkSourceFiles(paths, visitor);
  std::fflush(stdout);  // keep the summary after the diagnostics
  std::string summary = fmt::format("{} {} parsed, {} with errors", parsed, parsed == 1 ? "file" : "files", withErrors);
  if (unreadable > 0) summary += fmt::format(", {} could not be read", unreadable);
  fmt::print(stderr, "{}\n", summary);
  return withErrors > 0 || unreadable > 0 ? 1 : 0;
}

int runDump(std::string const& path) {
  frontend::SourceFileReader reader;
  frontend::SourceFileReader::Result const read = reader.read(path.c_str());
  if (!read.ok()) {
    reportUnreadable(read.diagnostic(path));
    return 1;
  }
  frontend::ParseResult const result = frontend::parse(read.bytes, path);
  for (frontend::Diagnostic const& diagnostic : result.diagnostics) {
    fmt::print(stderr, "{}\n", frontend::formatDiagnostic(diagnostic));
  }
  if (result.tree) fmt::print("{}\n", frontend::dumpTree(*result.tree->getProgram(), frontend::DumpLayout::Indented));
  return result.hasErrors() ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"plexus: a static analyser for the analysed language (.m files)"};
  app.require_subcommand(1);

  std::vector<std::string> parsePaths;
  CLI::App* parse =
      app.add_subcommand("parse", "Parse files and folders (recursively, .m files) and report syntax errors");
  parse->add_option("paths", parsePaths, "Files and folders")->required();

  std::string dumpPath;
  CLI::App* dump = app.add_subcommand("dump", "Print the syntax tree of a file");
  dump->add_option("file", dumpPath, "The file")->required();

  CLI11_PARSE(app, argc, argv);
  try {
    if (*parse) return runParse(parsePaths);
    if (*dump) return runDump(dumpPath);
  } catch (std::exception const& e) {
    fmt::print(stderr, "plexus: internal error: {}\n", e.what());
    return 2;
  }
  return 0;
}
