#pragma once

#include <cstdint>
#include <string>

#include "rulesystem/graph/consumer.hpp"

namespace plexus::bench {

/// The end of a benchmark rule: counts the items that reach it in a slot that
/// the caller owns, so that the counts of rules with different item types can
/// be kept side by side. The slot must outlive every run of the graph.
template <class T>
class HitCounter final : public ca::rulesystem::Consumer<T> {
 public:
  explicit HitCounter(std::uint64_t& hits) : hits_(&hits) {}
  std::u16string kindDescription() const override { return u"HitCounter"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(T, ca::Analysis const&, ca::rulesystem::MessageHelper const*) const override { ++*hits_; }

 private:
  std::uint64_t* hits_;
};

}  // namespace plexus::bench
