#include "shell/star_field.h"

#include "support/scripted_platform.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quill::shell {
namespace {

/// Makes random numbers put new stars at a fixed place.
void put_new_stars_at(tests::ScriptedPlatform& platform, int x, int y) {
    platform.random_number = [x, y](int bound) { return bound == 7900 ? x - 1 : y - 1; };
}

TEST(StarField, AStarMovesAThirtiethOfItsWayFromTheCentre) {
    tests::ScriptedPlatform platform;
    StarField field;
    put_new_stars_at(platform, 3702 + 300, 1822 - 65);
    field.tick(platform.machine());
    field.tick(platform.machine());
    EXPECT_EQ(field.stars()[0].x, 3702 + 310);
    EXPECT_EQ(field.stars()[0].y, 1822 - 67);
}

TEST(StarField, AStarThatStandsStillOnAnAxisIsReplaced) {
    tests::ScriptedPlatform platform;
    StarField field;
    put_new_stars_at(platform, 3702 + 29, 100);
    field.tick(platform.machine());
    put_new_stars_at(platform, 50, 60);
    field.tick(platform.machine());
    EXPECT_EQ(field.stars()[29].x, 50);
    EXPECT_EQ(field.stars()[29].y, 60);
}

TEST(StarField, AStarThatLeavesIsReplaced) {
    tests::ScriptedPlatform platform;
    StarField field;
    put_new_stars_at(platform, 7900, 3600);
    int steps = 0;
    do {
        field.tick(platform.machine());
        ++steps;
    } while (field.stars()[0].x + (field.stars()[0].x - 3702) / 30 <= 8810);
    EXPECT_GT(steps, 5);
    put_new_stars_at(platform, 10, 20);
    field.tick(platform.machine());
    EXPECT_EQ(field.stars()[0].x, 10);
}

TEST(StarField, StaysOnThePanelOverALongTime) {
    tests::ScriptedPlatform platform;
    StarField field;
    for (int i = 0; i < 2000; ++i) {
        field.tick(platform.machine());
        EXPECT_TRUE(std::all_of(field.stars().begin(), field.stars().end(), [](const Star& star) {
            return star.x >= 0 && star.y >= 0 && star.x <= 8810 && star.y < 7921 && star.drawn;
        }));
    }
}

TEST(StarField, AStarBehindALabelIsNotDrawn) {
    tests::ScriptedPlatform platform;
    StarField field;
    field.is_black = [](int x, int) { return x < 3702; };
    for (int i = 0; i < 50; ++i) field.tick(platform.machine());
    for (const Star& star : field.stars()) EXPECT_EQ(star.drawn, star.x < 3702);
}

}  // namespace
}  // namespace quill::shell
