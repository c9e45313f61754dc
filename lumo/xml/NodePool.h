#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "lumo/xml/Xml.h"

namespace lumo {

/// Memory for nodes and texts. What was made since a mark can be given back at once; the memory
/// then serves what is made next.
class NodePool {
 public:
  struct Mark {
    std::size_t block = 0;
    std::size_t used = 0;
  };
  Mark GetMark() const { return m_next; }
  void ReturnTo(Mark const& mark) { m_next = mark; }

  XmlNode<char>* MakeNode(rapidxml::node_type type) {
    return new (Take(sizeof(XmlNode<char>))) XmlNode<char>(type);
  }
  XmlAttribute<char>* MakeAttribute() {
    return new (Take(sizeof(XmlAttribute<char>))) XmlAttribute<char>();
  }
  char* MakeText(std::size_t size) { return static_cast<char*>(Take(size)); }

 private:
  static constexpr std::size_t kBlock = 32768;

  void* Take(std::size_t size) {
    size = (size + alignof(void*) - 1) & ~(alignof(void*) - 1);
    while (m_next.block == m_blocks.size() || size > m_blocks[m_next.block].size - m_next.used)
      MoveOn(size);
    return m_blocks[m_next.block].memory.get() + std::exchange(m_next.used, m_next.used + size);
  }
  void MoveOn(std::size_t size) {
    if (m_next.block < m_blocks.size()) m_next = {m_next.block + 1, 0};
    if (m_next.block < m_blocks.size()) return;
    std::size_t const blockSize = size > kBlock ? size : kBlock;
    m_blocks.push_back({std::unique_ptr<char[]>(new char[blockSize]), blockSize});
  }

  struct Block {
    std::unique_ptr<char[]> memory;
    std::size_t size;
  };
  std::vector<Block> m_blocks;
  Mark m_next;
};

}  // namespace lumo
