#include "frontend/analysis/name_resolution.hpp"

#include <algorithm>
#include <type_traits>
#include <vector>

#include "platform/ast/assignment_target.hpp"
#include "platform/ast/descendant_walk.hpp"

namespace frontend {

namespace ast = ca::ast;
using ca::astapi::StringId;
using Entry = ca::nameresolution::SymbolTableEntry;
using lf::astapi::NodeKind;

// Resolves every identifier of a tree in two passes: first the functions,
// methods and class of the file and the variables of each scope, then each
// identifier in source order.
class NameResolver {
 public:
  NameResolver(FileSymbols& out, ca::FileType type) : out_(out), type_(type) {}

  void run(ast::Program const& program) {
    Scope& file = scopeFor(&program, nullptr, false);
    declare(program);
    if (type_ == ca::FileType::Script) collectVariables(program.getBody(), file);
    for (ast::Node const* statement : program.getBody()) visit(*statement, file);
    finish();
  }

 private:
  struct Scope {
    Scope* parent = nullptr;
    // A nested or anonymous function sees the variables of its parent; a
    // nested function shares them (they become shared variables).
    bool seesParent = false;
    bool isAnonymous = false;
    std::unordered_set<StringId> names;  // the scope's own variables
    std::unordered_map<StringId, Entry*> entries;
  };

  // ---- pass 1: what the file defines --------------------------------------

  Scope& scopeFor(ast::Node const* owner, Scope* parent, bool seesParent) {
    auto made = std::make_unique<Scope>();
    made->parent = parent;
    made->seesParent = seesParent;
    made->isAnonymous = owner->getKind() == NodeKind::AnonymousFunction;
    Scope& scope = *made;
    scopes_.emplace(owner, std::move(made));
    return scope;
  }

  void declare(ast::Program const& program) {
    bool first = true;
    for (ast::Node const* node : program.getBody()) {
      if (node->getKind() == NodeKind::Function) {
        auto const& function = static_cast<ast::Function const&>(*node);
        std::uint32_t const role =
            (first && type_ == ca::FileType::Function) ? Entry::MainFunction : Entry::LocalFunction;
        first = false;
        declareFunction(function, role, scopes_.at(&program).get(), false);
      } else if (node->getKind() == NodeKind::Classdef) {
        declareClass(static_cast<ast::Classdef const&>(*node), *scopes_.at(&program));
      }
    }
  }

  // A function and the functions nested in it, at any depth, depth first,
  // each with a scope inside that of the function around it. Nested
  // functions stand directly in the body of the function around them (the
  // parser ends a block at 'function'), so the walk goes below functions only.
  void declareFunction(ast::Function const& outermost, std::uint32_t role, Scope* parent, bool nested) {
    lf::astapi::walkDescendants(outermost, [&](ast::Node const& node) {
      if (node.getKind() != NodeKind::Function) return lf::astapi::WalkStep::SkipChildren;
      auto const& function = lf::astapi::cast<ast::Function>(node);
      bool const isOutermost = &function == &outermost;
      if (function.getName() != nullptr) {
        defineCallable(function.getName()->getStringId(),
                       Entry::Function | (isOutermost ? role : std::uint32_t{Entry::NestedFunction}));
      }
      Scope& scope = isOutermost ? scopeFor(&function, parent, nested)
                                 : scopeFor(&function, scopes_.at(function.getParent()).get(), true);
      for (auto const* input : function.getInputs()) {
        if (input->getIdentifier() != nullptr) scope.names.insert(input->getIdentifier()->getStringId());
      }
      for (auto const* output : function.getOutputs()) scope.names.insert(output->getStringId());
      collectVariables(function.getBody(), scope);
      return lf::astapi::WalkStep::Descend;
    });
  }

  void declareClass(ast::Classdef const& classdef, Scope& file) {
    if (classdef.getName() != nullptr) {
      className_ = classdef.getName()->getStringId();
      defineCallable(className_, Entry::Class);
    }
    for (ast::Node const* block : classdef.getBlocks()) {
      if (block->getKind() != NodeKind::MethodsBlock) continue;
      for (ast::Method const* method : static_cast<ast::MethodsBlock const*>(block)->getMembers()) {
        if (method->getName() == nullptr) continue;
        StringId const name = method->getName()->getStringId();
        defineCallable(name, Entry::Method | (name == className_ ? Entry::Constructor : 0u));
        Scope& scope = scopeFor(method, &file, false);
        for (auto const* input : method->getInputs()) {
          if (input->getIdentifier() != nullptr) scope.names.insert(input->getIdentifier()->getStringId());
        }
        for (auto const* output : method->getOutputs()) scope.names.insert(output->getStringId());
        collectVariables(method->getBody(), scope);
        forEachNestedFunction(method->getBody(), [&](ast::Function const& inner) {
          declareFunction(inner, Entry::NestedFunction, &scope, true);
        });
      }
    }
  }

  // Functions, methods and the class are one symbol per name for the file.
  // Each gets its first occurrence from its own definition.
  void defineCallable(StringId name, std::uint32_t flags) {
    auto [entry, made] = callables_.try_emplace(name, nullptr);
    if (made) {
      entry->second = newEntry(name, flags);
    } else {
      entry->second->addFlags(flags);
    }
  }

  // Nested functions stand directly in the body of the function around them:
  // the parser ends a block at 'function'.
  template <class Fn>
  static void forEachNestedFunction(lf::astapi::NodeList<ast::Node> body, Fn&& fn) {
    for (ast::Node const* node : body) {
      if (node->getKind() == NodeKind::Function) fn(static_cast<ast::Function const&>(*node));
    }
  }

  // The names a body assigns, declares or loops over: its own variables. The
  // bodies of nested and anonymous functions are left to their own scopes.
  void collectVariables(lf::astapi::NodeList<ast::Node> body, Scope& scope) {
    lf::astapi::walkDescendants(body, [&](ast::Node const& node) {
      switch (node.getKind()) {
        case NodeKind::Function:
        case NodeKind::AnonymousFunction: return lf::astapi::WalkStep::SkipChildren;
        case NodeKind::Assignment: addHead(lf::astapi::cast<ast::Assignment>(node).getLeft(), scope); break;
        case NodeKind::MultiLhsAssignment:
          for (auto const* output : lf::astapi::cast<ast::MultiLhsAssignment>(node).getOutputs()) {
            addHead(output, scope);
          }
          break;
        case NodeKind::ForStatement: addHead(lf::astapi::cast<ast::ForStatement>(node).getLoopVariable(), scope); break;
        case NodeKind::ParforStatement:
          addHead(lf::astapi::cast<ast::ParforStatement>(node).getLoopVariable(), scope);
          break;
        case NodeKind::CatchBlock: {
          auto const* identifier = lf::astapi::cast<ast::CatchBlock>(node).getIdentifier();
          if (identifier != nullptr) scope.names.insert(identifier->getStringId());
          break;
        }
        case NodeKind::GlobalStatement:
        case NodeKind::PersistentStatement:
          for (auto const* name : lf::astapi::cast<lf::astapi::DeclarationStatement<ca::astapi::CA>>(node).getNames()) {
            scope.names.insert(name->getStringId());
          }
          break;
        default: break;
      }
      return lf::astapi::WalkStep::Descend;
    });
  }

  static void addHead(ast::Expression const* target, Scope& scope) {
    if (ast::Identifier const* head = lf::astapi::getAssignmentTarget(target).identifier) {
      scope.names.insert(head->getStringId());
    }
  }

  // ---- pass 2: every identifier -------------------------------------------

  enum class Role { Use, Definition, Input, Output, Global, Persistent };

  // Pass 2 walks with a stack of work instead of recursion, since expressions
  // nest as deep as the input does. A step that stands for several in a row
  // puts them on the stack last first; the order is that of a recursive walk.
  enum class Step : std::uint8_t {
    Visit,    // every identifier of a node
    Target,   // an assignment target
    Resolve,  // one identifier, in a role
  };
  struct Work {
    Step step;
    ast::Node const* node;
    Scope* scope;
    Role role = Role::Use;
  };

  void visit(ast::Node const& root, Scope& scope) {
    work_.push_back({Step::Visit, &root, &scope});
    while (!work_.empty()) {
      Work const work = work_.back();
      work_.pop_back();
      std::size_t const queued = work_.size();
      switch (work.step) {
        case Step::Visit: visitNode(*work.node, *work.scope); break;
        case Step::Target: visitTarget(static_cast<ast::Expression const*>(work.node), *work.scope); break;
        case Step::Resolve: resolve(static_cast<ast::Identifier const&>(*work.node), *work.scope, work.role); break;
      }
      // What the step asked for next runs before anything queued earlier,
      // first things first.
      std::reverse(work_.begin() + static_cast<std::ptrdiff_t>(queued), work_.end());
    }
  }

  // Queues work after the step at hand, in the order given.
  void then(Step step, ast::Node const* node, Scope& scope, Role role = Role::Use) {
    if (node != nullptr) work_.push_back({step, node, &scope, role});
  }
  template <class List>
  void thenVisitAll(List const& nodes, Scope& scope) {
    for (auto const* node : nodes) then(Step::Visit, node, scope);
  }

  void visitNode(ast::Node const& node, Scope& scope) {
    switch (node.getKind()) {
      case NodeKind::Identifier: resolve(static_cast<ast::Identifier const&>(node), scope, Role::Use); return;
      case NodeKind::Function:
      case NodeKind::MethodDefinition:
      case NodeKind::MethodDeclaration: visitFunction(static_cast<ast::Function const&>(node), scope); return;
      case NodeKind::AnonymousFunction: {
        auto const& lambda = static_cast<ast::AnonymousFunction const&>(node);
        Scope& inner = scopeFor(&lambda, &scope, true);
        for (auto const* input : lambda.getInputs()) {
          if (input->getIdentifier() == nullptr) continue;
          inner.names.insert(input->getIdentifier()->getStringId());
          out_.signatures_.insert(input->getIdentifier());
          resolve(*input->getIdentifier(), inner, Role::Input);
        }
        then(Step::Visit, lambda.getBody(), inner);
        return;
      }
      case NodeKind::Classdef: {
        auto const& classdef = static_cast<ast::Classdef const&>(node);
        thenVisitAll(classdef.getAttributes(), scope);
        then(Step::Resolve, classdef.getName(), scope);
        thenVisitAll(classdef.getSuperclasses(), scope);
        thenVisitAll(classdef.getBlocks(), scope);
        return;
      }
      case NodeKind::Attribute: then(Step::Visit, static_cast<ast::Attribute const&>(node).getValue(), scope); return;
      case NodeKind::Property: {
        auto const& property = static_cast<ast::Property const&>(node);
        then(Step::Visit, property.getValidation(), scope);
        then(Step::Visit, property.getDefaultValue(), scope);
        return;
      }
      case NodeKind::Event: return;
      case NodeKind::Enumerator: thenVisitAll(static_cast<ast::Enumerator const&>(node).getArguments(), scope); return;
      case NodeKind::ImportCommand: return;
      case NodeKind::Argument: {
        auto const& argument = static_cast<ast::Argument const&>(node);
        if (argument.getName() != nullptr && argument.getName()->getIdentifier() != nullptr) {
          resolve(*argument.getName()->getIdentifier(), scope, Role::Use);
        }
        then(Step::Visit, argument.getClassPart(), scope);
        then(Step::Visit, argument.getValidation(), scope);
        then(Step::Visit, argument.getDefaultValue(), scope);
        return;
      }
      case NodeKind::Assignment: {
        auto const& assignment = static_cast<ast::Assignment const&>(node);
        then(Step::Visit, assignment.getRight(), scope);
        then(Step::Target, assignment.getLeft(), scope);
        return;
      }
      case NodeKind::MultiLhsAssignment: {
        auto const& assignment = static_cast<ast::MultiLhsAssignment const&>(node);
        then(Step::Visit, assignment.getRight(), scope);
        for (auto const* output : assignment.getOutputs()) then(Step::Target, output, scope);
        return;
      }
      case NodeKind::ForStatement:
      case NodeKind::ParforStatement: {
        // The range is evaluated before the loop variable is set.
        auto visitLoop = [&](auto const& loop) {
          then(Step::Visit, loop.getRange(), scope);
          then(Step::Target, loop.getLoopVariable(), scope);
          if constexpr (std::is_same_v<std::decay_t<decltype(loop)>, ast::ParforStatement>) {
            thenVisitAll(loop.getOptions(), scope);
          }
          thenVisitAll(loop.getBody(), scope);
        };
        if (node.getKind() == NodeKind::ForStatement) {
          visitLoop(static_cast<ast::ForStatement const&>(node));
        } else {
          visitLoop(static_cast<ast::ParforStatement const&>(node));
        }
        return;
      }
      case NodeKind::CatchBlock: {
        auto const& block = static_cast<ast::CatchBlock const&>(node);
        if (block.getIdentifier() != nullptr) resolve(*block.getIdentifier(), scope, Role::Definition);
        thenVisitAll(block.getBody(), scope);
        return;
      }
      case NodeKind::GlobalStatement:
      case NodeKind::PersistentStatement: {
        Role const role = node.getKind() == NodeKind::GlobalStatement ? Role::Global : Role::Persistent;
        for (auto const* name : static_cast<lf::astapi::DeclarationStatement<ca::astapi::CA> const&>(node).getNames()) {
          resolve(*name, scope, role);
        }
        return;
      }
      default:
        lf::astapi::forEachChild(node, [&](ast::Node const* child) { then(Step::Visit, child, scope); });
        return;
    }
  }

  void visitFunction(ast::Function const& function, Scope& outer) {
    if (function.getName() != nullptr) resolve(*function.getName(), outer, Role::Use);
    auto found = scopes_.find(&function);
    // A method declaration has a scope of its own for its signature.
    Scope& scope = found != scopes_.end() ? *found->second : scopeFor(&function, &outer, false);
    if (found == scopes_.end()) {
      for (auto const* input : function.getInputs()) {
        if (input->getIdentifier() != nullptr) scope.names.insert(input->getIdentifier()->getStringId());
      }
      for (auto const* output : function.getOutputs()) scope.names.insert(output->getStringId());
    }
    for (auto const* input : function.getInputs()) {
      if (input->getIdentifier() == nullptr) continue;
      out_.signatures_.insert(input->getIdentifier());
      resolve(*input->getIdentifier(), scope, Role::Input);
    }
    for (auto const* output : function.getOutputs()) {
      out_.signatures_.insert(output);
      resolve(*output, scope, Role::Output);
    }
    thenVisitAll(function.getDeclarationBlocks(), scope);
    thenVisitAll(function.getBody(), scope);
  }

  // An assignment target: its head defines the variable, what it reads on
  // the way (indices, dynamic field names) is read first. A head that is no
  // identifier is read like any expression.
  void visitTarget(ast::Expression const* target, Scope& scope) {
    auto const parts = lf::astapi::getAssignmentTarget(target);
    if (parts.identifier != nullptr && parts.throughField()) out_.dotAssignments_.insert(parts.identifier);
    thenVisitAll(parts.indices, scope);
    thenVisitAll(parts.dynamicFields, scope);
    if (parts.identifier != nullptr) {
      then(Step::Resolve, parts.identifier, scope, Role::Definition);
    } else {
      then(Step::Visit, parts.head, scope);
    }
  }

  // The scope that owns a variable of this name, seen from `scope`, and
  // whether the way there crosses into an enclosing function. An anonymous
  // function's inputs shadow the names around it; a function nested in
  // another shares a name that the enclosing function also has, so the
  // outermost function with the name owns it.
  Scope* findVariableScope(StringId name, Scope& scope, bool& crossesFunction) {
    Scope* owner = nullptr;
    bool crossed = false;
    crossesFunction = false;
    for (Scope* at = &scope; at != nullptr; at = at->seesParent ? at->parent : nullptr) {
      if (at->names.count(name) != 0) {
        if (at->isAnonymous) {
          if (owner == nullptr) return at;
        } else {
          owner = at;
          crossesFunction = crossed;
        }
      }
      if (!at->isAnonymous && at->seesParent) crossed = true;
    }
    return owner;
  }

  void resolve(ast::Identifier const& identifier, Scope& scope, Role role) {
    StringId const name = identifier.getStringId();
    Entry* entry = nullptr;
    bool crossesFunction = false;
    if (Scope* owner = findVariableScope(name, scope, crossesFunction)) {
      Entry*& slot = owner->entries[name];
      if (slot == nullptr) slot = newEntry(name, Entry::Variable);
      entry = slot;
      if (crossesFunction) entry->addFlags(Entry::SharedVariable);
      switch (role) {
        case Role::Use: break;
        case Role::Definition: out_.definitions_.insert(&identifier); break;
        case Role::Input:
          entry->addFlags(Entry::InputVariable);
          out_.definitions_.insert(&identifier);
          break;
        case Role::Output: entry->addFlags(Entry::OutputVariable); break;
        case Role::Global:
          entry->addFlags(Entry::GlobalVariable);
          out_.definitions_.insert(&identifier);
          break;
        case Role::Persistent:
          entry->addFlags(Entry::PersistentVariable);
          out_.definitions_.insert(&identifier);
          break;
      }
    } else if (auto callable = callables_.find(name); callable != callables_.end()) {
      entry = callable->second;
    } else {
      auto [external, made] = externals_.try_emplace(name, nullptr);
      if (made) external->second = newEntry(name, Entry::External);
      entry = external->second;
    }
    entry->addOccurrence(&identifier);
    out_.byIdentifier_.emplace(&identifier, entry);
  }

  Entry* newEntry(StringId name, std::uint32_t flags) {
    out_.symbols_.push_back(std::make_unique<Entry>(name, flags));
    return out_.symbols_.back().get();
  }

  void finish() {
    // A symbol without occurrences (a function whose name the tree lacks) is
    // no symbol of the file.
    std::erase_if(out_.symbols_, [](auto const& entry) { return entry->getOccurrences().empty(); });
    for (auto& entry : out_.symbols_) entry->sortOccurrences();
    // Variables that are used somewhere but defined nowhere: an output never
    // assigned but read, a global read in one function only.
    for (auto& entry : out_.symbols_) {
      if (!entry->isVariable()) continue;
      auto occurrences = entry->getOccurrences();
      bool const defined = std::any_of(occurrences.begin(), occurrences.end(),
                                       [this](ast::Identifier const* id) { return out_.definitions_.count(id) != 0; });
      bool const used = std::any_of(occurrences.begin(), occurrences.end(),
                                    [this](ast::Identifier const* id) { return out_.signatures_.count(id) == 0; });
      if (!defined && used) entry->addFlags(Entry::VariableUse);
    }
    auto firstOffset = [](std::unique_ptr<Entry> const& entry) {
      return entry->getOccurrences().front()->getSourceRange().first.offset;
    };
    std::stable_sort(out_.symbols_.begin(), out_.symbols_.end(),
                     [&](auto const& a, auto const& b) { return firstOffset(a) < firstOffset(b); });
  }

  FileSymbols& out_;
  ca::FileType type_;
  StringId className_;
  std::unordered_map<ast::Node const*, std::unique_ptr<Scope>> scopes_;
  std::unordered_map<StringId, Entry*> callables_;
  std::unordered_map<StringId, Entry*> externals_;
  std::vector<Work> work_;
};

std::shared_ptr<FileSymbols> FileSymbols::build(ast::Program const& program, ca::FileType type) {
  std::shared_ptr<FileSymbols> symbols(new FileSymbols);
  symbols->fileType_ = type;
  symbols->program_ = &program;
  NameResolver(*symbols, type).run(program);
  return symbols;
}

StringId FileSymbols::GetAnalysisId() {
  static StringId const id(u"frontend::FileSymbols");
  return id;
}

std::shared_ptr<FileSymbols> FileSymbols::Create(ca::Analysis const& analysis) {
  return build(*analysis.getProgram(), analysis.getFileType());
}

ca::nameresolution::SymbolTableEntry const* FileSymbols::getSymbol(ast::Identifier const& identifier) const {
  auto found = byIdentifier_.find(&identifier);
  return found == byIdentifier_.end() ? nullptr : found->second;
}

std::vector<ca::nameresolution::SymbolTableEntry const*> FileSymbols::getSymbols() const {
  std::vector<ca::nameresolution::SymbolTableEntry const*> all;
  all.reserve(symbols_.size());
  for (auto const& entry : symbols_) all.push_back(entry.get());
  return all;
}

bool FileSymbols::isArgumentSignature(ast::Identifier const& identifier) const {
  return signatures_.count(&identifier) != 0;
}

bool FileSymbols::isDotAssignment(ast::Identifier const& identifier) const {
  return dotAssignments_.count(&identifier) != 0;
}

}  // namespace frontend
