// What a Qt program costs that does nothing: it prints "ready" from its event loop, and ends with its input.

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    QTimer::singleShot(0, &application, [] {
        std::puts("ready");
        std::fflush(stdout);
    });
    return QApplication::exec();
}
