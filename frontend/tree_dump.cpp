#include "frontend/tree_dump.hpp"

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include "frontend/limits.hpp"
#include "platform/i18n/i18n.hpp"

namespace frontend {

namespace {

namespace ast = ca::ast;

std::string utf8(ca::astapi::TextView text) { return fl::i18n::to_utf8(ca::astapi::toStdView(text)); }

std::string quoted(ca::astapi::TextView text, char quote) {
  std::string out(1, quote);
  for (char c : utf8(text)) {
    out += c;
    if (c == quote) out += quote;
  }
  return out + quote;
}

// The text that a node shows after its kind, if any.
std::string leafText(ast::Node const& node) {
  return lf::astapi::visitByKind(node, [](auto const& typed) -> std::string {
    using X = std::decay_t<decltype(typed)>;
    if constexpr (std::is_same_v<X, ast::Identifier> || std::is_same_v<X, ast::Field> ||
                  std::is_same_v<X, ast::NumberLiteral> || std::is_same_v<X, ast::OpaqueExpression> ||
                  std::is_same_v<X, ast::OpaqueStatement>) {
      return utf8(typed.getText());
    } else if constexpr (std::is_same_v<X, ast::CharVectorLiteral>) {
      return quoted(typed.getValue(), '\'');
    } else if constexpr (std::is_same_v<X, ast::StringLiteral>) {
      return quoted(typed.getValue(), '"');
    } else if constexpr (std::is_same_v<X, ast::BinaryOperation> || std::is_same_v<X, ast::UnaryOperation>) {
      return std::string(lf::astapi::spelling(typed.getOperator()));
    } else if constexpr (std::is_same_v<X, ast::BangStatement>) {
      return utf8(typed.getCommand());
    } else if constexpr (std::is_same_v<X, ast::Attribute>) {
      return typed.isNegated() ? "~" : "";
    } else {
      return "";
    }
  });
}

// Writes a tree with an explicit stack rather than by recursion: the depth of
// a tree follows its input, the depth of the call stack must not.
class Dumper {
 public:
  explicit Dumper(DumpLayout layout) : layout_(layout) {}

  std::string dump(ast::Node const& root) {
    open(root, 0);
    while (!frames_.empty()) {
      Frame& frame = frames_.back();
      if (frame.next == frame.end) {
        out_ += ')';
        pending_.resize(frame.first);
        frames_.pop_back();
        continue;
      }
      ast::Node const& child = *pending_[frame.next++];
      std::size_t const depth = frame.depth + 1;
      if (frame.split) {
        newLine(depth);
      } else {
        out_ += ' ';
      }
      open(child, depth);  // may move `frame`
    }
    return std::move(out_);
  }

 private:
  // A node whose children are being written: they are pending_[first, end),
  // the next one to write at `next`.
  struct Frame {
    std::size_t first, next, end, depth;
    bool split;
  };

  void open(ast::Node const& node, std::size_t depth) {
    out_ += '(';
    out_ += lf::astapi::nodeKindName(node.getKind());
    std::string const text = leafText(node);
    if (!text.empty()) {
      out_ += ' ';
      out_ += text;
    }
    std::size_t const first = pending_.size();
    lf::astapi::forEachChild(node, [this](ast::Node const* child) { pending_.push_back(child); });
    if (pending_.size() == first) {
      out_ += ')';
      return;
    }
    // Indented: when any child has children of its own, every child goes on
    // a line of its own; otherwise they stay on the node's line.
    bool const split = layout_ == DumpLayout::Indented &&
                       std::any_of(pending_.begin() + static_cast<std::ptrdiff_t>(first), pending_.end(),
                                   [](ast::Node const* c) { return hasChildren(*c); });
    frames_.push_back({first, first, pending_.size(), depth, split});
  }

  void newLine(std::size_t depth) {
    out_ += '\n';
    out_.append(std::min(depth, maxDumpIndentDepth) * 2, ' ');
    if (depth > maxDumpIndentDepth) {
      out_ += '[';
      out_ += std::to_string(depth);
      out_ += "] ";
    }
  }

  static bool hasChildren(ast::Node const& node) {
    bool any = false;
    lf::astapi::forEachChild(node, [&any](ast::Node const*) { any = true; });
    return any;
  }

  DumpLayout layout_;
  std::string out_;
  std::vector<Frame> frames_;
  std::vector<ast::Node const*> pending_;
};

}  // namespace

std::string dumpTree(ast::Node const& node, DumpLayout layout) {
  return Dumper(layout).dump(node);
}

}  // namespace frontend
