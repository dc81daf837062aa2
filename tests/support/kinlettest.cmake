# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later

# Every test runs in a sandbox of its own: home, XDG folders, no session bus, no installed plug-ins.
function(kinlet_test_sandbox name)
    set(sandbox ${CMAKE_CURRENT_BINARY_DIR}/${name}.sandbox)
    file(MAKE_DIRECTORY ${sandbox}/runtime ${sandbox}/plugins)
    file(CHMOD ${sandbox}/runtime PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
        HOME=${sandbox}
        XDG_CACHE_HOME=${sandbox}/cache
        XDG_CONFIG_HOME=${sandbox}/config
        XDG_DATA_HOME=${sandbox}/data
        XDG_RUNTIME_DIR=${sandbox}/runtime
        DBUS_SESSION_BUS_ADDRESS=unix:path=${sandbox}/no-bus
        KINLET_USE_DBUS=0
        KINLET_PLUGIN_PATH=${sandbox}/plugins
        LANGUAGE=
        LC_ALL=C.UTF-8
        TZ=UTC
        QTEST_FUNCTION_TIMEOUT=3600000
        LSAN_OPTIONS=suppressions=${CMAKE_CURRENT_FUNCTION_LIST_DIR}/leaks.supp:print_suppressions=0
        UBSAN_OPTIONS=print_stacktrace=1)
endfunction()

# What moc makes of each source that includes it: BASE.moc of itself, moc_BASE.cpp of its header.
# AUTOMOC takes ten times as long for a target of one file.
function(kinlet_test_moc target)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}.moc)
    foreach(source ${ARGN})
        get_filename_component(base ${source} NAME_WE)
        file(STRINGS ${source} include REGEX "^#include \"(${base}.moc|moc_${base}.cpp)\"$")
        if(include MATCHES "moc_")
            set(files ${base}.h ${folder}/moc_${base}.cpp)
            set_source_files_properties(${folder}/moc_${base}.cpp PROPERTIES HEADER_FILE_ONLY ON)
        elseif(include)
            set(files ${source} ${folder}/${base}.moc)
        else()
            continue()
        endif()
        cmake_language(CALL qt${QT_VERSION_MAJOR}_generate_moc ${files} TARGET ${target})
        list(GET files 1 made)
        target_sources(${target} PRIVATE ${made})
    endforeach()
    target_include_directories(${target} PRIVATE ${folder} ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/..)
endfunction()

# kinlet_test(NAME [SOURCES file...] [LIBRARIES target...] [ENVIRONMENT variable=value...]
#             [PACE factor] [TIMEOUT seconds] [BUS])
#
# A QtTest program; without SOURCES its source is NAME.cpp. With PACE its clocks run that many times as
# fast, so that a minute passes in seconds. With BUS it has a session bus of its own, which starts what
# the service files in the folder KINLET_TEST_SERVICES say, and no others.
function(kinlet_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "BUS" "PACE;TIMEOUT" "SOURCES;LIBRARIES;ENVIRONMENT")
    if(NOT arg_SOURCES)
        set(arg_SOURCES ${name}.cpp)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE
        kinlet Qt${QT_VERSION_MAJOR}::Test ${arg_LIBRARIES})
    if(KINLET_PRECOMPILE)
        kinlet_precompile(${name})
    endif()
    kinlet_test_moc(${name} ${arg_SOURCES})
    set(command $<TARGET_FILE:${name}>)
    if(arg_PACE)
        find_library(FAKETIME_LIBRARY NAMES libfaketimeMT.so.1 PATH_SUFFIXES faketime REQUIRED)
        set(preload ${FAKETIME_LIBRARY})
        if(KINLET_SANITIZE MATCHES address AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
            # The sanitizer insists on being the first library.
            execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so
                OUTPUT_VARIABLE asan OUTPUT_STRIP_TRAILING_WHITESPACE)
            set(preload "${asan} ${FAKETIME_LIBRARY}")
        endif()
        # For the program alone: the bus keeps to the real time.
        list(PREPEND command ${CMAKE_COMMAND} -E env
            "LD_PRELOAD=${preload}" "FAKETIME=+0 x${arg_PACE}")
    endif()
    if(arg_BUS)
        set(bus_services ${CMAKE_CURRENT_BINARY_DIR}/${name}.services)
        file(MAKE_DIRECTORY ${bus_services})
        configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/session.conf.in ${name}.session.conf @ONLY)
        list(PREPEND command dbus-run-session
            --config-file=${CMAKE_CURRENT_BINARY_DIR}/${name}.session.conf --)
        list(APPEND arg_ENVIRONMENT KINLET_USE_DBUS= KINLET_TEST_SERVICES=${bus_services})
    endif()
    add_test(NAME ${name} COMMAND ${command})
    kinlet_test_sandbox(${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT ${arg_ENVIRONMENT})
endfunction()

# kinlet_test_plugin(NAME FOLDER file...)
#
# A plug-in file NAME.so in FOLDER below the current build folder.
function(kinlet_test_plugin name folder)
    add_library(${name} MODULE ${ARGN})
    set_target_properties(${name} PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${folder})
    target_link_libraries(${name} PRIVATE kinlet)
    if(KINLET_PRECOMPILE)
        kinlet_precompile(${name})
    endif()
    kinlet_test_moc(${name} ${ARGN})
endfunction()
