#include "archive/changing/archive_change.h"

#include "archive/changing/archive_lock.h"
#include "archive/container/archive_layout.h"
#include "archive/container/format.h"
#include "archive/container/member_reader.h"
#include "checksum/checksum.h"
#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quill::zip {
namespace {

Error not_as_written() {
    return {ErrorCode::io, 0, "the new archive did not read back as it was written"};
}

Error stopped() {
    return {ErrorCode::cancelled, 0, "stopped"};
}

/// A row of the new directory: an old member or an added one.
struct Row {
    std::optional<std::size_t> old_member;
    std::optional<PackedMember> added;
    std::string password;            // of the added member
    std::uint64_t local_offset = 0;  // in the new file

    std::string_view name(const std::optional<Archive>& old) const {
        return added ? std::string_view(added->name) : old->members()[*old_member].name;
    }
};

}  // namespace

struct ArchiveChange::State {
    State(std::string archive_path, ArchiveLock archive_lock, MakeOutput make, Watch watch)
        : path(std::move(archive_path)),
          lock(std::move(archive_lock)),
          make_output(std::move(make)),
          keeper(std::move(watch)),
          staging(path) {}

    std::string path;
    ArchiveLock lock;
    MakeOutput make_output;
    mutable WatchKeeper keeper;
    std::optional<Archive> old;
    Staging staging;
    std::vector<Row> rows;
    std::unordered_map<std::string, std::size_t> last_row;  // by name
    std::vector<Extent> removed;
    std::vector<std::uint64_t> old_offsets;  // sorted
    bool changed = false;

    void open_rows();
    bool has_bytes() const { return lock.stamp() && lock.stamp()->size > 0; }
    void add_row(PackedMember member, const std::string& password);
    void put_row(std::size_t row, PackedMember member, const std::string& password);
    void drop_old(std::size_t member);
    std::int64_t shift() const { return old ? old->directory()->shift : 0; }
    std::uint64_t old_end() const { return old ? old->directory()->begin : 0; }

    Status write_watched(ArchiveOutput& output, std::string_view bytes);
    Status write_kept(ArchiveOutput& output, std::uint64_t& at);
    Status write_added(ArchiveOutput& output, std::uint64_t& at);
    Status write_directory(ArchiveOutput& output, std::uint64_t at) const;
    Status check(ArchiveOutput& output) const;
    Status check_added(const Archive& made, std::size_t row) const;
    Status check_kept(const Archive& made, std::size_t row) const;
};

ArchiveChange::ArchiveChange(std::unique_ptr<State> state) : state_(std::move(state)) {}
ArchiveChange::ArchiveChange(ArchiveChange&&) noexcept = default;
ArchiveChange& ArchiveChange::operator=(ArchiveChange&&) noexcept = default;
ArchiveChange::~ArchiveChange() = default;

Result<ArchiveChange> ArchiveChange::begin(const std::string& path, MakeOutput make_output, Watch watch,
                                           std::string_view code_page) {
    const std::string real = files::resolved(path);
    Result<ArchiveLock> lock = ArchiveLock::take(real, watch);
    if (!lock) return lock.error();
    files::remove_abandoned(files::dir_of(real));
    auto state = std::make_unique<State>(real, std::move(*lock), std::move(make_output), std::move(watch));
    if (state->has_bytes()) {
        Result<Archive> old = Archive::open(state->path);
        if (!old) return old.error();
        if (!old->is_sound() || old->directory()->shift < 0) {
            return Error{ErrorCode::unsupported, 0, "the archive is damaged and can be read but not changed"};
        }
        if (!code_page.empty()) old->read_names_in(code_page);
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

/// Makes `row` the row of an added member.
void ArchiveChange::State::put_row(std::size_t row, PackedMember member, const std::string& password) {
    changed = true;
    if (rows[row].old_member) drop_old(*rows[row].old_member);
    rows[row] = {{}, std::move(member), password, 0};
}

Result<PackedMember> ArchiveChange::pack(const std::string& file, const std::string& name, const PackOptions& options) {
    const std::optional<files::FileStamp> other = files::stamp_through_links(file);
    if (other && state_->lock.stamp() && other->same_file(*state_->lock.stamp())) {
        return Error{ErrorCode::bad_argument, 0, "an archive can't be put into itself"};
    }
    return pack_file(file, name, options, state_->staging, state_->keeper);
}

Result<PackedMember> ArchiveChange::pack_link(const std::string& path, const std::string& name,
                                              const PackOptions& options) {
    return zip::pack_link(path, name, options, state_->staging);
}

void ArchiveChange::put(PackedMember member, const PackOptions& options) {
    state_->add_row(std::move(member), options.password);
}

Status ArchiveChange::add_file(const std::string& file, const std::string& name, const PackOptions& options) {
    Result<PackedMember> packed = pack(file, name, options);
    if (!packed) return packed.error();
    put(std::move(*packed), options);
    return Done{};
}

Status ArchiveChange::add_link(const std::string& path, const std::string& name, const PackOptions& options) {
    Result<PackedMember> packed = pack_link(path, name, options);
    if (!packed) return packed.error();
    put(std::move(*packed), options);
    return Done{};
}

bool ArchiveChange::has(std::size_t old_member) const {
    const std::vector<Row>& rows = state_->rows;
    return std::any_of(rows.begin(), rows.end(), [&](const Row& row) { return row.old_member == old_member; });
}

void ArchiveChange::replace(std::size_t old_member, PackedMember member, const PackOptions& options) {
    const std::vector<Row>& rows = state_->rows;
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.old_member == old_member; });
    member.rename(row->name(state_->old));
    state_->put_row(static_cast<std::size_t>(row - rows.begin()), std::move(member), options.password);
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

std::optional<archive::Encryption> ArchiveChange::usual_encryption() const {
    const std::vector<Member>& members = old_members();
    for (auto member = members.rbegin(); member != members.rend(); ++member) {
        if (const std::optional<archive::Encryption> encryption = member->encryption()) return encryption;
    }
    return std::nullopt;
}

const std::vector<Member>& ArchiveChange::old_members() const {
    static const std::vector<Member> none;
    return state_->old ? state_->old->members() : none;
}

const std::string& ArchiveChange::path() const {
    return state_->path;
}

/// Writes in pieces, and fails with `cancelled` if the watch returns false.
Status ArchiveChange::State::write_watched(ArchiveOutput& output, std::string_view bytes) {
    Status written = Done{};
    const bool all = in_pieces(bytes, keeper, [&](std::string_view part) {
        written = output.write(part);
        return written.ok();
    });
    return all || !written ? written : Status(stopped());
}

/// Copies the remaining members and records their new offsets.
Status ArchiveChange::State::write_kept(ArchiveOutput& output, std::uint64_t& at) {
    if (!old) return Done{};
    const std::vector<Extent> kept = kept_extents(old_end(), removed);
    std::vector<std::uint64_t> written_at;
    for (const Extent& extent : kept) {
        written_at.push_back(at);
        const std::string_view bytes = slice(old->bytes(), extent.begin, extent.end - extent.begin);
        if (Status written = write_watched(output, bytes); !written) return written;
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
            written = write_watched(output, bytes);
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
    if (old) {  // bytes after the archive are not ours to drop
        directory += slice(old->bytes(), old->directory()->end_record + end_of_directory_size + comment.size(),
                           std::string_view::npos);
    }
    return output.write(directory);
}

/// Fails unless a remaining member is in `made` with the same header and the same bytes.
Status ArchiveChange::State::check_kept(const Archive& made, std::size_t row) const {
    const Member& before = old->members()[*rows[row].old_member];
    const Member& after = made.members()[row];
    const Extent from = extent_of(old->bytes(), before), to = extent_of(made.bytes(), after);
    std::string_view copy = slice(made.bytes(), to.begin, to.end - to.begin);
    if (before.raw_name != after.raw_name || before.crc != after.crc || to.end - to.begin != from.end - from.begin) {
        return not_as_written();
    }
    bool same = true;
    const bool all = in_pieces(slice(old->bytes(), from.begin, from.end - from.begin), keeper, [&](auto part) {
        same = copy.substr(0, part.size()) == part;
        copy.remove_prefix(std::min(part.size(), copy.size()));
        return same;
    });
    if (all) return Done{};
    return same ? stopped() : not_as_written();
}

Status ArchiveChange::State::check_added(const Archive& made, std::size_t row) const {
    const Member& member = made.members()[row];
    const PackedMember& added = *rows[row].added;
    if (member.name != added.name || member.crc != added.stated_crc()) return not_as_written();
    if (member.is_directory()) return Done{};
    MemberReader reader(made, rows[row].password);
    std::uint32_t crc = 0;
    const Content content = reader.read(member, [&](std::string_view bytes) {
        crc = quill::crc32(crc, bytes);
        return keeper.count(bytes.size());
    });
    if (content.verdict == Verdict::verified && crc == added.crc) return Done{};
    return keeper.goes_on() ? not_as_written() : stopped();
}

/// Reads the new archive back from the disk and checks it.
Status ArchiveChange::State::check(ArchiveOutput& output) const {
    const Result<files::MappedFile> file = output.read_back();
    if (!file) return file.error();
    const Result<Archive> made = Archive::parse(file->bytes());
    if (!made || !made->is_sound() || made->members().size() != rows.size()) return not_as_written();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (Status checked = rows[i].added ? check_added(*made, i) : check_kept(*made, i); !checked) return checked;
    }
    return Done{};
}

Status ArchiveChange::finish() {
    State& state = *state_;
    if (!state.changed && state.has_bytes()) return Done{};
    state.keeper.expect(state.old_end() * 2);
    Result<std::unique_ptr<ArchiveOutput>> output = state.make_output(state.path);
    if (!output) return output.error();
    std::uint64_t at = 0;
    if (Status status = state.write_kept(**output, at); !status) return status;
    if (Status status = state.write_added(**output, at); !status) return status;
    if (Status status = state.write_directory(**output, at); !status) return status;
    if (Status status = state.check(**output); !status) return status;
    if (!state.keeper.goes_on()) return stopped();
    if (!state.lock.holds()) {
        return Error{ErrorCode::exists, 0, "the archive was changed by another program meanwhile"};
    }
    return (*output)->publish(!state.lock.stamp());
}

Status change_archive(const std::string& path, const Watch& watch, const std::function<Status(ArchiveChange&)>& edit,
                      std::string_view code_page) {
    constexpr int most_attempts = 10;
    Status status = Done{};
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        Result<ArchiveChange> change = ArchiveChange::begin(path, output_beside, watch, code_page);
        if (!change) return change.error();
        if (status = edit(*change); !status) return status;
        status = change->finish();
        if (status || status.error().code != ErrorCode::exists) break;
    }
    return status;
}

}  // namespace quill::zip
