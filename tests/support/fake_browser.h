#pragma once

#include "platform/browser.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quill::tests {

/// A browser that shows nothing and records the calls.
struct FakeBrowser final : platform::Browser {
    std::vector<std::string> asked;
    int zoom = 100;
    std::size_t top = 0;   ///< place at the top of the window
    bool has_text = true;  ///< whether a search finds something

    void navigate(const std::string& page, const std::string& fragment) override {
        asked.push_back(fragment.empty() ? page : page + "#" + fragment);
    }
    void go_back() override { asked.emplace_back("back"); }
    void go_forward() override { asked.emplace_back("forward"); }
    void copy() override { asked.emplace_back("copy"); }
    void select_all() override { asked.emplace_back("select all"); }
    bool find(const std::string& text, Direction direction) override {
        asked.push_back((direction == Direction::forward ? "find " : "find back ") + text);
        return has_text;
    }
    void find_place(const std::string& text, std::size_t number) override {
        asked.push_back("find " + text + " " + std::to_string(number));
    }
    void print() override { asked.emplace_back("print"); }
    void set_zoom(int percent) override { zoom = percent; }
    std::size_t place() const override { return top; }
    void go_to_place(std::size_t place) override { top = place; }
};

}  // namespace quill::tests
