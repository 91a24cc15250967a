#include "htx/picture_book/picture_book.h"

#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"
#include "htx/html/address.h"
#include "htx/picture_book/exif_description.h"
#include "text/ascii.h"
#include "text/utf8.h"
#include "text/writer.h"

#include <algorithm>
#include <unordered_set>

namespace quill::htx {
namespace {

/// Names that differ in more than case, so that the book can be unpacked anywhere.
class DistinctNames {
  public:
    std::string take(const std::string& name) {
        std::string free = name;
        for (unsigned n = 2; !taken_.insert(text::to_lower(free)).second; ++n) free = files::numbered_name(name, n);
        return free;
    }

  private:
    std::unordered_set<std::string> taken_;
};

std::string index_page(const PictureBook& book, const std::vector<std::string>& names) {
    std::string out;
    text::append_line(out, "<html><head><title>");
    text::append_line(out, "Index");
    text::append_line(out, "</title></head>");
    text::append_line(out, "<body><center>");
    for (std::size_t page = 1; page <= book.order.size(); ++page) {
        const std::size_t picture = book.order[page - 1];
        const std::string title = title_text(book.pictures[picture].title);
        text::append_line(out, "<p><a href=\"" + page_name(page) + "\"><img src=\"" + encode_percents(names[picture]) +
                                   "\" height=\"120\" alt=\"\"><br>" + title + "</a></p>");
    }
    text::append_line(out, "</center></body></html>");
    return out;
}

}  // namespace

std::vector<std::string> distinct_names(const std::vector<std::string>& files) {
    DistinctNames distinct;
    std::vector<std::string> names;
    for (const std::string& file : files) names.push_back(distinct.take(files::name_of(file)));
    return names;
}

std::vector<zip::NewMember> files_of_book(const PictureBook& book) {
    std::vector<zip::NewMember> members;
    std::vector<std::string> names;
    DistinctNames distinct;
    const auto add_text = [&](const std::string& name, std::string text) {
        members.push_back({name, name, std::move(text)});
    };
    distinct.take(std::string(geometry_member));
    for (std::size_t page = 0; page <= book.order.size(); ++page) distinct.take(page_name(page));
    for (const BookPicture& picture : book.pictures) {
        names.push_back(distinct.take(text::to_utf8(files::name_of(picture.file))));
        members.push_back({names.back(), picture.file});
    }
    if (book.has_index) add_text(page_name(0), index_page(book, names));
    for (std::size_t page = 1; page <= book.order.size(); ++page) {
        const std::size_t number = book.order[page - 1];
        const BookPicture& picture = book.pictures[number];
        add_text(page_name(page),
                 picture_page({picture.title, picture.caption, picture.caption_above, names[number]}, book.style));
    }
    add_text(std::string(geometry_member), format_geometry(book.geometry));
    return members;
}

std::string proposed_title(const std::string& file) {
    constexpr std::size_t most_bytes = 1 << 20;
    if (const Result<files::MappedFile> picture = files::MappedFile::open(file)) {
        std::string described = exif_description(picture->bytes().substr(0, most_bytes));
        if (!described.empty()) return described;
    }
    std::string name = files::name_of(file);
    name.resize(files::extension_at(name));
    std::replace(name.begin(), name.end(), '_', ' ');
    const std::string title(text::trim(name));
    return title.empty() ? files::name_of(file) : title;
}

}  // namespace quill::htx
