#include "files/mapping.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quill::files {

/// A mapping in a form that the signal handler can read: memory that is never freed.
struct GuardedRange {
    std::atomic<std::uintptr_t> begin{0};
    std::atomic<std::uintptr_t> end{0};
};

namespace {

struct Block {
    std::array<GuardedRange, 256> ranges;
    Block* next = nullptr;
};

const std::size_t page_size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
std::atomic<Block*> blocks{nullptr};  // for the handler, which takes no lock
std::mutex mutex;                     // guards what follows
std::vector<GuardedRange*> free_ranges;
struct sigaction previous_action;

/// Maps a page of zeros where the file has lost its page; passes on a SIGBUS from anywhere else.
void on_bus_error(int, siginfo_t* info, void*) {
    const auto at = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (const Block* block = blocks; block != nullptr; block = block->next) {
        for (const GuardedRange& range : block->ranges) {
            if (at < range.begin.load() || at >= range.end.load()) continue;
            void* page = reinterpret_cast<void*>(at & ~(page_size - 1));
            if (mmap(page, page_size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED) return;
        }
    }
    sigaction(SIGBUS, &previous_action, nullptr);
}

void install_handler() {
    static const bool installed = [] {
        struct sigaction action = {};
        action.sa_sigaction = on_bus_error;
        action.sa_flags = SA_SIGINFO;
        sigemptyset(&action.sa_mask);
        return sigaction(SIGBUS, &action, &previous_action) == 0;
    }();
    static_cast<void>(installed);
}

/// Adds a block and its ranges to the free list. The blocks live as long as the process.
void add_block() {
    auto* const block = new Block;
    for (GuardedRange& range : block->ranges) free_ranges.push_back(&range);
    block->next = blocks;
    blocks = block;
}

GuardedRange* guard(const char* data, std::size_t size) {
    install_handler();
    const std::lock_guard lock(mutex);
    if (free_ranges.empty()) add_block();
    GuardedRange* const range = free_ranges.back();
    free_ranges.pop_back();
    range->begin = reinterpret_cast<std::uintptr_t>(data);
    range->end = range->begin + size;
    return range;
}

void release(GuardedRange* range) {
    range->end = 0;
    range->begin = 0;
    const std::lock_guard lock(mutex);
    free_ranges.push_back(range);
}

}  // namespace

Result<Mapping> Mapping::of(int fd, std::size_t size, std::uint64_t offset) {
    Mapping out;
    if (size == 0) return out;
    void* const data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, static_cast<off_t>(offset));
    if (data == MAP_FAILED) return system_error(errno);
    madvise(data, size, MADV_SEQUENTIAL);
    out.data_ = static_cast<const char*>(data);
    out.size_ = size;
    out.guard_ = guard(out.data_, size);
    return out;
}

Mapping::Mapping(Mapping&& other) noexcept {
    *this = std::move(other);
}

Mapping& Mapping::operator=(Mapping&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(guard_, other.guard_);
    return *this;
}

Mapping::~Mapping() {
    if (data_ == nullptr) return;
    release(guard_);
    munmap(const_cast<char*>(data_), size_);
}

}  // namespace quill::files
