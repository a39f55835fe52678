#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/ast/string_id.hpp"
#include "rulesystem/execution/all_nodes.hpp"

namespace plexus::bench {

/// One rule that looks for calls to one name.
struct CallRule {
  ca::astapi::StringId name;
  /// Whether the name is one the synthetic code calls; if not, it never
  /// occurs in a synthetic tree and the rule never fires.
  bool inVocabulary = false;
};

/// `count` rules, each looking for a different name. Every fifth rule, from
/// the first on, asks for the next function name of the vocabulary, most
/// frequent first, for as long as the vocabulary lasts; the others ask for
/// names that the synthetic code never uses. So a fixed share of the rules,
/// one in five, can fire, and 1000 rules ask for every name of the vocabulary.
std::vector<CallRule> callRules(std::size_t count);

/// Declares `rule` as a case of the one switch on the called name below
/// `all.parenOperation`, counting the calls that reach its end in `hits`.
void declareAsSwitchCase(ca::rulesystem::AllNodes& all, CallRule const& rule, std::uint64_t& hits);

/// Declares `rule` as a predicate of its own on `all.parenOperation`, counting
/// the calls that pass it in `hits`.
void declareAsPredicate(ca::rulesystem::AllNodes& all, CallRule const& rule, std::uint64_t& hits);

}  // namespace plexus::bench
