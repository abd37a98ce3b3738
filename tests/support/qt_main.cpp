#include <gmock/gmock.h>

#include <QApplication>

// For tests of widgets: on the offscreen platform, so that they run anywhere, also where only their names are
// asked for.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
