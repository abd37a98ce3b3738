#pragma once

#include <QDialog>
#include <span>
#include <string_view>

namespace velmora::qt {

/// How the window of a form is put together.
struct View {
    std::string_view form;           ///< the form's name
    void (*setUp)(QDialog& window);  ///< fills an empty window
};

/// One for every form that has a window: made from the list of forms in CMakeLists.txt.
std::span<const View> views();

}  // namespace velmora::qt
