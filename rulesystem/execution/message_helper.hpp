#pragma once

namespace ca::rulesystem {

class Profiler;
/// Whatever the rules' own consumers report to; the engine never looks at it.
class MessageSink;

/// The context that travels unchanged with every item from producer to
/// consumer. The engine reads only `profiler`: counting is on exactly when a
/// helper is passed and its profiler is set.
struct MessageHelper {
  MessageSink* sink = nullptr;
  Profiler* profiler = nullptr;
};

}  // namespace ca::rulesystem
