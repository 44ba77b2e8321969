#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
#ifndef Q_OS_WIN // which has no other platform than its own
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    testing::InitGoogleTest(&argc, argv);
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
