#pragma once

// Short spellings for building trees in tests.

#include <string>
#include <vector>

#include "platform/ast/syntax_tree.hpp"
#include "platform/i18n/i18n.hpp"

namespace plexus::testing {

namespace ast = ca::ast;

class TreeMaker {
 public:
  ca::astapi::TreeBuilder b;

  static std::u16string u(std::string const& text) { return fl::i18n::to_ustring(text); }

  ast::Identifier* id(std::string const& name) { return b.identifier(u(name)); }
  ast::Field* field(std::string const& name) { return b.field(u(name)); }
  ast::NumberLiteral* num(double value) {
    return b.make<ast::NumberLiteral>(value, b.text(u(std::to_string(static_cast<long long>(value)))));
  }
  ast::CharVectorLiteral* chars(std::string const& text) { return b.make<ast::CharVectorLiteral>(b.text(u(text))); }
  ast::StringLiteral* str(std::string const& text) { return b.make<ast::StringLiteral>(b.text(u(text))); }
  ast::InputArgument* input(std::string const& name) { return b.make<ast::InputArgument>(id(name)); }

  template <class T>
  lf::astapi::NodeList<T> list(std::initializer_list<T const*> items) {
    return b.list<T>(items);
  }
  lf::astapi::NodeList<ast::Expression> exprs(std::initializer_list<ast::Expression const*> items) {
    return b.list<ast::Expression>(items);
  }
  lf::astapi::NodeList<ast::Node> body(std::initializer_list<ast::Node const*> items) {
    return b.list<ast::Node>(items);
  }
  ast::ExpressionStatement* stmt(ast::Expression const* e) { return b.make<ast::ExpressionStatement>(e); }

  std::shared_ptr<ca::astapi::SyntaxTree const> program(std::initializer_list<ast::Node const*> items,
                                                        ca::FileType type = ca::FileType::Script) {
    return b.finish(b.make<ast::Program>(b.text(u"test.m"), body(items)), type);
  }
};

}  // namespace plexus::testing
