#include "encoder/part_numbers.h"

#include "codec/recovery/part_label.h"
#include "codec/scan/scanner.h"
#include "encoder/merge.h"

#include <algorithm>

namespace quill::encoder {
namespace {

/// No more parts than this are listed as missing, whatever a text promises.
constexpr unsigned most_parts = 100'000;

bool is_piece(const codec::FoundFile& file) {
    return !file.has_begin || !file.has_end || !file.partial_id.empty();
}

}  // namespace

void PartNumbers::Row::add(unsigned number) {
    in_order = in_order && number >= last;
    last = number;
    numbers.insert(number);
}

void PartNumbers::add(unsigned number, unsigned total) {
    if (number == 0 || number > most_parts) return;
    stated_.add(number);
    total_ = std::max(total_, std::min(total, most_parts));
}

void PartNumbers::add_parts_of(std::string_view text, const std::string& path) {
    add_name(path);
    if (!add_yenc_parts(text)) add_pieces(text);
}

bool PartNumbers::add_yenc_parts(std::string_view text) {
    const std::vector<YencPart> parts = find_parts(text, 0);
    for (const YencPart& part : parts) add(part.number, part.total);
    return !parts.empty();
}

void PartNumbers::add_pieces(std::string_view text) {
    codec::LineCursor cursor({{text, {0, text.size()}}});
    for (const codec::FoundFile& file : codec::scan(cursor, codec::Texts::left_out).files) {
        if (is_piece(file)) add(file.label.number, file.label.total);
    }
}

void PartNumbers::add_name(const std::string& path) {
    const codec::PartLabel label = codec::label_of_path(path);
    stems_.insert(label.file.empty() ? path : label.file);
    named_.add(label.number);
}

/// Returns the numbers that count; nullptr if there are none.
const PartNumbers::Row* PartNumbers::row() const {
    if (!stated_.numbers.empty()) return &stated_;
    const bool are_alike = stems_.size() == 1 && *named_.numbers.begin() <= 1;
    return are_alike ? &named_ : nullptr;
}

std::vector<unsigned> PartNumbers::missing() const {
    const Row* const there = row();
    if (there == nullptr) return {};
    std::vector<unsigned> out;
    const unsigned last = std::max(*there->numbers.rbegin(), total_);
    for (unsigned number = 1; number <= last; ++number) {
        if (!there->numbers.contains(number)) out.push_back(number);
    }
    return out;
}

bool PartNumbers::in_order() const {
    const Row* const there = row();
    return there == nullptr || there->in_order;
}

}  // namespace quill::encoder
