#include "tools/check/reports/sarif_report.hpp"

#include <cctype>
#include <string>

#include "tools/check/reports/rule_documentation.hpp"
#include "tools/check/reports/streamed_json.hpp"
#include "tools/check/reports/uri_reference.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::check::reports {

namespace {

constexpr char const* sourceRoot = "%SRCROOT%";

// "global-declaration" as "GlobalDeclaration": SARIF's readable name of a
// rule, which may not be its id.
std::string ruleName(std::string_view id) {
  std::string name;
  bool upper = true;
  for (char const c : id) {
    if (c == '-') {
      upper = true;
      continue;
    }
    name += upper ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
    upper = false;
  }
  return name;
}

nlohmann::ordered_json ruleDescriptor(rules::RuleDefinition const& rule) {
  nlohmann::ordered_json descriptor;
  descriptor["id"] = rule.id;
  descriptor["name"] = ruleName(rule.id);
  descriptor["shortDescription"] = {{"text", rule.summary}};
  descriptor["fullDescription"] = {{"text", rule.body->documentation.finds}};
  descriptor["help"] = {{"text", ruleText(rule)}, {"markdown", ruleMarkdown(rule)}};
  descriptor["defaultConfiguration"] = {{"level", rules::severityName(rule.severity)}};
  return descriptor;
}

nlohmann::ordered_json result(Finding const& finding, std::filesystem::path const& workingFolder) {
  nlohmann::ordered_json entry;
  entry["ruleId"] = finding.rule->id;
  entry["ruleIndex"] = finding.rule->index;
  entry["level"] = rules::severityName(finding.severity);
  entry["message"] = {{"text", finding.message}};
  ArtifactUri const uri = artifactUri(finding.path, workingFolder);
  nlohmann::ordered_json artifact;
  artifact["uri"] = uri.uri;
  if (uri.relative) artifact["uriBaseId"] = sourceRoot;
  nlohmann::ordered_json physical;
  physical["artifactLocation"] = std::move(artifact);
  if (finding.range.line != 0) {
    physical["region"] = {{"startLine", finding.range.line},
                          {"startColumn", finding.range.column},
                          {"endLine", finding.range.endLine},
                          {"endColumn", finding.range.endColumn}};
  }
  nlohmann::ordered_json location;
  location["physicalLocation"] = std::move(physical);
  entry["locations"] = nlohmann::ordered_json::array();
  entry["locations"].push_back(std::move(location));
  return entry;
}

// The log with its results still to come.
nlohmann::ordered_json skeleton(std::filesystem::path const& workingFolder) {
  nlohmann::ordered_json rulesMetadata = nlohmann::ordered_json::array();
  for (rules::RuleDefinition const& rule : rules::ruleTable()) rulesMetadata.push_back(ruleDescriptor(rule));

  nlohmann::ordered_json driver;
  driver["name"] = "plexus";
  driver["version"] = PLEXUS_VERSION;
  driver["rules"] = std::move(rulesMetadata);

  nlohmann::ordered_json run;
  run["tool"] = {{"driver", std::move(driver)}};
  run["originalUriBaseIds"] = {{sourceRoot, {{"uri", fileUri(workingFolder, true)}}}};
  run["columnKind"] = "unicodeCodePoints";
  run["results"] = nlohmann::ordered_json::array();

  nlohmann::ordered_json log;
  log["$schema"] = "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";
  log["version"] = "2.1.0";
  log["runs"] = nlohmann::ordered_json::array();
  log["runs"].push_back(std::move(run));
  return log;
}

}  // namespace

nlohmann::ordered_json sarifReport(CheckReport const& report, std::filesystem::path const& workingFolder) {
  nlohmann::ordered_json log = skeleton(workingFolder);
  auto& results = log["runs"][0]["results"];
  for (Finding const& finding : report.findings) results.push_back(result(finding, workingFolder));
  return log;
}

void writeSarifReport(std::ostream& out, CheckReport const& report, std::filesystem::path const& workingFolder) {
  writeJsonStreamingArray(out, skeleton(workingFolder), "results", report.findings.size(),
                          [&](std::size_t i) { return result(report.findings[i], workingFolder); });
}

}  // namespace plexus::check::reports
