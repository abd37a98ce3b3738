#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>

#include "platform/loop.h"

namespace velmora::qt {

/// Carries a loop on Qt's events. It needs a `QCoreApplication`, which outlives it; `exec` is never called,
/// `Loop::run` is the loop.
class QtLoopHost : public LoopHost {
public:
    QtLoopHost();
    ~QtLoopHost() override;

    /// Names the loop that this host carries, which calls from other threads reach and whose depth tells when
    /// widgets can be deleted. The loop must not outlive the host; `nullptr` lets go of it.
    void carry(Loop* loop) { loop_ = loop; }

    std::chrono::milliseconds elapsed() const override;

    /// Objects given to `deleteLater` go here, and only while no turn is under way.
    void serve(std::optional<std::chrono::milliseconds> atMost) override;

    /// Runs the call in the program's thread, as if it had been given to `Loop::post` there. From any thread;
    /// calls keep the order of one thread. One that has not arrived when the host goes is dropped.
    void postFromThread(std::function<void()> call);

private:
    Loop* loop_ = nullptr;
    QElapsedTimer clock_;
    QTimer alarm_;
    QObject bell_;
};

}  // namespace velmora::qt
