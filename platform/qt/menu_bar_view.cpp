#include "platform/qt/menu_bar_view.h"

#include <QMenu>
#include <algorithm>

#include "platform/menu.h"
#include "platform/qt/binder.h"
#include "platform/qt/menu_view.h"
#include "platform/qt/text.h"

namespace velmora::qt {

/// One menu of a bar.
class MenuBarView::Title final : public ComponentView {
public:
    Title(Menu& model, QMenuBar& bar, Loop& loop) : model_(model), menu_(*bar.addMenu(QString())) {
        menu_.setObjectName(widgetName(model));
        menu_.setSeparatorsCollapsible(true);
        QObject::connect(&menu_, &QMenu::aboutToShow, &context_, [this, &loop] {
            // The entry that was picked last may still be under way.
            for (QAction* action : menu_.actions()) {
                menu_.removeAction(action);
                action->deleteLater();
            }
            addEntries(menu_, model_, loop);
        });
        model.show(this);
        refresh();
    }
    ~Title() override { model_.show(nullptr); }

    void refresh() override {
        menu_.setTitle(shown(model_.Caption.peek()));
        menu_.menuAction()->setVisible(model_.Visible.peek());
        menu_.menuAction()->setEnabled(model_.Enabled.peek());
    }

private:
    Menu& model_;
    QMenu& menu_;
    QObject context_;
};

MenuBarView::MenuBarView(const Form& form, const QWidget& window, Loop& loop) {
    for (QMenuBar* bar : window.findChildren<QMenuBar*>()) fill(*bar, form, loop);
}

MenuBarView::~MenuBarView() = default;

void MenuBarView::detach() {
    titles_.clear();
}

void MenuBarView::fill(QMenuBar& bar, const Form& form, Loop& loop) {
    for (const QString& name : bar.property("menus").toStringList()) {
        const auto found = std::find_if(form.menus().begin(), form.menus().end(),
                                        [&name](const Menu* menu) { return widgetName(*menu) == name; });
        if (found != form.menus().end()) titles_.push_back(std::make_unique<Title>(**found, bar, loop));
    }
}

}  // namespace velmora::qt
