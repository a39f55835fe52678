#include "tools/check/configuration.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>
#include <toml++/toml.h>
#include <tuple>

#include "frontend/source_file_reader.hpp"
#include "tools/check/check_run.hpp"

namespace plexus::check {

namespace fs = std::filesystem;

namespace {

std::string joined(std::vector<std::string> const& lines) {
  std::string text;
  for (std::string const& line : lines) {
    if (!text.empty()) text += '\n';
    text += line;
  }
  return text;
}

// What a value is, as a message names it.
std::string_view kindOf(toml::node const& node) {
  switch (node.type()) {
    case toml::node_type::table:
      return "a table";
    case toml::node_type::array:
      return "an array";
    case toml::node_type::string:
      return "a string";
    case toml::node_type::integer:
      return "an integer";
    case toml::node_type::floating_point:
      return "a floating-point number";
    case toml::node_type::boolean:
      return "a boolean";
    case toml::node_type::date:
      return "a date";
    case toml::node_type::time:
      return "a time";
    case toml::node_type::date_time:
      return "a date-time";
    case toml::node_type::none:
      break;
  }
  return "nothing";
}

// The problems of one file, each at its place, given in the order of the
// file whatever order the tables hand out their keys in.
class Problems {
 public:
  explicit Problems(std::string const& path) : path_(path) {}

  void add(toml::source_region const& where, std::string message) {
    found_.emplace_back(where.begin.line, where.begin.column, std::move(message));
  }

  // At the key where it has a place of its own, else at its value: a table
  // that only a dotted header made has none.
  void add(toml::key const& key, toml::node const& value, std::string message) {
    add(key.source().begin.line != 0 ? key.source() : value.source(), std::move(message));
  }

  void throwIfAny() {
    if (found_.empty()) return;
    std::stable_sort(found_.begin(), found_.end(),
                     [](auto const& a, auto const& b) { return std::tie(std::get<0>(a), std::get<1>(a)) <
                                                               std::tie(std::get<0>(b), std::get<1>(b)); });
    std::vector<std::string> lines;
    for (auto const& [line, column, message] : found_) {
      lines.push_back(fmt::format("{}:{}:{}: error: {}", path_, line, column, message));
    }
    throw ConfigurationError(std::move(lines));
  }

 private:
  std::string const& path_;
  std::vector<std::tuple<toml::source_index, toml::source_index, std::string>> found_;
};

class RuleTable {
 public:
  explicit RuleTable(std::span<rules::RuleDefinition const> rules) : rules_(rules) {}

  rules::RuleDefinition const* find(std::string_view id) const {
    auto const found = std::find_if(rules_.begin(), rules_.end(), [id](auto const& rule) { return rule.id == id; });
    return found == rules_.end() ? nullptr : &*found;
  }

 private:
  std::span<rules::RuleDefinition const> rules_;
};

// The rule ids of `rules.enable` or `rules.disable`, as indexes into the
// table; unknown ones are problems.
std::vector<std::size_t> readRuleIds(std::string_view key, toml::node const& value, RuleTable const& rules,
                                     Problems& problems) {
  std::vector<std::size_t> found;
  toml::array const* ids = value.as_array();
  if (ids == nullptr) {
    problems.add(value.source(),
                 fmt::format("bad value for rules.{}: expected an array of rule ids, found {}", key, kindOf(value)));
    return found;
  }
  for (toml::node const& element : *ids) {
    std::optional<std::string_view> const id = element.value<std::string_view>();
    if (!id) {
      problems.add(element.source(),
                   fmt::format("bad value in rules.{}: expected a rule id (a string), found {}", key, kindOf(element)));
    } else if (rules::RuleDefinition const* rule = rules.find(*id)) {
      found.push_back(rule->index);
    } else {
      problems.add(element.source(), fmt::format("unknown rule id '{}' in rules.{}", *id, key));
    }
  }
  return found;
}

// The options of `[rules.<id>]`, by their index among the rule's options.
std::map<std::size_t, std::int64_t> readOptions(rules::RuleDefinition const& rule, toml::table const& table,
                                                Problems& problems) {
  std::map<std::size_t, std::int64_t> values;
  std::vector<rules::RuleOption> const& options = rule.body->options;
  for (auto const& [key, value] : table) {
    auto const option = std::find_if(options.begin(), options.end(),
                                     [&](rules::RuleOption const& o) { return o.key == key.str(); });
    if (option == options.end()) {
      std::string known;
      for (rules::RuleOption const& o : options) known += (known.empty() ? "" : ", ") + std::string(o.key);
      problems.add(key, value,
                   fmt::format("unknown key '{}' in rules.{} ({})", key.str(), rule.id,
                               known.empty() ? "the rule has no options" : "its options: " + known));
      continue;
    }
    std::string const name = fmt::format("rules.{}.{}", rule.id, key.str());
    if (value.is_floating_point()) {
      // As TOML writes it, so that 20.0 does not read as the integer 20.
      std::ostringstream written;
      written << *value.as_floating_point();
      problems.add(value.source(), fmt::format("bad value for {}: {} is not an integer", name, written.str()));
    } else if (!value.is_integer()) {
      problems.add(value.source(), fmt::format("bad value for {}: expected an integer, found {}", name, kindOf(value)));
    } else if (std::int64_t const number = value.as_integer()->get();
               number < option->minimum || number > option->maximum) {
      problems.add(value.source(), fmt::format("bad value for {}: {} is out of range ({} to {})", name, number,
                                               option->minimum, option->maximum));
    } else {
      values[static_cast<std::size_t>(option - options.begin())] = number;
    }
  }
  return values;
}

}  // namespace

ConfigurationError::ConfigurationError(std::vector<std::string> problems)
    : std::runtime_error(joined(problems)), problems_(std::move(problems)) {}

Configuration Configuration::load(std::string const& path, std::span<rules::RuleDefinition const> rules) {
  frontend::SourceFileReader reader;
  frontend::SourceFileReader::Result const read = reader.read(path.c_str());
  if (!read.ok()) throw ConfigurationError({frontend::formatDiagnostic(read.diagnostic(path))});
  toml::table document;
  try {
    document = toml::parse(read.bytes, path);
  } catch (toml::parse_error const& error) {
    Problems problems(path);
    problems.add(error.source(), "not valid TOML: " + std::string(error.description()));
    problems.throwIfAny();
  }

  Configuration configuration;
  configuration.path_ = path;
  std::error_code ignored;
  configuration.folder_ = fs::absolute(fs::path(path), ignored).lexically_normal().parent_path();
  RuleTable const table(rules);
  Problems problems(path);
  for (auto const& [key, value] : document) {
    if (key == "exclude") {
      toml::array const* globs = value.as_array();
      if (globs == nullptr) {
        problems.add(value.source(), fmt::format("bad value for exclude: expected an array of globs, found {}",
                                                 kindOf(value)));
        continue;
      }
      for (toml::node const& glob : *globs) {
        std::optional<std::string> const text = glob.value<std::string>();
        if (!text) {
          problems.add(glob.source(), fmt::format("bad value in exclude: expected a glob (a string), found {}",
                                                  kindOf(glob)));
        } else if (text->empty() || text->front() == '/') {
          // Such a glob would never match a path relative to this folder.
          problems.add(glob.source(), fmt::format("bad value in exclude: '{}' is not a glob relative to the "
                                                  "configuration file's folder",
                                                  *text));
        } else {
          configuration.excludes_.push_back(*text);
        }
      }
    } else if (key == "rules") {
      toml::table const* section = value.as_table();
      if (section == nullptr) {
        problems.add(key, value, fmt::format("bad value for rules: expected a table, found {}", kindOf(value)));
        continue;
      }
      for (auto const& [ruleKey, ruleValue] : *section) {
        if (ruleKey == "enable") {
          configuration.enabled_ = readRuleIds("enable", ruleValue, table, problems);
        } else if (ruleKey == "disable") {
          configuration.disabled_ = readRuleIds("disable", ruleValue, table, problems);
        } else if (rules::RuleDefinition const* rule = table.find(ruleKey.str())) {
          if (toml::table const* options = ruleValue.as_table()) {
            std::map<std::size_t, std::int64_t> values = readOptions(*rule, *options, problems);
            if (!values.empty()) configuration.options_[rule->index] = std::move(values);
          } else {
            problems.add(ruleKey, ruleValue,
                         fmt::format("bad value for rules.{}: expected a table of the rule's options ([rules.{}]), "
                                     "found {}",
                                     rule->id, rule->id, kindOf(ruleValue)));
          }
        } else if (ruleValue.is_table()) {
          problems.add(ruleKey, ruleValue, fmt::format("unknown rule id '{}' in rules", ruleKey.str()));
        } else if (ruleKey == "exclude") {
          // A key after a [table] header belongs to that table: the usual slip.
          problems.add(ruleKey, ruleValue,
                       "unknown key 'exclude' in rules (exclude is a top-level key: put it before the first "
                       "[table])");
        } else {
          problems.add(ruleKey, ruleValue, fmt::format("unknown key '{}' in rules", ruleKey.str()));
        }
      }
    } else {
      problems.add(key, value, fmt::format("unknown key '{}' (the top-level keys are exclude and rules)", key.str()));
    }
  }

  // A file that both enables and disables a rule contradicts itself, and
  // neither reading is clearly the one meant.
  if (toml::array const* disabled = document.at_path("rules.disable").as_array()) {
    for (toml::node const& element : *disabled) {
      rules::RuleDefinition const* rule = element.is_string() ? table.find(element.as_string()->get()) : nullptr;
      if (rule != nullptr && std::find(configuration.enabled_.begin(), configuration.enabled_.end(), rule->index) !=
                                 configuration.enabled_.end()) {
        problems.add(element.source(),
                     fmt::format("rule '{}' is both in rules.enable and in rules.disable", rule->id));
      }
    }
  }
  problems.throwIfAny();
  return configuration;
}

void Configuration::applyTo(RuleSelection& selection) const {
  for (std::size_t rule : enabled_) selection.enabled[rule] = true;
  for (std::size_t rule : disabled_) selection.enabled[rule] = false;
  for (auto const& [rule, values] : options_) {
    for (auto const& [option, value] : values) selection.options[rule][option] = value;
  }
}

bool Configuration::excludes(std::string const& sourcePath) const {
  if (excludes_.empty()) return false;
  std::error_code ignored;
  fs::path const absolute = fs::absolute(fs::path(sourcePath), ignored).lexically_normal();
  fs::path const relative = absolute.lexically_relative(folder_);
  return isExcluded(relative.empty() ? absolute.generic_string() : relative.generic_string(), excludes_);
}

}  // namespace plexus::check
