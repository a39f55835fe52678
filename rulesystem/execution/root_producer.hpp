#pragma once

#include <string>

#include "rulesystem/graph/producer.hpp"

namespace ca::rulesystem {

/// A producer at the top of the graph, fed by the run itself. It has no
/// consuming half, so upstream walks end here.
template <class T>
class RootProducer final : public ProducerImpl<T> {
 public:
  explicit RootProducer(std::u16string name) : name_(std::move(name)) {}
  std::u16string kindDescription() const override { return u"Root"; }
  std::u16string detailsDescription() const override { return name_; }

 private:
  std::u16string name_;
};

}  // namespace ca::rulesystem
