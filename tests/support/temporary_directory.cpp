#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>

namespace quill::tests {
namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory() : TemporaryDirectory(fs::temp_directory_path().string()) {}

TemporaryDirectory::TemporaryDirectory(const std::string& parent) : previous_(fs::current_path()) {
    std::string pattern = fs::canonical(parent) / ("quill-test-" + std::string(6, 'X'));
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path_ = pattern;
    fs::current_path(path_);
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::current_path(previous_, ignored);
    fs::remove_all(path_, ignored);
}

std::string TemporaryDirectory::path(std::string_view name) const {
    return fs::path(path_) / name;
}

std::string TemporaryDirectory::write(std::string_view name, std::string_view bytes) const {
    const fs::path file = path(name);
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + file.string());
    return file;
}

std::string TemporaryDirectory::read(std::string_view name) const {
    std::ifstream in(path(name), std::ios::binary);
    if (!in) ADD_FAILURE() << "there is no " << name;
    return {std::istreambuf_iterator<char>(in), {}};
}

bool TemporaryDirectory::has(std::string_view name) const {
    return fs::exists(fs::symlink_status(path(name)));
}

std::string TemporaryDirectory::make_directory(std::string_view name) const {
    fs::create_directories(path(name));
    return path(name);
}

std::vector<std::string> TemporaryDirectory::names() const {
    std::vector<std::string> out;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) out.push_back(entry.path().filename());
    std::sort(out.begin(), out.end());
    return out;
}

}  // namespace quill::tests
