#include "archive/names/path_tree.h"

#include "files/names.h"
#include "text/ascii.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace quill::zip {
namespace {

constexpr std::uint32_t block_size = 1U << 16U;
constexpr std::size_t first_slots = 64;
constexpr std::uint64_t golden = 0x9E3779B97F4A7C15;

std::size_t hash_of(PathTree::Id directory, std::string_view name) {
    return std::hash<std::string>()(text::to_lower(name)) ^ static_cast<std::size_t>((directory + 1) * golden);
}

/// Returns the least number with as many digits as `number`; 2 for one digit.
unsigned first_of_length(unsigned number) {
    unsigned first = 1;
    while (number / first >= 10) first *= 10;
    return std::max(first, 2U);
}

}  // namespace

PathTree::PathTree(std::size_t expected)
    : entries_(1), slots_(std::bit_ceil(std::max(first_slots, expected + expected / 2)), none) {
    entries_.reserve(expected + 1);
    entries_[root].is_directory = true;
}

std::string_view PathTree::name_of(const Entry& entry) const {
    return {blocks_[entry.name_at / block_size].get() + entry.name_at % block_size, entry.name_size};
}

/// Returns the entry's slot in the table, or the one where it would be put.
std::size_t PathTree::slot_of(Id directory, std::string_view name) const {
    ++steps_;
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash_of(directory, name) & mask;
    for (; slots_[slot] != none; slot = (slot + 1) & mask) {
        ++steps_;
        const Entry& entry = entries_[slots_[slot]];
        if (entry.parent == directory && text::equal_ignoring_case(name_of(entry), name)) break;
    }
    return slot;
}

PathTree::Id PathTree::find(Id directory, std::string_view name) const {
    return slots_[slot_of(directory, name)];
}

PathTree::Id PathTree::add(Id directory, std::string_view name, bool is_directory) {
    if (entries_.size() * 3 > slots_.size() * 2) grow();
    const auto left = static_cast<std::size_t>(blocks_.size() * block_size - names_end_);
    if (left < name.size()) {
        names_end_ = static_cast<std::uint32_t>(blocks_.size() * block_size);
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(block_size));
    }
    Entry entry;
    entry.parent = directory;
    entry.name_at = names_end_;
    entry.name_size = static_cast<std::uint8_t>(name.size());
    entry.is_directory = is_directory;
    std::copy(name.begin(), name.end(), blocks_.back().get() + names_end_ % block_size);
    names_end_ += entry.name_size;
    const Id id = static_cast<Id>(entries_.size());
    slots_[slot_of(directory, name)] = id;
    entries_.push_back(entry);
    return id;
}

void PathTree::grow() {
    std::vector<Id>(slots_.size() * 2, none).swap(slots_);
    for (Id id = 1; id < entries_.size(); ++id) {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = hash_of(entries_[id].parent, name_of(entries_[id])) & mask;
        while (slots_[slot] != none) slot = (slot + 1) & mask;
        slots_[slot] = id;
    }
}

/// Series that share a name have the same names in all numbers of that length: so the first of these remembers how far
/// they are taken.
PathTree::Id PathTree::add_numbered(Id directory, const std::string& name, bool directory_will_do, bool is_directory) {
    if (find(directory, name) == none) return add(directory, name, is_directory);
    std::vector<Id> firsts;
    Id found = none;
    unsigned number = 2;
    while (true) {
        const std::string numbered = files::numbered_name(name, number);
        found = find(directory, numbered);
        const bool is_free = found == none;
        if (is_free) found = add(directory, numbered, is_directory);
        if (is_free || (directory_will_do && entries_[found].is_directory)) break;
        const unsigned first = first_of_length(number);
        if (number++ != first) continue;
        firsts.push_back(found);
        number = std::clamp(entries_[found].free_number, number, first == 2 ? 10 : first * 10);
    }
    for (const Id first : firsts) entries_[first].free_number = number;
    return found;
}

PathTree::Id PathTree::enter(Id directory, const std::string& name) {
    const Id found = find(directory, name);
    if (found == none) return add(directory, name, true);
    if (entries_[found].is_directory) return found;
    if (entries_[found].stand_in == none) {
        const Id other = add_numbered(directory, name, true, true);
        entries_[found].stand_in = other;
    }
    return entries_[found].stand_in;
}

std::string PathTree::path(Id id) const {
    std::size_t size = 0;
    for (Id at = id; at != root; at = entries_[at].parent) size += entries_[at].name_size + std::size_t{1};
    if (size == 0) return {};
    std::string path(size - 1, '/');
    for (Id at = id; at != root; at = entries_[at].parent) {
        const std::string_view name = name_of(entries_[at]);
        size -= name.size() + 1;
        std::copy(name.begin(), name.end(), path.begin() + static_cast<std::ptrdiff_t>(size));
    }
    return path;
}

void PathTree::forget_names_index() {
    std::vector<Id>().swap(slots_);
}

}  // namespace quill::zip
