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
    std::size_t blocks = 0;  // up to the one in use
    char* next = nullptr;    // what is free of it
    char* end = nullptr;
  };
  Mark GetMark() const { return m_free; }
  void ReturnTo(Mark const& mark) { m_free = mark; }

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
    while (size > static_cast<std::size_t>(m_free.end - m_free.next)) MoveOn(size);
    return std::exchange(m_free.next, m_free.next + size);
  }
  void MoveOn(std::size_t size) {
    if (m_free.blocks == m_blocks.size()) {
      std::size_t const blockSize = size > kBlock ? size : kBlock;
      m_blocks.push_back({std::unique_ptr<char[]>(new char[blockSize]), blockSize});
    }
    Block const& block = m_blocks[m_free.blocks];
    m_free = {m_free.blocks + 1, block.memory.get(), block.memory.get() + block.size};
  }

  struct Block {
    std::unique_ptr<char[]> memory;
    std::size_t size;
  };
  std::vector<Block> m_blocks;
  Mark m_free;
};

}  // namespace lumo
