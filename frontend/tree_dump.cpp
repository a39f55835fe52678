#include "frontend/tree_dump.hpp"

#include <algorithm>
#include <sstream>
#include <type_traits>

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

class Dumper {
 public:
  explicit Dumper(DumpLayout layout) : layout_(layout) {}

  void dump(ast::Node const& node, int depth) {
    std::vector<ast::Node const*> children;
    lf::astapi::forEachChild(node, [&children](ast::Node const* child) { children.push_back(child); });
    out_ << '(' << lf::astapi::nodeKindName(node.getKind());
    std::string const text = leafText(node);
    if (!text.empty()) out_ << ' ' << text;
    // Indented: when any child has children of its own, every child goes on
    // a line of its own; otherwise they stay on the node's line.
    bool const split = layout_ == DumpLayout::Indented &&
                       std::any_of(children.begin(), children.end(), [](auto const* c) { return hasChildren(*c); });
    for (ast::Node const* child : children) {
      if (split) {
        out_ << '\n' << std::string(static_cast<std::size_t>(depth + 1) * 2, ' ');
      } else {
        out_ << ' ';
      }
      dump(*child, depth + 1);
    }
    out_ << ')';
  }

  std::string str() const { return out_.str(); }

 private:
  static bool hasChildren(ast::Node const& node) {
    bool any = false;
    lf::astapi::forEachChild(node, [&any](ast::Node const*) { any = true; });
    return any;
  }

  DumpLayout layout_;
  std::ostringstream out_;
};

}  // namespace

std::string dumpTree(ast::Node const& node, DumpLayout layout) {
  Dumper dumper(layout);
  dumper.dump(node, 0);
  return dumper.str();
}

}  // namespace frontend
