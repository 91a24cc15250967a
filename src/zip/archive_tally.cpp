#include "zip/archive_tally.h"

#include "text/count.h"
#include "text/printable.h"

#include <numeric>
#include <string_view>

namespace quill::zip {
namespace {

constexpr std::size_t most_reasons = 5;

struct WordRow {
    RowCondition condition;
    const char* word;
};

constexpr WordRow words[] = {{RowCondition::verified, "verified"},
                             {RowCondition::whole, "whole, without a checksum to compare"},
                             {RowCondition::damaged, "damaged"},
                             {RowCondition::refused, "not readable"},
                             {RowCondition::locked, "in need of another password"},
                             {RowCondition::not_unpacked, "not read"}};

}  // namespace

void Tally::add(const Archive& archive, const MemberResult& result) {
    const RowCondition condition = condition_of(result);
    ++counts_.at(static_cast<std::size_t>(condition));
    const bool is_bad = condition == RowCondition::damaged || condition == RowCondition::refused;
    if (!is_bad) return;
    const Problem* worst = worst_problem(result);
    if (reasons_.size() == most_reasons || worst == nullptr) {
        ++without_reason_;
        return;
    }
    const std::string_view reason = report::text_of(*worst);
    reasons_.push_back(text::printable(archive.members().at(result.member).name).append(": ").append(reason));
}

std::size_t Tally::all() const {
    return std::accumulate(counts_.begin(), counts_.end(), std::size_t{0});
}

std::string Tally::counts() const {
    std::string text;
    for (const WordRow& row : words) {
        if (of(row.condition) == 0) continue;
        text += (text.empty() ? "" : ", ") + text::grouped(of(row.condition)) + " " + row.word;
    }
    return text;
}

std::string Tally::reasons() const {
    std::string text;
    for (const std::string& reason : reasons_) text += "\n" + reason + ".";
    if (without_reason_ != 0) text += "\nand " + text::counted(without_reason_, "other") + ".";
    return text;
}

}  // namespace quill::zip
