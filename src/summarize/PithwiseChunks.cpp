#include "Characters.h"
#include "Pithwise.h"

#include <cassert>

namespace Pithwise {

namespace {

/// Collects lines into chunks. Consecutive lines always lie side by side in the text, so a chunk is
/// a view and nothing is copied.
class Chunker
{
public:
    Chunker(std::string_view text, std::size_t size) : m_text(text), m_size(size) {}

    std::vector<std::string_view> take()
    {
        std::size_t begin = 0;
        while (begin <= m_text.size()) {
            const std::size_t end = std::min(m_text.find('\n', begin), m_text.size());
            addLine(begin, end);
            begin = end + 1;
        }
        if (hasCurrent())
            emitCurrent();
        return std::move(m_chunks);
    }

private:
    bool hasCurrent() const { return m_end > m_begin; }

    void emitCurrent()
    {
        m_chunks.push_back(m_text.substr(m_begin, m_end - m_begin));
        m_begin = m_end;
        m_characters = 0;
    }

    void addLine(std::size_t begin, std::size_t end)
    {
        Characters::Prefix line = Characters::prefix(m_text.substr(begin, end - begin), m_size);
        while (begin + line.bytes < end) { // longer than m_size characters
            if (hasCurrent())
                emitCurrent();
            m_chunks.push_back(m_text.substr(begin, line.bytes));
            begin += line.bytes;
            line = Characters::prefix(m_text.substr(begin, end - begin), m_size);
        }
        // The "\n" that would join this line to the chunk is counted even if the chunk is empty.
        if (m_characters + line.characters + 1 > m_size)
            emitCurrent();
        if (hasCurrent()) {
            // After a carriage return, the joining "\n" is not a character of its own.
            m_characters += (m_text[m_end - 1] == '\r' ? 0 : 1) + line.characters;
        } else {
            m_begin = begin;
            m_characters = line.characters;
        }
        m_end = end;
    }

    std::string_view m_text;
    std::size_t m_size;
    std::vector<std::string_view> m_chunks;
    std::size_t m_begin = 0; // the current chunk, empty when m_begin == m_end
    std::size_t m_end = 0;
    std::size_t m_characters = 0; // of the current chunk
};

} // namespace

std::vector<std::string_view> chunks(std::string_view text, std::size_t size)
{
    assert(size >= 1);
    return Chunker(text, size).take();
}

} // namespace Pithwise
