#pragma once

// The parser's external interface is `frontend::parse` (frontend/parse.hpp)
// and nothing else: it decodes the file, chooses how its functions end, and
// may parse twice to find out. The Parser class below is how `parse` does its
// work; only the front end (and tests of its parts) uses it directly.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "frontend/diagnostic.hpp"
#include "frontend/lexer.hpp"
#include "platform/ast/syntax_tree.hpp"

namespace frontend {

/// Whether the functions of a file end with `end` (and may nest) or run to the
/// next `function`. A file does one or the other throughout.
enum class FunctionStyle : std::uint8_t { Terminated, Open };

/// A recursive-descent parser for one file, building the tree bottom up.
///
/// A syntax error marks the parser failed: every function returns at once
/// (with null), up to the statement or member being parsed, which skips the
/// rest of its line and clears the mark. Errors are plain returns rather than
/// exceptions because files with many errors are common input, and unwinding
/// cost several microseconds per error.
///
/// Invariants: every node it makes has its source range; each call that
/// consumes a token makes progress, so that recovery after an error always
/// ends; nesting deeper than `maxNestingDepth` is reported, not followed.
class Parser {
 public:
  Parser(std::string_view source, std::string_view path, FunctionStyle style);

  /// Parses the whole file. Never throws for bad input.
  std::shared_ptr<ca::astapi::SyntaxTree const> parseFile();

  std::vector<Diagnostic>& diagnostics() { return diagnostics_; }
  std::size_t errorCount() const { return errorCount_; }

 private:
  using Node = ca::ast::Node;
  using Expression = ca::ast::Expression;
  using Position = lf::astapi::SourcePosition;

  struct TooManyErrors {};  // unwinds to the file, once

  // Which construct a body belongs to, for the tokens that end it.
  enum class BodyOf : std::uint8_t { File, Function, Block };

  // Tokens.
  // Tokens read ahead sit in a ring; the lexer is asked only when the ring
  // does not reach far enough, so at a statement's start it has read no
  // further than the first token.
  Token const& peek(std::size_t ahead = 0) {
    if (ahead < buffered_) return ring_[(head_ + ahead) & ringMask_];
    return fill(ahead);
  }
  Token const& fill(std::size_t ahead);
  std::size_t buffered() const { return buffered_; }
  void dropLookahead() { buffered_ = 0; }
  Token take();
  bool at(TokenKind kind) { return peek().kind == kind; }
  bool accept(TokenKind kind);
  Token expect(TokenKind kind, std::string_view context);
  /// Reports a syntax error of `kind` at `token` and marks the parser failed,
  /// unless it failed already: only the first fault of a statement is
  /// reported.
  template <DiagnosticKind kind, class... Args>
  void fail(Token const& token, Args const&... args);
  /// Fails at `found`, found where something else was expected: with the
  /// lexer's own error for text it could not read, else with `kind`, whose
  /// message ends with what was found.
  template <DiagnosticKind kind, class... Args>
  void unexpected(Token const& found, Args const&... args);
  /// "expected <expected> but found ...".
  void unexpected(Token const& found, std::string_view expected);
  /// After a statement or member that started at `statementMark` on the
  /// scratch stack: when it failed, drops what it left there, skips the rest
  /// of its line, clears the mark and says true.
  bool recovered(std::size_t statementMark);
  /// Reports a diagnostic, and stops the file with a last one when it is an
  /// error past the most a file may have.
  void report(DiagnosticKind kind, SourceSpan const& span, std::string message);
  template <DiagnosticKind kind, class... Args>
  void report(SourceSpan const& span, Args const&... args);
  /// The range of a diagnostic at `token`.
  SourceSpan spanOf(Token const& token) const;
  std::string describe(Token const& token) const;
  void skipNewlines();

  // Positions and ranges.
  Position startOf(Token const& token) const { return {token.offset, token.line, token.column}; }
  // Asked for every token taken: inline.
  Position lastOf(Token const& token) const {
    std::uint32_t characters = static_cast<std::uint32_t>(token.text.size());
    if (!token.ascii) {
      characters = 0;
      for (char c : token.text) {
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++characters;
      }
    }
    std::uint32_t const length = static_cast<std::uint32_t>(token.text.size());
    return {token.offset + (length > 0 ? length - 1 : 0), token.line,
            token.column + (characters > 0 ? characters - 1 : 0)};
  }
  template <class T>
  T* finish(T* node, Position first) {
    node->setSourceRange({first, lastEnd_});
    return node;
  }
  Position firstOf(Node const* node) const { return node->getSourceRange().first; }

  // Lists are gathered on one scratch stack and copied to the arena.
  std::size_t mark() const { return scratch_.size(); }
  template <class T>
  lf::astapi::NodeList<T> listFrom(std::size_t mark);

  // Text.
  ca::astapi::StringId intern(std::string_view name);
  ca::astapi::TextView text(std::string_view utf8);
  ca::ast::Identifier* identifier(Token const& token);
  ca::ast::Field* field(Token const& token);

  // Statements.
  void parseBody(BodyOf owner);
  bool endsBody(BodyOf owner);
  Node* parseStatement();
  void recover();
  void endStatement();
  Node* parseSimpleStatement();
  Node* parseCommand(Token const& name);
  bool isCommandSyntax(Token const& name);
  Node* parseImport(Token const& keyword);
  Node* parseMultiAssignment();
  bool startsMultiAssignment();
  Node* parseIf();
  Node* parseFor();
  Node* parseWhile();
  Node* parseSwitch();
  Node* parseTry();
  Node* parseSpmd();
  Node* parseDeclaration();
  /// The statements of a block, after its header's optional separator.
  lf::astapi::NodeList<ca::ast::Node> parseBlockBody();
  void endHeader();
  void expectEnd(Token const& opener);

  // Functions and classes.
  struct FunctionHeader {
    lf::astapi::NodeList<ca::ast::Identifier> outputs;
    ca::ast::Identifier* name = nullptr;
    lf::astapi::NodeList<ca::ast::InputArgument> inputs;
  };
  // Whether the outputs of a function are its variables, or only declared
  // (by a method declaration, which has no body).
  enum class OutputNames : std::uint8_t { Variables, Declared };
  /// The outputs before a function's or method's name: `[a, b] =`, `o =` or
  /// none. Empty when it failed, leaving what it read on the scratch stack.
  lf::astapi::NodeList<ca::ast::Identifier> parseOutputs(OutputNames names);
  /// Reads `function`'s line after the keyword, up to its end; false when it
  /// failed.
  bool parseFunctionHeader(FunctionHeader& header);
  /// A function or method, to its end. Null when it failed, or when its
  /// header failed: then the function was read whole and left out.
  Node* parseFunction(bool method, bool nested);
  ca::ast::Identifier* parseFunctionName();
  lf::astapi::NodeList<ca::ast::InputArgument> parseParameters();
  bool startsArgumentsBlock();
  ca::ast::ArgumentsBlock* parseArgumentsBlock();
  ca::ast::Argument* parseArgumentEntry();
  ca::ast::Validation* parseValidation();
  lf::astapi::NodeList<ca::ast::Attribute> parseAttributes();
  Node* parseClassdef();
  static bool isClassBlockHead(Token const& token);
  /// A block of a class body, its head known good.
  Node* parseClassBlock();
  Node* skipStrayClassMember();
  /// Skips statements up to the 'end' that closes the block being skipped
  /// (left for the caller), or up to a 'function' of that block when
  /// `atFunction`.
  void skipToEndOfBlock(bool atFunction);
  ca::ast::Property* parseProperty();
  ca::ast::Enumerator* parseEnumerator();
  Node* parseMethodDeclaration();
  Expression* parseDottedName();

  // Expressions. Each function that returns an expression leaves its height
  // (1 for a leaf) in height_.
  Expression* parseExpression();
  /// Makes `height` that of a node built on top of a chain, whose left child
  /// is `height` high and whose other children `childHeight`: `a.b.c`,
  /// `1 + 2 + 3`, `x(1){2}`. The parser loops along a chain rather than
  /// recursing, so the nesting limit counts the chain's height here; false,
  /// with an error, when the chain would nest deeper than the limit.
  bool chainLink(int& height, int childHeight, Token const& link);
  Expression* parseBinary(int minLevel);
  Expression* parseUnary();
  Expression* parsePower();
  Expression* parsePowerOperand();
  Expression* parsePostfix(Expression* base, Position first);
  Expression* parsePrimary();
  Expression* parseMatrix(bool cell);
  Expression* parseAnonymousFunction(Position first);
  /// The arguments of an index or call, on the scratch stack; their greatest
  /// height in height_.
  void parseArguments(TokenKind close);
  Expression* literal(Token const& token);
  Expression* number(Token const& token);
  bool splitsMatrixElement(Token const& op);

  // Scopes of variables, for telling command syntax from expressions.
  void openScope(bool inheritsParent);
  void closeScope();
  struct ScopeGuard {
    ScopeGuard(Parser& parser, bool inheritsParent) : parser_(parser) { parser_.openScope(inheritsParent); }
    ~ScopeGuard() { parser_.closeScope(); }
    Parser& parser_;
  };
  void defineVariable(std::string_view name);
  void defineTarget(Expression const* target);
  bool isVariable(std::string_view name);

  // The context of the brackets around an expression: in a matrix or cell
  // elements split at blanks, and inside an index `end` is the index's end.
  struct BracketContext {
    bool inMatrix = false;
    int indexDepth = 0;
  };
  // Puts a context in place for as long as it lives, and the one before back
  // on every way out, early returns after an error included.
  class BracketScope {
   public:
    BracketScope(Parser& parser, BracketContext context) : parser_(parser), saved_(parser.brackets_) {
      parser_.brackets_ = context;
    }
    BracketScope(BracketScope const&) = delete;
    BracketScope& operator=(BracketScope const&) = delete;
    ~BracketScope() { parser_.brackets_ = saved_; }

   private:
    Parser& parser_;
    BracketContext saved_;
  };

  // One level of nesting, for as long as it lives; when the limit is
  // reached it reports so and leaves the parser failed.
  struct Depth {
    explicit Depth(Parser& parser);
    ~Depth() {
      if (entered_) --parser_.depth_;
    }
    Parser& parser_;
    bool entered_;
  };

  // The names assigned so far in a function or script, asked only when a
  // statement might be command syntax. Assignments are many and cheap to
  // record; a scope with many names gets a hash index, built on from where it
  // stopped at each question, so that a script of many commands beside many
  // variables costs no more than its length.
  struct Scope {
    explicit Scope(bool inherits) : inheritsParent(inherits) {}
    bool holds(std::string_view name);

    std::vector<std::string_view> variables;  // in order, repeats and all
    std::unordered_set<std::string_view> index;
    std::size_t indexed = 0;  // how many of `variables` are in `index`
    bool inheritsParent;
  };

  std::string_view source_;
  std::string diagnosticPath_;
  std::u16string treePath_;
  FunctionStyle style_;
  Lexer lexer_;
  ca::astapi::TreeBuilder builder_;
  std::vector<Token> ring_ = std::vector<Token>(64);  // size: a power of two
  std::size_t ringMask_ = 63;
  std::size_t head_ = 0;
  std::size_t buffered_ = 0;
  Position lastEnd_{};
  std::vector<Diagnostic> diagnostics_;
  std::size_t errorCount_ = 0;
  // A syntax error was reported in the statement being parsed.
  bool failed_ = false;
  std::vector<Node const*> scratch_;
  // Where the statements of the file end on the scratch stack.
  std::size_t fileStatementsEnd_ = 0;
  std::vector<Scope> scopes_;
  int depth_ = 0;
  int height_ = 0;
  BracketContext brackets_;
};

}  // namespace frontend
