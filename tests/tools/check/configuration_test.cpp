// plexus.toml: reading and checking one file, what it does to a file's rules,
// and which file applies to which source file.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/scratch_folder.hpp"
#include "tools/check/configuration.hpp"
#include "tools/check/configuration_discovery.hpp"

namespace {

using plexus::check::Configuration;
using plexus::check::ConfigurationDiscovery;
using plexus::check::ConfigurationError;
using plexus::check::RuleSelection;
using plexus::rules::RuleBody;
using plexus::rules::RuleDefinition;
using plexus::testing::ScratchFolder;

// A table of its own, so that options are tested whatever rules the checker
// bundles: `counted` has two options, `plain` none.
RuleBody const countedBody{{}, {{"max-things", "", 10, 1, 100}, {"min-things", "", 1, 0, 5}}, nullptr};
RuleBody const plainBody{{}, {}, nullptr};
std::vector<RuleDefinition> const table{
    {0, "counted", plexus::rules::Severity::Warning, "", &countedBody},
    {1, "plain", plexus::rules::Severity::Warning, "", &plainBody},
};

RuleSelection defaultsOfTable() {
  return RuleSelection{{true, true}, {{10, 1}, {}}};
}

// The problems that loading `text` as a configuration gives, or none.
std::vector<std::string> problemsOf(ScratchFolder const& scratch, std::string const& text) {
  std::string const path = scratch.write("plexus.toml", text);
  try {
    Configuration::load(path, table);
  } catch (ConfigurationError const& error) {
    return error.problems();
  }
  return {};
}

TEST(ConfigurationLoad, EachProblemNamesTheFileLineColumnAndKey) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  std::string const at = scratch / "plexus.toml";
  using Lines = std::vector<std::string>;

  EXPECT_EQ(problemsOf(scratch, "colour = 3\n"),
            Lines{at + ":1:1: error: unknown key 'colour' (the top-level keys are exclude and rules)"});
  EXPECT_EQ(problemsOf(scratch, "[rules]\nenable = [\"counted\", \"foo\"]\n"),
            Lines{at + ":2:22: error: unknown rule id 'foo' in rules.enable"});
  EXPECT_EQ(problemsOf(scratch, "[rules]\ndisable = \"plain\"\n"),
            Lines{at + ":2:11: error: bad value for rules.disable: expected an array of rule ids, found a string"});
  EXPECT_EQ(problemsOf(scratch, "[rules]\ndisable = [3]\n"),
            Lines{at + ":2:12: error: bad value in rules.disable: expected a rule id (a string), found an integer"});
  EXPECT_EQ(problemsOf(scratch, "\n[rules.foo]\nmax-things = 3\n"),
            Lines{at + ":2:8: error: unknown rule id 'foo' in rules"});
  EXPECT_EQ(problemsOf(scratch, "[rules]\nverbose = true\n"), Lines{at + ":2:1: error: unknown key 'verbose' in rules"});
  EXPECT_EQ(problemsOf(scratch, "[rules]\nexclude = [\"gen\"]\n"),
            Lines{at + ":2:1: error: unknown key 'exclude' in rules (exclude is a top-level key: put it before the "
                       "first [table])"});
  EXPECT_EQ(problemsOf(scratch, "[rules.counted]\nmost-things = 3\n"),
            Lines{at + ":2:1: error: unknown key 'most-things' in rules.counted (its options: max-things, "
                       "min-things)"});
  EXPECT_EQ(problemsOf(scratch, "[rules.plain]\nmax-things = 3\n"),
            Lines{at + ":2:1: error: unknown key 'max-things' in rules.plain (the rule has no options)"});
  EXPECT_EQ(problemsOf(scratch, "[rules.counted]\nmax-things = 101\n"),
            Lines{at + ":2:14: error: bad value for rules.counted.max-things: 101 is out of range (1 to 100)"});
  EXPECT_EQ(problemsOf(scratch, "[rules.counted]\nmax-things = 0\n"),
            Lines{at + ":2:14: error: bad value for rules.counted.max-things: 0 is out of range (1 to 100)"});
  EXPECT_EQ(problemsOf(scratch, "[rules.counted]\nmax-things = 2.5\n"),
            Lines{at + ":2:14: error: bad value for rules.counted.max-things: 2.5 is not an integer"});
  EXPECT_EQ(problemsOf(scratch, "[rules.counted]\nmax-things = 20.0\n"),
            Lines{at + ":2:14: error: bad value for rules.counted.max-things: 20.0 is not an integer"});
  EXPECT_EQ(problemsOf(scratch, "[rules.counted]\nmax-things = \"20\"\n"),
            Lines{at + ":2:14: error: bad value for rules.counted.max-things: expected an integer, found a string"});
  EXPECT_EQ(problemsOf(scratch, "[rules]\ncounted = 3\n"),
            Lines{at + ":2:1: error: bad value for rules.counted: expected a table of the rule's options "
                       "([rules.counted]), found an integer"});
  EXPECT_EQ(problemsOf(scratch, "rules = 3\n"),
            Lines{at + ":1:1: error: bad value for rules: expected a table, found an integer"});
  EXPECT_EQ(problemsOf(scratch, "exclude = \"gen\"\n"),
            Lines{at + ":1:11: error: bad value for exclude: expected an array of globs, found a string"});
  EXPECT_EQ(problemsOf(scratch, "exclude = [\"/gen\"]\n"),
            Lines{at + ":1:12: error: bad value in exclude: '/gen' is not a glob relative to the configuration "
                       "file's folder"});
  EXPECT_EQ(problemsOf(scratch, "[rules]\nenable = [\"plain\"]\ndisable = [\"counted\", \"plain\"]\n"),
            Lines{at + ":3:23: error: rule 'plain' is both in rules.enable and in rules.disable"});

  // A syntax error is told as the parser words it, at its place.
  Lines const syntax = problemsOf(scratch, "[rules]\nenable = [\"plain\"\n");
  ASSERT_EQ(syntax.size(), 1u);
  EXPECT_TRUE(syntax[0].starts_with(at + ":2:")) << syntax[0];
  EXPECT_NE(syntax[0].find(": error: not valid TOML: "), std::string::npos) << syntax[0];
  EXPECT_NE(syntax[0].find("end-of-file"), std::string::npos) << syntax[0];

  // Every problem of a file is told, in the file's order.
  EXPECT_EQ(problemsOf(scratch, "zebra = 1\n[rules]\nenable = [\"foo\"]\n[rules.counted]\nmax-things = -1\n"
                                "alpha = 2\n"),
            (Lines{at + ":1:1: error: unknown key 'zebra' (the top-level keys are exclude and rules)",
                   at + ":3:11: error: unknown rule id 'foo' in rules.enable",
                   at + ":5:14: error: bad value for rules.counted.max-things: -1 is out of range (1 to 100)",
                   at + ":6:1: error: unknown key 'alpha' in rules.counted (its options: max-things, min-things)"}));

  // A file that cannot be read has no place to name.
  try {
    Configuration::load(scratch / "missing.toml", table);
    ADD_FAILURE() << "a missing file loaded";
  } catch (ConfigurationError const& error) {
    EXPECT_EQ(error.problems(), Lines{scratch / "missing.toml" + ": error: cannot open: No such file or directory"});
  }

  EXPECT_EQ(problemsOf(scratch, "exclude = [\"gen\"]\n[rules]\nenable = [\"plain\"]\ndisable = [\"counted\"]\n"
                                "[rules.counted]\nmax-things = 100\nmin-things = 0\n"),
            Lines{});
}

TEST(ConfigurationLoad, SetsOnlyWhatTheFileNamesAndEachOptionByItself) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());

  RuleSelection selection = defaultsOfTable();
  selection.enabled[1] = false;
  Configuration::load(scratch.write("a.toml", "[rules.counted]\nmax-things = 20\n"), table).applyTo(selection);
  // min-things keeps its value, and `plain` stays as it was.
  EXPECT_EQ(selection, (RuleSelection{{true, false}, {{20, 1}, {}}}));

  Configuration::load(scratch.write("b.toml", "[rules]\nenable = [\"plain\"]\ndisable = [\"counted\"]\n"
                                              "[rules.counted]\nmin-things = 4\n"),
                      table)
      .applyTo(selection);
  EXPECT_EQ(selection, (RuleSelection{{false, true}, {{20, 4}, {}}}));

  // An empty file changes nothing.
  RuleSelection untouched = defaultsOfTable();
  Configuration::load(scratch.write("c.toml", ""), table).applyTo(untouched);
  EXPECT_EQ(untouched, defaultsOfTable());
}

TEST(ConfigurationLoad, ExcludeGlobsAreRelativeToTheFilesFolder) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  Configuration const configuration = Configuration::load(
      scratch.write("project/plexus.toml", "exclude = [\"gen\", \"sub/*_old.m\"]\n"), table);

  EXPECT_TRUE(configuration.excludes(scratch / "project/gen/a.m"));
  EXPECT_TRUE(configuration.excludes(scratch / "project/lib/gen/a.m"));
  EXPECT_TRUE(configuration.excludes(scratch / "project/sub/x_old.m"));
  EXPECT_TRUE(configuration.excludes(scratch / "project/./sub/../sub/x_old.m"));
  // A glob with a slash is anchored at the configuration's folder.
  EXPECT_FALSE(configuration.excludes(scratch / "project/lib/sub/x_old.m"));
  EXPECT_FALSE(configuration.excludes(scratch / "project/sub/x.m"));
  EXPECT_FALSE(configuration.excludes(scratch / "project/generated/a.m"));
}

TEST(ConfigurationSelection, DefaultsThenTheFileThenTheCommandLine) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  auto const& rules = plexus::rules::ruleTable();
  std::size_t const global = plexus::rules::findRule("global-declaration")->index;
  std::size_t const syntax = plexus::rules::syntaxErrorRule().index;
  std::string const source = scratch.write("a.m", "x = 1;\n");

  // Without a file: every rule on, then the command line.
  auto selection = plexus::check::selectionFor(nullptr, source, {}, {"global-declaration"});
  ASSERT_TRUE(selection);
  EXPECT_FALSE(selection->enabled[global]);
  EXPECT_TRUE(selection->enabled[syntax]);
  EXPECT_EQ(selection->enabled.size(), rules.size());

  Configuration const file =
      Configuration::load(scratch.write("plexus.toml", "[rules]\ndisable = [\"global-declaration\", \"syntax-error\"]\n"));
  selection = plexus::check::selectionFor(&file, source, {}, {});
  ASSERT_TRUE(selection);
  EXPECT_FALSE(selection->enabled[global]);
  EXPECT_FALSE(selection->enabled[syntax]);
  // The command line wins over the file, and its --disable over its --enable.
  selection = plexus::check::selectionFor(&file, source, {"global-declaration", "syntax-error"}, {"syntax-error"});
  ASSERT_TRUE(selection);
  EXPECT_TRUE(selection->enabled[global]);
  EXPECT_FALSE(selection->enabled[syntax]);

  // A file the configuration excludes gets no rules at all.
  Configuration const excluding = Configuration::load(scratch.write("excluding.toml", "exclude = [\"a.m\"]\n"));
  EXPECT_FALSE(plexus::check::selectionFor(&excluding, source, {"global-declaration"}, {}));
  EXPECT_TRUE(plexus::check::selectionFor(&excluding, scratch / "b.m", {}, {}));
}

// Options of the bundled rules, through whichever rule has one.
TEST(ConfigurationSelection, ABundledRulesOptionsAreSetAndChecked) {
  RuleDefinition const* rule = nullptr;
  for (RuleDefinition const& each : plexus::rules::ruleTable()) {
    if (!each.body->options.empty()) {
      rule = &each;
      break;
    }
  }
  if (rule == nullptr) GTEST_SKIP() << "no bundled rule has options";
  plexus::rules::RuleOption const& option = rule->body->options.front();
  std::int64_t const value = option.defaultValue != option.minimum ? option.minimum : option.maximum;
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  std::string const header = "[rules." + std::string(rule->id) + "]\n" + std::string(option.key) + " = ";

  Configuration const file = Configuration::load(scratch.write("plexus.toml", header + std::to_string(value) + "\n"));
  auto const selection = plexus::check::selectionFor(&file, scratch / "a.m", {}, {});
  ASSERT_TRUE(selection);
  RuleSelection expected = RuleSelection::defaults();
  expected.options[rule->index].front() = value;
  EXPECT_EQ(*selection, expected);

  try {
    Configuration::load(scratch.write("bad.toml", header + "\"many\"\n"));
    ADD_FAILURE() << "a string loaded as an option";
  } catch (ConfigurationError const& error) {
    ASSERT_EQ(error.problems().size(), 1u);
    EXPECT_NE(error.problems()[0].find(":2:"), std::string::npos) << error.problems()[0];
    EXPECT_NE(error.problems()[0].find("bad value for rules." + std::string(rule->id) + "." + std::string(option.key)),
              std::string::npos)
        << error.problems()[0];
  }
}

TEST(ConfigurationDiscovery, TheNearestFileWinsAndEachFolderIsLookedInOnce) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  scratch.write("root/plexus.toml", "[rules]\ndisable = [\"plain\"]\n");
  scratch.write("root/a/plexus.toml", "[rules]\ndisable = [\"counted\"]\n");

  ConfigurationDiscovery discovery = ConfigurationDiscovery::nearest(table);
  Configuration const* inner = discovery.configurationFor(scratch / "root/a/b/f.m");
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(inner->path(), scratch / "root/a/plexus.toml");
  EXPECT_EQ(discovery.foldersSearched(), 2u);  // root/a/b, then root/a

  // 10,000 files of one folder cost no further look.
  for (int i = 0; i < 10000; ++i) {
    EXPECT_EQ(discovery.configurationFor(scratch / ("root/a/b/f" + std::to_string(i) + ".m")), inner);
  }
  EXPECT_EQ(discovery.foldersSearched(), 2u);
  // A sibling folder costs itself only; its parent is known.
  EXPECT_EQ(discovery.configurationFor(scratch / "root/a/c/g.m"), inner);
  EXPECT_EQ(discovery.foldersSearched(), 3u);

  Configuration const* outer = discovery.configurationFor(scratch / "root/d/h.m");
  ASSERT_NE(outer, nullptr);
  EXPECT_EQ(outer->path(), scratch / "root/plexus.toml");
  EXPECT_EQ(discovery.configurationFor(scratch / "root/h.m"), outer);

  RuleSelection selection = defaultsOfTable();
  inner->applyTo(selection);
  EXPECT_EQ(selection.enabled, (std::vector<bool>{false, true}));
}

TEST(ConfigurationDiscovery, AGivenFileOverridesDiscoveryAndIsolatedUsesNone) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  scratch.write("project/plexus.toml", "broken = \n");
  std::string const given = scratch.write("ci/strict.toml", "exclude = [\"project/gen\"]\n");

  ConfigurationDiscovery fixed = ConfigurationDiscovery::given(given, table);
  Configuration const* used = fixed.configurationFor(scratch / "project/a.m");
  ASSERT_NE(used, nullptr);
  EXPECT_EQ(used->path(), given);
  EXPECT_EQ(fixed.configurationFor(scratch / "elsewhere/b.m"), used);
  EXPECT_EQ(fixed.foldersSearched(), 0u);
  // Its globs are relative to its own folder, not to the source file's.
  EXPECT_TRUE(used->excludes(scratch / "ci/project/gen/c.m"));
  EXPECT_FALSE(used->excludes(scratch / "project/gen/c.m"));

  ConfigurationDiscovery isolated = ConfigurationDiscovery::isolated();
  EXPECT_EQ(isolated.configurationFor(scratch / "project/a.m"), nullptr);

  // Discovery reaches the broken file and says what is wrong with it.
  ConfigurationDiscovery nearest = ConfigurationDiscovery::nearest(table);
  try {
    nearest.configurationFor(scratch / "project/a.m");
    ADD_FAILURE() << "a broken file was used";
  } catch (ConfigurationError const& error) {
    ASSERT_EQ(error.problems().size(), 1u);
    EXPECT_TRUE(error.problems()[0].starts_with(scratch / "project/plexus.toml:1:")) << error.problems()[0];
  }
  // A given file's problems come when it is given.
  EXPECT_THROW(ConfigurationDiscovery::given(scratch / "project/plexus.toml", table), ConfigurationError);
}

}  // namespace
