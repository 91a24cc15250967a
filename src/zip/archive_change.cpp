#include "zip/archive_change.h"

#include "files/directory.h"
#include "text/ascii.h"
#include "zip/archive_layout.h"
#include "zip/format.h"
#include "zip/member_reader.h"

#include <climits>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <utility>

namespace quill::zip {
namespace {

/// The output that the program uses.
class FileOutput final : public ArchiveOutput {
  public:
    explicit FileOutput(files::AtomicFile file) : file_(std::move(file)) {}

    Status write(std::string_view bytes) override {
        if (!file_.write(bytes)) return file_.error();
        return Done{};
    }
    Result<files::MappedFile> read_back() override { return file_.read_back(); }
    Status publish(bool is_new) override {
        if (!is_new) return file_.publish_as_rewrite();
        const Result<std::string> published = file_.publish(files::OnCollision::fail, files::Durability::flushed);
        if (!published) return published.error();
        return Done{};
    }

  private:
    files::AtomicFile file_;
};

/// What tells whether a file is still the one that was opened.
struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::time_t seconds = 0;
    long nanoseconds = 0;

    bool operator==(const Identity&) const = default;
};

std::optional<Identity> identity_of(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return Identity{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

/// A row of the new directory: an old member, or one that was added.
struct Row {
    std::optional<std::size_t> old_member;
    std::optional<PackedMember> added;
    std::string password;            // of the one that was added
    std::uint64_t local_offset = 0;  // in the new file

    std::string_view name(const std::optional<Archive>& old) const {
        return added ? std::string_view(added->name) : old->members()[*old_member].name;
    }
};

}  // namespace

struct ArchiveChange::State {
    explicit State(std::string archive_path) : path(std::move(archive_path)), staging(path) {}

    std::string path;
    MakeOutput make_output;
    std::optional<Identity> identity;  // of the file that is there
    std::optional<Archive> old;
    Staging staging;
    std::vector<Row> rows;
    std::unordered_map<std::string, std::size_t> last_row;  // of each name
    std::vector<Extent> removed;
    std::vector<std::uint64_t> old_offsets;  // sorted
    bool changed = false;

    void open_rows();
    Result<PackedMember> pack(const std::string& file, const std::string& name, const PackOptions& options);
    void add_row(PackedMember member, const std::string& password);
    void put_row(std::size_t row, PackedMember member, const std::string& password);
    void drop_old(std::size_t member);
    std::int64_t shift() const { return old ? old->directory()->shift : 0; }
    std::uint64_t old_end() const { return old ? old->directory()->begin : 0; }

    Status write_kept(ArchiveOutput& output, std::uint64_t& at);
    Status write_added(ArchiveOutput& output, std::uint64_t& at);
    Status write_directory(ArchiveOutput& output, std::uint64_t at) const;
    Status check(ArchiveOutput& output) const;
    bool same_bytes(const Archive& made, std::size_t row) const;
};

ArchiveChange::ArchiveChange(std::unique_ptr<State> state) : state_(std::move(state)) {}
ArchiveChange::ArchiveChange(ArchiveChange&&) noexcept = default;
ArchiveChange& ArchiveChange::operator=(ArchiveChange&&) noexcept = default;
ArchiveChange::~ArchiveChange() = default;

Result<std::unique_ptr<ArchiveOutput>> output_beside(const std::string& path) {
    Result<files::AtomicFile> file = files::AtomicFile::create(path, files::Access::of_old);
    if (!file) return file.error();
    return std::unique_ptr<ArchiveOutput>(std::make_unique<FileOutput>(std::move(*file)));
}

Result<ArchiveChange> ArchiveChange::begin(const std::string& path, MakeOutput make_output) {
    auto state = std::make_unique<State>(files::resolved(path));
    state->make_output = std::move(make_output);
    state->identity = identity_of(state->path);
    // A rename would replace an archive that is write-protected too.
    if (state->identity && faccessat(AT_FDCWD, state->path.c_str(), W_OK, AT_EACCESS) != 0) return system_error(errno);
    if (state->identity && state->identity->size > 0) {
        Result<Archive> old = Archive::open(state->path);
        if (!old) return old.error();
        if (!old->is_sound() || old->directory()->shift < 0) {
            return Error{ErrorCode::unsupported, 0, "the archive is damaged and can be read but not changed"};
        }
        state->old = std::move(*old);
        state->open_rows();
    }
    return ArchiveChange(std::move(state));
}

void ArchiveChange::State::open_rows() {
    const std::vector<Member>& members = old->members();
    for (std::size_t i = 0; i < members.size(); ++i) {
        rows.push_back({i, {}, {}, 0});
        last_row[std::string(members[i].name)] = i;
        old_offsets.push_back(members[i].local_offset);
    }
    std::sort(old_offsets.begin(), old_offsets.end());
}

void ArchiveChange::State::drop_old(std::size_t member) {
    Extent extent = extent_of(old->bytes(), old->members()[member]);
    const auto next = std::upper_bound(old_offsets.begin(), old_offsets.end(), extent.begin);
    if (next != old_offsets.end()) extent.end = std::min(extent.end, *next);
    removed.push_back(extent);
    changed = true;
}

void ArchiveChange::State::add_row(PackedMember member, const std::string& password) {
    const auto [known, is_new] = last_row.try_emplace(member.name, rows.size());
    if (is_new) rows.emplace_back();
    put_row(known->second, std::move(member), password);
}

/// Makes `row` that of an added member.
void ArchiveChange::State::put_row(std::size_t row, PackedMember member, const std::string& password) {
    changed = true;
    if (rows[row].old_member) drop_old(*rows[row].old_member);
    rows[row] = {{}, std::move(member), password, 0};
}

Result<PackedMember> ArchiveChange::State::pack(const std::string& file, const std::string& name,
                                                const PackOptions& options) {
    const std::optional<Identity> other = identity_of(file);
    if (other && identity && other->device == identity->device && other->inode == identity->inode) {
        return Error{ErrorCode::bad_argument, 0, "an archive can't be put into itself"};
    }
    return pack_file(file, name, options, staging);
}

Status ArchiveChange::add_file(const std::string& file, const std::string& name, const PackOptions& options) {
    Result<PackedMember> packed = state_->pack(file, name, options);
    if (!packed) return packed.error();
    state_->add_row(std::move(*packed), options.password);
    return Done{};
}

Status ArchiveChange::replace(std::size_t member, const std::string& file, const PackOptions& options) {
    const std::vector<Row>& rows = state_->rows;
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.old_member == member; });
    if (row == rows.end()) return Error{ErrorCode::bad_argument, 0, "the archive has no such member"};
    Result<PackedMember> packed = state_->pack(file, std::string(row->name(state_->old)), options);
    if (!packed) return packed.error();
    state_->put_row(static_cast<std::size_t>(row - rows.begin()), std::move(*packed), options.password);
    return Done{};
}

Status ArchiveChange::add_directory(const std::string& name, std::time_t modified) {
    PackedMember member = pack_directory(name, modified);
    if (state_->last_row.count(member.name) == 0) state_->add_row(std::move(member), {});
    return Done{};
}

Status ArchiveChange::remove(const std::vector<std::size_t>& members) {
    std::vector<std::size_t> numbers = members;
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<Row>& rows = state_->rows;
    const auto is_dropped = [&](const Row& row) {
        return row.old_member && std::binary_search(numbers.begin(), numbers.end(), *row.old_member);
    };
    if (std::count_if(rows.begin(), rows.end(), is_dropped) != static_cast<std::ptrdiff_t>(numbers.size())) {
        return Error{ErrorCode::bad_argument, 0, "the archive has no such member"};
    }
    for (const std::size_t number : numbers) state_->drop_old(number);
    std::erase_if(rows, is_dropped);
    state_->last_row.clear();
    for (std::size_t i = 0; i < rows.size(); ++i) state_->last_row[std::string(rows[i].name(state_->old))] = i;
    return Done{};
}

std::vector<std::size_t> ArchiveChange::find(std::string_view name) const {
    std::vector<std::size_t> found;
    for (const Row& row : state_->rows) {
        if (row.old_member && state_->old->members()[*row.old_member].name == name) found.push_back(*row.old_member);
    }
    return found;
}

const std::string& ArchiveChange::path() const {
    return state_->path;
}

/// Copies what stays, and finds out where its members are now.
Status ArchiveChange::State::write_kept(ArchiveOutput& output, std::uint64_t& at) {
    if (!old) return Done{};
    const std::vector<Extent> kept = kept_extents(old_end(), removed);
    std::vector<std::uint64_t> written_at;
    for (const Extent& extent : kept) {
        written_at.push_back(at);
        constexpr std::uint64_t piece = 4U << 20U;
        for (std::uint64_t from = extent.begin; from < extent.end; from += piece) {
            const std::uint64_t size = std::min(piece, extent.end - from);
            if (Status written = output.write(slice(old->bytes(), from, size)); !written) return written;
        }
        at += extent.end - extent.begin;
    }
    for (Row& row : rows) {
        if (!row.old_member) continue;
        const std::uint64_t offset = old->members()[*row.old_member].local_offset;
        const auto extent = std::upper_bound(kept.begin(), kept.end(), offset,
                                             [](std::uint64_t o, const Extent& e) { return o < e.end; });
        if (extent == kept.end() || offset < extent->begin)
            return Error{ErrorCode::bad_input, offset, "a member is lost"};
        row.local_offset = written_at[static_cast<std::size_t>(extent - kept.begin())] + offset - extent->begin;
    }
    if (old->cut_short()) return Error{ErrorCode::io, 0, "the archive was cut by another program meanwhile"};
    return Done{};
}

Status ArchiveChange::State::write_added(ArchiveOutput& output, std::uint64_t& at) {
    for (Row& row : rows) {
        if (!row.added) continue;
        row.local_offset = at;
        const std::string header = row.added->local_header();
        if (Status written = output.write(header); !written) return written;
        Status written = Done{};
        const Status read = staging.read(row.added->staged_at, row.added->compressed_size, [&](std::string_view bytes) {
            written = output.write(bytes);
            return written.ok();
        });
        if (!written) return written;
        if (!read) return read;
        at += header.size() + row.added->compressed_size;
    }
    return Done{};
}

Status ArchiveChange::State::write_directory(ArchiveOutput& output, std::uint64_t at) const {
    const auto shifted = [&](std::uint64_t offset) { return offset - static_cast<std::uint64_t>(shift()); };
    std::string directory;
    for (const Row& row : rows) {
        if (row.added) {
            directory += row.added->central_header(shifted(row.local_offset));
        } else {
            const Member& member = old->members()[*row.old_member];
            const std::string_view header = slice(old->bytes(), member.header_offset, member.header_size);
            directory += member.local_offset == row.local_offset ? std::string(header)
                                                                 : with_local_offset(header, shifted(row.local_offset));
        }
    }
    const std::string_view comment = old ? old->directory()->comment : std::string_view();
    const std::uint64_t size = directory.size();
    directory += end_records(rows.size(), shifted(at), size, comment);
    if (old) {  // what stands behind the archive is not ours to drop
        directory += slice(old->bytes(), old->directory()->end_record + end_of_directory_size + comment.size(),
                           std::string_view::npos);
    }
    return output.write(directory);
}

/// Whether a member that stays is in `made` with the same header and the same bytes.
bool ArchiveChange::State::same_bytes(const Archive& made, std::size_t row) const {
    const Member& before = old->members()[*rows[row].old_member];
    const Member& after = made.members()[row];
    const Extent from = extent_of(old->bytes(), before), to = extent_of(made.bytes(), after);
    return before.raw_name == after.raw_name && before.crc == after.crc &&
           slice(old->bytes(), from.begin, from.end - from.begin) == slice(made.bytes(), to.begin, to.end - to.begin);
}

/// Reads the new archive from the disk as anybody would.
Status ArchiveChange::State::check(ArchiveOutput& output) const {
    const Result<files::MappedFile> file = output.read_back();
    if (!file) return file.error();
    const Error wrong{ErrorCode::io, 0, "the new archive did not read back as it was written"};
    const Result<Archive> made = Archive::parse(file->bytes());
    if (!made || !made->is_sound() || made->members().size() != rows.size()) return wrong;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!rows[i].added) {
            if (!same_bytes(*made, i)) return wrong;
            continue;
        }
        const Member& member = made->members()[i];
        if (member.name != rows[i].added->name || member.crc != rows[i].added->crc) return wrong;
        if (member.is_directory()) continue;
        MemberReader reader(*made, rows[i].password);
        const Content content = reader.read(member, [](std::string_view) { return true; });
        if (content.fate != Fate::verified) return wrong;
    }
    return Done{};
}

Status ArchiveChange::finish() {
    State& state = *state_;
    if (!state.changed && state.identity && state.identity->size > 0) return Done{};
    Result<std::unique_ptr<ArchiveOutput>> output = state.make_output(state.path);
    if (!output) return output.error();
    std::uint64_t at = 0;
    if (Status status = state.write_kept(**output, at); !status) return status;
    if (Status status = state.write_added(**output, at); !status) return status;
    if (Status status = state.write_directory(**output, at); !status) return status;
    if (Status status = state.check(**output); !status) return status;
    if (identity_of(state.path) != state.identity) {
        return Error{ErrorCode::io, 0, "the archive was changed by another program meanwhile"};
    }
    return (*output)->publish(!state.identity);
}

}  // namespace quill::zip
