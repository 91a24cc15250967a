#include "decoder/results.h"

#include "files/directory.h"
#include "shell/main_window.h"

#include <utility>

namespace quill::decoder {

void add_result(shell::Context& context, shell::ResultRow row) {
    auto& w = context.windows.load<shell::swit>();
    if (!row.verdict) row.size = files::file_size(row.name).value_or(0);
    w.List3.add(row.name);
    w.results.push_back(std::move(row));
}

void rename_result(shell::Context& context, std::size_t row, const std::string& name) {
    auto& w = context.windows.load<shell::swit>();
    w.results.at(row).name = name;
    w.List3.replace(row, name);
}

void remove_result(shell::Context& context, std::size_t row) {
    auto& w = context.windows.load<shell::swit>();
    w.results.erase(w.results.begin() + static_cast<std::ptrdiff_t>(row));
    w.List3.remove(row);
}

void show_results_panel(shell::Context& context) {
    auto& w = context.windows.load<shell::swit>();
    w.Picture5.visible = false;
    w.Picture2.visible = w.Picture1.visible = true;
}

}  // namespace quill::decoder
