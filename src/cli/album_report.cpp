#include "cli/album_report.h"

#include "cli/report.h"

#include <ostream>
#include <vector>

namespace quill::cli {
namespace {

std::string json_of(const pics::Entry& entry, const std::string& path, bool already_there) {
    const auto problem = [](const report::Problem& item) { return cli::json_of(item); };
    return json_object({{"name", json_string(entry.name)},
                        {"path", json_or_null(path)},
                        {"size", std::to_string(entry.size)},
                        {"offset", std::to_string(entry.offset)},
                        {"thumbnail", json_flag(entry.thumbnail_at.has_value())},
                        {"verdict", json_string(report::name_of(entry.verdict))},
                        {"already_there", json_flag(already_there)},
                        {"problems", json_array(entry.problems, problem)}});
}

}  // namespace

void AlbumReport::put(const pics::Entry& entry, const std::string& shown, const std::string& path, bool already_there) {
    found_ = true;
    for (const report::Problem& problem : entry.problems) {
        damaged_ = true;
        console_.err << "quill: " << printable(shown) << ": " << printable(text_of(problem)) << '\n';
    }
    if (results_.are_json()) return results_.put(json_of(entry, path, already_there));
    std::string line = printable(shown) + "\t" + std::to_string(entry.size) + "\t";
    line.append(report::name_of(entry.verdict)).append(already_there ? "\talready there" : "");
    results_.put(line);
}

void AlbumReport::list(const pics::Entry& entry) {
    put(entry, entry.name, {}, false);
}

void AlbumReport::add(const pics::Entry& entry, const std::string& path, bool already_there) {
    put(entry, path.empty() ? entry.name : path, path, already_there);
}

void AlbumReport::made(const std::string& path, std::uint64_t size, std::size_t pictures) {
    found_ = true;
    results_.put(results_.are_json() ? json_object({{"path", json_string(path)},
                                                    {"size", std::to_string(size)},
                                                    {"pictures", std::to_string(pictures)}})
                                     : printable(path) + "\t" + std::to_string(size));
}

void AlbumReport::problems(std::string_view album, const std::vector<report::Problem>& problems) {
    for (const report::Problem& problem : problems) {
        if (grade_of(problem) != report::Grade::repaired) damaged_ = true;
        note(album, text_of(problem));
    }
}

void AlbumReport::fail(std::string_view what, const Error& error) {
    failed_ = true;
    note(what, error.text);
}

void AlbumReport::note(std::string_view what, std::string_view text) {
    console_.err << "quill: " << printable(what) << ": " << printable(text) << '\n';
}

ExitStatus AlbumReport::finish() {
    results_.finish();
    if (failed_) return ExitStatus::failed;
    if (damaged_) return ExitStatus::damaged;
    if (found_) return ExitStatus::good;
    if (results_.style() == ReportStyle::lines) console_.err << "quill: the album is empty\n";
    return ExitStatus::nothing;
}

}  // namespace quill::cli
