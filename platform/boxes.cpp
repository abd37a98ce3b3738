#include "platform/boxes.h"

#include <algorithm>
#include <filesystem>

namespace velmora {

std::shared_ptr<Box> Boxes::ask(Box asked) {
    auto box = std::make_shared<Box>(std::move(asked));
    open_.push_back(box);
    for (BoxView* view : views_) view->boxOpened(box);

    struct Closed {  // also when the program ends while the box waits
        Boxes& boxes;
        const std::shared_ptr<Box>& box;
        ~Closed() {
            std::erase(boxes.open_, box);
            for (BoxView* view : boxes.views_) view->boxClosed(box);
        }
    } closed{*this, box};
    loop_.wait([&box] { return box->answered; });
    return box;
}

BoxAnswer Boxes::MsgBox(const std::string& text, const std::string& title, BoxIcon icon, BoxButtons buttons) {
    Box box;
    box.text = text;
    box.title = title;
    box.icon = icon;
    box.buttons = buttons;
    return ask(std::move(box))->answer;
}

std::optional<std::string> Boxes::openFile(const std::string& title, const std::string& filter) {
    Box box;
    box.kind = Box::Kind::openFile;
    box.title = title;
    box.filter = filter;
    return ask(std::move(box))->path;
}

std::optional<std::string> Boxes::saveFile(const std::string& title, const std::string& filter,
                                           const std::string& extension) {
    Box box;
    box.kind = Box::Kind::saveFile;
    box.title = title;
    box.filter = filter;
    box.extension = extension;
    auto path = ask(std::move(box))->path;
    if (path && !extension.empty() && std::filesystem::path(*path).extension().empty())
        *path += "." + extension;
    return path;
}

std::shared_ptr<Box> Boxes::newest() const {
    const auto waiting = std::find_if(open_.rbegin(), open_.rend(),
                                      [](const std::shared_ptr<Box>& box) { return !box->answered; });
    return waiting == open_.rend() ? nullptr : *waiting;
}

}  // namespace velmora
