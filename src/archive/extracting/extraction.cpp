#include "archive/extracting/extraction.h"

#include "archive/container/member_time.h"
#include "archive/extracting/extraction_run.h"
#include "archive/extracting/safe_tree.h"
#include "files/atomic_file.h"
#include "files/path.h"
#include "files/unfinished.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace quill::zip {
namespace {

constexpr std::size_t piece = 4U << 20U;  // written between two checks whether to continue

/// Reads the member of a directory, which should have no content. Without the password it needs, its stated size
/// decides.
void read_directory(const Member& directory, MemberReader& reader, ExtractionRun& run, const ExtractOptions& options,
                    MemberResult& result) {
    result.verdict = Verdict::verified;
    if (!directory.is_encrypted() || !options.password.empty()) {
        run.record(reader.read(directory, [&](std::string_view bytes) { return run.take(bytes.size()); }), result);
        if (result.verdict == Verdict::refused) result.verdict = Verdict::damaged;  // the directory itself may be made
    }
    if (directory.uncompressed_size == 0 && result.size == 0) return;
    result.verdict = Verdict::damaged;
    report(result, ProblemKind::content);
}

/// Writes members into files below one directory. Each thread has its own.
class Writer {
  public:
    Writer(ExtractionRun& run, const ExtractOptions& options, const Archive& archive, const MemberPaths& paths,
           Result<SafeTree> tree)
        : run_(run), options_(options), archive_(archive), paths_(paths), tree_(std::move(tree)) {}

    void operator()(MemberReader& reader, MemberResult& result) {
        const Member& member = archive_.members()[result.member];
        const MemberPath path = paths_[result.member];
        if (!tree_) {
            report(result, ProblemKind::not_written, tree_.error().text);
            return;
        }
        if (path.renamed) report(result, ProblemKind::renamed);
        if (member.is_directory()) {
            make_directory(member, path.path, reader, result);
        } else {
            write_file(member, path.path, reader, result);
        }
    }

  private:
    void make_directory(const Member& member, const std::string& path, MemberReader& reader, MemberResult& result) {
        const Result<int> entered = tree_->enter(path);
        if (!entered) {
            report(result, ProblemKind::not_written, entered.error().text);
            return;
        }
        read_directory(member, reader, run_, options_, result);
        result.path = path;
    }

    void write_file(const Member& member, const std::string& path, MemberReader& reader, MemberResult& result) {
        const std::string directory = files::dir_of(path);
        const Result<int> entered = tree_->enter(directory);
        if (!entered) {
            report(result, ProblemKind::not_written, entered.error().text);
            return;
        }
        std::optional<files::AtomicFile> file;
        std::optional<Error> failure;
        const auto open = [&] {
            Result<files::AtomicFile> created = files::AtomicFile::create_in(*entered, files::name_of(path));
            if (created) {
                file.emplace(std::move(*created));
            } else {
                failure = created.error();
            }
            return created.ok();
        };
        Content content = reader.read(member, [&](std::string_view bytes) {
            if (!run_.take(bytes.size()) || (!bytes.empty() && !file && !open())) return false;
            for (; !bytes.empty() && run_.goes_on(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
                if (file->write(bytes.substr(0, piece))) continue;
                failure = file->error();
                return false;
            }
            return run_.goes_on();
        });
        run_.record(std::move(content), result);
        if (!run_.goes_on() && result.verdict == Verdict::refused) return;
        if (!failure && result.verdict != Verdict::refused && !file) open();  // an empty file
        if (!failure && file) publish(*file, directory, member, result, failure);
        if (failure) {
            result.verdict = Verdict::refused;
            report(result, ProblemKind::not_written, failure->text);
        }
    }

    void publish(files::AtomicFile& file, const std::string& directory, const Member& member, MemberResult& result,
                 std::optional<Error>& failure) {
        file.set_time(modified_time(member));
        const Result<std::string> published = file.publish(files::OnCollision::choose_name);
        if (!published) {
            failure = published.error();
            return;
        }
        result.path = files::join(directory, *published);
        if (member.is_link()) report(result, ProblemKind::link);
    }

    ExtractionRun& run_;
    const ExtractOptions& options_;
    const Archive& archive_;
    const MemberPaths& paths_;
    Result<SafeTree> tree_;
};

/// Sets the directories' times last: making files in them has changed those.
void set_directory_times(const Archive& archive, const std::vector<std::size_t>& made, const MemberPaths& paths,
                         SafeTree& tree) {
    for (auto member = made.rbegin(); member != made.rend(); ++member) {
        if (tree.enter(paths[*member].path)) tree.set_time(modified_time(archive.members()[*member]));
    }
}

}  // namespace

Status extract_members(const Archive& archive, const std::vector<std::size_t>& wanted, const MemberPaths& paths,
                       const std::string& directory, const ExtractOptions& options, const TakeResult& take_result) {
    Result<SafeTree> tree = SafeTree::open(directory);
    if (!tree) return tree.error();
    ExtractionRun run(archive, wanted, options);
    if (Status agreed = run.agree_on_size(); !agreed) return agreed;
    files::remove_abandoned(directory);
    std::vector<std::size_t> directories;
    const TakeResult take = [&](MemberResult result) {
        if (!result.path.empty() && archive.members()[result.member].is_directory())
            directories.push_back(result.member);
        take_result(std::move(result));
    };
    run.go(take, [&] { return Writer(run, options, archive, paths, SafeTree::open(directory)); });
    set_directory_times(archive, directories, paths, *tree);
    return Done{};
}

Status test_members(const Archive& archive, const std::vector<std::size_t>& wanted, const ExtractOptions& options,
                    const TakeResult& take_result) {
    ExtractionRun run(archive, wanted, options);
    if (Status agreed = run.agree_on_size(); !agreed) return agreed;
    run.go(take_result, [&] {
        return [&](MemberReader& reader, MemberResult& result) {
            const Member& member = archive.members()[result.member];
            if (member.is_directory()) {
                read_directory(member, reader, run, options, result);
                return;
            }
            run.record(reader.read(member, [&](std::string_view bytes) { return run.take(bytes.size()); }), result);
        };
    });
    return Done{};
}

}  // namespace quill::zip
