// The growth of time and memory with hostile archives: counted in steps and in bytes, not in seconds.

#include "archive/archive_builder.h"
#include "archive/extracting/member_choice.h"
#include "archive/names/member_paths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::size_t> live_bytes{0}, most_bytes{0}, allocations{0};

/// Returns counted memory, or nullptr if there is none.
void* allocate(std::size_t size) {
    void* place = std::malloc(size);
    if (place == nullptr) return nullptr;
    ++allocations;
    const std::size_t live = live_bytes += malloc_usable_size(place);
    std::size_t most = most_bytes;
    while (most < live && !most_bytes.compare_exchange_weak(most, live)) {
    }
    return place;
}

}  // namespace

void* operator new(std::size_t size) {
    void* place = allocate(size);
    if (place == nullptr) throw std::bad_alloc();
    return place;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete(void* place) noexcept {
    if (place != nullptr) live_bytes -= malloc_usable_size(place);
    std::free(place);
}

void operator delete(void* place, std::size_t) noexcept {
    operator delete(place);
}

void operator delete(void* place, const std::nothrow_t&) noexcept {
    operator delete(place);
}

namespace quill::zip {
namespace {

using tests::ArchiveBuilder;

/// The cost of opening an archive and finding a path for each member.
struct Cost {
    std::uint64_t steps = 0;
    std::size_t allocations = 0;
    std::size_t bytes = 0;  // the peak
    std::size_t members = 0;
};

Cost cost_of(const std::string& bytes) {
    Cost cost;
    const std::size_t live = live_bytes, before = allocations;
    most_bytes = live;
    const Result<Archive> archive = Archive::parse(bytes);
    EXPECT_TRUE(archive.ok());
    const MemberPaths paths(archive->members());
    cost.steps = paths.steps();
    cost.allocations = allocations - before;
    cost.bytes = most_bytes - live;
    cost.members = archive->members().size();
    return cost;
}

std::string numbered(const char* before, std::size_t number, const char* after) {
    return before + std::to_string(number) + after;
}

struct Nasty {
    const char* what;
    std::function<std::string(std::size_t)> name;  // of member number i
    bool has_directory = true;
    tests::Odd odd = {};
    std::size_t more_bytes = 256U << 10U;  // tables of code pages, first blocks
};

const Nasty nasties[] = {
    {"no names", [](std::size_t) { return std::string(); }},
    {"one name", [](std::size_t) { return std::string("a.txt"); }},
    {"files in the way of directories, and of their numbers",
     [](std::size_t i) { return i == 0       ? "a"
                                : i % 2 == 0 ? numbered("a (", i, ")")
                                             : numbered("a/", i, "/x"); }},
    {"names that are one when they are numbered",
     [](std::size_t i) { return std::string(250, 'x') + std::to_string(10000 + i / 20); }},
    {"deep names",
     [](std::size_t i) {
         std::string name = std::to_string(i) + "/";
         for (int k = 0; k < 300; ++k) name += "d/";
         return name + "x";
     },
     true,
     {},
     4U << 20U},  // 65536 directories
    {"one deep name",
     [](std::size_t i) {
         std::string name;
         for (int k = 0; k < 300; ++k) name += "d/";
         return name + std::to_string(i);
     }},
    {"names in an old character set", [](std::size_t i) { return numbered("\x81\x82", i, "\x83"); }},
    {"no directory", [](std::size_t i) { return std::to_string(i); }, false},
    {"no directory, sizes behind the data",
     [](std::size_t i) { return std::to_string(i); },
     false,
     {.silent_local = true}},
};

std::string archive_of(const Nasty& nasty, std::size_t count) {
    ArchiveBuilder builder;
    for (std::size_t i = 0; i < count; ++i) builder.add(nasty.name(i), "", nasty.odd);
    return nasty.has_directory ? builder.finish() : builder.members();
}

TEST(Growth, OpeningIsLinearInMembersAndSmall) {
    constexpr std::size_t count = 400;
    for (const Nasty& nasty : nasties) {
        SCOPED_TRACE(nasty.what);
        const Cost small = cost_of(archive_of(nasty, count)), large = cost_of(archive_of(nasty, 4 * count));
        EXPECT_EQ(large.members, 4 * count);
        EXPECT_LE(large.steps, small.steps * 8);  // the square would be 16
        EXPECT_LE(large.allocations, small.allocations * 5 + 100);
        const std::size_t names = nasty.name(count).size() * 4 * count;
        EXPECT_LE(large.bytes, 4 * count * 240 + names * 3 + nasty.more_bytes);
    }
}

TEST(Growth, DirectoriesOfUnboundedDepthTakeNoMemoryOfTheirOwn) {
    constexpr std::size_t count = 200;
    const Nasty deep{"", [](std::size_t i) {
                         std::string name = std::to_string(i);
                         for (int k = 0; k < 2000; ++k) name += "/d";
                         return name;
                     }};
    EXPECT_LE(cost_of(archive_of(deep, count)).bytes, 4U << 20U);  // whole prefixes would be 800 MB
}

TEST(Growth, ChoosingAmongManyNamesIsLinear) {
    const auto steps = [](std::size_t count) {
        std::vector<std::string> names;
        std::string prefix;
        for (std::size_t i = 0; i < count; ++i) names.push_back(prefix += "d/");
        MemberChoice choice(names);
        for (std::size_t i = 0; i < count; ++i) EXPECT_TRUE(choice.has(prefix + std::to_string(i)));
        EXPECT_TRUE(choice.unmatched().empty());
        return choice.steps();
    };
    EXPECT_LE(steps(1000), steps(250) * 5);
}

}  // namespace
}  // namespace quill::zip
