#include "platform/SecureRandom.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <juce_core/juce_core.h>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
/** Two pages of memory, of which the second may not be touched. */
class PageBeforeAWall
{
public:
    PageBeforeAWall() : size ((size_t) ::sysconf (_SC_PAGESIZE))
    {
        auto* const memory = ::mmap (nullptr, 2 * size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);

        if (memory != MAP_FAILED && ::mprotect (static_cast<unsigned char*> (memory) + size, size, PROT_NONE) == 0)
            begin = static_cast<unsigned char*> (memory);
    }

    ~PageBeforeAWall()    { ::munmap (begin, 2 * size); }

    unsigned char* end() const { return begin + size; }

    unsigned char* begin = nullptr;
    const size_t size;

    JUCE_DECLARE_NON_COPYABLE (PageBeforeAWall)
};
}

TEST (SecureRandom, AFailureLeavesNothingOfWhatWasAlreadyThere)
{
    const PageBeforeAWall page;
    ASSERT_NE (page.begin, nullptr);
    std::fill (page.begin, page.end(), (unsigned char) 0);

    EXPECT_FALSE (platform::fillWithSecureRandom (page.end() - 1024, 2048)) << "the second half cannot be written";
    EXPECT_EQ (std::count (page.begin, page.end(), 0), (ptrdiff_t) page.size);
}
