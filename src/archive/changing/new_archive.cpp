#include "archive/changing/new_archive.h"

#include "archive/changing/archive_change.h"
#include "files/directory.h"
#include "files/temporary_file.h"

namespace quill::zip {
namespace {

Status add_text(ArchiveChange& change, const NewMember& member, const PackOptions& options) {
    Result<files::TemporaryFile> file = files::TemporaryFile::create();
    if (!file) return file.error();
    if (const Status written = file->write(*member.text); !written) return written;
    Result<PackedMember> packed = change.pack(file->path(), member.name, options);
    if (!packed) return packed.error();
    constexpr std::uint32_t regular_file = 0100644;
    packed->mode = regular_file;
    change.put(std::move(*packed), options);
    return Done{};
}

}  // namespace

Status make_archive(const std::string& path, const std::vector<NewMember>& members, const Protection& protection,
                    const Watch& watch, std::vector<MemberFailure>& failures) {
    if (files::exists(path)) return Error{ErrorCode::exists, 0, "there is a file of that name already"};
    const PackOptions options{.password = protection.password, .encryption = protection.encryption};
    Result<ArchiveChange> change = ArchiveChange::begin(path, output_beside, watch);
    if (!change) return change.error();
    std::size_t added = 0;
    for (const NewMember& member : members) {
        const Status status =
            member.text ? add_text(*change, member, options) : change->add_file(member.file, member.name, options);
        if (!status && status.error().code == ErrorCode::cancelled) return status;
        if (status) ++added;
        if (!status) failures.emplace_back(member.file, status.error());
    }
    if (added == 0) return Error{ErrorCode::not_found, 0, "there is nothing to put into it"};
    return change->finish();
}

}  // namespace quill::zip
