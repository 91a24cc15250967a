#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The vocabulary of window state: what a window shows and offers, as plain values.
///
/// A control draws nothing and does not know its observers. The desktop shows it, a test drives it. Lengths and
/// positions are in twips, 15 to a logical pixel.
namespace quill::controls {

/// The effect of a click or a change. Empty if there is none.
using Action = std::function<void()>;

/// Runs `action` unless it is empty.
inline void run(const Action& action) {
    if (action) action();
}

/// A colour of the screen.
struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;

    bool operator==(const Colour&) const = default;
};

/// Returns the colour whose number holds red in its lowest byte and blue in its third: 0xC0FFFF is a light yellow.
constexpr Colour colour_from_bgr(std::uint32_t number) {
    return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8U),
            static_cast<std::uint8_t>(number >> 16U)};
}

struct Control {
    bool visible = true;
    bool enabled = true;
};

/// A text that can be clicked.
struct Label : Control {
    std::string text;
    Colour colour;
    Action click;
    Action double_click;
    Action hover;  ///< the pointer enters it
};

struct Button : Control {
    std::string caption;
    Action click;
};

/// One of a group of choices. Clicking it sets `chosen`, clears it in the others of its group, and runs `click`.
struct Choice : Control {
    std::string caption;
    bool chosen = false;
    int width = 0;
    Action click;
};

struct CheckBox : Control {
    std::string caption;
    bool checked = false;
    Action click;
};

/// A menu, or an item of one.
struct MenuItem : Control {
    std::string caption;
    bool checked = false;
    Action click;
};

/// A line or a box of editable text.
struct TextBox : Control {
    std::string text;
    Action change;
};

/// An area: a panel that holds other controls, or a drawing surface.
struct Picture : Control {
    int left = 0, top = 0, width = 0, height = 0;
    Action hover;
};

/// A titled group of controls.
struct Frame : Control {
    std::string caption;
};

/// A list of texts of which one may be selected.
class ListBox : public Control {
  public:
    const std::vector<std::string>& items() const { return items_; }
    std::size_t count() const { return items_.size(); }

    void add(std::string item) {
        items_.push_back(std::move(item));
        ++revision_;
    }
    void assign(std::vector<std::string> items) {
        if (items == items_) return;
        items_ = std::move(items);
        if (selected && *selected >= items_.size()) selected.reset();
        selected_rows.clear();
        ++revision_;
    }
    void replace(std::size_t row, std::string item) {
        items_.at(row) = std::move(item);
        ++revision_;
    }
    /// Removes a row; nothing is selected afterwards.
    void remove(std::size_t row) {
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(row));
        selected.reset();
        selected_rows.clear();
        ++revision_;
    }
    void clear() { assign({}); }

    /// Counts the changes of the rows, so that a view need not compare them.
    std::uint64_t revision() const { return revision_; }

    /// Returns the selected row's text; empty if none is selected.
    std::string selected_item() const {
        return selected && *selected < items_.size() ? items_[*selected] : std::string();
    }

    /// Returns all rows that an action applies to, in order: more than one only in a list with multiple selection.
    std::vector<std::size_t> chosen_rows() const {
        if (takes_several && !selected_rows.empty()) return selected_rows;
        return selected ? std::vector<std::size_t>{*selected} : std::vector<std::size_t>();
    }

    std::optional<std::size_t> selected;     ///< the current row
    bool takes_several = false;              ///< allows multiple selection
    std::vector<std::size_t> selected_rows;  ///< with multiple selection: all selected rows, in order
    Action change;                           ///< another row is selected
    Action double_click;                     ///< also by Enter

  private:
    std::vector<std::string> items_;
    std::uint64_t revision_ = 0;
};

/// A list of the files of one directory as of its last refresh.
class FileListBox : public ListBox {
  public:
    const std::string& directory() const { return directory_; }
    const std::string& pattern() const { return pattern_; }

    bool shows_hidden = true;       ///< includes files whose names begin with a dot
    bool executables_only = false;  ///< lists only files that this user may execute

    void set_directory(std::string directory);
    void set_pattern(std::string pattern);

    /// Lists the directory again; a directory that can't be read lists as empty.
    void refresh();

  private:
    std::string directory_;
    std::string pattern_ = "*.*";
};

/// The current directory, with its parents and subdirectories to go to.
struct DirListBox : Control {
    std::string path;
    bool shows_hidden = false;  ///< includes directories whose names begin with a dot
    Action change;
};

/// The current mount point and those of the machine.
struct DriveListBox : Control {
    std::string drive;
    Action change;
};

/// A position in something longer than its visible part: from 0 to `maximum`.
struct ScrollBar : Control {
    std::size_t value = 0;
    std::size_t maximum = 0;
    Action change;
};

/// Fires every `interval` milliseconds while enabled.
struct Timer : Control {
    int interval = 0;
    Action tick;
};

enum class MousePointer : std::uint8_t { normal, busy };

/// A window: the state of its frame. Derived windows add the contents.
struct Window : Control {
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window() = default;

    std::string caption;
    int left = 0, top = 0, width = 0, height = 0;
    MousePointer pointer = MousePointer::normal;
    Action close;     ///< the user closes the window
    Action hover;     ///< the pointer enters a part of it that is not a control
    Action activate;  ///< the user activates the window
};

/// Controls that share a name and differ by an index, which may have gaps.
template <class T>
class ControlArray {
  public:
    ControlArray(std::initializer_list<int> indices) {
        for (const int index : indices) members_.emplace_back(index, T{});
    }

    /// REQUIRES: the array has `index`.
    T& operator()(int index) { return member(*this, index); }
    const T& operator()(int index) const { return member(*this, index); }

    bool has(int index) const {
        for (const auto& [i, control] : members_) {
            if (i == index) return true;
        }
        return false;
    }
    int lower_bound() const { return members_.front().first; }
    int upper_bound() const { return members_.back().first; }

    /// Calls f(index, control) for each, in order.
    template <class F>
    void for_each(F&& f) {
        for (auto& [index, control] : members_) f(index, control);
    }

    /// Returns pointers to all, in order.
    std::vector<T*> all() {
        std::vector<T*> pointers;
        for (auto& [index, control] : members_) pointers.push_back(&control);
        return pointers;
    }

  private:
    template <class Self>
    static auto& member(Self& self, int index) {
        std::size_t i = 0;
        while (self.members_.at(i).first != index) ++i;
        return self.members_[i].second;
    }

    std::vector<std::pair<int, T>> members_;
};

/// Returns the name of an array's member for its view and tests: "apt(1)".
inline std::string member_name(std::string_view array, int index) {
    return std::string(array).append("(").append(std::to_string(index)).append(")");
}

}  // namespace quill::controls
