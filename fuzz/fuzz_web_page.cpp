// The addresses and texts read from the pages and style sheets of a book.

#include "htx/book/book_geometry.h"
#include "htx/book/book_pages.h"
#include "htx/html/address.h"
#include "htx/html/page_text.h"
#include "htx/html/references.h"
#include "htx/picture_book/picture_page.h"
#include "text/utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace quill::htx;

/// No address leads out of its tree, and each has a place in the text.
void check(const Reference& reference, const PageReferences& page, std::size_t size) {
    if (reference.offset >= size || reference.address.empty()) std::abort();
    const Address address = resolve("d/page.htm", page.base, reference.address);
    if (address.kind != AddressKind::local) return;
    const std::string path = "/" + address.path + "/";
    if (path.find("/../") != std::string::npos || path.find("/./") != std::string::npos) std::abort();
    if (resolve("x.htm", encode_percents(address.path)).path != address.path && !address.path.empty()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string text = decode_page(bytes);
    if (!quill::text::is_utf8(text)) std::abort();
    const PageReferences page = references_of_page(text);
    for (const Reference& reference : page.references) check(reference, page, text.size());
    for (const Reference& reference : references_of_style(text)) check(reference, {}, text.size());
    title_of(text);
    contents_title(text);
    lines_of_page(text);

    const BookGeometry geometry = parse_geometry(bytes);
    if (parse_geometry(format_geometry(geometry)) != geometry) std::abort();

    // Whatever the title contains, the page shows its picture.
    const PageReferences made = references_of_page(picture_page({text, {}, true, "a.jpg"}, {}));
    if (made.references.size() != 1 || made.references[0].address != "a.jpg") std::abort();
    return 0;
}
