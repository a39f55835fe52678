#pragma once

// The handles that pipelines are written on. The vocabulary's pipe operators
// for tags (`isa<T>()`, `getCalls`, `getArgument`, ...) are written once over
// any such handle, in terms of the plain pipes (`handle | stage`) and
// `upcast`/`downcast`; `Producer` is the one the library offers. Another
// handle template, such as the naive evaluator of the tests, opts in with
// `isPipeHandle` and runs the very same stages without a graph.

#include <memory>

#include "rulesystem/graph/producer.hpp"

namespace ca::rulesystem {

/// Whether P<T> is a handle that the vocabulary's tag operators accept.
template <template <class> class P>
inline constexpr bool isPipeHandle = false;
template <>
inline constexpr bool isPipeHandle<Producer> = true;

/// The items of `producer`, handed on as the base class U; one vertex per U.
///
///     Producer<Node const&> nodes = upcast<Node const&>(all.assignment);
template <class U, class T>
Producer<U> upcast(Producer<T> const& producer) {
  return Producer<U>(producer.impl->template upcast<U>());
}

/// The items of `producer`, handed on as the derived class U, unchecked: only
/// behind a stage that proved the class.
template <class U, class T>
Producer<U> downcast(Producer<T> const& producer) {
  return Producer<U>(producer.impl->template downcast<U>());
}

}  // namespace ca::rulesystem
