#pragma once

#include <cstddef>
#include <string>

namespace quill::platform {

/// Shows the pages of a book. It loads only what the reader provides, and runs no scripts.
class Browser {
  public:
    virtual ~Browser() = default;
    /// Shows the page at `page`, a path from the root of the book, at the place named by `fragment`; empty for the
    /// beginning.
    virtual void navigate(const std::string& page, const std::string& fragment) = 0;
    virtual void go_back() = 0;
    virtual void go_forward() = 0;
    /// Copies the selection.
    virtual void copy() = 0;
    virtual void select_all() = 0;
    enum class Direction { forward, backward };
    /// Goes to the next place on the page that contains `text`, ignoring case; returns false if there is none after the
    /// current one, or before it when searching backward.
    virtual bool find(const std::string& text, Direction direction) = 0;
    /// Goes to place number `number`, from 0, of those on the page that contain `text`; to the last one if there are
    /// fewer.
    virtual void find_place(const std::string& text, std::size_t number) = 0;
    virtual void print() = 0;
    /// Shows letters at `percent` of their usual size, on this page and those that follow.
    virtual void set_zoom(int percent) = 0;
    /// Returns the place in the page's text that is at the top of the window, in characters from its beginning.
    virtual std::size_t place() const = 0;
    /// Brings that place to the top; the end, where the page is shorter.
    virtual void go_to_place(std::size_t place) = 0;
};

}  // namespace quill::platform
