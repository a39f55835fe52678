#include "tools/check/reports/rule_documentation.hpp"

#include <fmt/format.h>

#include "tools/check/reports/documentation_blocks.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::check::reports {

namespace {

constexpr std::size_t textWidth = 80;

// A table cell: a `|` would end the cell, a line end the row.
std::string markdownCell(std::string_view text) {
  std::string cell;
  for (char const c : text) {
    if (c == '|') {
      cell += "\\|";
    } else if (c == '\n') {
      cell += ' ';
    } else {
      cell += c;
    }
  }
  return cell;
}

}  // namespace

std::string ruleText(rules::RuleDefinition const& rule) {
  std::string text = fmt::format("{} ({})\n{}\n", rule.id, rules::severityName(rule.severity), rule.summary);
  for (DocumentationSection const& section : documentationSections) {
    text += fmt::format("\n{}\n", section.heading);
    bool first = true;
    for (DocumentationBlock const& block : documentationBlocks(rule.body->documentation.*section.text)) {
      if (!first) text += '\n';
      first = false;
      if (block.code) {
        for (std::string const& line : block.lines) text += line.empty() ? "\n" : "      " + line + "\n";
      } else {
        text += wrapped(block.lines.front(), "  ", textWidth) + "\n";
      }
    }
  }
  text += "\nOptions\n";
  if (rule.body->options.empty()) text += "  none\n";
  for (rules::RuleOption const& option : rule.body->options) {
    text += fmt::format("  {} = {} (from {} to {})\n", option.key, option.defaultValue, option.minimum,
                        option.maximum);
    text += wrapped(option.description, "      ", textWidth) + "\n";
  }
  return text;
}

std::string ruleMarkdown(rules::RuleDefinition const& rule) {
  std::string text = fmt::format("Severity: **{}**. {}\n", rules::severityName(rule.severity), rule.summary);
  for (DocumentationSection const& section : documentationSections) {
    text += fmt::format("\n### {}\n", section.heading);
    for (DocumentationBlock const& block : documentationBlocks(rule.body->documentation.*section.text)) {
      text += '\n';
      if (block.code) {
        text += "```\n";
        for (std::string const& line : block.lines) text += line + "\n";
        text += "```\n";
      } else {
        text += block.lines.front() + "\n";
      }
    }
  }
  text += "\n### Options\n\n";
  if (rule.body->options.empty()) {
    text += "None.\n";
  } else {
    text += "| Option | Default | Range | What it sets |\n| --- | --- | --- | --- |\n";
    for (rules::RuleOption const& option : rule.body->options) {
      text += fmt::format("| `{}` | {} | {} to {} | {} |\n", option.key, option.defaultValue, option.minimum,
                          option.maximum, markdownCell(option.description));
    }
  }
  return text;
}

std::string rulesMarkdown() {
  std::string text = fmt::format(
      "# The rules of plexus check\n"
      "\n"
      "<!-- Made from the rule table by `{}`; edit the rules, not this file. -->\n"
      "\n"
      "`plexus rule ID` prints a rule's documentation; `plexus check --list-rules` lists the rules.\n"
      "\n"
      "| Rule | Severity | Summary |\n"
      "| --- | --- | --- |\n",
      rulesMarkdownCommand);
  auto const table = rules::ruleTable();
  for (rules::RuleDefinition const& rule : table) {
    text += fmt::format("| [`{}`](#{}) | {} | {} |\n", rule.id, rule.id, rules::severityName(rule.severity),
                        markdownCell(rule.summary));
  }
  for (rules::RuleDefinition const& rule : table) {
    text += fmt::format("\n## {}\n\n{}", rule.id, ruleMarkdown(rule));
  }
  return text;
}

}  // namespace plexus::check::reports
