#include "Support/GuardedText.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace tallyfox::test {

GuardedText::GuardedText(std::size_t capacity)
    : m_pageSize(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)))
    , m_roomSize((capacity / m_pageSize + 1) * m_pageSize)
{
    void* const pages = ::mmap(nullptr, m_roomSize + 2 * m_pageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED)
        throw std::system_error{errno, std::system_category(), "mmap"};
    m_pages = static_cast<char*>(pages);
    if (::mprotect(m_pages + m_pageSize, m_roomSize, PROT_READ | PROT_WRITE) != 0)
        throw std::system_error{errno, std::system_category(), "mprotect"};
}

GuardedText::~GuardedText()
{
    ::munmap(m_pages, m_roomSize + 2 * m_pageSize);
}

std::string_view GuardedText::atEnd(std::string_view text)
{
    if (text.size() > m_roomSize)
        throw std::length_error{"GuardedText"};
    char* const begin = m_pages + m_pageSize + m_roomSize - text.size();
    std::memcpy(begin, text.data(), text.size());
    return {begin, text.size()};
}

std::string_view GuardedText::atBegin(std::string_view text)
{
    if (text.size() > m_roomSize)
        throw std::length_error{"GuardedText"};
    char* const begin = m_pages + m_pageSize;
    std::memcpy(begin, text.data(), text.size());
    return {begin, text.size()};
}

} // namespace tallyfox::test
