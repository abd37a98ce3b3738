#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>
#include <string>

namespace velmora::qt {

/// A key that is held down while speaking, whichever window has the focus. Works on X11; elsewhere the
/// desktop lets no program see the keys of others.
class TalkKey : public QAbstractNativeEventFilter {
public:
    /// The key by its X11 name ("Scroll_Lock"). One that is unknown, or that another program has taken, does
    /// nothing: see `works`.
    explicit TalkKey(const std::string& name);
    ~TalkKey() override;
    TalkKey(const TalkKey&) = delete;
    TalkKey& operator=(const TalkKey&) = delete;

    /// Whether this program gets the key.
    bool works() const { return code_ != 0; }

    std::function<void()> onPress;
    std::function<void()> onRelease;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void released();

    std::uint8_t code_ = 0;  ///< the grabbed key; 0: none
    bool down_ = false;
    std::uint32_t releasedAt_ = 0;
    bool repeating_ = false;
};

}  // namespace velmora::qt
