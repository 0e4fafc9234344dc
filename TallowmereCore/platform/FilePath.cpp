#include "platform/FilePath.h"

#include <cstring>
#include <new>
#include <utility>

namespace tallowmere {

FilePath::FilePath(std::size_t length) {
    void* memory = ::operator new(sizeof(Block) + length + 1);
    m_block = new (memory) Block{1, length};
    bytes()[length] = '\0';
}

char* FilePath::bytes() const {
    return reinterpret_cast<char*>(m_block + 1);
}

FilePath::FilePath(std::string_view native) : FilePath(native.size()) {
    std::memcpy(bytes(), native.data(), native.size());
}

FilePath FilePath::joined(std::string_view folder, std::string_view name) {
    const bool slash = !folder.ends_with('/');
    FilePath path(folder.size() + (slash ? 1 : 0) + name.size());
    char* next = path.bytes();
    std::memcpy(next, folder.data(), folder.size());
    next += folder.size();
    if (slash) {
        *next++ = '/';
    }
    std::memcpy(next, name.data(), name.size());
    return path;
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
