#pragma once

// Reading the project's own C++ sources, for tests that hold the sources to a
// rule (every stage class listed, every factory used).

#include <regex>
#include <string>
#include <vector>

namespace plexus::testing {

/// The text of a C++ source with comments and the contents of string and
/// character literals blanked out, so that an example in a comment or a
/// pattern in a string is not taken for code.
inline std::string codeOnly(std::string const& text) {
  std::string code;
  code.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    if (text.compare(i, 2, "//") == 0) {
      i = text.find('\n', i);
      if (i == std::string::npos) break;
    } else if (text.compare(i, 2, "/*") == 0) {
      std::size_t const end = text.find("*/", i + 2);
      i = end == std::string::npos ? text.size() : end + 2;
      code += ' ';
    } else if (text.compare(i, 2, "R\"") == 0) {
      std::size_t const open = text.find('(', i + 2);
      if (open == std::string::npos) break;
      std::string const close = ")" + text.substr(i + 2, open - i - 2) + "\"";
      std::size_t const end = text.find(close, open);
      i = end == std::string::npos ? text.size() : end + close.size();
      code += "\"\"";
    } else if (text[i] == '"' || text[i] == '\'') {
      char const quote = text[i++];
      while (i < text.size() && text[i] != quote && text[i] != '\n') i += text[i] == '\\' ? 2 : 1;
      ++i;
      code += quote;
      code += quote;
    } else {
      code += text[i++];
    }
  }
  return code;
}

/// The classes that `code` defines with StageOf among their bases, by name.
inline std::vector<std::string> stageClassesIn(std::string const& code) {
  static std::regex const stageClass(R"((?:class|struct)\s+(\w+)\s*(?:final\s*)?:(?!:)[^;{}()]*\bStageOf\s*<)");
  std::vector<std::string> names;
  for (auto match = std::sregex_iterator(code.begin(), code.end(), stageClass); match != std::sregex_iterator();
       ++match) {
    names.push_back((*match)[1].str());
  }
  return names;
}

}  // namespace plexus::testing
