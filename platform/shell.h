#pragma once

#include <functional>
#include <string>

namespace velmora {

/// The desktop's shell.
class Shell {
public:
    virtual ~Shell() = default;

    /// The "open" verb: a program, a document, an address. The target is data, nothing interprets it as a
    /// command. Whether it could be opened is never told. An empty folder means none.
    virtual void open(const std::string& target, const std::string& folder) = 0;

    /// The clipboard's text, empty if it holds none.
    virtual std::string clipboardText() const = 0;
    virtual void setClipboardText(const std::string& text) = 0;
};

/// The program's icon in the tray.
class Tray {
public:
    virtual ~Tray() = default;

    /// Shows the icon; on a desktop without a tray this does nothing.
    virtual void add(const std::string& tip) = 0;
    virtual void remove() = 0;

    std::function<void()> onClick;
    std::function<void()> onRightClick;
};

}  // namespace velmora
