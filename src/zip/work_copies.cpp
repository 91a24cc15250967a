#include "zip/work_copies.h"

#include "checksum/checksum.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"

#include <deque>
#include <filesystem>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace quill::zip {
namespace {

std::optional<std::uint32_t> crc_of_file(const std::string& path) {
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return std::nullopt;
    return quill::crc32(0, file->bytes());
}

}  // namespace

void WorkCopies::begin(std::string directory) {
    directory_ = std::move(directory);
    copies_.clear();
}

std::optional<WorkCopy>& WorkCopies::at(std::size_t member) {
    if (member >= copies_.size()) copies_.resize(member + 1);
    return copies_[member];
}

void WorkCopies::record(const Archive& archive, const MemberResult& result) {
    if (result.member >= archive.members().size()) return;
    const Member& member = archive.members()[result.member];
    WorkCopy& copy = at(result.member).emplace(WorkCopy{std::string(member.raw_name), result, {}, member.crc});
    if (copy.result.path.empty() || member.is_directory()) return;
    const std::string path = files::join(directory_, copy.result.path);
    copy.stamp = files::stamp_of(path);
    const bool crc_is_known = copy.result.verdict == Verdict::verified && !member.is_aes();
    if (!crc_is_known) copy.crc = crc_of_file(path).value_or(0);
}

void WorkCopies::record_copy(std::size_t member, const std::string& name, const std::string& path, bool made_here) {
    const std::string full = files::join(directory_, path);
    WorkCopy& copy = at(member).emplace();
    copy.member = name;
    copy.stamp = files::stamp_of(full);
    copy.crc = crc_of_file(full).value_or(0);
    copy.result.member = member;
    copy.result.verdict = Verdict::verified;
    copy.result.path = path;
    copy.made_here = made_here;
}

void WorkCopies::record_opened(std::size_t member) {
    if (of(member) != nullptr) copies_[member]->opened = true;
}

void WorkCopies::record_saved(std::size_t member) {
    if (of(member) == nullptr) return;
    const WorkCopy before = *of(member);
    record_copy(member, before.member, before.result.path, before.made_here);
    copies_[member]->opened = before.opened;
}

bool WorkCopies::move(std::size_t member, const std::string& path) {
    if (state_of(member) != CopyState::untouched || !of(member)->made_here || of(member)->opened) return false;
    const std::string from = path_of(member), directory = files::dir_of(files::join(directory_, path));
    std::error_code failed;
    std::filesystem::create_directories(directory, failed);
    const std::string name = files::unique_name(directory, files::name_of(path));
    if (!files::rename_new(from, files::join(directory, name))) return false;
    copies_[member]->result.path = files::join(files::dir_of(path), name);
    copies_[member]->stamp = files::stamp_of(path_of(member));
    return true;
}

void WorkCopies::follow(const WorkCopies& moved) {
    std::map<std::pair<std::uint64_t, std::uint64_t>, const WorkCopy*> now;
    for (const std::optional<WorkCopy>& copy : moved.copies_) {
        if (copy && copy->stamp) now[{copy->stamp->device, copy->stamp->inode}] = &*copy;
    }
    for (std::optional<WorkCopy>& copy : copies_) {
        if (!copy || !copy->stamp) continue;
        const auto file = now.find({copy->stamp->device, copy->stamp->inode});
        if (file == now.end() || file->second->result.path == copy->result.path) continue;
        copy->result.path = file->second->result.path;
        copy->stamp = file->second->stamp;
    }
}

void WorkCopies::forget(std::size_t member) {
    if (member < copies_.size()) copies_[member].reset();
}

void WorkCopies::leave_to_user(const std::set<std::string>& paths) {
    for (std::optional<WorkCopy>& copy : copies_) {
        if (!copy || !paths.contains(copy->result.path)) continue;
        copy->result.path.clear();
        copy->stamp.reset();
        copy->opened = false;
    }
}

void WorkCopies::go_back_to(const WorkCopies& before) {
    std::set<std::string> known;
    for (std::size_t i = 0; i < before.copies_.size(); ++i) known.insert(before.path_of(i));
    for (std::size_t i = 0; i < copies_.size(); ++i) {
        if (!known.contains(path_of(i))) remove_untouched(i);
    }
    *this = before;
}

std::vector<WorkCopy> WorkCopies::match_again(const Archive& archive) {
    const std::vector<Member>& members = archive.members();
    std::unordered_map<std::string_view, std::deque<std::size_t>> numbers;  // with the same name, in order
    for (std::size_t i = 0; i < members.size(); ++i) numbers[members[i].raw_name].push_back(i);
    std::vector<std::optional<WorkCopy>> matched(members.size());
    std::vector<WorkCopy> homeless;
    for (std::size_t i = 0; i < copies_.size(); ++i) {
        if (!copies_[i]) continue;
        std::deque<std::size_t>& free = numbers[copies_[i]->member];
        if (!free.empty()) {
            copies_[i]->result.member = free.front();
            matched[free.front()] = std::move(copies_[i]);
            free.pop_front();
        } else if (state_of(i) == CopyState::changed) {
            homeless.push_back(*copies_[i]);
        } else if (!copies_[i]->opened) {
            remove_untouched(i);
        }
    }
    copies_ = std::move(matched);
    return homeless;
}

void WorkCopies::keep_those_of(const Archive& archive) {
    copies_.resize(archive.members().size());
    for (std::size_t i = 0; i < copies_.size(); ++i) {
        if (copies_[i] && copies_[i]->member != archive.members()[i].raw_name) copies_[i].reset();
    }
}

void WorkCopies::erase(const std::set<std::size_t>& members) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < copies_.size(); ++i) {
        if (members.contains(i)) continue;
        if (copies_[i]) copies_[i]->result.member = kept;
        if (kept != i) copies_[kept] = std::move(copies_[i]);
        ++kept;
    }
    copies_.resize(kept);
}

const WorkCopy* WorkCopies::of(std::size_t member) const {
    return member < copies_.size() && copies_[member] ? &*copies_[member] : nullptr;
}

std::string WorkCopies::path_of(std::size_t member) const {
    const WorkCopy* copy = of(member);
    return copy == nullptr || copy->result.path.empty() ? std::string() : files::join(directory_, copy->result.path);
}

CopyState WorkCopies::state_of(std::size_t member) {
    if (of(member) == nullptr || !of(member)->stamp) return CopyState::none;
    WorkCopy& copy = *copies_[member];
    const std::string path = path_of(member);
    const std::optional<files::FileStamp> now = files::stamp_of(path);
    if (!now) return CopyState::gone;
    if (now == copy.stamp) return CopyState::untouched;
    if (now->size != copy.stamp->size || crc_of_file(path) != copy.crc) return CopyState::changed;
    copy.stamp = now;  // saved again with the same bytes
    return CopyState::untouched;
}

std::vector<std::size_t> WorkCopies::changed(bool opened_only) {
    std::vector<std::size_t> members;
    for (std::size_t i = 0; i < copies_.size(); ++i) {
        if (opened_only && (of(i) == nullptr || !of(i)->opened)) continue;
        if (state_of(i) == CopyState::changed) members.push_back(i);
    }
    return members;
}

bool WorkCopies::remove_untouched(std::size_t member) {
    switch (state_of(member)) {
        case CopyState::untouched:
            if (!of(member)->made_here || !files::remove_file(path_of(member))) return false;
            copies_[member]->stamp.reset();
            return true;
        case CopyState::changed:
            return false;
        default:
            return true;
    }
}

}  // namespace quill::zip
