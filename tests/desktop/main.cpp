#include <QApplication>
#include <QIcon>
#include <gtest/gtest.h>

#include <cstdlib>

/// Runs the tests of the views, which draw on Qt's platform without a screen.
int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
