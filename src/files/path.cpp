#include "files/path.h"

namespace quill::files {
namespace {

/// Returns the slash between directory and name: the last one that is not the last character.
std::size_t cut_of(std::string_view path) {
    return path.size() < 2 ? std::string_view::npos : path.rfind('/', path.size() - 2);
}

}  // namespace

bool is_root(std::string_view path) {
    return path == "/";
}

std::string join(std::string_view dir, std::string_view name) {
    std::string out(dir);
    if (!out.empty() && out.back() != '/') out += '/';
    return out.append(name);
}

std::string dir_of(std::string_view path) {
    const std::size_t cut = cut_of(path);
    if (cut == std::string_view::npos) return {};
    return std::string(path.substr(0, cut == 0 ? 1 : cut));
}

std::string name_of(std::string_view path) {
    const std::size_t cut = cut_of(path);
    return std::string(cut == std::string_view::npos ? path : path.substr(cut + 1));
}

std::size_t extension_at(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name.size() : dot;
}

}  // namespace quill::files
