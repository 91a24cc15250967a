#include <QCoreApplication>
#include <gtest/gtest.h>

/// Qt finds its picture formats through an application.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
