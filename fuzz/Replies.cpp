// Takes the input for the reply to an operation whose response it names, and reads it both ways:
// while it is parsed and from its whole tree. Whatever the bytes, response, log and texts are the
// same, and so are all nodes that a response may see.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "lumo/xml/GrowingTree.h"
#include "tests/support/BothWays.h"

namespace {

void Require(bool holds, char const* what, std::string const& one, std::string const& other) {
  if (holds) return;
  std::fprintf(stderr, "differs: %s\n%s\n%s\n", what, one.c_str(), other.c_str());
  std::abort();
}

void Require(std::string const& one, std::string const& other, char const* what) {
  Require(one == other, what, one, other);
}

/// All that can be seen of a node and of those in it.
void AppendNode(std::string& out, XmlNode<char> const& node) {
  out.append(std::to_string(node.type()))
      .append(" ")
      .append(node.name(), node.name_size())
      .append("=")
      .append(lumo::RawValue(node));
  for (auto* a = node.first_attribute(); a != nullptr; a = a->next_attribute()) {
    out.append(" ").append(a->name(), a->name_size()).append("=").append(lumo::RawValue(*a));
  }
  out += "{";
  for (auto* child = node.first_node(); child != nullptr; child = child->next_sibling()) {
    AppendNode(out, *child);
  }
  out += "}";
}

/// The nodes of the response, read as a list of entries, which are dropped, or as a whole.
std::string NodesOf(XmlNode<char> const& response, bool asList) {
  std::string nodes;
  if (!asList) {
    auto* child = lumo::FirstChild(response);
    for (; child != nullptr; child = child->next_sibling()) AppendNode(nodes, *child);
    return nodes;
  }
  lumo::NodeReader in(&response);
  in.In("results").ForEach("recordData",
                           [&nodes](XmlNode<char> const& item) { AppendNode(nodes, item); });
  in.ForEach("resultRecords", [&nodes](XmlNode<char> const& item) { AppendNode(nodes, item); });
  return nodes;
}

void CompareNodes(std::string const& reply, std::string const& name) {
  for (bool const asList : {true, false}) {
    std::string grown;
    bool const isGrown = lumo::ReadWhileParsed(
        reply, name, [&](XmlNode<char> const* node) { grown = NodesOf(*node, asList); });
    if (!isGrown) continue;
    auto const document = std::make_unique<XmlDocument<char>>();
    bool const isXml = XMLUtilites::Parse(reply.data(), reply.data() + reply.size(), *document);
    Require(isXml, "what is plain is well-formed", reply, "");
    auto const* const body = document->first_node("s:Envelope")->first_node("s:Body");
    Require(grown, NodesOf(*XMLUtilites::GetNode(name, body), asList), "nodes");
  }
}

template <class Impl>
bool CompareOperation(std::string const& reply) {
  static std::string const name = Impl(nullptr).GetResponseTagName();
  if (reply.find(name) == std::string::npos) return false;
  CallResult const asEver = ReadAsEver<Impl>(reply);
  CallResult const fromWholeTree = ReadFromWholeTree<Impl>(reply);
  Require(asEver.fields, fromWholeTree.fields, "fields");
  Require(asEver.error, fromWholeTree.error, "exception");
  Require(asEver.outcome, fromWholeTree.outcome, "outcome");
  Require(asEver.requestText, fromWholeTree.requestText, "text of the request");
  Require(asEver.replyText, TextOfWholeTree(reply), "text of the reply");
  Require(asEver.log == fromWholeTree.log, "log", "", "");
  CompareNodes(reply, name);
  return true;
}

template <class... Impl>
void CompareFirst(OperationList<Impl...> /*operations*/, std::string const& reply) {
  static_cast<void>((CompareOperation<Impl>(reply) || ...));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  kpxtkLumoServiceLayer::Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  CompareFirst(EveryOperation(), {reinterpret_cast<char const*>(data), size});
  return 0;
}
