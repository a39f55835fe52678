#pragma once

// Consumers that write what reaches them into a log the test reads back.

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "rulesystem/graph/producer.hpp"

namespace plexus::testing {

using Log = std::vector<std::string>;

/// A terminal consumer that appends `describe(item)` to a log.
template <class T>
class Recorder final : public ca::rulesystem::Consumer<T> {
 public:
  Recorder(Log& log, std::function<std::string(T)> describe) : log_(&log), describe_(std::move(describe)) {}
  std::u16string kindDescription() const override { return u"Recorder"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(T item, ca::Analysis const&, ca::rulesystem::MessageHelper const* helper) const override {
    lastHelper = helper;
    log_->push_back(describe_(item));
  }
  mutable ca::rulesystem::MessageHelper const* lastHelper = nullptr;

 private:
  Log* log_;
  std::function<std::string(T)> describe_;
};

/// Attaches a recorder to `producer` that logs `label`.
template <class T>
std::shared_ptr<Recorder<T>> record(ca::rulesystem::Producer<T> producer, Log& log, std::string label) {
  auto recorder = std::make_shared<Recorder<T>>(log, [label](T) { return label; });
  producer | recorder;
  return recorder;
}

/// A terminal consumer that throws on the item it is given.
template <class T>
class Thrower final : public ca::rulesystem::Consumer<T> {
 public:
  std::u16string kindDescription() const override { return u"Thrower"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(T, ca::Analysis const&, ca::rulesystem::MessageHelper const*) const override {
    throw std::runtime_error("consumer failed");
  }
};

}  // namespace plexus::testing
