// SPDX-License-Identifier: MIT
#include "daemon/system/startmemory.h"

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace {

/// Releases the segments of one library that are never written, not even by the loader: they equal the file. The memory
/// of the loader's relocations belongs to a segment that can be written.
int releaseConstantSegments(dl_phdr_info *library, std::size_t, void *)
{
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (int index = 0; index < library->dlpi_phnum; ++index) {
        const ElfW(Phdr) &segment = library->dlpi_phdr[index];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W))
            continue;
        const std::uintptr_t begin = (library->dlpi_addr + segment.p_vaddr) / page * page;
        const std::uintptr_t end = (library->dlpi_addr + segment.p_vaddr + segment.p_filesz + page - 1) / page * page;
        ::madvise(reinterpret_cast<void *>(begin), end - begin, MADV_DONTNEED); // fails harmlessly on locked memory
    }
    return 0;
}

} // namespace

void StartMemory::release()
{
    ::malloc_trim(0);
    ::dl_iterate_phdr(releaseConstantSegments, nullptr);
}
