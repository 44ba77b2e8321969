#include "browser/webengine/WebEngineStart.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // What a page could store lands here, where it is found.
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    Brindle::PrepareWebEngine();
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
