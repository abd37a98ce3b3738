# The targets VelmoraAgent::agent (no toolkit), VelmoraAgent::qt (its window), VelmoraAgent::voice, and, where it was
# built with pocketsphinx, VelmoraAgent::hearing.
include(CMakeFindDependencyMacro)
find_dependency(Qt6 COMPONENTS Widgets Svg)
find_dependency(Threads)
find_dependency(PkgConfig)
pkg_check_modules(XCB_SHAPE REQUIRED IMPORTED_TARGET xcb xcb-shape)
pkg_check_modules(ESPEAK REQUIRED IMPORTED_TARGET espeak-ng)
pkg_check_modules(PULSE_SIMPLE REQUIRED IMPORTED_TARGET libpulse-simple)
pkg_check_modules(ALSA REQUIRED IMPORTED_TARGET alsa)
include("${CMAKE_CURRENT_LIST_DIR}/VelmoraAgentTargets.cmake")
if(TARGET VelmoraAgent::hearing)
    pkg_check_modules(SAMPLERATE REQUIRED IMPORTED_TARGET samplerate)
endif()
