#include "zip/extraction.h"

#include "files/atomic_file.h"
#include "files/path.h"
#include "zip/member_time.h"
#include "zip/safe_tree.h"
#include "zip/work_queue.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>
#include <utility>

namespace quill::zip {
namespace {

constexpr std::uint64_t large_member = 8U << 20U;

void tell(MemberResult& result, Grade grade, std::string kind, std::string text) {
    result.problems.push_back({grade, std::move(kind), 0, {}, std::move(text)});
}

/// A directory has no bytes to be read: what its member holds all the same is not written anywhere.
void pass_over_content(const Member& directory, MemberResult& result) {
    result.fate = directory.uncompressed_size == 0 ? Fate::verified : Fate::damaged;
    if (result.fate == Fate::damaged)
        tell(result, Grade::lost, "content", "it is a directory, and its content is not written");
}

/// One run over members of an archive: what its threads share.
class Run {
  public:
    Run(const Archive& archive, const std::vector<std::size_t>& wanted, const ExtractOptions& options)
        : archive_(archive),
          wanted_(wanted),
          options_(options),
          left_(options.limits.bytes_for(archive.bytes().size())) {
        results_.resize(wanted.size());
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            results_[i].member = wanted[i];
            const std::uint64_t stated = archive.members()[wanted[i]].uncompressed_size;
            stated_ += std::min(stated, std::numeric_limits<std::uint64_t>::max() - stated_);
        }
    }

    const Member& member(std::size_t i) const { return archive_.members()[wanted_[i]]; }

    /// Does `work(reader, result)` for each wanted member, in several threads; `make_work()` gives each its own.
    template <class MakeWork>
    std::vector<MemberResult> go(MakeWork&& make_work) {
        const std::vector<std::size_t> order = large_ones_first();
        const auto make_worker = [&] {
            return [this, &order, reader = std::make_shared<MemberReader>(archive_, options_.password),
                    work = make_work()](std::size_t i) mutable {
                MemberResult& result = results_[order[i]];
                begun_[order[i]] = true;
                if (allowed(order[i], result)) work(*reader, result);
                ++members_done_;
            };
        };
        begun_.assign(wanted_.size(), false);
        const bool tiny = wanted_.size() < 2 || stated_ < large_member / 64;
        share_work(wanted_.size(), tiny ? 1 : options_.threads, make_worker, [this] { return report(); });
        for (std::size_t i = 0; i < results_.size(); ++i) {
            if (!begun_[i]) tell(results_[i], Grade::lost, "cancelled", "the run was stopped before it");
        }
        return std::move(results_);
    }

    /// Counts bytes that come out; false where they are more than the limits allow.
    bool take(std::uint64_t bytes) {
        bytes_done_ += bytes;
        std::uint64_t left = left_;
        while (left >= bytes) {
            if (left_.compare_exchange_weak(left, left - bytes)) return true;
        }
        return false;
    }

    /// Puts what the reader says into the result. `limited`: the limits stopped it.
    static void record(Content content, bool limited, MemberResult& result) {
        result.fate = content.fate;
        result.size = content.size;
        result.needs_password = content.needs_password;
        std::move(content.problems.begin(), content.problems.end(), std::back_inserter(result.problems));
        if (limited) {
            result.fate = Fate::refused;
            tell(result, Grade::lost, "limit", "the archive comes to more bytes than the limit allows");
        }
    }

  private:
    std::vector<std::size_t> large_ones_first() const {
        std::vector<std::size_t> order(wanted_.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_partition(order.begin(), order.end(),
                              [&](std::size_t i) { return member(i).uncompressed_size >= large_member; });
        return order;
    }

    bool allowed(std::size_t i, MemberResult& result) const {
        if (i >= options_.limits.most_members) {
            tell(result, Grade::lost, "limit", "the archive has more members than the limit allows");
            return false;
        }
        if (member(i).overlaps && !options_.limits.overlaps) {
            tell(result, Grade::lost, "overlap", "it begins inside another member, as in an archive bomb");
            return false;
        }
        return true;
    }

    bool report() const {
        return !options_.progress ||
               options_.progress({members_done_, wanted_.size(), std::min(bytes_done_.load(), stated_), stated_});
    }

    const Archive& archive_;
    const std::vector<std::size_t>& wanted_;
    const ExtractOptions& options_;
    std::vector<MemberResult> results_;
    std::vector<char> begun_;
    std::uint64_t stated_ = 0;
    std::atomic<std::uint64_t> left_;
    std::atomic<std::uint64_t> bytes_done_{0};
    std::atomic<std::size_t> members_done_{0};
};

/// Writes members into files below one directory. Each thread has its own.
class Writer {
  public:
    Writer(Run& run, const Archive& archive, const std::vector<MemberPath>& paths, Result<SafeTree> tree)
        : run_(run), archive_(archive), paths_(paths), tree_(std::move(tree)) {}

    void operator()(MemberReader& reader, MemberResult& result) {
        const Member& member = archive_.members()[result.member];
        const MemberPath& path = paths_[result.member];
        if (!tree_) {
            tell(result, Grade::lost, "not-written", tree_.error().text);
            return;
        }
        if (path.renamed) tell(result, Grade::repaired, "renamed", "its name is not safe or not unique here");
        if (member.is_directory()) {
            make_directory(member, path.path, result);
        } else {
            write_file(member, path.path, reader, result);
        }
    }

  private:
    void make_directory(const Member& member, const std::string& path, MemberResult& result) {
        const Result<std::string> entered = tree_->enter(path);
        if (!entered) {
            tell(result, Grade::lost, "not-written", entered.error().text);
            return;
        }
        pass_over_content(member, result);
        result.path = path;
    }

    void write_file(const Member& member, const std::string& path, MemberReader& reader, MemberResult& result) {
        const std::string directory = files::dir_of(path);
        const Result<std::string> entered = tree_->enter(directory);
        if (!entered) {
            tell(result, Grade::lost, "not-written", entered.error().text);
            return;
        }
        std::optional<files::AtomicFile> file;
        std::optional<Error> failure;
        bool limited = false;
        const auto open = [&] {
            Result<files::AtomicFile> created = files::AtomicFile::create(files::join(*entered, files::name_of(path)));
            if (created) {
                file.emplace(std::move(*created));
            } else {
                failure = created.error();
            }
            return created.ok();
        };
        Content content = reader.read(member, [&](std::string_view bytes) {
            limited = !run_.take(bytes.size());
            if (limited || (!file && !open())) return false;
            if (file->write(bytes)) return true;
            failure = file->error();
            return false;
        });
        Run::record(std::move(content), limited, result);
        if (limited) return;
        if (!failure && result.fate != Fate::refused && !file) open();  // an empty file
        if (!failure && file) publish(*file, directory, member, result, failure);
        if (failure) {
            result.fate = Fate::refused;
            tell(result, Grade::lost, "not-written", failure->text);
        }
    }

    void publish(files::AtomicFile& file, const std::string& directory, const Member& member, MemberResult& result,
                 std::optional<Error>& failure) {
        const Result<std::string> published = file.publish(files::OnCollision::choose_name);
        if (!published) {
            failure = published.error();
            return;
        }
        const std::string name = files::name_of(*published);
        result.path = files::join(directory, name);
        tree_->set_time(name, modified_time(member));
        if (member.is_link()) tell(result, Grade::repaired, "link", "a symbolic link, written as a text of its target");
    }

    Run& run_;
    const Archive& archive_;
    const std::vector<MemberPath>& paths_;
    Result<SafeTree> tree_;
};

/// Directories get their times last: making files in them has changed those.
void set_directory_times(const Archive& archive, const std::vector<MemberResult>& results, SafeTree& tree) {
    for (auto result = results.rbegin(); result != results.rend(); ++result) {
        const Member& member = archive.members()[result->member];
        if (member.is_directory() && !result->path.empty() && tree.enter(result->path)) {
            tree.set_time({}, modified_time(member));
        }
    }
}

}  // namespace

Limits Limits::lifted() {
    constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    return {std::numeric_limits<std::size_t>::max(), all, all, all, true};
}

std::uint64_t Limits::bytes_for(std::uint64_t archive_size) const {
    const bool huge = archive_size != 0 && most_ratio > std::numeric_limits<std::uint64_t>::max() / archive_size;
    return std::min(most_bytes, std::max(free_bytes, huge ? most_bytes : archive_size * most_ratio));
}

Result<std::vector<MemberResult>> extract_members(const Archive& archive, const std::vector<std::size_t>& wanted,
                                                  const std::vector<MemberPath>& paths, const std::string& directory,
                                                  const ExtractOptions& options) {
    Result<SafeTree> tree = SafeTree::open(directory);
    if (!tree) return tree.error();
    Run run(archive, wanted, options);
    std::vector<MemberResult> results = run.go([&] { return Writer(run, archive, paths, SafeTree::open(directory)); });
    set_directory_times(archive, results, *tree);
    return results;
}

std::vector<MemberResult> test_members(const Archive& archive, const std::vector<std::size_t>& wanted,
                                       const ExtractOptions& options) {
    Run run(archive, wanted, options);
    return run.go([&] {
        return [&](MemberReader& reader, MemberResult& result) {
            const Member& member = archive.members()[result.member];
            if (member.is_directory()) {
                pass_over_content(member, result);
                return;
            }
            bool limited = false;
            Content content = reader.read(member, [&](std::string_view bytes) {
                limited = !run.take(bytes.size());
                return !limited;
            });
            Run::record(std::move(content), limited, result);
        };
    });
}

}  // namespace quill::zip
