#include "platform/qt/qt_loop_host.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QThread>
#include <algorithm>

namespace velmora::qt {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds longestPrecise{1000};
constexpr milliseconds longestAlarm{std::chrono::hours{1}};

void deleteWhatIsDue() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

QtLoopHost::QtLoopHost() {
    clock_.start();
    alarm_.setSingleShot(true);
    // The program lives as long as a form is loaded, whatever windows are open.
    QCoreApplication::setQuitLockEnabled(false);
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

QtLoopHost::~QtLoopHost() {
    deleteWhatIsDue();
}

milliseconds QtLoopHost::elapsed() const {
    return milliseconds{clock_.elapsed()};
}

void QtLoopHost::serve(std::optional<milliseconds> atMost) {
    if (!loop_ || loop_->depth() == 0) deleteWhatIsDue();
    if (atMost && *atMost <= milliseconds{0}) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        return;
    }
    if (atMost) {
        // An early return does no harm, and a span that Qt's timers can't count would.
        alarm_.setTimerType(*atMost <= longestPrecise ? Qt::PreciseTimer : Qt::CoarseTimer);
        alarm_.start(std::min(*atMost, longestAlarm));
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    alarm_.stop();
}

void QtLoopHost::postFromThread(std::function<void()> call) {
    QMetaObject::invokeMethod(
        &bell_,
        [this, call = std::move(call)] {
            if (loop_) loop_->post(call);
        },
        Qt::QueuedConnection);
}

}  // namespace velmora::qt
