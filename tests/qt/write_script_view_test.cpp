#include <gmock/gmock.h>

#include <QAccessible>
#include <QPlainTextEdit>
#include <QTest>

#include "character/frm_write_script.h"
#include "platform/boxes.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/windows.h"
#include "tests/support/in_memory_files.h"

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

AgentCharacter& nobody() {
    throw Failure(errors::objectNotSet);
}

class Owner : public Form {
public:
    explicit Owner(Forms& forms) : Form(forms, "Owner", "Owner") {}
    Menu mnuScriptOpen{*this, "mnuScriptOpen", {}};
    Menu mnuScriptWrite{*this, "mnuScriptWrite", {}};
};

struct WriteScriptView : testing::Test {
    WriteScriptView() {
        host.carry(&loop);
        owner.Load();
        owner.mnuScriptWrite.click();
        window().activateWindow();
        host.serve(std::chrono::milliseconds{0});
    }
    QWidget& window() { return *windows.window(form); }
    QWidget& at(const char* name) { return *window().findChild<QWidget*>(QString::fromLatin1(name)); }

    qt::QtLoopHost host;
    Loop loop{host};
    Forms forms{loop};
    Boxes boxes{loop};
    FileDialogs fileDialogs{boxes};
    InMemoryFiles files;
    Owner owner{forms};
    ActionScripts scripts{{.mnuScriptOpen = owner.mnuScriptOpen,
                           .fileDialogs = fileDialogs,
                           .files = files,
                           .dialogs = boxes,
                           .Character = nobody,
                           .AgentVisible = {}}};
    frmWriteScript form{forms,
                        {.mnuScriptWrite = owner.mnuScriptWrite,
                         .fileDialogs = fileDialogs,
                         .files = files,
                         .applicationFolder = "/home",
                         .dialogs = boxes,
                         .scripts = scripts,
                         .Character = nobody}};
    qt::QtWindows windows{forms, qt::views()};
};

}  // namespace

TEST_F(WriteScriptView, EveryWidgetIsAControlAndHasAName) {
    EXPECT_THAT(qt::Binder(form, window(), loop).unbound(), IsEmpty());
    for (const char* name : {"comAnim", "txtSay", "txtScript", "ImgInfo"}) {
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&at(name));
        EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << name;
    }
    EXPECT_EQ(at("ImgInfo").accessibleName(), QStringLiteral("Click for Help"));
}

TEST_F(WriteScriptView, ScriptIsWrittenByKeyboardAlone) {
    const auto press = [this](int key) {
        QTest::keyClick(window().focusWidget(), static_cast<Qt::Key>(key));
    };
    at("comAnim").setFocus();
    std::vector<std::string> walk;
    for (int stop = 0; stop < 10; ++stop) {
        walk.push_back(window().focusWidget()->objectName().toStdString());
        press(Qt::Key_Tab);
    }
    EXPECT_THAT(walk, ElementsAre("comAnim", "cmdAdd_0", "cmdPreview_0", "txtSay", "cmdAdd_1", "cmdPreview_1",
                                  "txtScript", "cmdPreviewScript", "cmdSaveScript", "ImgInfo"));
    press(Qt::Key_Down);  // the first animation
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    at("txtScript").setFocus();
    press(Qt::Key_End);
    press(Qt::Key_Return);
    QTest::keyClicks(window().focusWidget(), QStringLiteral("Show"));
    EXPECT_EQ(form.txtScript.mainValue(), "Play:Acknowledge\r\nShow");
}
