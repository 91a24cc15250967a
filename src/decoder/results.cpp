#include "decoder/results.h"

#include "files/directory.h"

#include <utility>

namespace quill::decoder {

ResultRow result_row(const shell::swit& w, std::size_t row) {
    ResultRow result{w.List3.items().at(row)};
    result.size = files::file_size(result.name);
    const auto known = w.Outcomes.find(result.name);
    if (known != w.Outcomes.end()) {
        result.verdict = known->second.verdict;
        result.problems = known->second.problems;
    }
    return result;
}

void replace_result(shell::swit& w, std::size_t row, const std::string& name) {
    auto known = w.Outcomes.extract(w.List3.items().at(row));
    w.Outcomes.erase(name);
    if (known) {
        known.key() = name;
        w.Outcomes.insert(std::move(known));
    }
    w.List3.replace(row, name);
}

void remove_result(shell::swit& w, std::size_t row) {
    w.Outcomes.erase(w.List3.items().at(row));
    w.List3.remove(row);
}

}  // namespace quill::decoder
