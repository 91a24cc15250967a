#include "pics/album.h"

#include "files/names.h"
#include "pics/directory.h"
#include "pics/placement.h"
#include "text/utf8.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace quill::pics {
namespace {

using report::Problem;
using report::ProblemKind;
using report::Verdict;

Result<Form> form_of(std::string_view album) {
    if (!album.starts_with(magic)) return Error{ErrorCode::bad_input, 0, "The file is not a picture album"};
    const std::string_view form = album.substr(std::min(form_at, album.size()), form_size);
    if (form == "xyz") return Form::plain;
    if (form == "abc") return Form::with_thumbnails;
    return Error{ErrorCode::unsupported, form_at, "The album is of a form that is not known"};
}

/// Gives each picture of an album a unique file name.
class FileNames {
  public:
    std::string take(std::string_view name) {
        std::string safe = files::safe_name(name);
        if (safe.empty()) safe = "picture";
        unsigned& last = last_[safe];
        for (;;) {
            std::string candidate = files::numbered_name(safe, ++last);
            if (taken_.insert(candidate).second) return candidate;
        }
    }

  private:
    std::unordered_map<std::string, unsigned> last_;
    std::unordered_set<std::string> taken_;
};

Problem problem_of(const Entry& entry) {
    if (!entry.stated_size) return {.kind = ProblemKind::bad_record, .at_input = entry.offset};
    if (entry.size == 0 && *entry.stated_size != 0)
        return {.kind = ProblemKind::missing_picture, .at_input = entry.offset};
    if (entry.size >= *entry.stated_size) return {.kind = ProblemKind::doubtful_place, .at_input = entry.offset};
    const std::string there = std::to_string(entry.size) + " of " + std::to_string(*entry.stated_size);
    return {
        .kind = ProblemKind::cut_picture, .at_input = entry.offset, .text = "only " + there + " bytes of it are there"};
}

Entry entry_of(const Slot& slot, const Place& place, Form form, FileNames& names) {
    Entry entry;
    if (slot.record) {
        entry.stored_name = slot.record->stored_name;
        entry.stated_size = slot.record->size;
    }
    const bool plain = form == Form::plain;
    entry.name = text::to_utf8(plain ? std::string_view(entry.stored_name) : picture_name(entry.stored_name));
    entry.file_name = names.take(entry.name);
    entry.offset = place.offset;
    entry.size = place.size;
    entry.verdict = place.verdict;
    if (!plain) entry.thumbnail_at = slot.at + record_size;
    if (entry.verdict != Verdict::whole) entry.problems.push_back(problem_of(entry));
    return entry;
}

std::vector<Problem> problems_of(std::string_view album, const Directory& directory) {
    std::vector<Problem> problems;
    if (!directory.exact) {
        const ProblemKind kind = directory.cut ? ProblemKind::missing_records : ProblemKind::sizes_disagree;
        problems.push_back({.kind = kind, .at_input = directory.pictures_end});
    } else if (directory.trailing != 0) {
        problems.push_back({.kind = ProblemKind::junk_behind, .at_input = album.size() - directory.trailing});
    }
    if (directory.slots.size() > most_pictures_of_old_readers || album.size() > most_bytes_of_old_readers) {
        problems.push_back({.kind = ProblemKind::beyond_old_readers});
    }
    return problems;
}

}  // namespace

Result<Contents> read_album(std::string_view album) {
    const Result<Form> form = form_of(album);
    if (!form) return form.error();
    if (album.size() < header_size)
        return Error{ErrorCode::bad_input, album.size(), "The album ends within its header"};
    const Directory directory = read_directory(album, *form);
    const std::vector<Place> places = place_pictures(album, directory, *form);
    Contents contents{*form, {}, problems_of(album, directory)};
    FileNames names;
    for (std::size_t i = 0; i < places.size(); ++i) {
        contents.entries.push_back(entry_of(directory.slots[i], places[i], *form, names));
    }
    return contents;
}

Result<Album> Album::open(const std::string& path) {
    Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return file.error();
    Result<Contents> contents = read_album(file->bytes());
    if (!contents) return contents.error();
    Album album(*std::move(file));
    album.path_ = path;
    album.form_ = contents->form;
    album.entries_ = std::move(contents->entries);
    album.problems_ = std::move(contents->problems);
    return album;
}

}  // namespace quill::pics
