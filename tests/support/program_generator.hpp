#pragma once

// Random programs of the analysed language, for tests that hold a fast
// analysis to a slow reference on many shapes of code.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

#include "tests/support/seeded_random.hpp"

namespace plexus::testing {

/// Random programs over a handful of variables, so that definitions and uses
/// of the same names meet through every kind of branch and jump.
class ProgramGenerator {
 public:
  explicit ProgramGenerator(std::uint64_t seed) : random_(seed) {}

  std::string program() {
    text_.clear();
    switch (random_.below(4)) {
      case 0:  // a script, perhaps with local functions after it
        block(0, false, false, 4 + random_.below(10));
        if (random_.chance(0.40)) {
          line(0, "function r = helper(p)");
          block(1, false, true, 2 + random_.below(5));
          line(0, "end");
        }
        break;
      case 1:  // functions with `end`, some nested
        function(0, "main", 2);
        if (random_.chance(0.50)) function(0, "other", 1);
        break;
      case 2:  // functions without `end`
        functionHead(0, "main");
        block(1, false, true, 4 + random_.below(10));
        line(0, "function r = local(p)");
        block(1, false, true, 2 + random_.below(6));
        break;
      default: classFile(); break;
    }
    return text_;
  }

  /// A class: properties with validation, a constructor that calls its
  /// superclass's, methods that call each other through the object, with
  /// function handles, metaclass queries and an arguments block.
  void classFile() {
    line(0, "classdef (Sealed) Shape < handle & pkg.Base");
    line(1, "properties");
    line(2, "Size (1,1) double {mustBePositive} = 1");
    line(2, "Name = defaultName()");
    line(2, "Limit (1,1) double {mustBeGreaterThan(Limit, -offset(2))} = 3");
    line(1, "end");
    line(1, "methods");
    line(2, "function obj = Shape(a)");
    line(3, "obj@pkg.Base(a);");
    line(3, "obj.Size = a;");
    line(3, "obj.scale(2);");
    line(2, "end");
    line(2, "function r = area(obj, b)");
    line(3, "r = obj.Size * b;");
    block(3, false, true, 2 + random_.below(4));
    line(3, "h = @obj.scale;");
    line(3, "m = ?pkg.Base;");
    line(3, "r = obj.scale(r) + obj.Size + helper(b);");
    line(3, "area@pkg.Base(obj, b);");
    line(3, "function inner(q)");
    line(4, "q = obj.scale(q) + obj.Size;");
    block(4, false, true, random_.below(3));
    line(3, "end");
    line(2, "end");
    line(2, "function r = scale(obj, k)");
    line(3, "arguments");
    line(4, "obj");
    line(4, "k (1,1) double {mustBeFinite} = defaultScale()");
    line(3, "end");
    block(3, false, true, 1 + random_.below(4));
    line(3, "r = k * obj.area(k);");
    line(2, "end");
    line(1, "end");
    line(0, "end");
    line(0, "function r = helper(p)");
    block(1, false, true, 1 + random_.below(3));
    line(0, "end");
  }

 private:
  std::string var() {
    static char const* const names[] = {"a", "b", "c", "x", "y", "r", "p"};
    return names[random_.below(std::size(names))];
  }

  std::string expression(int depth = 0) {
    switch (depth > 2 ? random_.below(2) : random_.below(12)) {
      case 0: return var();
      case 1: return std::to_string(random_.below(10));
      case 2: return expression(depth + 1) + " + " + expression(depth + 1);
      case 3: return "f(" + expression(depth + 1) + ")";
      case 4: return var() + "(" + expression(depth + 1) + ")";
      case 5: return "@(" + var() + ") " + var() + " * " + expression(depth + 1);
      case 6: return var() + ".field";
      case 7: return "[" + expression(depth + 1) + ", " + var() + "]";
      case 8: return "pkg.util.fn(" + expression(depth + 1) + ")";
      case 9: return random_.chance(0.50) ? "@disp" : "@" + var();
      case 10: return var() + "{" + expression(depth + 1) + "}.g(" + var() + ")";
      default: return "(" + expression(depth + 1) + ")";
    }
  }

  void line(std::size_t indent, std::string const& text) { text_ += std::string(indent * 2, ' ') + text + "\n"; }

  void functionHead(std::size_t indent, std::string const& name) {
    line(indent, "function [r, y] = " + name + "(a, b" + (random_.chance(0.30) ? ", varargin" : "") + ")");
  }

  void function(std::size_t indent, std::string const& name, int nesting) {
    functionHead(indent, name);
    block(indent + 1, false, true, 3 + random_.below(8));
    if (nesting > 0 && random_.chance(0.60)) {
      function(indent + 1, name + "Inner", nesting - 1);
      block(indent + 1, false, true, 1 + random_.below(3));
    }
    line(indent, "end");
  }

  void block(std::size_t indent, bool inLoop, bool inFunction, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) statement(indent, inLoop, inFunction);
  }

  void statement(std::size_t indent, bool inLoop, bool inFunction) {
    bool const deep = indent > 4;
    std::size_t const kind = random_.below(deep ? 8 : 20);
    std::size_t const body = 1 + random_.below(3);
    switch (kind) {
      case 0:
      case 1: line(indent, var() + " = " + expression() + ";"); return;
      case 2: line(indent, var() + "(" + expression() + ") = " + expression() + ";"); return;
      case 3: line(indent, var() + ".f = " + expression() + ";"); return;
      case 4: line(indent, "disp(" + expression() + ")"); return;
      case 5: {
        static char const* const shapes[] = {"[%, %] = deal(@);", "[%, ~] = size(@);", "[%(1), %] = deal(@);",
                                             "[%, %.g] = deal(@);"};
        std::string out;
        for (char const* c = shapes[random_.below(std::size(shapes))]; *c != 0; ++c) {
          out += *c == '%' ? var() : *c == '@' ? expression() : std::string(1, *c);
        }
        line(indent, out);
        return;
      }
      case 6:
        if (inLoop) {
          line(indent, random_.chance(0.50) ? "break" : "continue");
        } else {
          line(indent, random_.chance(0.30) ? "return" : var() + " = " + var() + ";");
        }
        return;
      case 7: line(indent, "if " + expression() + ", " + var() + " = 1; end"); return;
      case 8: {
        line(indent, "if " + expression());
        block(indent + 1, inLoop, inFunction, random_.below(3));
        for (std::size_t n = random_.below(3); n > 0; --n) {
          line(indent, "elseif " + expression());
          block(indent + 1, inLoop, inFunction, body);
        }
        if (random_.chance(0.50)) {
          line(indent, "else");
          block(indent + 1, inLoop, inFunction, body);
        }
        line(indent, "end");
        return;
      }
      case 9:
        line(indent, "while " + expression());
        block(indent + 1, true, inFunction, random_.below(4));
        line(indent, "end");
        return;
      case 10:
        line(indent, "for " + var() + " = 1:" + expression());
        block(indent + 1, true, inFunction, body + 1);
        line(indent, "end");
        return;
      case 11: {
        line(indent, "switch " + expression());
        for (std::size_t n = 1 + random_.below(3); n > 0; --n) {
          line(indent + 1, "case " + std::to_string(n));
          block(indent + 2, inLoop, inFunction, random_.below(3));
        }
        if (random_.chance(0.50)) {
          line(indent + 1, "otherwise");
          block(indent + 2, inLoop, inFunction, body);
        }
        line(indent, "end");
        return;
      }
      case 12: {
        line(indent, "try");
        block(indent + 1, inLoop, inFunction, body);
        switch (random_.below(3)) {
          case 0: line(indent, "catch err"); break;
          case 1: line(indent, "catch " + var()); break;
          default: line(indent, "catch"); break;
        }
        block(indent + 1, inLoop, inFunction, random_.below(3));
        line(indent, "end");
        return;
      }
      case 13:
        line(indent, "try");
        block(indent + 1, inLoop, inFunction, body);
        line(indent, "end");
        return;
      case 14: line(indent, "global " + var()); return;
      case 15:
        if (inFunction) {
          line(indent, "persistent " + var());
        } else {
          line(indent, "hold on");
        }
        return;
      case 16: line(indent, var() + " = " + var() + " + " + var() + ";"); return;
      case 17:
        line(indent, "parfor " + var() + " = 1:" + expression());
        block(indent + 1, false, inFunction, body);
        line(indent, "end");
        return;
      case 18:
        line(indent, "spmd");
        block(indent + 1, inLoop, inFunction, body);
        line(indent, "end");
        return;
      default: line(indent, "g = @(" + var() + ") " + expression() + ";"); return;
    }
  }

  SeededRandom random_;
  std::string text_;
};

}  // namespace plexus::testing
