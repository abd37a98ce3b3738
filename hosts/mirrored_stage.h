#pragma once

#include <memory>

#include "agent/qt/qt_character.h"
#include "agent/request_queue.h"
#include "platform/engine/instant_stage.h"

namespace velmora {

/// Takes no time, as the terminal host wants it, while a figure on the desktop performs the same orders at
/// its own pace.
class MirroredStage : public InstantStage {
public:
    MirroredStage(std::unique_ptr<agent::QtCharacter> figure, agent::Post post)
        : figure_(std::move(figure)), queue_(*figure_, std::move(post)) {}

    void perform(const agent::Order& order, std::function<void(bool performed)> done) override {
        queue_.ask(order);
        done(true);
    }
    bool has(std::string_view animation) const override { return figure_->has(animation); }

    /// Everything that the figure has not performed yet is dropped too.
    void stop() { queue_.stopAll(); }

private:
    std::unique_ptr<agent::QtCharacter> figure_;
    agent::RequestQueue queue_;
};

}  // namespace velmora
