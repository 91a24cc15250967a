#include "archive/library/library.h"

#include "archive/changing/tree_walk.h"
#include "archive/container/member_time.h"
#include "files/path.h"
#include "text/printable.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

namespace quill::zip {
namespace {

constexpr std::array<std::string_view, 52> error_texts{
    "success",
    "the archive has no further member",
    "the file does not exist",
    "the file is no ZIP file",
    "the system does not allow it",
    "the disk is full",
    "reading or writing failed",
    "the archive is damaged, or of a kind that can't be changed",
    "the request makes no sense",
    "a member is damaged",
    "a member needs a password, or another one",
    "the operation was stopped",
};

LibraryResult result_of(ErrorCode code) {
    switch (code) {
        case ErrorCode::not_found:
            return library_not_found;
        case ErrorCode::access:
        case ErrorCode::exists:
            return library_access;
        case ErrorCode::no_space:
            return library_disk_full;
        case ErrorCode::bad_input:
            return library_no_archive;
        case ErrorCode::unsupported:
        case ErrorCode::limit:
            return library_unsupported;
        case ErrorCode::bad_argument:
            return library_bad_call;
        case ErrorCode::cancelled:
            return library_cancelled;
        case ErrorCode::io:
            return library_io;
    }
    return library_io;
}

std::int32_t attributes_of(const Member& member) {
    constexpr std::uint32_t dos_bits = 0x3F;
    auto attributes = static_cast<std::int32_t>(member.external_attributes & dos_bits);
    if (member.is_directory()) attributes |= attribute_directory;
    if (member.is_encrypted()) attributes |= attribute_encrypted;
    return attributes;
}

/// Returns a size of a header, which can state more than any file has.
std::int64_t stated(std::uint64_t size) {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::min(size, most));
}

std::string name_of_item(const ZipItem& item, bool keeps_path) {
    if (!item.member.empty()) return item.member;
    return keeps_path ? member_name_of(item.name) : files::name_of(item.name);
}

Result<PackedMember> pack_item(ArchiveChange& change, const ZipItem& item, const std::string& name,
                               const PackOptions& options) {
    switch (item.kind) {
        case EntryKind::directory:
            return pack_directory(name, item.modified);
        case EntryKind::link:
            return change.pack_link(item.name, name, options);
        case EntryKind::file:
            break;
    }
    return change.pack(item.name, name, options);
}

/// Returns the error with the name of the failed item.
Error failure_of(const ZipItem& item, const ZipStrings& strings, Error error) {
    const bool is_one_of_many = strings.itemList.size() > 1 && error.code != ErrorCode::cancelled;
    if (is_one_of_many) error.text = text::printable(files::name_of(item.name)) + ": " + error.text;
    return error;
}

/// Returns how `item` is packed: as the others, or like the member that it replaces.
PackOptions options_of(const ArchiveChange& change, const ZipItem& item, PackOptions options) {
    if (!item.number) return options;
    const std::optional<archive::Encryption> old = change.old_members()[*item.number].encryption();
    options.encryption = old.value_or(options.encryption);
    if (item.keeps_protection && !old) options.password.clear();
    return options;
}

}  // namespace

std::string library_error_text(std::int16_t result) {
    const bool known = result >= 0 && static_cast<std::size_t>(result) < error_texts.size();
    return "ZIP error: " + std::string(known ? error_texts.at(static_cast<std::size_t>(result)) : std::string_view());
}

ZipLibrary::ZipLibrary(MakeOutput make_output) : make_output_(std::move(make_output)) {}

ZipLibrary::~ZipLibrary() {
    write_waiting();
}

std::int16_t ZipLibrary::fail(const Error& error) {
    error_ = error;
    return result_of(error.code);
}

std::int16_t ZipLibrary::dzipVB(const ZipCommand& command, const ZipStrings& strings, ZipStatusBlock&) {
    error_ = {};
    if (command.function == zip_add) return add(command, strings);
    if (command.function == zip_delete) return remove(strings);
    return fail({ErrorCode::bad_argument, 0, "no such function"});
}

/// Packs all items first, so that none is added if one fails.
Status ZipLibrary::add_items(ArchiveChange& change, const ZipCommand& command, const ZipStrings& strings) {
    PackOptions options;
    options.level = command.compressionLevel;
    if (command.usePassword == flag_on) options.password = strings.password;
    options.encryption = change.usual_encryption().value_or(new_encryption);
    const bool keeps_paths = command.noDirectoryNames == flag_off;
    std::vector<PackedMember> packed;
    std::set<std::size_t> replaced;
    for (const ZipItem& item : strings.itemList) {
        if (item.number && (!change.has(*item.number) || !replaced.insert(*item.number).second)) {
            return Error{ErrorCode::bad_argument, 0, "the archive has no such member"};
        }
        const PackOptions own = options_of(change, item, options);
        Result<PackedMember> member = pack_item(change, item, name_of_item(item, keeps_paths), own);
        if (!member) return failure_of(item, strings, member.error());
        packed.push_back(std::move(*member));
    }
    for (std::size_t i = 0; i < packed.size(); ++i) {
        const ZipItem& item = strings.itemList[i];
        if (item.number) {
            change.replace(*item.number, std::move(packed[i]), options_of(change, item, options));
        } else if (item.kind != EntryKind::directory) {
            change.put(std::move(packed[i]), options);
        } else if (Status added = change.add_directory(name_of_item(item, keeps_paths), item.modified); !added) {
            return added;
        }
    }
    return Done{};
}

std::int16_t ZipLibrary::add(const ZipCommand& command, const ZipStrings& strings) {
    if (strings.itemList.empty()) return library_success;
    if (waiting_ && waiting_for_ != strings.zipFile) {
        if (const std::int16_t result = write_waiting(); result != library_success) return result;
        adding_ = true;
    }
    if (!waiting_) {
        Result<ArchiveChange> change = ArchiveChange::begin(strings.zipFile, make_output_, progress, code_page_);
        if (!change) return fail(change.error());
        waiting_ = std::move(*change);
        waiting_for_ = strings.zipFile;
        has_additions_ = false;
        first_failure_.reset();
    }
    const Status added = add_items(*waiting_, command, strings);
    has_additions_ = has_additions_ || added.ok();
    if (!added && !first_failure_) first_failure_ = added.error();
    if (!adding_) return end_adding();
    return added ? static_cast<std::int16_t>(library_success) : fail(added.error());
}

std::int16_t ZipLibrary::end_adding() {
    const bool nothing_added = waiting_ && !has_additions_;
    const std::int16_t result = write_waiting();
    return nothing_added ? fail(*first_failure_) : result;
}

std::int16_t ZipLibrary::write_waiting() {
    adding_ = false;
    if (!waiting_) return library_success;
    const Status finished = has_additions_ ? waiting_->finish() : Status(Done{});
    waiting_.reset();
    return finished ? static_cast<std::int16_t>(library_success) : fail(finished.error());
}

std::int16_t ZipLibrary::remove(const ZipStrings& strings) {
    if (const std::int16_t result = write_waiting(); result != library_success) return result;
    Result<ArchiveChange> change = ArchiveChange::begin(strings.zipFile, make_output_, progress, code_page_);
    if (!change) return fail(change.error());
    std::vector<std::size_t> members;
    for (const ZipItem& item : strings.itemList) {
        const std::vector<std::size_t> found =
            item.number ? std::vector<std::size_t>{*item.number} : change->find(item.name);
        if (found.empty()) return fail({ErrorCode::not_found, 0, "the archive has no member " + item.name});
        members.insert(members.end(), found.begin(), found.end());
    }
    Status status = change->remove(members);
    if (status) status = change->finish();
    return status ? static_cast<std::int16_t>(library_success) : fail(status.error());
}

std::shared_ptr<const OpenedArchive> ZipLibrary::open(const std::string& path) {
    if (write_waiting() != library_success) return nullptr;
    const std::optional<files::FileStamp> stamp = files::stamp_through_links(path);
    if (opened_ && stamp && opened_path_ == path && opened_stamp_ == stamp) return opened_;
    opened_.reset();
    Result<Archive> archive = Archive::open(path);
    if (!archive) {
        fail(archive.error());
        return nullptr;
    }
    if (!code_page_.empty()) archive->read_names_in(code_page_);
    MemberPaths paths(archive->members());
    opened_ = std::make_shared<const OpenedArchive>(OpenedArchive{std::move(*archive), std::move(paths)});
    opened_path_ = path;
    opened_stamp_ = stamp;
    return opened_;
}

void ZipLibrary::read_names_in(std::string_view code_page) {
    if (code_page_ == code_page) return;
    write_waiting();
    code_page_ = code_page;
    opened_.reset();
}

std::int16_t ZipLibrary::tell_member(std::size_t number, ZipItemInfo& info) {
    if (number >= opened_->archive.members().size()) return library_no_more_members;
    const Member& member = opened_->archive.members()[number];
    MemberPath path = opened_->paths[number];
    info.number = static_cast<std::int64_t>(number);
    info.uncompressedSize = stated(member.uncompressed_size);
    info.compressedSize = stated(member.compressed_size);
    info.method = member.content_method();
    info.dateTime = date_time_text(member.dos_time);
    info.fileName = path.renamed ? std::move(path.path) : std::string(member.name);
    info.attributes = attributes_of(member);
    return library_success;
}

std::int16_t ZipLibrary::dunzipVB(UnzipCommand& command, UnzipStrings& strings, ZipItemInfo& info, ZipStatusBlock&) {
    error_ = {};
    if (command.function == unzip_extract) extraction_.clear();
    if (!open(strings.zipFile)) return result_of(error_.code);
    switch (command.function) {
        case unzip_count:
            command.itemCount = static_cast<std::int32_t>(opened_->archive.members().size());
            next_member_ = 0;
            return library_success;
        case unzip_next:
            return tell_member(next_member_++, info);
        case unzip_member:
            if (command.itemIndex < 0) return library_bad_call;
            return tell_member(static_cast<std::size_t>(command.itemIndex), info);
        case unzip_extract:
            return extract(command, strings);
        default:
            return fail({ErrorCode::bad_argument, 0, "no such function"});
    }
}

std::int16_t ZipLibrary::extract(const UnzipCommand& command, const UnzipStrings& strings) {
    const std::shared_ptr<const OpenedArchive> opened = opened_;
    const std::vector<Member>& members = opened->archive.members();
    std::vector<std::size_t> wanted;
    for (const ZipItem& item : strings.itemList) {
        std::size_t number = item.number.value_or(0);
        if (!item.number) {
            const auto named = std::find_if(members.begin(), members.end(),
                                            [&](const Member& member) { return member.name == item.name; });
            number = static_cast<std::size_t>(named - members.begin());
        }
        if (number >= members.size()) return fail({ErrorCode::bad_argument, 0, "no such member"});
        wanted.push_back(number);
    }
    ExtractOptions options;
    if (command.usePassword == flag_on) options.password = strings.password;
    options.limits = limits;
    options.progress = progress;
    options.confirm_large = confirm_large;
    const Status extracted = extract_members(opened->archive, wanted, opened->paths, strings.destinationDir, options,
                                             [&](MemberResult result) { extraction_.push_back(std::move(result)); });
    if (!extracted) return fail(extracted.error());
    std::int16_t worst = library_success;
    for (const MemberResult& result : extraction_) {
        if (result.needs_password) return library_password;
        if (result.verdict == Verdict::damaged || result.verdict == Verdict::refused) worst = library_damaged;
    }
    return worst;
}

}  // namespace quill::zip
