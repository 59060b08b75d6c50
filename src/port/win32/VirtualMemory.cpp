#include "port/win32/VirtualMemory.h"

#include "port/win32/Diagnostics.h"

#include <sys/mman.h>

namespace
{

constexpr std::size_t smallPage = 4096;
constexpr std::size_t largePage = std::size_t(2) << 20;

/// Stands in the small page before each block.
struct MappingRecord
{
    void *start;
    std::size_t length;
};

MappingRecord *recordOf(void *block)
{
    return reinterpret_cast<MappingRecord *>(static_cast<char *>(block) - smallPage);
}

char *firstBlockPlace(char *start)
{
    const auto address = reinterpret_cast<std::uintptr_t>(start) + smallPage;
    return reinterpret_cast<char *>((address + largePage - 1) & ~(largePage - 1));
}

} // namespace

LPVOID VirtualAlloc(LPVOID address, SIZE_T size, DWORD allocationType, DWORD protect)
{
    const bool supported =
        !address && protect == PAGE_READWRITE && (allocationType & ~MEM_LARGE_PAGES) == (MEM_RESERVE | MEM_COMMIT);
    if (!supported || size == 0 || size > SIZE_MAX - 2 * largePage)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const std::size_t length = size + largePage + smallPage;
    void *start = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED)
    {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    char *block = firstBlockPlace(static_cast<char *>(start));
    if (allocationType & MEM_LARGE_PAGES)
        madvise(block, size, MADV_HUGEPAGE); // a wish: small pages serve as well
    *recordOf(block) = {start, length};
    return block;
}

BOOL VirtualFree(LPVOID address, SIZE_T size, DWORD freeType)
{
    if (!address || size != 0 || freeType != MEM_RELEASE)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const MappingRecord record = *recordOf(address);
    return munmap(record.start, record.length) == 0;
}
