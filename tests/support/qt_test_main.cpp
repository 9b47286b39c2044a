// main() for tests that need a Qt application object of a given kind.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCoreApplication>
#include <QGuiApplication>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // Test discovery runs without the tests' environment: never need a display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#if defined(VORLUNE_TEST_APP_WIDGETS)
    QApplication app(argc, argv);
#elif defined(VORLUNE_TEST_APP_GUI)
    QGuiApplication app(argc, argv);
#else
    QCoreApplication app(argc, argv);
#endif
    return RUN_ALL_TESTS();
}
