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

/// The vocabulary of window state: what a window shows and what can be done to it, as plain values.
///
/// A control draws nothing and knows nobody who looks at it. The desktop shows it, a test drives it.
/// Lengths and positions are in twips, 15 to a logical pixel.
namespace quill::controls {

/// What a click or a change sets off. Empty where nothing does.
using Action = std::function<void()>;

/// Runs `action` where there is one.
inline void run(const Action& action) {
    if (action) action();
}

/// A colour of the screen.
struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;

    bool operator==(const Colour&) const = default;
};

/// The colour whose number holds red in its lowest byte and blue in its third: 0xC0FFFF is a light yellow.
constexpr Colour colour_from_bgr(std::uint32_t number) {
    return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8U),
            static_cast<std::uint8_t>(number >> 16U)};
}

struct Control {
    bool visible = true;
    bool enabled = true;
};

/// A text that may be clicked.
struct Label : Control {
    std::string text;
    Colour colour;
    Action click;
    Action double_click;
    Action hover;  ///< the pointer came over it
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

/// A line or a box of text that may be typed into.
struct TextBox : Control {
    std::string text;
    Action change;
};

/// An area: a panel that holds other controls, or a surface that is drawn on.
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

    /// The selected row's text; empty where none is selected.
    std::string selected_item() const {
        return selected && *selected < items_.size() ? items_[*selected] : std::string();
    }

    /// All rows that an action is meant for, in order: several only in a list that takes several.
    std::vector<std::size_t> chosen_rows() const {
        if (takes_several && !selected_rows.empty()) return selected_rows;
        return selected ? std::vector<std::size_t>{*selected} : std::vector<std::size_t>();
    }

    std::optional<std::size_t> selected;     ///< the current row
    bool takes_several = false;              ///< more rows than the current one may be selected
    std::vector<std::size_t> selected_rows;  ///< in a list that takes several: all of them, in order
    Action change;                           ///< another row was selected
    Action double_click;                     ///< also by Enter

  private:
    std::vector<std::string> items_;
    std::uint64_t revision_ = 0;
};

/// A list of the files of one directory, as it was when last refreshed.
class FileListBox : public ListBox {
  public:
    const std::string& directory() const { return directory_; }
    const std::string& pattern() const { return pattern_; }

    bool shows_hidden = true;       ///< files whose names begin with a dot are listed as well
    bool executables_only = false;  ///< only files that this user may execute are listed

    void set_directory(std::string directory);
    void set_pattern(std::string pattern);

    /// Lists the directory anew; a directory that can't be read lists as empty.
    void refresh();

  private:
    std::string directory_;
    std::string pattern_ = "*.*";
};

/// The directory that the user stands in, with those above and below it to go to.
struct DirListBox : Control {
    std::string path;
    bool shows_hidden = false;  ///< directories whose names begin with a dot are listed as well
    Action change;
};

/// The mount point in use, of those that the machine has.
struct DriveListBox : Control {
    std::string drive;
    Action change;
};

/// A position in something that is longer than what is shown of it: from 0 to `maximum`.
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

/// A window: its frame's own state. What it holds stands in the windows derived from it.
struct Window : Control {
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window() = default;

    std::string caption;
    int left = 0, top = 0, width = 0, height = 0;
    MousePointer pointer = MousePointer::normal;
    Action close;     ///< the user closes the window
    Action hover;     ///< the pointer came over a part of it that is no control
    Action activate;  ///< the user turned to the window
};

/// Controls that share a name and are told apart by an index, which need not run without gaps.
template <class T>
class ControlArray {
  public:
    ControlArray(std::initializer_list<int> indices) {
        for (const int index : indices) members_.emplace_back(index, T{});
    }

    /// REQUIRES: `index` is one of the array's.
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

    /// Pointers to all, in order.
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

/// The name of an array's member as its view and its tests know it: "apt(1)".
inline std::string member_name(std::string_view array, int index) {
    return std::string(array).append("(").append(std::to_string(index)).append(")");
}

}  // namespace quill::controls
