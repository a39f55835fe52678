#include "tools/listing/graph_listing.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/i18n/i18n.hpp"

namespace plexus::listing {

namespace {

using ca::rulesystem::ConsumerBase;
using ca::rulesystem::ProducerBase;
using ca::rulesystem::ProducerConsumerBase;

struct Edge {
  std::size_t to;
  bool extra;  // an extra child (a case of a switch), not a consumer
};

struct Vertex {
  ProducerConsumerBase const* base;
  std::string kind;
  std::string details;
  std::vector<Edge> children;
  int parents = 0;
  std::optional<std::int32_t> consumed;
  std::optional<std::int32_t> produced;
};

// The graph below the roots, each vertex once, numbered in order of discovery
// (depth first, consumers before extra children).
class GraphModel {
 public:
  GraphModel(ca::rulesystem::AllNodes const& all, ListingOptions const& options) : options_(options) {
    std::vector<ProducerConsumerBase const*> allRoots = all.allProducers();
    allRoots.push_back(all.definition.impl.get());
    allRoots.push_back(all.use.impl.get());
    for (ProducerConsumerBase const* root : allRoots) {
      if (root == nullptr) continue;
      auto const* producer = dynamic_cast<ProducerBase const*>(root);
      bool const idle = producer != nullptr && producer->consumers().empty() && root->extraChildren().empty();
      if (idle && !options_.includeIdleRoots) {
        ++idleRoots;
        continue;
      }
      roots.push_back(visit(root));
    }
  }

  std::vector<Vertex> vertices;
  std::vector<std::size_t> roots;
  int idleRoots = 0;

 private:
  std::size_t visit(ProducerConsumerBase const* base) {
    if (auto known = index_.find(base); known != index_.end()) return known->second;
    std::size_t const id = vertices.size();
    index_.emplace(base, id);
    vertices.push_back(describe(base));

    std::vector<Edge> children;
    if (auto const* producer = dynamic_cast<ProducerBase const*>(base)) {
      for (ConsumerBase const* consumer : producer->consumers()) {
        children.push_back({visit(dynamic_cast<ProducerConsumerBase const*>(consumer)), false});
      }
    }
    // Extra children come in hash order; list them by their details so that
    // a listing reads the same every time.
    std::vector<ProducerConsumerBase const*> extras;
    for (auto const* extra : base->extraChildren()) extras.push_back(dynamic_cast<ProducerConsumerBase const*>(extra));
    std::stable_sort(extras.begin(), extras.end(),
                     [](auto const* a, auto const* b) { return a->detailsDescription() < b->detailsDescription(); });
    for (auto const* extra : extras) children.push_back({visit(extra), true});
    for (Edge const& edge : children) ++vertices[edge.to].parents;
    vertices[id].children = std::move(children);
    return id;
  }

  Vertex describe(ProducerConsumerBase const* base) const {
    Vertex vertex{base,
                  fl::i18n::to_utf8(base->kindDescription()),
                  fl::i18n::to_utf8(base->detailsDescription()),
                  {},
                  0,
                  std::nullopt,
                  std::nullopt};
    if (ca::rulesystem::Profiler const* profiler = options_.profiler) {
      if (auto const* consumer = dynamic_cast<ConsumerBase const*>(base)) {
        auto found = profiler->numConsumed.find(consumer);
        vertex.consumed = found == profiler->numConsumed.end() ? 0 : found->second;
      }
      if (auto const* producer = dynamic_cast<ProducerBase const*>(base)) {
        auto found = profiler->numProduced.find(producer);
        vertex.produced = found == profiler->numProduced.end() ? 0 : found->second;
      }
    }
    return vertex;
  }

  ListingOptions const& options_;
  std::unordered_map<ProducerConsumerBase const*, std::size_t> index_;
};

std::string counts(Vertex const& vertex) {
  std::string text;
  if (vertex.consumed) text += fmt::format("in {}", *vertex.consumed);
  if (vertex.produced) text += fmt::format("{}out {}", text.empty() ? "" : ", ", *vertex.produced);
  return text;
}

void listFrom(GraphModel const& model, std::size_t id, int depth, std::vector<bool>& listed, std::string& out) {
  Vertex const& vertex = model.vertices[id];
  std::string const indent(static_cast<std::size_t>(depth) * 2, ' ');
  if (listed[id]) {
    out += fmt::format("{}-> #{}\n", indent, id + 1);
    return;
  }
  listed[id] = true;
  std::string line = fmt::format("{}#{} {}", indent, id + 1, vertex.kind);
  if (!vertex.details.empty()) line += ' ' + vertex.details;
  if (vertex.parents > 1) line += fmt::format("  ({} parents)", vertex.parents);
  if (std::string const c = counts(vertex); !c.empty()) line += fmt::format("  [{}]", c);
  out += line + '\n';
  for (Edge const& edge : vertex.children) listFrom(model, edge.to, depth + 1, listed, out);
}

std::string dotEscape(std::string const& text) {
  std::string escaped;
  for (char c : text) {
    if (c == '"' || c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace

std::string listGraph(ca::rulesystem::AllNodes const& all, ListingOptions const& options) {
  GraphModel const model(all, options);
  std::vector<bool> listed(model.vertices.size(), false);
  std::string out;
  for (std::size_t root : model.roots) listFrom(model, root, 0, listed, out);
  if (model.idleRoots > 0) out += fmt::format("({} roots without rules not shown)\n", model.idleRoots);
  return out;
}

std::string graphToDot(ca::rulesystem::AllNodes const& all, ListingOptions const& options) {
  GraphModel const model(all, options);
  std::string out = "digraph plexus {\n  rankdir=LR;\n  node [shape=box, fontname=\"monospace\"];\n";
  for (std::size_t id = 0; id < model.vertices.size(); ++id) {
    Vertex const& vertex = model.vertices[id];
    std::string label = dotEscape(vertex.kind);
    if (!vertex.details.empty()) label += "\\n" + dotEscape(vertex.details);
    if (std::string const c = counts(vertex); !c.empty()) label += "\\n" + c;
    out += fmt::format("  v{} [label=\"{}\"];\n", id + 1, label);
  }
  for (std::size_t id = 0; id < model.vertices.size(); ++id) {
    for (Edge const& edge : model.vertices[id].children) {
      out += fmt::format("  v{} -> v{}{};\n", id + 1, edge.to + 1, edge.extra ? " [style=dashed]" : "");
    }
  }
  out += "}\n";
  return out;
}

}  // namespace plexus::listing
