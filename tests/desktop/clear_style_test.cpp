#include "desktop/clear_style.h"

#include <QPalette>
#include <gtest/gtest.h>

#include <cmath>

namespace quill::tests {
namespace {

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

TEST(ClearStyle, TextsOfControlsThatAreOffAreFaintButReadable) {
    desktop::ClearStyle style;
    for (const QColor& ground : {QColor(0xef, 0xef, 0xef), QColor(0x2b, 0x2b, 0x2b)}) {
        QPalette palette(ground);
        style.polish(palette);
        const QColor faint = palette.color(QPalette::Disabled, QPalette::WindowText);
        const double a = luminance(faint), b = luminance(palette.color(QPalette::Window));
        EXPECT_GE((std::max(a, b) + 0.05) / (std::min(a, b) + 0.05), 4.5) << ground.name().toStdString();
        EXPECT_NE(faint, palette.color(QPalette::Active, QPalette::WindowText));
    }
}

}  // namespace
}  // namespace quill::tests
