#pragma once

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <string>

namespace velmora::qt {

/// A key that is held down while speaking, whichever window has the focus. Works on X11; elsewhere the
/// desktop lets no program see the keys of others.
class TalkKey : public QAbstractNativeEventFilter {
public:
    TalkKey();
    ~TalkKey() override;
    TalkKey(const TalkKey&) = delete;
    TalkKey& operator=(const TalkKey&) = delete;

    /// Takes the key of that X11 name ("Scroll_Lock"), alone and with Shift, in place of the one before; an
    /// empty name: none. Gives a sentence that says why the key can't be had; empty if it can.
    std::string use(const std::string& name);

    /// Whether this program gets the key.
    bool works() const { return code_ != 0; }

    std::function<void()> onPress;
    std::function<void()> onRelease;     ///< follows each press; a key that repeats itself is not let go
    std::function<void()> onShiftPress;  ///< with Shift, instead of the two

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void letGo();
    void pressed(std::uint32_t time, bool shift);
    void released();

    std::uint8_t code_ = 0;  ///< the grabbed key; 0: none
    bool down_ = false;
    std::uint32_t releasedAt_ = 0;
    QTimer releasing_;  ///< runs while a release may yet turn out to be a repetition
};

}  // namespace velmora::qt
