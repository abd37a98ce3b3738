#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/console/lines.h"
#include "platform/link.h"
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

/// Prints what the system is asked to dial; tests the system's link, or one that is forced.
class TerminalLink : public Link {
public:
    enum class Forced { up, down, error };

    TerminalLink(LinePrinter& printer, Link& system) : printer_(printer), system_(system) {}

    std::optional<std::vector<LinkHandle>> RasEnumConnections() const override {
        if (!forced_) return system_.RasEnumConnections();
        if (forced_ == Forced::error) return std::nullopt;
        return forced_ == Forced::up ? std::vector{forcedLink} : std::vector<LinkHandle>{};
    }
    std::optional<LinkStatus> RasGetConnectStatus(LinkHandle link) const override {
        if (!forced_) return system_.RasGetConnectStatus(link);
        if (forced_ != Forced::up || link != forcedLink) return std::nullopt;
        return LinkStatus::connected;
    }
    long InternetAutodial() override {
        const long result = system_.InternetAutodial();
        printer_.print({"dial", std::to_string(result)});
        return result;
    }
    /// From now on the test finds this.
    void force(Forced forced) { forced_ = forced; }
    /// Gives the test back to the system.
    void release() { forced_.reset(); }

private:
    static constexpr LinkHandle forcedLink = 1;

    LinePrinter& printer_;
    Link& system_;
    std::optional<Forced> forced_;
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
