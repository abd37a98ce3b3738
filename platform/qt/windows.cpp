#include "platform/qt/windows.h"

#include <QApplication>
#include <algorithm>

#include "platform/qt/binder.h"
#include "platform/qt/form_window.h"
#include "platform/qt/later.h"
#include "platform/qt/menu_bar_view.h"
#include "platform/qt/resources.h"
#include "platform/qt/text.h"

namespace velmora::qt {

/// A form with its window. It may be on the stack when the form goes, as the sender of the click that caused
/// it.
class QtWindows::Shown final : public ComponentView {
public:
    Shown(Form& form, const View& view) : form_(form), window_(new FormWindow) {
        view.setUp(*window_);
        window_->finish();
        binder_.emplace(form, *window_, form.forms().loop());
        menuBars_.emplace(form, *window_, form.forms().loop());
        Loop& loop = form.forms().loop();
        window_->onClose = [&form, &loop] { loop.turn([&form] { form.close(); }); };
        window_->onMinimise = [&form, &loop](bool minimised) {
            loop.turn([&] {
                if (form.alive())
                    form.setWindowState(minimised ? WindowStates::minimised : WindowStates::normal);
            });
        };
        form.show(this);
        refresh();
        const QPoint corner(form.Left.peek() / Form::twipsToThePixel,
                            form.Top.peek() / Form::twipsToThePixel);
        if (!corner.isNull()) window_->move(corner);
    }

    ~Shown() override { detach(); }

    void detach() {
        if (!std::exchange(attached_, false)) return;
        window_->onClose = {};
        window_->onMinimise = {};
        binder_->detach();
        menuBars_->detach();
        form_.show(nullptr);
    }

    void refresh() override {
        window_->setWindowTitle(shown(form_.Caption.peek()));
        if (form_.windowState() == WindowStates::normal && window_->isMinimized()) window_->showNormal();
    }

    FormWindow& window() { return *window_; }
    const Binder& binder() const { return *binder_; }

private:
    Form& form_;
    bool attached_ = true;
    std::unique_ptr<FormWindow, DeleteLater> window_;
    std::optional<Binder> binder_;
    std::optional<MenuBarView> menuBars_;
};

QtWindows::QtWindows(Forms& forms, std::span<const View> views)
    : forms_(forms), views_(views), menus_(forms.loop()) {
    QGuiApplication::setWindowIcon(programIcon());
    qApp->installEventFilter(&focusedRows_);
    forms.add(*this);
}

QtWindows::~QtWindows() {
    forms_.remove(*this);
}

QWidget* QtWindows::window(const Form& form) const {
    const auto found = shown_.find(&form);
    return found == shown_.end() ? nullptr : &found->second->window();
}

void QtWindows::formChanged(Form& form, FormChange change) {
    struct Reaction {
        FormChange change;
        void (QtWindows::*react)(Form&);
    };
    static constexpr Reaction reactions[]{{FormChange::shown, &QtWindows::show},
                                          {FormChange::minimised, &QtWindows::minimise},
                                          {FormChange::hidden, &QtWindows::hide},
                                          {FormChange::unloaded, &QtWindows::drop}};
    for (const auto& [when, react] : reactions) {
        if (when == change) (this->*react)(form);
    }
}

void QtWindows::show(Form& form) {
    auto& shown = shown_[&form];
    if (!shown) {
        const auto view = std::find_if(views_.begin(), views_.end(),
                                       [&](const View& each) { return each.form == form.name(); });
        if (view == views_.end()) {
            shown_.erase(&form);
            return;
        }
        shown = std::make_shared<Shown>(form, *view);
    }
    FormWindow& window = shown->window();
    form.windowState() == WindowStates::minimised ? window.showMinimized() : window.show();
    if (window.testAttribute(Qt::WA_ShowWithoutActivating)) return;
    window.raise();
    window.activateWindow();
}

void QtWindows::minimise(Form& form) {
    QWidget* shown = window(form);
    if (shown && shown->isVisible()) shown->showMinimized();
}

void QtWindows::hide(Form& form) {
    if (QWidget* shown = window(form)) shown->hide();
}

void QtWindows::drop(Form& form) {
    const auto found = shown_.find(&form);
    if (found == shown_.end()) return;
    const auto dropped = std::move(found->second);
    shown_.erase(found);
    dropped->detach();
    dropped->window().hide();
    forms_.loop().retire(dropped);
}

void QtWindows::focusMoved(Control& control) {
    const auto found = shown_.find(&control.form());
    if (found == shown_.end()) return;
    if (QWidget* widget = found->second->binder().widgetOf(control)) widget->setFocus(Qt::OtherFocusReason);
}

}  // namespace velmora::qt
