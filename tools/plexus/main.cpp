// The plexus command: parses, dumps and checks files of the analysed language.

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "tools/plexus/source_files.hpp"

namespace {

int runParse(std::vector<std::string> const& paths) {
  plexus::cli::SourceFiles const sources = plexus::cli::collectSourceFiles(paths);
  bool failed = !sources.problems.empty();
  for (std::string const& problem : sources.problems) fmt::print(stderr, "{}: error: {}\n", "plexus", problem);
  std::size_t withErrors = 0;
  for (auto const& file : sources.files) {
    std::string const name = file.string();
    plexus::cli::FileContents const contents = plexus::cli::readFile(file);
    if (!contents.error.empty()) {
      fmt::print(stderr, "{}: error: {}\n", name, contents.error);
      failed = true;
      continue;
    }
    frontend::ParseResult const result = frontend::parse(contents.bytes, name);
    for (frontend::Diagnostic const& diagnostic : result.diagnostics) {
      fmt::print("{}\n", frontend::formatDiagnostic(diagnostic));
    }
    if (result.hasErrors()) ++withErrors;
  }
  std::fflush(stdout);  // keep the summary after the diagnostics
  std::size_t const parsed = sources.files.size();
  fmt::print(stderr, "{} {} parsed, {} with errors\n", parsed, parsed == 1 ? "file" : "files", withErrors);
  return failed || withErrors > 0 ? 1 : 0;
}

int runDump(std::string const& path) {
  plexus::cli::FileContents const contents = plexus::cli::readFile(path);
  if (!contents.error.empty()) {
    fmt::print(stderr, "{}: error: {}\n", path, contents.error);
    return 1;
  }
  frontend::ParseResult const result = frontend::parse(contents.bytes, path);
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
