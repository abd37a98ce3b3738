#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/dialogs.h"
#include "platform/loop.h"

namespace velmora {

/// A message box or file dialog that waits for its answer.
struct Box {
    enum class Kind { message, openFile, saveFile };

    Kind kind = Kind::message;
    std::string text;
    std::string title;
    BoxIcon icon = BoxIcon::none;
    BoxButtons buttons = BoxButtons::ok;
    std::string filter;
    std::string extension;

    bool answered = false;
    BoxAnswer answer = BoxAnswer::ok;
    std::optional<std::string> path;  ///< of a file dialog; nothing: cancelled

    void reply(BoxAnswer given) {
        answer = given;
        answered = true;
    }
    void reply(std::optional<std::string> given) {
        path = std::move(given);
        answered = true;
    }
};

/// What shows boxes. It keeps the box and calls `reply` on it when the person has decided.
class BoxView {
public:
    virtual ~BoxView() = default;
    virtual void boxOpened(const std::shared_ptr<Box>& box) = 0;
    virtual void boxClosed(const std::shared_ptr<Box>& box) = 0;
};

/// The dialogs as models: any number of views show them, and whichever answers first decides.
class Boxes : public Dialogs {
public:
    explicit Boxes(Loop& loop) : loop_(loop) {}

    void add(BoxView& view) { views_.push_back(&view); }

    BoxAnswer MsgBox(const std::string& text, const std::string& title, BoxIcon icon,
                     BoxButtons buttons) override;
    std::optional<std::string> openFile(const std::string& title, const std::string& filter) override;
    std::optional<std::string> saveFile(const std::string& title, const std::string& filter,
                                        const std::string& extension) override;

    /// The newest box that still waits; nullptr if none does.
    std::shared_ptr<Box> newest() const;

private:
    std::shared_ptr<Box> ask(Box box);

    Loop& loop_;
    std::vector<BoxView*> views_;
    std::vector<std::shared_ptr<Box>> open_;
};

}  // namespace velmora
