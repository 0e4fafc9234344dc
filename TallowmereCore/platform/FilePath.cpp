#include "platform/FilePath.h"

#include <cstring>
#include <new>
#include <utility>

namespace tallowmere {

FilePath::FilePath(std::string_view native) {
    void* memory = ::operator new(sizeof(Block) + native.size() + 1);
    m_block = new (memory) Block{1, native.size()};
    char* text = reinterpret_cast<char*>(m_block + 1);
    std::memcpy(text, native.data(), native.size());
    text[native.size()] = '\0';
}

FilePath::FilePath(const FilePath& other) noexcept : m_block(other.m_block) {
    if (m_block) {
        m_block->references.fetch_add(1, std::memory_order_relaxed);
    }
}

FilePath::FilePath(FilePath&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}

FilePath& FilePath::operator=(FilePath other) noexcept {
    std::swap(m_block, other.m_block);
    return *this;
}

FilePath::~FilePath() {
    if (m_block && m_block->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        m_block->~Block();
        ::operator delete(m_block);
    }
}

std::string_view FilePath::native() const {
    return m_block ? std::string_view(c_str(), m_block->length) : std::string_view();
}

const char* FilePath::c_str() const {
    return m_block ? reinterpret_cast<const char*>(m_block + 1) : "";
}

}  // namespace tallowmere
