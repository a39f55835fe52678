#include "frontend/parser.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <optional>
#include <unordered_map>

#include "frontend/assignment_target.hpp"
#include "frontend/diagnostic_message.hpp"
#include "frontend/limits.hpp"
#include "frontend/number_literal.hpp"
#include "platform/i18n/i18n.hpp"

namespace frontend {

namespace ast = ca::ast;
using lf::astapi::BinaryOperator;
using lf::astapi::NodeKind;
using lf::astapi::NumericValue;
using lf::astapi::UnaryOperator;

namespace {

bool isStatementEnd(TokenKind kind) {
  return kind == TokenKind::Newline || kind == TokenKind::Semicolon || kind == TokenKind::Comma ||
         kind == TokenKind::EndOfFile;
}

// The precedence level of a binary token, from loosest (1) to tightest (8),
// and its operator; 0 for a token that is none. Level 6 is the colon of a
// range, which makes a ColonVector rather than a binary operation.
struct BinaryToken {
  int level;
  BinaryOperator op;
};

BinaryToken binaryTokenOf(TokenKind kind) {
  switch (kind) {
    case TokenKind::PipePipe: return {1, BinaryOperator::ShortCircuitOr};
    case TokenKind::AmpAmp: return {2, BinaryOperator::ShortCircuitAnd};
    case TokenKind::Pipe: return {3, BinaryOperator::ElementOr};
    case TokenKind::Amp: return {4, BinaryOperator::ElementAnd};
    case TokenKind::EqualEqual: return {5, BinaryOperator::Equal};
    case TokenKind::NotEqual: return {5, BinaryOperator::NotEqual};
    case TokenKind::Less: return {5, BinaryOperator::Less};
    case TokenKind::LessEqual: return {5, BinaryOperator::LessEqual};
    case TokenKind::Greater: return {5, BinaryOperator::Greater};
    case TokenKind::GreaterEqual: return {5, BinaryOperator::GreaterEqual};
    case TokenKind::Colon: return {6, BinaryOperator::Plus};
    case TokenKind::Plus: return {7, BinaryOperator::Plus};
    case TokenKind::Minus: return {7, BinaryOperator::Minus};
    case TokenKind::Star: return {8, BinaryOperator::MatrixTimes};
    case TokenKind::Slash: return {8, BinaryOperator::MatrixRightDivide};
    case TokenKind::Backslash: return {8, BinaryOperator::MatrixLeftDivide};
    case TokenKind::DotStar: return {8, BinaryOperator::ElementTimes};
    case TokenKind::DotSlash: return {8, BinaryOperator::ElementRightDivide};
    case TokenKind::DotBackslash: return {8, BinaryOperator::ElementLeftDivide};
    default: return {0, BinaryOperator::Plus};
  }
}

std::optional<UnaryOperator> prefixOperator(TokenKind kind) {
  switch (kind) {
    case TokenKind::Plus: return UnaryOperator::Plus;
    case TokenKind::Minus: return UnaryOperator::Minus;
    case TokenKind::Tilde:
    case TokenKind::Bang: return UnaryOperator::Not;
    default: return std::nullopt;
  }
}

// Whether a token can begin an expression; decides where a blank splits the
// elements of a matrix.
bool startsExpression(TokenKind kind) {
  switch (kind) {
    case TokenKind::Identifier:
    case TokenKind::Number:
    case TokenKind::CharVector:
    case TokenKind::String:
    case TokenKind::LeftParen:
    case TokenKind::LeftBracket:
    case TokenKind::LeftBrace:
    case TokenKind::At:
    case TokenKind::Question:
    case TokenKind::Plus:
    case TokenKind::Minus:
    case TokenKind::Tilde:
    case TokenKind::Bang:
    case TokenKind::End:
    case TokenKind::Colon: return true;
    default: return false;
  }
}

// A name, or a chain of fields on one: `obj`, `obj.method`, `pkg.sub.f`.
bool isDottedName(ast::Expression const* expression) {
  while (expression->getKind() == NodeKind::DotOperation) {
    expression = static_cast<ast::DotOperation const*>(expression)->getLeft();
  }
  return expression->getKind() == NodeKind::Identifier;
}

std::u16string widen(std::string_view utf8) {
  for (char c : utf8) {
    if (static_cast<unsigned char>(c) >= 0x80) return fl::i18n::to_ustring(std::string(utf8));
  }
  return std::u16string(utf8.begin(), utf8.end());
}

// The value of a text literal: the quotes removed and doubled quotes undone.
std::string unquote(std::string_view token) {
  char const quote = token.front();
  std::string value;
  value.reserve(token.size());
  for (std::size_t i = 1; i + 1 < token.size(); ++i) {
    value += token[i];
    if (token[i] == quote) ++i;
  }
  return value;
}

}  // namespace

Parser::Parser(std::string_view source, std::string_view path, FunctionStyle style)
    : source_(source),
      diagnosticPath_(path),
      treePath_(fl::i18n::to_ustring(std::string(path))),
      style_(style),
      lexer_(source) {}

Parser::Depth::Depth(Parser& parser) : parser_(parser), entered_(parser.depth_ < maxNestingDepth) {
  if (!entered_) {
    Token const token = parser_.peek();
    parser_.fail<DiagnosticKind::NestingTooDeep>(token, maxNestingDepth);
    return;
  }
  ++parser_.depth_;
}

// ---------------------------------------------------------------------------
// Tokens and diagnostics

Token const& Parser::fill(std::size_t ahead) {
  if (ahead >= ring_.size()) {
    // Grow, keeping the tokens in order from the start of the new ring.
    std::vector<Token> grown(ring_.size() * 2 > ahead ? ring_.size() * 2 : std::bit_ceil(ahead + 1));
    for (std::size_t i = 0; i < buffered_; ++i) grown[i] = ring_[(head_ + i) & (ring_.size() - 1)];
    ring_ = std::move(grown);
    ringMask_ = ring_.size() - 1;
    head_ = 0;
  }
  while (buffered_ <= ahead) {
    ring_[(head_ + buffered_) & ringMask_] = lexer_.next();
    ++buffered_;
  }
  return ring_[(head_ + ahead) & ringMask_];
}

Token Parser::take() {
  if (buffered_ == 0) fill(0);
  Token const token = ring_[head_];
  head_ = (head_ + 1) & ringMask_;
  --buffered_;
  if (token.kind != TokenKind::EndOfFile && token.kind != TokenKind::Newline) lastEnd_ = lastOf(token);
  return token;
}

bool Parser::accept(TokenKind kind) {
  if (!at(kind)) return false;
  take();
  return true;
}

Token Parser::expect(TokenKind kind, std::string_view context) {
  if (!at(kind)) {
    Token const found = peek();
    unexpected(found, fmt::format("{} {}", describeKind(kind), context));
    return found;
  }
  return take();
}

std::string Parser::describe(Token const& token) const {
  switch (token.kind) {
    case TokenKind::Identifier: return fmt::format("identifier '{}'", token.text);
    case TokenKind::Number: return fmt::format("number {}", token.text);
    case TokenKind::CharVector:
    case TokenKind::String: return fmt::format("{} {}", describeKind(token.kind), token.text);
    default: return std::string(describeKind(token.kind));
  }
}

SourceSpan Parser::spanOf(Token const& token) const {
  SourcePosition const start{token.offset, token.line, token.column};
  // A line end or the end of the file has no characters to point at.
  if (token.kind == TokenKind::Newline || token.kind == TokenKind::EndOfFile) return {start, start};
  return {start, {token.endOffset(), token.line, lastOf(token).column + 1}};
}

void Parser::report(DiagnosticKind kind, SourceSpan const& span, std::string message) {
  if (definitionOf(kind).severity == Severity::Error) {
    if (errorCount_ == maxErrorsPerFile) {
      diagnostics_.push_back(
          makeDiagnostic<DiagnosticKind::TooManyErrors>(diagnosticPath_, {span.start, span.start}, maxErrorsPerFile));
      ++errorCount_;
      throw TooManyErrors{};
    }
    ++errorCount_;
  }
  diagnostics_.push_back(makeDiagnostic(kind, diagnosticPath_, span, std::move(message)));
}

template <DiagnosticKind kind, class... Args>
void Parser::report(SourceSpan const& span, Args const&... args) {
  report(kind, span, diagnosticMessage<kind>(args...));
}

template <DiagnosticKind kind, class... Args>
void Parser::fail(Token const& token, Args const&... args) {
  if (failed_) return;  // only the first fault of a statement is reported
  failed_ = true;
  report<kind>(spanOf(token), args...);
}

template <DiagnosticKind kind, class... Args>
void Parser::unexpected(Token const& found, Args const&... args) {
  if (failed_) return;
  if (found.kind == TokenKind::Error) {
    // Text the lexer could not read: its own error says best what is wrong.
    Lexer::Error const& error = lexer_.errorOf(found);
    failed_ = true;
    report(error.kind, spanOf(found), error.message);
    return;
  }
  fail<kind>(found, args..., describe(found));
}

void Parser::unexpected(Token const& found, std::string_view expected) {
  unexpected<DiagnosticKind::UnexpectedToken>(found, expected);
}

bool Parser::recovered(std::size_t statementMark) {
  if (!failed_) return false;
  failed_ = false;
  scratch_.resize(statementMark);
  recover();
  return true;
}

void Parser::skipNewlines() {
  while (at(TokenKind::Newline)) take();
}

// ---------------------------------------------------------------------------
// Arena helpers

template <class T>
lf::astapi::NodeList<T> Parser::listFrom(std::size_t from) {
  auto list = builder_.listFrom<T>(std::span<Node const* const>(scratch_.data() + from, scratch_.size() - from));
  scratch_.resize(from);
  return list;
}

namespace {
// Names seen by the parsers of this thread, so that a name costs one lookup
// in the process-wide pool per thread rather than per file.
struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>{}(name); }
};
using NameCache = std::unordered_map<std::string, ca::astapi::StringId, NameHash, std::equal_to<>>;
}  // namespace

ca::astapi::StringId Parser::intern(std::string_view name) {
  thread_local NameCache cache;
  if (auto found = cache.find(name); found != cache.end()) return found->second;
  ca::astapi::StringId const id(widen(name));
  cache.emplace(std::string(name), id);
  return id;
}

ca::astapi::TextView Parser::text(std::string_view utf8) {
  for (char c : utf8) {
    if (static_cast<unsigned char>(c) >= 0x80) return builder_.text(fl::i18n::to_ustring(std::string(utf8)));
  }
  return builder_.asciiText(utf8);
}

ast::Identifier* Parser::identifier(Token const& token) {
  height_ = 1;
  auto* node = builder_.make<ast::Identifier>(intern(token.text));
  node->setSourceRange({startOf(token), lastOf(token)});
  return node;
}

ast::Field* Parser::field(Token const& token) {
  auto* node = builder_.make<ast::Field>(intern(token.text));
  node->setSourceRange({startOf(token), lastOf(token)});
  return node;
}

// ---------------------------------------------------------------------------
// Scopes

void Parser::openScope(bool inheritsParent) { scopes_.emplace_back(inheritsParent); }
void Parser::closeScope() { scopes_.pop_back(); }

void Parser::defineVariable(std::string_view name) {
  if (!scopes_.empty()) scopes_.back().variables.push_back(name);
}

void Parser::defineTarget(Expression const* target) {
  if (ast::Identifier const* head = headOf(target).identifier) {
    auto const range = head->getSourceRange();
    defineVariable(source_.substr(range.first.offset, range.last.offset - range.first.offset + 1));
  }
}

bool Parser::Scope::holds(std::string_view name) {
  // A few names are found fastest by looking at each.
  constexpr std::size_t fewNames = 16;
  if (variables.size() <= fewNames) return std::find(variables.begin(), variables.end(), name) != variables.end();
  for (; indexed < variables.size(); ++indexed) index.insert(variables[indexed]);
  return index.contains(name);
}

bool Parser::isVariable(std::string_view name) {
  for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
    if (scope->holds(name)) return true;
    if (!scope->inheritsParent) break;
  }
  return false;
}

// ---------------------------------------------------------------------------
// The file

std::shared_ptr<ca::astapi::SyntaxTree const> Parser::parseFile() {
  ScopeGuard scope(*this, false);
  std::size_t const body = mark();
  fileStatementsEnd_ = body;
  ca::FileType type = ca::FileType::Script;
  try {
    skipNewlines();
    if (at(TokenKind::Function)) type = ca::FileType::Function;
    if (at(TokenKind::Classdef)) type = ca::FileType::Class;
    parseBody(BodyOf::File);
  } catch (TooManyErrors const&) {
    // Stop: the statements parsed so far are kept.
    scratch_.resize(fileStatementsEnd_);
  }
  auto* program = builder_.make<ast::Program>(builder_.text(treePath_), listFrom<Node>(body));
  lf::astapi::SourcePosition const first{0, 1, 1};
  lf::astapi::SourcePosition const last = source_.empty() ? first : lexer_.lastCharacter();
  program->setSourceRange({first, last});
  return builder_.finish(program, type);
}

bool Parser::endsBody(BodyOf owner) {
  TokenKind const kind = peek().kind;
  switch (owner) {
    case BodyOf::File: return kind == TokenKind::EndOfFile;
    case BodyOf::Function:
      if (kind == TokenKind::EndOfFile) return true;
      if (style_ == FunctionStyle::Terminated) return kind == TokenKind::End;
      return kind == TokenKind::Function;
    case BodyOf::Block:
      // A function here means the block's 'end' is missing.
      return kind == TokenKind::EndOfFile || kind == TokenKind::Function || isBlockCloser(kind);
  }
  return true;
}

void Parser::parseBody(BodyOf owner) {
  while (true) {
    skipNewlines();
    if (endsBody(owner)) return;
    Token const next = peek();
    std::size_t const statement = mark();
    if (isBlockCloser(next.kind)) {
      // A closer that no open block expects.
      take();
      report<DiagnosticKind::StrayBlockCloser>(spanOf(next), describeKind(next.kind));
      continue;
    }
    Node* node = nullptr;
    if (next.kind == TokenKind::Function) {
      node = parseFunction(false, owner == BodyOf::Function);
    } else if (next.kind == TokenKind::Classdef && owner != BodyOf::File) {
      fail<DiagnosticKind::ClassdefNotFirst>(next);
    } else {
      node = parseStatement();
    }
    if (recovered(statement) || node == nullptr) continue;  // null: read, but left out after a fault
    scratch_.push_back(node);
    if (owner == BodyOf::File) fileStatementsEnd_ = mark();
  }
}

void Parser::recover() {
  // Abandon the statement: skip to the end of its line (or a ';'), and forget
  // any context it had opened.
  lexer_.forgetBrackets();
  brackets_ = {};
  bool first = true;
  while (true) {
    TokenKind const kind = peek().kind;
    if (kind == TokenKind::EndOfFile) return;
    if (kind == TokenKind::Newline || kind == TokenKind::Semicolon) {
      take();
      return;
    }
    // Keep a keyword that closes a block for the block, unless the error was
    // on that very keyword.
    if (!first && isBlockCloser(kind)) return;
    take();
    first = false;
  }
}

void Parser::endStatement() {
  TokenKind const kind = peek().kind;
  if (kind == TokenKind::Semicolon || kind == TokenKind::Comma || kind == TokenKind::Newline) {
    take();
    return;
  }
  // A block may close on the line of its last statement: `if x, y = 1, end`.
  if (kind == TokenKind::EndOfFile || isBlockCloser(kind)) return;
  unexpected<DiagnosticKind::MissingStatementEnd>(peek());
}

Parser::Node* Parser::parseStatement() {
  Depth depth(*this);
  if (failed_) return nullptr;
  Token const& token = peek();
  switch (token.kind) {
    case TokenKind::If: return parseIf();
    case TokenKind::For:
    case TokenKind::Parfor: return parseFor();
    case TokenKind::While: return parseWhile();
    case TokenKind::Switch: return parseSwitch();
    case TokenKind::Try: return parseTry();
    case TokenKind::Spmd: return parseSpmd();
    case TokenKind::Global:
    case TokenKind::Persistent: return parseDeclaration();
    case TokenKind::Classdef: return parseClassdef();
    case TokenKind::Break:
    case TokenKind::Continue:
    case TokenKind::Return: {
      Token const keyword = take();
      Node* node = nullptr;
      if (keyword.kind == TokenKind::Break) node = builder_.make<ast::BreakStatement>();
      if (keyword.kind == TokenKind::Continue) node = builder_.make<ast::ContinueStatement>();
      if (keyword.kind == TokenKind::Return) node = builder_.make<ast::ReturnStatement>();
      finish(node, startOf(keyword));
      endStatement();
      return failed_ ? nullptr : node;
    }
    case TokenKind::Semicolon:
    case TokenKind::Comma: {
      Token const separator = take();
      return finish(builder_.make<ast::EmptyStatement>(), startOf(separator));
    }
    case TokenKind::Bang: {
      Token const bang = take();
      dropLookahead();
      std::string_view const command = lexer_.readRestOfLine();
      auto* node = builder_.make<ast::BangStatement>(text(command));
      Token whole = bang;
      whole.text = source_.substr(bang.offset, command.size() + 1);
      whole.ascii = false;
      Position const last = lastOf(whole);
      node->setSourceRange({startOf(bang), last});
      lastEnd_ = last;
      endStatement();
      return failed_ ? nullptr : node;
    }
    default: return parseSimpleStatement();
  }
}

Parser::Node* Parser::parseSimpleStatement() {
  Token const first = peek();
  if (first.kind == TokenKind::Identifier && buffered() == 1) {
    if (first.text == "import" && isCommandSyntax(first)) return parseImport(take());
    if (isCommandSyntax(first)) return parseCommand(take());
  }
  if (first.kind == TokenKind::LeftBracket && startsMultiAssignment()) return parseMultiAssignment();

  Position const start = startOf(first);
  Expression* expression = parseExpression();
  if (failed_) return nullptr;
  if (at(TokenKind::Assign)) {
    switch (expression->getKind()) {
      case NodeKind::Identifier:
      case NodeKind::ParenOperation:
      case NodeKind::BraceOperation:
      case NodeKind::DotOperation:
      case NodeKind::DotParenOperation: break;
      default: fail<DiagnosticKind::BadAssignmentTarget>(peek()); return nullptr;
    }
    take();
    Expression* value = parseExpression();
    if (failed_) return nullptr;
    defineTarget(expression);
    auto* node = finish(builder_.make<ast::Assignment>(expression, value), start);
    endStatement();
    return failed_ ? nullptr : node;
  }
  bool const shown = !at(TokenKind::Semicolon);
  Node* node = shown ? static_cast<Node*>(builder_.make<ast::PrintStatement>(expression))
                     : static_cast<Node*>(builder_.make<ast::ExpressionStatement>(expression));
  finish(node, start);
  endStatement();
  return failed_ ? nullptr : node;
}

bool Parser::isCommandSyntax(Token const& name) {
  // Only the name has been read; look at the raw text after it.
  auto at = [this](std::size_t i) { return i < source_.size() ? source_[i] : '\n'; };
  std::size_t i = name.endOffset();
  if (at(i) != ' ' && at(i) != '\t') return false;
  while (at(i) == ' ' || at(i) == '\t') ++i;
  char const c = at(i);
  if (c == '\n' || c == '\r' || c == ';' || c == ',' || c == '%' || c == '(') return false;
  if (c == '=' && at(i + 1) != '=') return false;
  if (source_.substr(i, 3) == "...") return false;
  if (isVariable(name.text)) return false;
  // An operator with a blank after it is a binary operation: `a - b`, `a == b`.
  static constexpr std::string_view operators[] = {"&&", "||", "==", "~=", "<=", ">=", ".*", "./", ".\\", ".^", "+",
                                                   "-",  "*",  "/",  "\\", "^",  "<",  ">",  "&",  "|",   ":"};
  for (std::string_view op : operators) {
    if (source_.substr(i, op.size()) == op) {
      char const after = at(i + op.size());
      return !(after == ' ' || after == '\t' || after == '\n' || after == '\r');
    }
  }
  return true;
}

Parser::Node* Parser::parseCommand(Token const& name) {
  dropLookahead();
  auto* function = identifier(name);
  std::size_t const args = mark();
  Lexer::Word word;
  while (lexer_.nextCommandWord(word)) {
    auto* argument = builder_.make<ast::CharVectorLiteral>(text(word.text));
    std::uint32_t characters = 0;
    for (std::uint32_t k = 0; k < word.length; ++k) {
      if ((static_cast<unsigned char>(source_[word.offset + k]) & 0xC0) != 0x80) ++characters;
    }
    Position const last{word.offset + word.length - 1, word.line, word.column + characters - 1};
    argument->setSourceRange({{word.offset, word.line, word.column}, last});
    lastEnd_ = last;
    scratch_.push_back(argument);
  }
  auto* node = finish(builder_.make<ast::CommandInvocation>(function, listFrom<Expression>(args)), startOf(name));
  endStatement();
  return failed_ ? nullptr : node;
}

Parser::Node* Parser::parseImport(Token const& keyword) {
  std::size_t const parts = mark();
  Token const part = expect(TokenKind::Identifier, "after 'import'");
  if (failed_) return nullptr;
  scratch_.push_back(identifier(part));
  auto wildcard = [this] {
    Token const star = take();
    auto* node = builder_.make<ast::Identifier>(intern("*"));
    Position const last = lastOf(star);  // the '*' of ".*" or of "*"
    node->setSourceRange({last, last});
    scratch_.push_back(node);
  };
  while (true) {
    // The lexer reads ".*" as one operator: here it is a dot and a wildcard.
    if (at(TokenKind::DotStar)) {
      wildcard();
      break;
    }
    if (!accept(TokenKind::Dot)) break;
    if (at(TokenKind::Star)) {
      wildcard();
      break;
    }
    Token const next = expect(TokenKind::Identifier, "after '.' in an import");
    if (failed_) return nullptr;
    scratch_.push_back(identifier(next));
  }
  auto* node = finish(builder_.make<ast::ImportCommand>(listFrom<ast::Identifier>(parts)), startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

bool Parser::startsMultiAssignment() {
  // [a, b] = ... : find the matching ']' on this line, then '='.
  int depth = 0;
  for (std::size_t k = 0;; ++k) {
    TokenKind const kind = peek(k).kind;
    if (kind == TokenKind::EndOfFile || kind == TokenKind::Newline || kind == TokenKind::Error) return false;
    if (kind == TokenKind::LeftBracket || kind == TokenKind::LeftParen || kind == TokenKind::LeftBrace) ++depth;
    if (kind == TokenKind::RightBracket || kind == TokenKind::RightParen || kind == TokenKind::RightBrace) {
      if (--depth == 0) return peek(k + 1).kind == TokenKind::Assign;
    }
  }
}

Parser::Node* Parser::parseMultiAssignment() {
  Token const open = take();
  std::size_t const outputs = mark();
  {
    // Outputs split at blanks as the elements of a matrix do.
    BracketScope const matrix(*this, {.inMatrix = true, .indexDepth = brackets_.indexDepth});
    while (!at(TokenKind::RightBracket)) {
      if (accept(TokenKind::Comma)) continue;
      if (at(TokenKind::Tilde) || at(TokenKind::Bang)) {
        Token const tilde = take();
        scratch_.push_back(finish(builder_.make<ast::Ignored>(), startOf(tilde)));
        continue;
      }
      Token const first = peek();
      if (first.kind != TokenKind::Identifier) {
        unexpected(first, "an output variable");
        return nullptr;
      }
      Expression* target = parsePostfix(identifier(take()), startOf(first));
      if (failed_) return nullptr;
      scratch_.push_back(target);
    }
  }
  take();
  expect(TokenKind::Assign, "after the outputs");
  if (failed_) return nullptr;
  Expression* value = parseExpression();
  if (failed_) return nullptr;
  auto list = listFrom<Expression>(outputs);
  for (Expression const* target : list) defineTarget(target);
  auto* node = finish(builder_.make<ast::MultiLhsAssignment>(list, value), startOf(open));
  endStatement();
  return failed_ ? nullptr : node;
}

lf::astapi::NodeList<ca::ast::Node> Parser::parseBlockBody() {
  endHeader();
  std::size_t const body = mark();
  parseBody(BodyOf::Block);
  return listFrom<Node>(body);
}

void Parser::endHeader() {
  // `if x, y = 1, end`: one separator after a block's header is part of it.
  if (at(TokenKind::Comma) || at(TokenKind::Semicolon)) take();
}

void Parser::expectEnd(Token const& opener) {
  if (at(TokenKind::End)) {
    take();
    return;
  }
  // A missing 'end' closes the construct where it stands, without throwing,
  // so that what follows is parsed as it is.
  Token const& found = peek();
  report<DiagnosticKind::MissingEnd>(spanOf(found), describeKind(opener.kind), opener.line, opener.column,
                                     describe(found));
}

Parser::Node* Parser::parseIf() {
  Token const keyword = take();
  Expression* condition = parseExpression();
  if (failed_) return nullptr;
  auto bodyList = parseBlockBody();
  std::size_t const elseifs = mark();
  while (at(TokenKind::Elseif)) {
    Depth branch(*this);  // a branch is a level of the tree between its statement and its body
    if (failed_) return nullptr;
    Token const elseif = take();
    Expression* elseifCondition = parseExpression();
    if (failed_) return nullptr;
    auto list = parseBlockBody();
    scratch_.push_back(finish(builder_.make<ast::ElseifBlock>(elseifCondition, list), startOf(elseif)));
  }
  auto elseifList = listFrom<ast::ElseifBlock>(elseifs);
  ast::ElseBlock* elseBlock = nullptr;
  if (at(TokenKind::Else)) {
    Depth branch(*this);
    if (failed_) return nullptr;
    Token const elseToken = take();
    elseBlock = finish(builder_.make<ast::ElseBlock>(parseBlockBody()), startOf(elseToken));
  }
  expectEnd(keyword);
  auto* node = finish(builder_.make<ast::IfStatement>(condition, bodyList, elseifList, elseBlock), startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

Parser::Node* Parser::parseFor() {
  Token const keyword = take();
  bool const parfor = keyword.kind == TokenKind::Parfor;
  bool const parenthesized = accept(TokenKind::LeftParen);
  Token const variableToken = expect(TokenKind::Identifier, "as the loop variable");
  if (failed_) return nullptr;
  ast::Identifier* variable = identifier(variableToken);
  defineVariable(variableToken.text);
  expect(TokenKind::Assign, "after the loop variable");
  if (failed_) return nullptr;
  Expression* range = parseExpression();
  if (failed_) return nullptr;
  Expression* option = nullptr;
  if (parenthesized) {
    if (parfor && accept(TokenKind::Comma)) {
      option = parseExpression();
      if (failed_) return nullptr;
    }
    expect(TokenKind::RightParen, "to close the loop header");
    if (failed_) return nullptr;
  }
  std::size_t const options = mark();
  if (option != nullptr) scratch_.push_back(option);
  auto optionList = listFrom<Expression>(options);
  auto bodyList = parseBlockBody();
  expectEnd(keyword);
  Node* node = parfor ? static_cast<Node*>(builder_.make<ast::ParforStatement>(variable, range, optionList, bodyList))
                      : static_cast<Node*>(builder_.make<ast::ForStatement>(variable, range, bodyList));
  finish(node, startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

Parser::Node* Parser::parseWhile() {
  Token const keyword = take();
  Expression* condition = parseExpression();
  if (failed_) return nullptr;
  auto bodyList = parseBlockBody();
  expectEnd(keyword);
  auto* node = finish(builder_.make<ast::WhileStatement>(condition, bodyList), startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

Parser::Node* Parser::parseSwitch() {
  Token const keyword = take();
  Expression* subject = parseExpression();
  if (failed_) return nullptr;
  while (at(TokenKind::Newline) || at(TokenKind::Semicolon) || at(TokenKind::Comma)) take();
  std::size_t const cases = mark();
  while (at(TokenKind::Case)) {
    Depth branch(*this);
    if (failed_) return nullptr;
    Token const caseToken = take();
    Expression* value = parseExpression();
    if (failed_) return nullptr;
    auto list = parseBlockBody();
    scratch_.push_back(finish(builder_.make<ast::CaseSelection>(value, list), startOf(caseToken)));
  }
  auto caseList = listFrom<ast::CaseSelection>(cases);
  ast::OtherwiseBlock* otherwise = nullptr;
  if (at(TokenKind::Otherwise)) {
    Depth branch(*this);
    if (failed_) return nullptr;
    Token const otherwiseToken = take();
    otherwise = finish(builder_.make<ast::OtherwiseBlock>(parseBlockBody()), startOf(otherwiseToken));
  }
  expectEnd(keyword);
  auto* node = finish(builder_.make<ast::SwitchStatement>(subject, caseList, otherwise), startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

Parser::Node* Parser::parseTry() {
  Token const keyword = take();
  auto bodyList = parseBlockBody();
  ast::CatchBlock* catchBlock = nullptr;
  if (at(TokenKind::Catch)) {
    Depth branch(*this);
    if (failed_) return nullptr;
    Token const catchToken = take();
    ast::Identifier* errorVariable = nullptr;
    // `catch err`: an identifier on the catch line that ends the line is the
    // variable of the error; anything else starts the body.
    if (at(TokenKind::Identifier) && isStatementEnd(peek(1).kind)) {
      Token const name = take();
      errorVariable = identifier(name);
      defineVariable(name.text);
    }
    catchBlock = finish(builder_.make<ast::CatchBlock>(errorVariable, parseBlockBody()), startOf(catchToken));
  }
  expectEnd(keyword);
  auto* node = finish(builder_.make<ast::TryStatement>(bodyList, catchBlock), startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

Parser::Node* Parser::parseSpmd() {
  Token const keyword = take();
  std::size_t const args = mark();
  if (at(TokenKind::LeftParen)) {
    parseArguments(TokenKind::RightParen);
    if (failed_) return nullptr;
  }
  auto argumentList = listFrom<Expression>(args);
  auto bodyList = parseBlockBody();
  expectEnd(keyword);
  auto* node = finish(builder_.make<ast::SpmdStatement>(argumentList, bodyList), startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

Parser::Node* Parser::parseDeclaration() {
  Token const keyword = take();
  std::size_t const names = mark();
  while (at(TokenKind::Identifier)) {
    Token const name = take();
    defineVariable(name.text);
    scratch_.push_back(identifier(name));
  }
  auto list = listFrom<ast::Identifier>(names);
  Node* node = keyword.kind == TokenKind::Global ? static_cast<Node*>(builder_.make<ast::GlobalStatement>(list))
                                                 : static_cast<Node*>(builder_.make<ast::PersistentStatement>(list));
  finish(node, startOf(keyword));
  endStatement();
  return failed_ ? nullptr : node;
}

// ---------------------------------------------------------------------------
// Functions

ast::Identifier* Parser::parseFunctionName() {
  // A name, or a dotted one for property accessors: get.Prop, set.Prop. A
  // method named `end` overloads `end` in the indices of its class's objects.
  if (at(TokenKind::End)) return identifier(take());
  Token const first = expect(TokenKind::Identifier, "as the function name");
  if (failed_) return nullptr;
  if (!at(TokenKind::Dot) || peek().spaceBefore) return identifier(first);
  std::uint32_t end = first.endOffset();
  while (at(TokenKind::Dot) && !peek().spaceBefore) {
    take();
    Token const part = peek();
    if (part.kind != TokenKind::Identifier && !isKeyword(part.kind)) {
      unexpected(part, "a name after '.'");
      return nullptr;
    }
    take();
    end = part.endOffset();
  }
  auto* node = builder_.make<ast::Identifier>(intern(source_.substr(first.offset, end - first.offset)));
  return finish(node, startOf(first));
}

lf::astapi::NodeList<ast::InputArgument> Parser::parseParameters() {
  std::size_t const inputs = mark();
  if (!at(TokenKind::LeftParen)) return listFrom<ast::InputArgument>(inputs);
  take();
  while (!at(TokenKind::RightParen)) {
    Token const token = peek();
    if (token.kind == TokenKind::Tilde || token.kind == TokenKind::Bang) {
      take();
      auto* ignored = finish(builder_.make<ast::Ignored>(), startOf(token));
      scratch_.push_back(finish(builder_.make<ast::InputArgument>(ignored), startOf(token)));
    } else if (token.kind == TokenKind::Identifier) {
      take();
      defineVariable(token.text);
      scratch_.push_back(finish(builder_.make<ast::InputArgument>(identifier(token)), startOf(token)));
    } else {
      unexpected(token, "an input name or '~'");
      return {};
    }
    if (!accept(TokenKind::Comma)) break;
  }
  expect(TokenKind::RightParen, "to close the inputs");
  return listFrom<ast::InputArgument>(inputs);
}

lf::astapi::NodeList<ast::Identifier> Parser::parseOutputs(OutputNames names) {
  // [a, b] = name, o = name, or none.
  std::size_t const outputs = mark();
  auto output = [this, names](Token const& name) {
    if (names == OutputNames::Variables) defineVariable(name.text);
    scratch_.push_back(identifier(name));
  };
  if (at(TokenKind::LeftBracket)) {
    take();
    while (!at(TokenKind::RightBracket)) {
      if (accept(TokenKind::Comma)) continue;
      Token const name = expect(TokenKind::Identifier, "as an output name");
      if (failed_) return {};
      output(name);
    }
    take();
    expect(TokenKind::Assign, "after the outputs");
    if (failed_) return {};
  } else if (at(TokenKind::Identifier) && peek(1).kind == TokenKind::Assign) {
    output(take());
    take();
  }
  return listFrom<ast::Identifier>(outputs);
}

bool Parser::parseFunctionHeader(FunctionHeader& header) {
  header.outputs = parseOutputs(OutputNames::Variables);
  if (failed_) return false;
  header.name = parseFunctionName();
  if (failed_) return false;
  header.inputs = parseParameters();
  return !failed_;
}

Parser::Node* Parser::parseFunction(bool method, bool nested) {
  Depth depth(*this);
  if (failed_) return nullptr;
  Token const keyword = take();
  ScopeGuard scope(*this, nested);
  // A fault in the header costs the rest of its line, and the function is
  // read to its end and left out of the tree: reading its body as statements
  // of the block around it would report every line of it. A fault after the
  // header, or in an arguments block, costs the rest of its line only.
  std::size_t const start = mark();
  FunctionHeader header;
  bool const headerRead = parseFunctionHeader(header);
  if (headerRead) endStatement();
  if (failed_) {
    failed_ = false;
    scratch_.resize(start);
    recover();
  }
  std::size_t const blocks = mark();
  skipNewlines();
  while (!failed_ && startsArgumentsBlock()) {
    std::size_t const block = mark();
    ast::ArgumentsBlock* arguments = parseArgumentsBlock();
    if (failed_) {
      scratch_.resize(block);
      break;
    }
    scratch_.push_back(arguments);
    skipNewlines();
  }
  if (failed_) {
    failed_ = false;
    recover();
  }
  auto blockList = listFrom<ast::ArgumentsBlock>(blocks);
  std::size_t const body = mark();
  FunctionStyle const fileStyle = style_;
  if (method) style_ = FunctionStyle::Terminated;  // methods always end with 'end'
  parseBody(BodyOf::Function);
  auto bodyList = listFrom<Node>(body);
  if (style_ == FunctionStyle::Terminated) expectEnd(keyword);
  style_ = fileStyle;

  Node* node = nullptr;
  if (headerRead) {
    node = method ? static_cast<Node*>(builder_.make<ast::MethodDefinition>(header.name, header.inputs, header.outputs,
                                                                            blockList, bodyList))
                  : static_cast<Node*>(
                        builder_.make<ast::Function>(header.name, header.inputs, header.outputs, blockList, bodyList));
    finish(node, startOf(keyword));
  }
  if (at(TokenKind::Semicolon) || at(TokenKind::Comma)) take();
  return node;
}

bool Parser::startsArgumentsBlock() {
  Token const& token = peek();
  if (token.kind != TokenKind::Identifier) return false;
  if (contextualKeyword(token.text) != ContextualKeyword::Arguments) return false;
  TokenKind const next = peek(1).kind;
  return next == TokenKind::Newline || next == TokenKind::LeftParen || next == TokenKind::Semicolon ||
         next == TokenKind::Comma || next == TokenKind::EndOfFile;
}

lf::astapi::NodeList<ast::Attribute> Parser::parseAttributes() {
  std::size_t const attributes = mark();
  if (!at(TokenKind::LeftParen)) return listFrom<ast::Attribute>(attributes);
  take();
  {
    BracketScope const parentheses(*this, {.inMatrix = false, .indexDepth = brackets_.indexDepth});
    while (!at(TokenKind::RightParen)) {
      skipNewlines();
      Token const first = peek();
      bool const negated = accept(TokenKind::Tilde) || accept(TokenKind::Bang);
      Token const nameToken = expect(TokenKind::Identifier, "as an attribute name");
      if (failed_) return {};
      ast::Identifier* name = identifier(nameToken);
      Expression* value = nullptr;
      if (accept(TokenKind::Assign)) {
        value = parseExpression();
        if (failed_) return {};
      }
      scratch_.push_back(finish(builder_.make<ast::Attribute>(name, value, negated), startOf(first)));
      skipNewlines();
      if (!accept(TokenKind::Comma)) break;
    }
  }
  expect(TokenKind::RightParen, "to close the attributes");
  return listFrom<ast::Attribute>(attributes);
}

ast::ArgumentsBlock* Parser::parseArgumentsBlock() {
  Token const keyword = take();
  auto attributes = parseAttributes();
  if (failed_) return nullptr;
  std::size_t const entries = mark();
  while (true) {
    while (at(TokenKind::Newline) || at(TokenKind::Semicolon) || at(TokenKind::Comma)) take();
    if (at(TokenKind::End) || at(TokenKind::EndOfFile)) break;
    std::size_t const entry = mark();
    ast::Argument* argument = parseArgumentEntry();
    if (!failed_) endStatement();
    if (recovered(entry)) continue;
    scratch_.push_back(argument);
  }
  auto list = listFrom<ast::Argument>(entries);
  expectEnd(keyword);
  return finish(builder_.make<ast::ArgumentsBlock>(attributes, list), startOf(keyword));
}

ast::Argument* Parser::parseArgumentEntry() {
  // `~` stands for an input the function ignores, as in its signature; it
  // has no fields to name, but may have a validation.
  Token const nameToken = peek();
  bool const ignored = nameToken.kind == TokenKind::Tilde || nameToken.kind == TokenKind::Bang;
  if (ignored) {
    take();
  } else {
    expect(TokenKind::Identifier, "as an argument name or '~'");
    if (failed_) return nullptr;
  }
  auto* name = ignored ? builder_.make<ast::InputArgument>(finish(builder_.make<ast::Ignored>(), startOf(nameToken)))
                       : builder_.make<ast::InputArgument>(identifier(nameToken));
  finish(name, startOf(nameToken));
  ast::Field* fieldPart = nullptr;
  Expression* classPart = nullptr;
  if (!ignored && at(TokenKind::Dot) && !peek().spaceBefore) {
    take();
    if (accept(TokenKind::Question)) {
      classPart = parseDottedName();
      if (failed_) return nullptr;
    } else {
      Token const fieldName = peek();
      if (fieldName.kind != TokenKind::Identifier && !isKeyword(fieldName.kind)) {
        unexpected(fieldName, "a field name");
        return nullptr;
      }
      fieldPart = field(take());
    }
  }
  ast::Validation* validation = parseValidation();
  if (failed_) return nullptr;
  Expression* defaultValue = nullptr;
  if (accept(TokenKind::Assign)) {
    defaultValue = parseExpression();
    if (failed_) return nullptr;
  }
  return finish(builder_.make<ast::Argument>(name, fieldPart, classPart, validation, defaultValue), startOf(nameToken));
}

ast::Validation* Parser::parseValidation() {
  // (dims) Class {validators}, each part optional, all on the entry's line.
  Token const first = peek();
  std::size_t const dimensions = mark();
  bool any = false;
  if (at(TokenKind::LeftParen)) {
    any = true;
    take();
    while (!at(TokenKind::RightParen)) {
      Token const dimension = peek();
      if (dimension.kind == TokenKind::Colon) {
        take();
        scratch_.push_back(finish(builder_.make<ast::AnySize>(), startOf(dimension)));
      } else {
        Expression* size = parseExpression();
        if (failed_) return nullptr;
        scratch_.push_back(size);
      }
      if (!accept(TokenKind::Comma)) break;
    }
    expect(TokenKind::RightParen, "to close the size");
    if (failed_) return nullptr;
  }
  auto dimensionList = listFrom<Expression>(dimensions);
  Expression* className = nullptr;
  if (at(TokenKind::Identifier)) {
    any = true;
    className = parseDottedName();
    if (failed_) return nullptr;
  }
  std::size_t const validators = mark();
  if (at(TokenKind::LeftBrace)) {
    any = true;
    take();
    {
      BracketScope const braces(*this, {.inMatrix = false, .indexDepth = brackets_.indexDepth});
      while (!at(TokenKind::RightBrace)) {
        skipNewlines();
        Expression* validator = parseExpression();
        if (failed_) return nullptr;
        scratch_.push_back(validator);
        skipNewlines();
        if (!accept(TokenKind::Comma)) break;
      }
    }
    expect(TokenKind::RightBrace, "to close the validators");
    if (failed_) return nullptr;
  }
  auto validatorList = listFrom<Expression>(validators);
  if (!any) return nullptr;
  return finish(builder_.make<ast::Validation>(dimensionList, className, validatorList), startOf(first));
}

Parser::Expression* Parser::parseDottedName() {
  Token const first = expect(TokenKind::Identifier, "as a name");
  if (failed_) return nullptr;
  Expression* name = identifier(first);
  int height = 1;
  while (at(TokenKind::Dot) && !peek().spaceBefore) {
    Token const dot = take();
    Token const part = peek();
    if (part.kind != TokenKind::Identifier && !isKeyword(part.kind)) {
      unexpected(part, "a name after '.'");
      return nullptr;
    }
    if (!chainLink(height, 1, dot)) return nullptr;
    name = finish(builder_.make<ast::DotOperation>(name, field(take())), startOf(first));
  }
  height_ = height;
  return name;
}

// ---------------------------------------------------------------------------
// Classes

Parser::Node* Parser::parseClassdef() {
  Token const keyword = take();
  // A fault in the header costs the rest of its line; the blocks are read as
  // usual, and the class is left out of the tree.
  std::size_t const header = mark();
  auto attributes = parseAttributes();
  ast::Identifier* name = failed_ ? nullptr : parseFunctionName();
  lf::astapi::NodeList<Expression> superclassList;
  if (!failed_) {
    std::size_t const superclasses = mark();
    if (accept(TokenKind::Less)) {
      do {
        Expression* superclass = parseDottedName();
        if (failed_) break;
        scratch_.push_back(superclass);
      } while (accept(TokenKind::Amp));
    }
    if (!failed_) superclassList = listFrom<Expression>(superclasses);
  }
  if (!failed_) endStatement();
  bool const headerRead = !failed_;
  if (!headerRead) {
    failed_ = false;
    scratch_.resize(header);
    recover();
  }
  std::size_t const blocks = mark();
  while (true) {
    while (at(TokenKind::Newline) || at(TokenKind::Semicolon) || at(TokenKind::Comma)) take();
    if (at(TokenKind::End) || at(TokenKind::EndOfFile)) break;
    std::size_t const entry = mark();
    Node* block = isClassBlockHead(peek()) ? parseClassBlock() : skipStrayClassMember();
    if (recovered(entry) || block == nullptr) continue;
    scratch_.push_back(block);
  }
  auto blockList = listFrom<Node>(blocks);
  expectEnd(keyword);
  Node* node = nullptr;
  if (headerRead) {
    node = finish(builder_.make<ast::Classdef>(attributes, name, superclassList, blockList), startOf(keyword));
  }
  if (!at(TokenKind::EndOfFile)) endStatement();
  return failed_ ? nullptr : node;
}

bool Parser::isClassBlockHead(Token const& token) {
  return token.kind == TokenKind::Identifier && headsClassBlock(contextualKeyword(token.text));
}

Parser::Node* Parser::skipStrayClassMember() {
  // A class body holds only blocks. A method outside them, or a block with a
  // misspelt head, is skipped whole with what it holds, so that one fault
  // gives one error and what follows is read as blocks again.
  Token const stray = peek();
  unexpected<DiagnosticKind::UnexpectedInClass>(stray);
  failed_ = false;
  if (stray.kind == TokenKind::Function) {
    parseFunction(true, false);  // read to its end, and left out
    return nullptr;
  }
  TokenKind const next = peek(1).kind;
  bool const blockHead = stray.kind == TokenKind::Identifier &&
                         (next == TokenKind::Newline || next == TokenKind::LeftParen || next == TokenKind::EndOfFile ||
                          next == TokenKind::Semicolon || next == TokenKind::Comma);
  recover();
  if (blockHead) {
    skipToEndOfBlock(false);
    accept(TokenKind::End);
  }
  return nullptr;
}

void Parser::skipToEndOfBlock(bool atFunction) {
  // Statement by statement: blocks that open on the way are skipped with
  // their own 'end'; brackets are followed so that an 'end' inside an index
  // is not taken for a closer.
  int blocks = 0;
  int brackets = 0;
  bool statementStart = true;
  while (true) {
    Token const& token = peek();
    TokenKind const kind = token.kind;
    if (kind == TokenKind::EndOfFile) break;
    if (brackets == 0 && blocks == 0 && (kind == TokenKind::End || (atFunction && kind == TokenKind::Function))) break;
    bool nextStartsStatement = false;
    switch (kind) {
      case TokenKind::LeftParen:
      case TokenKind::LeftBracket:
      case TokenKind::LeftBrace: ++brackets; break;
      case TokenKind::RightParen:
      case TokenKind::RightBracket:
      case TokenKind::RightBrace:
        if (brackets > 0) --brackets;
        break;
      case TokenKind::Newline:
        brackets = 0;
        nextStartsStatement = true;
        break;
      case TokenKind::Semicolon:
      case TokenKind::Comma: nextStartsStatement = brackets == 0; break;
      case TokenKind::End:
        if (brackets == 0) --blocks;
        break;
      case TokenKind::Identifier:
        // The words that head blocks in classes and functions, alone on
        // their line or before their attributes.
        if (statementStart && brackets == 0 && contextualKeyword(token.text) != ContextualKeyword::None) {
          TokenKind const next = peek(1).kind;
          if (next == TokenKind::Newline || next == TokenKind::LeftParen || next == TokenKind::EndOfFile) ++blocks;
        }
        break;
      default:
        if (opensBlock(kind) && brackets == 0) ++blocks;
        break;
    }
    statementStart = nextStartsStatement;
    take();
  }
  lexer_.forgetBrackets();
}

Parser::Node* Parser::parseClassBlock() {
  Token const keyword = take();
  ContextualKeyword const block = contextualKeyword(keyword.text);
  // A fault in the attributes costs the rest of the line; the members are
  // read as usual.
  std::size_t const head = mark();
  auto attributes = parseAttributes();
  if (failed_) {
    failed_ = false;
    scratch_.resize(head);
    attributes = {};
    recover();
  }
  std::size_t const members = mark();
  while (true) {
    while (at(TokenKind::Newline) || at(TokenKind::Semicolon) || at(TokenKind::Comma)) take();
    // `end(obj, k, n)` declares a method named end; a plain `end` closes the block.
    bool const endMethod = block == ContextualKeyword::Methods && at(TokenKind::End) &&
                           peek(1).kind == TokenKind::LeftParen && !peek(1).spaceBefore;
    if ((at(TokenKind::End) && !endMethod) || at(TokenKind::EndOfFile)) break;
    std::size_t const entry = mark();
    Node* member = nullptr;
    bool const definition = block == ContextualKeyword::Methods && at(TokenKind::Function);
    if (block == ContextualKeyword::Properties) {
      member = parseProperty();
    } else if (definition) {
      member = parseFunction(true, false);  // ends with its 'end'
    } else if (block == ContextualKeyword::Methods) {
      member = parseMethodDeclaration();
    } else if (block == ContextualKeyword::Events) {
      Token const name = expect(TokenKind::Identifier, "as an event name");
      if (!failed_) member = finish(builder_.make<ast::Event>(identifier(name)), startOf(name));
    } else {
      member = parseEnumerator();
    }
    if (!failed_ && !definition) endStatement();
    if (failed_ && block == ContextualKeyword::Methods) {
      // A line of a methods block that is no method: most likely the body of
      // a method whose function line is missing. Skip to the next method or
      // to the end of the block, rather than report each line of that body.
      failed_ = false;
      scratch_.resize(entry);
      recover();
      skipToEndOfBlock(true);
      continue;
    }
    if (recovered(entry) || member == nullptr) continue;
    scratch_.push_back(member);
  }
  Position const first = startOf(keyword);
  Node* node = nullptr;
  if (block == ContextualKeyword::Properties) {
    node = builder_.make<ast::PropertiesBlock>(attributes, listFrom<ast::Property>(members));
  } else if (block == ContextualKeyword::Methods) {
    node = builder_.make<ast::MethodsBlock>(attributes, listFrom<ast::Method>(members));
  } else if (block == ContextualKeyword::Events) {
    node = builder_.make<ast::EventsBlock>(attributes, listFrom<ast::Event>(members));
  } else {
    node = builder_.make<ast::EnumerationBlock>(attributes, listFrom<ast::Enumerator>(members));
  }
  expectEnd(keyword);
  return finish(node, first);
}

ast::Property* Parser::parseProperty() {
  Token const name = expect(TokenKind::Identifier, "as a property name");
  if (failed_) return nullptr;
  ast::Validation* validation = parseValidation();
  if (failed_) return nullptr;
  Expression* defaultValue = nullptr;
  if (accept(TokenKind::Assign)) {
    defaultValue = parseExpression();
    if (failed_) return nullptr;
  }
  return finish(builder_.make<ast::Property>(identifier(name), validation, defaultValue), startOf(name));
}

ast::Enumerator* Parser::parseEnumerator() {
  Token const name = expect(TokenKind::Identifier, "as an enumeration member");
  if (failed_) return nullptr;
  std::size_t const args = mark();
  if (at(TokenKind::LeftParen)) {
    parseArguments(TokenKind::RightParen);
    if (failed_) return nullptr;
  }
  auto list = listFrom<Expression>(args);
  return finish(builder_.make<ast::Enumerator>(identifier(name), list), startOf(name));
}

Parser::Node* Parser::parseMethodDeclaration() {
  Token const first = peek();
  auto outputList = parseOutputs(OutputNames::Declared);
  if (failed_) return nullptr;
  ast::Identifier* name = parseFunctionName();
  if (failed_) return nullptr;
  auto inputList = parseParameters();
  if (failed_) return nullptr;
  return finish(builder_.make<ast::MethodDeclaration>(name, inputList, outputList), startOf(first));
}

// ---------------------------------------------------------------------------
// Expressions

Parser::Expression* Parser::parseExpression() {
  Depth depth(*this);
  if (failed_) return nullptr;
  return parseBinary(1);
}

bool Parser::chainLink(int& height, int childHeight, Token const& link) {
  height = 1 + std::max(height, childHeight);
  if (depth_ + height <= maxNestingDepth) return true;
  // Name what made it deep: the chain, or the nesting around it.
  if (height > depth_) {
    fail<DiagnosticKind::ChainTooDeep>(link, maxNestingDepth);
  } else {
    fail<DiagnosticKind::NestingTooDeep>(link, maxNestingDepth);
  }
  return false;
}

bool Parser::splitsMatrixElement(Token const& op) {
  // In [a -b] the blank before the sign and none after it start a new element.
  if (!brackets_.inMatrix || !op.spaceBefore) return false;
  if (op.kind != TokenKind::Plus && op.kind != TokenKind::Minus) return false;
  return !peek(1).spaceBefore;
}

Parser::Expression* Parser::parseBinary(int minLevel) {
  // Precedence climbing: operators of a level at least minLevel bind here,
  // left to right; the right operand takes only tighter ones.
  Expression* left = parseUnary();
  if (failed_) return nullptr;
  int height = height_;
  while (true) {
    BinaryToken const binary = binaryTokenOf(peek().kind);
    if (binary.level < minLevel || binary.level == 0) break;
    if (binary.level != 6 && splitsMatrixElement(peek())) break;
    Token const token = take();
    if (binary.level == 6) {
      // first:last or first:step:last
      Expression* second = parseBinary(7);
      if (failed_) return nullptr;
      int childHeight = height_;
      Expression* third = nullptr;
      if (at(TokenKind::Colon)) {
        take();
        third = parseBinary(7);
        if (failed_) return nullptr;
        childHeight = std::max(childHeight, height_);
      }
      if (!chainLink(height, childHeight, token)) return nullptr;
      Position const first = firstOf(left);
      left = third != nullptr ? builder_.make<ast::ColonVector>(left, second, third)
                              : builder_.make<ast::ColonVector>(left, nullptr, second);
      left = finish(left, first);
      continue;
    }
    Expression* right = parseBinary(binary.level + 1);
    if (failed_ || !chainLink(height, height_, token)) return nullptr;
    left = finish(builder_.make<ast::BinaryOperation>(binary.op, left, right), firstOf(left));
  }
  height_ = height;
  return left;
}

Parser::Expression* Parser::parseUnary() {
  Token const token = peek();
  if (std::optional<UnaryOperator> const op = prefixOperator(token.kind)) {
    Depth depth(*this);
    if (failed_) return nullptr;
    take();
    Expression* operand = parseUnary();
    if (failed_) return nullptr;
    ++height_;
    return finish(builder_.make<ast::UnaryOperation>(*op, operand), startOf(token));
  }
  return parsePower();
}

Parser::Expression* Parser::parsePower() {
  Token const first = peek();
  Expression* primary = parsePrimary();
  if (failed_) return nullptr;
  Expression* left = parsePostfix(primary, startOf(first));
  if (failed_) return nullptr;
  int height = height_;
  while (at(TokenKind::Caret) || at(TokenKind::DotCaret)) {
    Token const power = take();
    BinaryOperator const op = power.kind == TokenKind::Caret ? BinaryOperator::MatrixPower : BinaryOperator::ElementPower;
    Expression* right = parsePowerOperand();
    if (failed_ || !chainLink(height, height_, power)) return nullptr;
    left = finish(builder_.make<ast::BinaryOperation>(op, left, right), firstOf(left));
  }
  height_ = height;
  return left;
}

Parser::Expression* Parser::parsePowerOperand() {
  // 2^-1: a prefix operator may stand on the right of a power.
  Token const token = peek();
  if (std::optional<UnaryOperator> const op = prefixOperator(token.kind)) {
    Depth depth(*this);
    if (failed_) return nullptr;
    take();
    Expression* operand = parsePowerOperand();
    if (failed_) return nullptr;
    ++height_;
    return finish(builder_.make<ast::UnaryOperation>(*op, operand), startOf(token));
  }
  Expression* primary = parsePrimary();
  if (failed_) return nullptr;
  return parsePostfix(primary, startOf(token));
}

Parser::Expression* Parser::parsePostfix(Expression* base, Position first) {
  Expression* result = base;
  int height = height_;
  while (true) {
    Token const& next = peek();
    // In a matrix, a blank before ( or { starts a new element: [f (1)]. A
    // dot cannot start an element, so `[h(n) .Label]` is one.
    if (brackets_.inMatrix && next.spaceBefore &&
        (next.kind == TokenKind::LeftParen || next.kind == TokenKind::LeftBrace)) {
      break;
    }
    if (next.kind != TokenKind::LeftParen && next.kind != TokenKind::LeftBrace && next.kind != TokenKind::Dot &&
        next.kind != TokenKind::Transpose && next.kind != TokenKind::DotTranspose && next.kind != TokenKind::At) {
      break;
    }
    Token const token = next;  // kept: the lookahead moves on
    switch (token.kind) {
      case TokenKind::LeftParen:
      case TokenKind::LeftBrace: {
        bool const paren = token.kind == TokenKind::LeftParen;
        std::size_t const args = mark();
        parseArguments(paren ? TokenKind::RightParen : TokenKind::RightBrace);
        if (failed_ || !chainLink(height, height_, token)) return nullptr;
        auto list = listFrom<Expression>(args);
        result = paren ? static_cast<Expression*>(builder_.make<ast::ParenOperation>(result, list))
                       : static_cast<Expression*>(builder_.make<ast::BraceOperation>(result, list));
        finish(result, first);
        continue;
      }
      case TokenKind::Dot: {
        take();
        if (at(TokenKind::LeftParen)) {
          take();
          Expression* name = nullptr;
          {
            BracketScope const parentheses(*this, {.inMatrix = false, .indexDepth = brackets_.indexDepth});
            name = parseExpression();
            if (failed_) return nullptr;
          }
          expect(TokenKind::RightParen, "to close the dynamic field");
          if (failed_ || !chainLink(height, height_, token)) return nullptr;
          result = finish(builder_.make<ast::DotParenOperation>(result, name), first);
        } else {
          Token const name = peek();
          if (name.kind != TokenKind::Identifier && !isKeyword(name.kind)) {
            unexpected(name, "a field name after '.'");
            return nullptr;
          }
          if (!chainLink(height, 1, token)) return nullptr;
          result = finish(builder_.make<ast::DotOperation>(result, field(take())), first);
        }
        continue;
      }
      case TokenKind::Transpose:
      case TokenKind::DotTranspose: {
        UnaryOperator const op =
            take().kind == TokenKind::Transpose ? UnaryOperator::ComplexTranspose : UnaryOperator::Transpose;
        if (!chainLink(height, 0, token)) return nullptr;
        result = finish(builder_.make<ast::UnaryOperation>(op, result), first);
        continue;
      }
      case TokenKind::At: {
        // name@pkg.Super: a call of a superclass method or constructor;
        // obj.name@pkg.Super calls the method through the object.
        if (token.spaceBefore || !isDottedName(result)) break;
        take();
        Expression* superclass = parseDottedName();
        if (failed_ || !chainLink(height, height_, token)) return nullptr;
        result = finish(builder_.make<ast::BinaryOperation>(BinaryOperator::SuperclassCall, result, superclass), first);
        continue;
      }
      default: break;
    }
    break;
  }
  height_ = height;
  return result;
}

void Parser::parseArguments(TokenKind close) {
  Token const open = take();
  int height = 0;
  {
    BracketScope const index(*this, {.inMatrix = false, .indexDepth = brackets_.indexDepth + 1});
    // A line end inside parentheses or braces ends the statement: lines go on
    // only with a continuation.
    while (!at(close)) {
      Token const token = peek();
      if (token.kind == TokenKind::Colon && (peek(1).kind == close || peek(1).kind == TokenKind::Comma)) {
        take();
        scratch_.push_back(finish(builder_.make<ast::ColonIndex>(), startOf(token)));
        height = std::max(height, 1);
      } else if (token.kind == TokenKind::Identifier && peek(1).kind == TokenKind::Assign) {
        // Name=value at the end of an argument list. The argument is a level
        // of its own above the value.
        Depth depth(*this);
        if (failed_) return;
        take();
        ast::Field* name = field(token);
        take();
        Expression* value = parseExpression();
        if (failed_) return;
        scratch_.push_back(finish(builder_.make<ast::NamedArgument>(name, value), startOf(token)));
        height = std::max(height, 1 + std::max(1, height_));
      } else {
        Expression* argument = parseExpression();
        if (failed_) return;
        scratch_.push_back(argument);
        height = std::max(height, height_);
      }
      if (!accept(TokenKind::Comma)) break;
    }
  }
  if (!at(close)) {
    unexpected<DiagnosticKind::UnclosedArgumentList>(peek(), describeKind(close), open.line, open.column);
    return;
  }
  take();
  height_ = height;
}

Parser::Expression* Parser::parseMatrix(bool cell) {
  Depth depth(*this);
  if (failed_) return nullptr;
  Token const open = take();
  TokenKind const close = cell ? TokenKind::RightBrace : TokenKind::RightBracket;
  BracketScope const matrix(*this, {.inMatrix = true, .indexDepth = brackets_.indexDepth});
  std::size_t const rows = mark();
  std::size_t elements = mark();
  Position rowStart{};
  int height = 1;  // the matrix, and its rows when it has any
  auto endRow = [&] {
    if (mark() == elements) return;
    auto list = listFrom<Expression>(elements);
    scratch_.push_back(finish(builder_.make<ast::Row>(list), rowStart));
    elements = mark();
  };
  while (true) {
    Token const token = peek();
    if (token.kind == close) break;
    if (token.kind == TokenKind::Newline || token.kind == TokenKind::Semicolon) {
      take();
      endRow();
      continue;
    }
    if (token.kind == TokenKind::Comma) {
      take();
      continue;
    }
    if (!startsExpression(token.kind)) {
      unexpected<DiagnosticKind::UnclosedMatrix>(token, describeKind(close), cell ? "cell array" : "matrix", open.line,
                                                 open.column);
      return nullptr;
    }
    if (mark() == elements) rowStart = startOf(token);
    Expression* element = parseExpression();
    if (failed_) return nullptr;
    scratch_.push_back(element);
    height = std::max(height, 2 + height_);
  }
  endRow();
  take();
  auto rowList = listFrom<ast::Row>(rows);
  Expression* node = cell ? static_cast<Expression*>(builder_.make<ast::CellArray>(rowList))
                          : static_cast<Expression*>(builder_.make<ast::Matrix>(rowList));
  height_ = height;
  return finish(node, startOf(open));
}

Parser::Expression* Parser::parseAnonymousFunction(Position first) {
  ScopeGuard scope(*this, true);
  auto inputs = parseParameters();
  if (failed_) return nullptr;
  Expression* body = nullptr;
  {
    // The body stands alone: `end` in it is no index's end.
    BracketScope const standalone(*this, {.inMatrix = false, .indexDepth = 0});
    body = parseExpression();
    if (failed_) return nullptr;
  }
  // Inputs are an identifier in an InputArgument.
  height_ = 1 + std::max(inputs.empty() ? 0 : 2, height_);
  return finish(builder_.make<ast::AnonymousFunction>(inputs, body), first);
}

Parser::Expression* Parser::parsePrimary() {
  Token const token = peek();
  switch (token.kind) {
    case TokenKind::Identifier: return identifier(take());
    case TokenKind::Number: return number(take());
    case TokenKind::CharVector:
    case TokenKind::String: return literal(take());
    case TokenKind::LeftParen: {
      Depth depth(*this);
      if (failed_) return nullptr;
      take();
      Expression* inner = nullptr;
      {
        BracketScope const parentheses(*this, {.inMatrix = false, .indexDepth = brackets_.indexDepth});
        inner = parseExpression();
        if (failed_) return nullptr;
      }
      if (!at(TokenKind::RightParen)) {
        unexpected<DiagnosticKind::UnclosedParenthesis>(peek(), token.line, token.column);
        return nullptr;
      }
      take();
      ++height_;
      return finish(builder_.make<ast::ParenthesizedExpression>(inner), startOf(token));
    }
    case TokenKind::LeftBracket: return parseMatrix(false);
    case TokenKind::LeftBrace: return parseMatrix(true);
    case TokenKind::At: {
      take();
      if (at(TokenKind::LeftParen)) return parseAnonymousFunction(startOf(token));
      if (!at(TokenKind::Identifier)) {
        unexpected(peek(), "a function name or '(' after '@'");
        return nullptr;
      }
      Expression* name = parseDottedName();
      if (failed_ || !chainLink(height_, 0, token)) return nullptr;
      return finish(builder_.make<ast::UnaryOperation>(UnaryOperator::FunctionHandle, name), startOf(token));
    }
    case TokenKind::Question: {
      take();
      if (!at(TokenKind::Identifier)) {
        unexpected(peek(), "a class name after '?'");
        return nullptr;
      }
      Expression* name = parseDottedName();
      if (failed_ || !chainLink(height_, 0, token)) return nullptr;
      return finish(builder_.make<ast::UnaryOperation>(UnaryOperator::Metaclass, name), startOf(token));
    }
    case TokenKind::End:
      if (brackets_.indexDepth > 0) {
        take();
        height_ = 1;
        return finish(builder_.make<ast::EndIndex>(), startOf(token));
      }
      break;
    case TokenKind::Colon:
      if (brackets_.indexDepth > 0) {
        take();
        height_ = 1;
        return finish(builder_.make<ast::ColonIndex>(), startOf(token));
      }
      break;
    default: break;
  }
  unexpected(token, "an expression");
  return nullptr;
}

Parser::Expression* Parser::literal(Token const& token) {
  height_ = 1;
  std::string const value = unquote(token.text);
  Expression* node = token.kind == TokenKind::CharVector
                         ? static_cast<Expression*>(builder_.make<ast::CharVectorLiteral>(text(value)))
                         : static_cast<Expression*>(builder_.make<ast::StringLiteral>(text(value)));
  node->setSourceRange({startOf(token), lastOf(token)});
  return node;
}

Parser::Expression* Parser::number(Token const& token) {
  NumberValue const number = evaluateNumber(token.text);
  if (number.overflowBits != 0) {
    fail<DiagnosticKind::NumberTooLarge>(token, number.overflowBits);
    return nullptr;
  }
  height_ = 1;
  auto* node = builder_.make<ast::NumberLiteral>(number.value, text(token.text));
  node->setSourceRange({startOf(token), lastOf(token)});
  return node;
}

}  // namespace frontend
