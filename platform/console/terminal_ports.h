#pragma once

#include <string>

#include "platform/console/lines.h"
#include "platform/pointer.h"
#include "platform/shell.h"

namespace velmora {

/// Prints what is opened; `opener`, if there is one, opens it.
class TerminalShell : public Shell {
public:
    TerminalShell(LinePrinter& printer, Shell* opener) : printer_(printer), opener_(opener) {}
    void open(const std::string& target, const std::string& folder) override {
        printer_.print({"open", target, folder});
        if (opener_) opener_->open(target, folder);
    }
    std::string clipboardText() const override { return clipboard_; }
    void setClipboardText(const std::string& text) override { clipboard_ = text; }

private:
    LinePrinter& printer_;
    Shell* opener_;
    std::string clipboard_;
};

/// A tray of lines; `shown`, if there is one, shows the icon as well.
class TerminalTray : public Tray {
public:
    TerminalTray(LinePrinter& printer, Tray* shown) : printer_(printer), shown_(shown) {}
    void add(const std::string& tip) override {
        printer_.print({"tray", "add", tip});
        present_ = true;
        if (!shown_) return;
        shown_->onClick = onClick;
        shown_->onRightClick = onRightClick;
        shown_->add(tip);
    }
    void remove() override {
        printer_.print({"tray", "delete"});
        present_ = false;
        if (shown_) shown_->remove();
    }
    bool present() const { return present_; }

private:
    LinePrinter& printer_;
    Tray* shown_;
    bool present_ = false;
};

/// A mouse that stands where it was last said to stand.
class TerminalPointer : public Pointer {
public:
    ScreenPoint position() const override { return position_; }
    std::string programUnder() const override { return program_; }
    void put(std::string program, ScreenPoint position) {
        program_ = std::move(program);
        position_ = position;
    }

private:
    ScreenPoint position_;
    std::string program_;
};

}  // namespace velmora
