// SPDX-License-Identifier: MIT
#include "zeltools/platform/huge_pages.h"

#include <cerrno>
#include <sys/mman.h>

namespace platform {

void PreferHugePages(void* block, std::size_t bytes) noexcept {
    int const savedErrno = errno;
    madvise(block, (bytes + HugePageSize / 2) / HugePageSize * HugePageSize, MADV_HUGEPAGE);
    errno = savedErrno;
}

} // namespace platform
