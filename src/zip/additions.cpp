#include "zip/additions.h"

#include "archive/changing/tree_walk.h"
#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "text/count.h"
#include "text/printable.h"
#include "text/utf8.h"

#include <algorithm>
#include <optional>
#include <set>
#include <span>
#include <unistd.h>
#include <unordered_map>
#include <unordered_set>

namespace quill::zip {
namespace {

/// Returns why an entry of a tree can't be added; empty if it can.
std::string obstacle_to(const TreeEntry& entry, const std::string& archive) {
    if (entry.unreadable) return entry.unreadable->text;
    if (entry.kind != EntryKind::file) return {};
    if (!files::file_size(entry.path)) return files::exists(entry.path) ? "not a regular file" : "not found";
    if (files::same_file(entry.path, archive)) return "the archive itself";
    return access(entry.path.c_str(), R_OK) == 0 ? std::string() : "the system does not allow reading it";
}

enum class Answer : std::uint8_t { replace, replace_all, keep_both, keep_both_all, cancel };

struct AnswerRow {
    Answer answer;
    const char* caption;
};

constexpr AnswerRow answers[] = {{Answer::replace, "&Replace it"},
                                 {Answer::replace_all, "Replace &all"},
                                 {Answer::keep_both, "&Keep both"},
                                 {Answer::keep_both_all, "Keep &both of all"},
                                 {Answer::cancel, "&Cancel"}};

constexpr AnswerRow answers_where_none_can_go[] = {
    {Answer::keep_both, "&Keep both"}, {Answer::keep_both_all, "Keep &both of all"}, {Answer::cancel, "&Cancel"}};

Answer choose(platform::Platform& platform, const std::string& text, std::span<const AnswerRow> rows) {
    platform::Choices choices;
    choices.text = text;
    choices.title = "Add files";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        choices.answers.emplace_back(rows[i].caption);
        if (rows[i].answer == Answer::keep_both) choices.default_answer = i;
    }
    choices.escape_answer = rows.size() - 1;
    return rows[platform.choose(choices)].answer;
}

/// Calls f(directory) for each directory on the way to `member`, outer ones first, until it returns true.
template <class F>
void for_each_directory(const std::string& member, F&& f) {
    for (std::size_t at = member.find('/'); at != std::string::npos; at = member.find('/', at + 1)) {
        if (f(member.substr(0, at))) return;
    }
}

/// What has a name already.
struct Holder {
    std::optional<std::size_t> member;  ///< of the archive
    std::optional<std::size_t> item;    ///< of those to add; with a member, it replaces that member
};

/// Gives the items their names, one after another.
class Naming {
  public:
    Naming(platform::Platform& platform, const OpenedArchive* opened) : platform_(platform) {
        if (opened == nullptr) return;
        const std::vector<Member>& members = opened->archive.members();
        for (std::size_t i = 0; i < members.size(); ++i) {
            const std::string name(members[i].name);
            if (!members[i].is_directory()) holders_[name] = {i, {}};
            note_directories(name);
        }
    }

    /// Returns false if the user cancels.
    bool name_all(std::vector<ZipItem>& items) {
        for (std::size_t i = 0; i < items.size(); ++i) {
            const bool is_directory = items[i].kind == EntryKind::directory;
            if (!settle_directories(items[i].member, is_directory)) return false;
            note_directories(items[i].member + (is_directory ? "/" : ""));
            if (is_directory) continue;
            if (directories_.contains(items[i].member) && !settle_as_directory(items[i].member)) return false;
            const auto holder = holders_.find(items[i].member);
            if (holder != holders_.end() && !settle(items, i, holder->second)) return false;
            const bool replaces = holder != holders_.end() && holder->second.item == i;
            if (!replaces) holders_[items[i].member] = {{}, i};
        }
        std::erase_if(items, [](const ZipItem& item) { return item.name.empty(); });
        return true;
    }

  private:
    void note_directories(const std::string& member) {
        for_each_directory(member, [&](std::string directory) {
            directories_.insert(std::move(directory));
            return false;
        });
    }

    /// Gives a directory on the way to `member` another name where a file has its name, which no directory can replace.
    bool settle_directories(std::string& member, bool is_directory) {
        const std::string way = is_directory ? member + '/' : member;
        std::string taken;
        for_each_directory(way, [&](const std::string& directory) {
            if (holders_.contains(directory)) taken = directory;
            return !taken.empty();
        });
        if (taken.empty()) return true;
        std::string& name = renamed_[taken];
        if (name.empty()) {
            const std::string text =
                "A file of the archive is called " + text::printable(taken) + ", like a folder that is to be added.";
            if (!may_keep_both(text)) return false;
            name = free_name(taken);
        }
        member = name + member.substr(taken.size());
        return true;
    }

    /// Gives a file another name where the archive has a directory of its name.
    bool settle_as_directory(std::string& member) {
        const std::string text =
            "A folder of the archive is called " + text::printable(member) + ", like a file that is to be added.";
        if (!may_keep_both(text)) return false;
        member = free_name(member);
        return true;
    }

    bool may_keep_both(const std::string& text) {
        if (for_all_ == Answer::keep_both_all) return true;
        const Answer answer = choose(platform_, text, answers_where_none_can_go);
        if (answer == Answer::keep_both_all) for_all_ = answer;
        return answer != Answer::cancel;
    }

    bool settle(std::vector<ZipItem>& items, std::size_t i, Holder& holder) {
        const Answer answer = for_all_ ? *for_all_ : ask(items[i].member, holder);
        if (answer == Answer::cancel) return false;
        if (answer == Answer::replace_all || answer == Answer::keep_both_all) for_all_ = answer;
        if (answer == Answer::keep_both || answer == Answer::keep_both_all) {
            items[i].member = free_name(items[i].member);
            return true;
        }
        if (holder.item) items[*holder.item].name.clear();  // left out
        items[i].number = holder.member;
        holder.item = i;
        return true;
    }

    Answer ask(const std::string& member, const Holder& holder) {
        return choose(platform_,
                      holder.item ? "Several of the files to be added are called " + text::printable(member) + "."
                                  : text::printable(member) + " is in the archive already.",
                      answers);
    }

    std::string free_name(const std::string& member) {
        const std::string dir = files::dir_of(member), name = files::name_of(member);
        for (unsigned& n = last_numbers_[member];;) {
            n = std::max(n + 1, 2U);
            std::string numbered = files::join(dir, files::numbered_name(name, n));
            if (!holders_.contains(numbered) && !directories_.contains(numbered)) return numbered;
        }
    }

    platform::Platform& platform_;
    std::optional<Answer> for_all_;
    std::unordered_map<std::string, Holder> holders_;  // by the name
    std::unordered_set<std::string> directories_;
    std::unordered_map<std::string, std::string> renamed_;  // directories, by the names that files have
    std::unordered_map<std::string, unsigned> last_numbers_;
};

}  // namespace

Additions collect_additions(const std::vector<std::string>& paths, const std::string& archive) {
    Additions additions;
    std::set<std::string> seen;
    for (std::string path : paths) {
        while (path.size() > 1 && path.back() == '/') path.pop_back();  // a link with a slash would be followed
        if (!seen.insert(path).second) continue;
        const std::size_t above = member_name_of(files::dir_of(path)).size();
        for (const TreeEntry& entry : walk_tree(path)) {
            const std::string name = text::to_utf8(entry.member_name.substr(above == 0 ? 0 : above + 1));
            const std::string obstacle = obstacle_to(entry, archive);
            if (!obstacle.empty()) additions.left_out.push_back(text::printable(name) + ": " + obstacle);
            const bool is_there = obstacle.empty() || entry.kind == EntryKind::directory;
            if (is_there) additions.items.push_back({entry.path, {}, entry.kind, name, entry.modified});
        }
    }
    return additions;
}

bool settle_names(platform::Platform& platform, const OpenedArchive* opened, std::vector<ZipItem>& items) {
    return Naming(platform, opened).name_all(items);
}

void report_left_out(platform::Platform& platform, const Additions& additions) {
    constexpr std::size_t most_lines = 8;
    const std::vector<std::string>& lines = additions.left_out;
    if (lines.empty()) return;
    std::string text = "Not everything can be added:\n";
    for (std::size_t i = 0; i < std::min(lines.size(), most_lines); ++i) text += "\n" + lines[i] + ".";
    if (lines.size() > most_lines) text += "\nand " + text::counted(lines.size() - most_lines, "other") + ".";
    platform.warn(text, "Add files");
}

}  // namespace quill::zip
