#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

/// A set of strings that are spelled byte by byte, from `root` on.
class ByteTrie
{
public:
    using Node = std::uint64_t;

    static constexpr Node root = 0;

    /// The node reached from `node` by `byte`.
    Node next(Node node, char byte)
    {
        const Node edge = node << 8 | static_cast<unsigned char>(byte);
        return m_nodes.try_emplace(edge, m_nodes.size() + 1).first->second;
    }

    /// Whether the string that leads to `node` is in the set.
    bool contains(Node node) const { return m_ends.contains(node); }
    void insert(Node node) { m_ends.insert(node); }

private:
    std::unordered_map<Node, Node> m_nodes;
    std::unordered_set<Node> m_ends;
};
