#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace plexus::bench {

/// One generated source file: where it would live and its text.
struct GeneratedFile {
  std::string path;
  std::string source;
};

/// A corpus of source files of the analysed language, held in memory.
struct GeneratedCorpus {
  std::vector<GeneratedFile> files;
  std::size_t bytes = 0;  // the sum of the sizes of the sources
};

/// The seed of the corpus that the parse benchmarks measure.
inline constexpr std::uint64_t kCorpusSeed = 0x5eed'c0de'2024'0001ULL;

/// Generates files until their sources add up to at least `minimumBytes`, in
/// the mix of styles found in real projects: numerical function files with
/// and without `end` (some with local and nested functions, arguments blocks
/// and coefficient tables), class files (properties with validation, get and
/// set methods, events, enumerations, static and abstract methods, superclass
/// constructor calls), scripts in the style of a book (cell-mode sections,
/// command syntax, printing statements), GUI functions (callbacks as handles,
/// nested functions, name-value pairs over continuation lines), and parallel
/// and code-generation functions. The text reuses hand-written snippets with
/// varied names, numbers and sizes; a few files use CRLF line ends, tab
/// indentation or a byte-order mark, as real code bases do.
///
/// Deterministic: the same seed gives the same files, byte for byte, on every
/// platform (the generator maps the raw output of its own random source). Every
/// file is meant to be valid; the benchmarks check that it parses cleanly.
GeneratedCorpus generateCorpus(std::size_t minimumBytes, std::uint64_t seed = kCorpusSeed);

/// One function file of at least `minimumBytes`: a main function followed by
/// local functions, all terminated with `end` (so some hold nested functions),
/// with the bodies of the corpus's function files. Deterministic like
/// `generateCorpus`.
std::string generateFunctionFile(std::size_t minimumBytes, std::uint64_t seed = kCorpusSeed);

}  // namespace plexus::bench
