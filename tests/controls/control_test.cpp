#include "controls/control.h"

#include "controls/windows.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::controls {
namespace {

TEST(ListBox, TellsOfEveryChangeAndNeverSelectsARowThatIsGone) {
    ListBox list;
    auto changed = [revision = list.revision(), &list]() mutable {
        return std::exchange(revision, list.revision()) != revision;
    };
    list.add("a");
    EXPECT_TRUE(changed());
    list.add("b");
    EXPECT_TRUE(changed());
    EXPECT_FALSE(changed());
    list.selected = 1;
    EXPECT_EQ(list.selected_item(), "b");
    list.replace(1, "c");
    EXPECT_TRUE(changed());
    EXPECT_EQ(list.selected_item(), "c");
    list.assign({"x"});
    EXPECT_TRUE(changed());
    EXPECT_EQ(list.selected_item(), "");
    list.selected = 0;
    list.remove(0);
    EXPECT_TRUE(changed());
    EXPECT_FALSE(list.selected.has_value());
    EXPECT_EQ(list.count(), 0U);
}

TEST(FileListBox, ShowsADirectoryAsItWasWhenLastRefreshed) {
    const tests::TemporaryDirectory dir;
    dir.write("a.txt", "");
    FileListBox list;
    list.set_directory(dir.path());
    dir.write("b.jpg", "");
    EXPECT_EQ(list.items(), std::vector<std::string>{"a.txt"});
    list.refresh();
    EXPECT_EQ(list.items(), (std::vector<std::string>{"a.txt", "b.jpg"}));
    list.set_pattern("*.jpg");
    EXPECT_EQ(list.items(), std::vector<std::string>{"b.jpg"});
    list.set_directory(dir.path("gone"));
    EXPECT_EQ(list.count(), 0U);
}

TEST(ControlArray, IsToldApartByIndicesWithGaps) {
    ControlArray<Label> labels{0, 1, 4};
    labels(4).text = "four";
    std::string seen;
    labels.for_each([&](int index, const Label& label) { seen += member_name("L", index) + label.text + " "; });
    EXPECT_EQ(seen, "L(0) L(1) L(4)four ");
    EXPECT_TRUE(labels.has(1));
    EXPECT_FALSE(labels.has(2));
    EXPECT_THROW(labels(2), std::out_of_range);
    EXPECT_EQ(labels.lower_bound(), 0);
    EXPECT_EQ(labels.upper_bound(), 4);
}

TEST(Colour, NumbersHoldRedInTheirLowestByte) {
    EXPECT_EQ(colour_from_bgr(0xC0FFFF), (Colour{0xFF, 0xFF, 0xC0}));
}

struct First : Window {
    explicit First(bool& gone_) : gone(gone_) {}
    First(const First&) = delete;
    First& operator=(const First&) = delete;
    ~First() override { gone = true; }
    bool& gone;
};
struct Second : Window {};

TEST(Windows, AreLoadedOnceAndDestroyedOnlyBetweenEvents) {
    Windows windows;
    bool gone = false;
    First& first = windows.load<First>(gone);
    EXPECT_EQ(&windows.load<First>(gone), &first);
    EXPECT_EQ(windows.loaded<Second>(), nullptr);
    windows.load<Second>();
    first.close = [&windows] { windows.unload<First>(); };
    run(first.close);
    EXPECT_EQ(windows.loaded<First>(), nullptr);
    EXPECT_FALSE(gone) << "its own action was still running";
    int count = 0;
    windows.for_each([&](std::type_index, Window&) { ++count; });
    EXPECT_EQ(count, 1);
    windows.collect();
    EXPECT_TRUE(gone);
    windows.unload<First>();
}

}  // namespace
}  // namespace quill::controls
