#include "bench/call_rules.hpp"

#include <memory>
#include <set>
#include <string>

#include "bench/call_name_predicate.hpp"
#include "bench/call_name_switch.hpp"
#include "bench/hit_counter.hpp"
#include "bench/vocabulary.hpp"

namespace plexus::bench {

namespace {
constexpr std::size_t kOneRuleIn = 5;

// A name that the synthetic code never uses: the generator takes every name
// from the lists of the vocabulary, and none of them holds an underscore.
ca::astapi::StringId absentName(std::size_t index) {
  std::string const digits = std::to_string(index);
  return ca::astapi::StringId(u"absent_" + std::u16string(digits.begin(), digits.end()));
}
}  // namespace

std::vector<CallRule> callRules(std::size_t count) {
  std::vector<std::u16string> const& vocabulary = functionNames();
  std::vector<CallRule> rules;
  rules.reserve(count);
  std::size_t nextName = 0;
  for (std::size_t index = 0; index < count; ++index) {
    if (index % kOneRuleIn == 0 && nextName < vocabulary.size()) {
      rules.push_back({ca::astapi::StringId(vocabulary[nextName++]), true});
    } else {
      rules.push_back({absentName(index), false});
    }
  }
  return rules;
}

void declareAsSwitchCase(ca::rulesystem::AllNodes& all, CallRule const& rule, std::uint64_t& hits) {
  all.parenOperation | std::make_unique<IsCallNamed>(std::set{rule.name}) |
      std::make_shared<HitCounter<ca::ast::ParenOperation const&>>(hits);
}

void declareAsPredicate(ca::rulesystem::AllNodes& all, CallRule const& rule, std::uint64_t& hits) {
  all.parenOperation | std::make_unique<CallNameIs>(rule.name) |
      std::make_shared<HitCounter<ca::ast::ParenOperation const&>>(hits);
}

}  // namespace plexus::bench
