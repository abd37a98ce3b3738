#include "platform/form.h"

#include <algorithm>

#include "base/text.h"
#include "platform/controls.h"
#include "platform/menu.h"

namespace velmora {

Form* Forms::find(std::string_view name) const {
    const auto found = std::find_if(all_.begin(), all_.end(), [name](const Form* form) {
        return equalsIgnoringCase(form->name(), name);
    });
    return found == all_.end() ? nullptr : *found;
}

void Forms::tell(const std::function<void(ProgramView&)>& what) const {
    for (ProgramView* view : std::vector(views_)) what(*view);
}

void Forms::terminate() {
    for (Form* form : std::vector(created_)) {
        loop_.turn([form] { form->Form_Terminate(); });
    }
    created_.clear();
}

Form::Form(Forms& forms, std::string_view name, std::string caption)
    : Component(name, {}), Caption(*this, "Caption", std::move(caption)), forms_(forms) {
    forms_.all_.push_back(this);
}

Form::~Form() {
    for (auto* list : {&forms_.all_, &forms_.loaded_, &forms_.created_}) std::erase(*list, this);
}

void Form::touch() const {
    if (state_ == FormState::unloaded) const_cast<Form*>(this)->Load();  // NOLINT: looking at a form loads it
}

void Form::Load() {
    if (state_ != FormState::unloaded) return;
    state_ = FormState::loading;
    forms_.loaded_.push_back(this);
    if (std::find(forms_.created_.begin(), forms_.created_.end(), this) == forms_.created_.end()) {
        forms_.created_.push_back(this);
    }
    for (Control* control : controls_) control->formLoads();

    struct Loaded {  // also when the load event fails: what it did before stays
        Form& form;
        ~Loaded() {
            form.state_ = FormState::loaded;
            form.tell(FormChange::loaded);
        }
    } loaded{*this};
    Form_Load();
}

void Form::Show() {
    touch();
    if (state_ == FormState::unloading) return;
    if (visible_) return forms_.tell([this](ProgramView& view) { view.formRaised(*this); });
    visible_ = true;
    tell(FormChange::shown);
}

void Form::Hide() {
    if (!visible_) return;
    visible_ = false;
    tell(FormChange::hidden);
}

void Form::setVisible(bool visible) {
    touch();
    visible ? Show() : Hide();
}

void Form::setWindowState(WindowStates state) {
    touch();
    if (windowState_ == state) return;
    windowState_ = state;
    if (state == WindowStates::minimised) tell(FormChange::minimised);
    refreshView();
}

void Form::Unload() {
    if (state_ != FormState::loaded) return;
    state_ = FormState::unloading;

    struct Unloaded {  // also when an event fails or the program ends inside it
        Form& form;
        ~Unloaded() {
            form.visible_ = false;
            form.windowState_ = WindowStates::normal;
            form.resetAll();
            form.state_ = FormState::unloaded;
            std::erase(form.forms_.loaded_, &form);
            form.tell(FormChange::unloaded);
            if (form.forms_.loaded_.empty()) form.forms_.loop_.end();
        }
    } unloaded{*this};
    Form_QueryUnload();
    Form_Unload();
}

void Form::PopupMenu(Menu& menu) {
    touch();
    forms_.tell([&menu](ProgramView& view) { view.menuPopped(menu); });
}

void Form::resetAll() {
    reset();
    for (Control* control : controls_) {
        control->reset();
        control->refreshView();
    }
    for (Menu* menu : menus_) {
        menu->reset();
        menu->refreshView();
    }
}

void Form::tell(FormChange change) {
    forms_.tell([this, change](ProgramView& view) { view.formChanged(*this, change); });
}

}  // namespace velmora
