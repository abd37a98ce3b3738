# How the libraries of this folder are built: inside the program that it belongs to, or as a project of their own.

if(NOT TARGET velmora_warnings)
    set(CMAKE_CXX_STANDARD 20)
    set(CMAKE_CXX_STANDARD_REQUIRED ON)
    set(CMAKE_CXX_EXTENSIONS OFF)
    add_library(velmora_warnings INTERFACE)
    target_compile_options(velmora_warnings INTERFACE -Wall -Wextra -Wpedantic)
    add_library(velmora_sanitize INTERFACE)
endif()

if(NOT TARGET velmora_qt_rules)
    add_library(velmora_qt_rules INTERFACE)
    target_compile_definitions(velmora_qt_rules INTERFACE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CONTEXTLESS_CONNECT QT_NO_KEYWORDS)
endif()

set(agent_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/velmora-agent")
set(agent_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VelmoraAgent")

# agent_library(NAME EXPORT name SOURCES file... [LINK target...] [PRIVATE target...]): a library whose headers are
# included from above this folder ("agent/rig.h"), and which is installed with the component velmora_agent.
function(agent_library name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "EXPORT" "SOURCES;LINK;PRIVATE")
    add_library(${name} STATIC ${ARG_SOURCES})
    add_library(VelmoraAgent::${ARG_EXPORT} ALIAS ${name})
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${agent_root}>" "$<INSTALL_INTERFACE:${agent_include_dir}>")
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_PRIVATE}
        "$<BUILD_INTERFACE:velmora_warnings>" "$<BUILD_INTERFACE:velmora_sanitize>")
    set_target_properties(${name} PROPERTIES EXPORT_NAME ${ARG_EXPORT})
    install(TARGETS ${name} EXPORT VelmoraAgent
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT velmora_agent EXCLUDE_FROM_ALL)
    file(RELATIVE_PATH folder "${agent_root}" "${CMAKE_CURRENT_SOURCE_DIR}")
    file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    install(FILES ${headers} DESTINATION "${agent_include_dir}/${folder}" COMPONENT velmora_agent EXCLUDE_FROM_ALL)
endfunction()
