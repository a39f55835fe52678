#pragma once

namespace ca::rulesystem {

class Profiler;

/// The base of whatever the rules' own consumers report to: an application
/// derives its reporter from it and its consumers cast back. The engine never
/// looks at it.
class MessageSink {
 public:
  virtual ~MessageSink() = default;
};

/// The context that travels unchanged with every item from producer to
/// consumer. The engine reads only `profiler`: counting is on exactly when a
/// helper is passed and its profiler is set.
struct MessageHelper {
  MessageSink* sink = nullptr;
  Profiler* profiler = nullptr;
};

}  // namespace ca::rulesystem
