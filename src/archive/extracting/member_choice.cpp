#include "archive/extracting/member_choice.h"

namespace quill::zip {
namespace {

/// FNV-1a: the hash of a prefix extends to that of the next.
constexpr std::uint64_t hash_of_nothing = 0xCBF29CE484222325;

std::uint64_t go_on(std::uint64_t hash, char c) {
    return (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
}

}  // namespace

MemberChoice::MemberChoice(const std::vector<std::string>& names) : names_(names), matched_(names.size(), false) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::uint64_t hash = hash_of_nothing;
        for (const char c : names[i]) hash = go_on(hash, c);
        const auto [begin, end] = by_hash_.equal_range(hash);
        bool is_new = true;
        for (auto same = begin; same != end; ++same) is_new = is_new && names[same->second] != names[i];
        if (is_new) by_hash_.emplace(hash, i);
        matched_[i] = !is_new;
    }
}

/// Compares a name that has matched before only if the member is not chosen yet.
bool MemberChoice::asks(std::uint64_t hash, std::string_view prefix, bool is_chosen) {
    const auto [begin, end] = by_hash_.equal_range(hash);
    for (auto name = begin; name != end; ++name) {
        if (is_chosen && matched_[name->second]) continue;
        ++steps_;
        if (names_[name->second] != prefix) continue;
        matched_[name->second] = true;
        return true;
    }
    return is_chosen;
}

bool MemberChoice::has(std::string_view member_name) {
    if (names_.empty()) return true;
    bool is_chosen = false;
    std::uint64_t hash = hash_of_nothing;
    for (std::size_t i = 0; i < member_name.size(); ++i) {
        const bool is_slash = member_name[i] == '/';
        if (is_slash) is_chosen = asks(hash, member_name.substr(0, i), is_chosen);
        hash = go_on(hash, member_name[i]);
        if (is_slash) is_chosen = asks(hash, member_name.substr(0, i + 1), is_chosen);
    }
    return asks(hash, member_name, is_chosen);
}

std::vector<std::string> MemberChoice::unmatched() const {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (!matched_[i]) out.push_back(names_[i]);
    }
    return out;
}

}  // namespace quill::zip
