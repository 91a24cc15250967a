#include "htx/book/book_check.h"

#include "archive/names/member_paths.h"
#include "htx/book/book_pages.h"
#include "htx/html/page_text.h"
#include "htx/html/references.h"
#include "htx/spider/link_hunt.h"

#include <utility>

namespace quill::htx {
namespace {

/// Returns the paths of the members as addresses name them; empty for directories.
std::vector<std::string> paths_of(const zip::Archive& archive) {
    std::vector<std::string> paths;
    for (const zip::Member& member : archive.members()) {
        paths.push_back(member.is_directory() ? std::string() : zip::safe_path(member.name));
    }
    return paths;
}

class Checker {
  public:
    Checker(const zip::Archive& archive, const std::string& password)
        : archive_(archive), reader_(archive, password), paths_(paths_of(archive)), files_(paths_) {}

    void read(std::size_t number) {
        const FileKind kind = kind_of(paths_[number]);
        if (kind == FileKind::other) return;
        std::string bytes;
        zip::Content content = reader_.read(archive_.members()[number], [&](std::string_view piece) {
            bytes += piece;
            return bytes.size() <= most_page_bytes;
        });
        ++check.pages;
        const std::string text = decode_page(bytes);
        const PageReferences page =
            kind == FileKind::style ? PageReferences{{}, references_of_style(text)} : references_of_page(text);
        check_links(paths_[number], page, text);
        const bool is_whole = content.verdict == report::Verdict::verified || content.verdict == report::Verdict::whole;
        if (!is_whole) check.doubtful.push_back({paths_[number], std::move(content)});
    }

    BookCheck check;

  private:
    void check_links(const std::string& path, const PageReferences& page, std::string_view text) {
        LineCounter lines(text);
        for (const Reference& reference : page.references) {
            const Address address = resolve(path, page.base, reference.address);
            if (address.kind == AddressKind::elsewhere) continue;
            ++check.links;
            if (files_.find(address)) continue;
            check.broken.push_back(
                {path, lines.line_at(reference.offset), reference.address, address.kind == AddressKind::climbing});
        }
    }

    const zip::Archive& archive_;
    zip::MemberReader reader_;
    std::vector<std::string> paths_;
    BookFiles files_;
};

}  // namespace

BookCheck check_book(const zip::Archive& archive, const std::string& password, const zip::Watch& watch) {
    Checker checker(archive, password);
    zip::WatchKeeper keeper(watch);
    for (const zip::Member& member : archive.members()) keeper.expect(member.uncompressed_size);
    for (std::size_t i = 0; i < archive.members().size(); ++i) {
        checker.read(i);
        if (keeper.count(archive.members()[i].uncompressed_size)) continue;
        checker.check.stopped = true;
        break;
    }
    return std::move(checker.check);
}

}  // namespace quill::htx
