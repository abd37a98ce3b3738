#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/component.h"
#include "platform/loop.h"

namespace velmora {

class Control;
class Form;
class Menu;

enum class FormState { unloaded, loading, loaded, unloading };
enum class WindowStates { normal = 0, minimised = 1 };

/// What the person sees of a form that has just changed.
enum class FormChange { loaded, shown, hidden, minimised, unloaded };

/// What shows a whole program: told of every change that no single control tells. All calls come from inside
/// a turn.
class ProgramView {
public:
    virtual ~ProgramView() = default;
    virtual void formChanged(Form&, FormChange) {}
    /// The program shows a form that is shown already: its window comes before the others.
    virtual void formRaised(Form&) {}
    /// The program has moved the keyboard's focus.
    virtual void focusMoved(Control&) {}
    /// A menu is to open at the pointer.
    virtual void menuPopped(Menu&) {}
};

/// The forms of one running program. When the last loaded one goes, the program is over.
class Forms {
public:
    explicit Forms(Loop& loop) : loop_(loop) {}
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;

    Loop& loop() const { return loop_; }

    /// Every form of the program, loaded or not.
    const std::vector<Form*>& all() const { return all_; }
    /// The form of that name, letters of either case; nullptr if there is none.
    Form* find(std::string_view name) const;

    /// The runtime's list: the loaded ones in the order of loading, counted from 0.
    std::size_t Count() const { return loaded_.size(); }
    Form& operator()(std::size_t index) const { return *loaded_.at(index); }

    /// Views outlive the forms' changes: whoever adds one removes it.
    void add(ProgramView& view) { views_.push_back(&view); }
    void remove(ProgramView& view) { std::erase(views_, &view); }
    void tell(const std::function<void(ProgramView&)>& what) const;

    /// The terminate events, in the order of first loading; for the program's orderly end.
    void terminate();

private:
    friend class Form;

    Loop& loop_;
    std::vector<Form*> all_;
    std::vector<Form*> loaded_;
    std::vector<Form*> created_;  // those that were ever loaded: only they have anything to terminate
    std::vector<ProgramView*> views_;
};

/// A window as a model: its controls and menus are members, its handlers member functions, its state fields.
///
/// States: unloaded, loading, loaded, unloading. Using a control of an unloaded form loads it, hidden.
/// Touching a form that is loading or unloading loads nothing, and unloading it again is passed over. Fields
/// and controls outlive an unload; the controls' properties go back to their designed values.
class Form : public Component {
public:
    Form(Forms& forms, std::string_view name, std::string caption);
    ~Form() override;

    /// Loads the form, hidden, if it is not loaded.
    void Load();
    /// Loads the form if need be and shows it, without a modal loop.
    void Show();
    void Hide();
    /// Query-unload, unload, controls back to their design. The unload can't be refused.
    void Unload();
    /// The window's close box.
    void close() { Unload(); }
    /// Opens a menu at the pointer.
    void PopupMenu(Menu& menu);

    Property<std::string> Caption;

    /// Where the window opens, in twips from the corner of the screen. With both at 0 the desktop decides.
    Property<int> Left;
    Property<int> Top;
    static constexpr int twipsToThePixel = 15;  ///< of a window and what stands in it

    bool visible() const { return visible_; }
    /// Setting it shows or hides the form, which is loaded if need be.
    void setVisible(bool visible);

    void setWindowState(WindowStates state);
    WindowStates windowState() const { return windowState_; }

    FormState state() const { return state_; }
    /// Whether its controls can be used as they are: loading, loaded or unloading.
    bool alive() const { return state_ != FormState::unloaded; }

    Forms& forms() const { return forms_; }
    /// Controls and menu entries in the order of their declaration, a menu's entries behind it.
    const std::vector<Control*>& controls() const { return controls_; }
    const std::vector<Menu*>& menus() const { return menus_; }

    std::string_view kind() const override { return "Form"; }
    std::string mainValue() const override { return Caption.peek(); }
    void touch() const override;

protected:
    virtual void Form_Load() {}
    virtual void Form_QueryUnload() {}
    virtual void Form_Unload() {}
    /// The form's object ends with the program, at the latest; only for a form that was ever loaded.
    virtual void Form_Terminate() {}

private:
    friend class Control;
    friend class Menu;
    friend class Forms;

    void resetAll();
    void tell(FormChange change);

    Forms& forms_;
    std::vector<Control*> controls_;
    std::vector<Menu*> menus_;
    FormState state_ = FormState::unloaded;
    WindowStates windowState_ = WindowStates::normal;
    bool visible_ = false;
};

}  // namespace velmora
