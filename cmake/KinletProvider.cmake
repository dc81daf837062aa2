# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later

# kinlet_add_provider(NAME [DESCRIPTION text] [ADDRESS_FAMILIES family...] SOURCES file...)
#
# Builds the provider plug-in NAME.so as target NAME and installs it into the folder where Kinlet looks for
# plug-ins, with what lets the session bus start it in a process of its own: a D-Bus service file and a
# systemd user unit, which keeps the process from gaining privileges and from writing to the system, gives
# it a folder for temporary files of its own, and limits its sockets to ADDRESS_FAMILIES: AF_UNIX is always
# among them, a provider for a network usually adds AF_INET AF_INET6.
#
# NAME is the "name" of the provider's meta-data: letters, digits and _, no digit first.

include(GNUInstallDirs)

set(KINLET_PROVIDER_TEMPLATES ${CMAKE_CURRENT_LIST_DIR})

function(kinlet_add_provider name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "DESCRIPTION" "ADDRESS_FAMILIES;SOURCES")
    if(NOT name MATCHES "^[A-Za-z_][A-Za-z0-9_]*$")
        message(FATAL_ERROR "kinlet_add_provider: '${name}' cannot be part of a bus name: letters, "
            "digits and _ only, no digit first")
    endif()
    if(NOT arg_SOURCES)
        message(FATAL_ERROR "kinlet_add_provider(${name}): name its files after SOURCES")
    endif()
    if(NOT arg_DESCRIPTION)
        set(arg_DESCRIPTION "Kinlet provider ${name}")
    endif()

    add_library(${name} MODULE ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES
        AUTOMOC ON
        PREFIX ""
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_link_libraries(${name} PRIVATE Kinlet::Kinlet)
    # Where the library looks for plug-ins, whatever this system's folder for libraries is.
    set(folder lib/kinlet-1.0/plugins)
    install(TARGETS ${name} LIBRARY DESTINATION ${folder})
    cmake_path(COMPARE "${CMAKE_INSTALL_PREFIX}/${folder}" EQUAL /usr/lib/kinlet-1.0/plugins found)
    if(NOT found)
        message(STATUS "Below ${CMAKE_INSTALL_PREFIX} applications that load plug-ins find ${name}.so only with "
            "KINLET_PLUGIN_PATH=${CMAKE_INSTALL_PREFIX}/${folder}; -DCMAKE_INSTALL_PREFIX=/usr spares them that")
    endif()

    set(provider_description "${arg_DESCRIPTION}")
    list(JOIN arg_ADDRESS_FAMILIES " " families)
    string(STRIP "AF_UNIX ${families}" provider_families)
    # The file and not the name: the runner finds it whatever it is installed under. That is known
    # only then, since `cmake --install --prefix` may change it.
    set(plugin "\${CMAKE_INSTALL_PREFIX}/${folder}/${name}.so")
    # Kinlet's package says where its runner is; Kinlet itself installs it beside this.
    cmake_path(SET runner "\${CMAKE_INSTALL_PREFIX}")
    cmake_path(APPEND runner ${CMAKE_INSTALL_BINDIR} kinlet-runner)
    if(KINLET_RUNNER)
        set(runner ${KINLET_RUNNER})
    endif()
    set(bus_name com.orvane.kinlet.${name})
    set(unit kinlet-provider-${name}.service)
    kinlet_install_service(provider-bus ${bus_name}.service ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
    kinlet_install_service(provider-unit ${unit} lib/systemd/user)
endfunction()

# What is known now is filled in now, the prefix when the file is installed: then straight into its place, since
# one build may be installed under several prefixes at a time, and by several people.
macro(kinlet_install_service template file folder)
    set(made ${CMAKE_CURRENT_BINARY_DIR}/${file}.in)
    configure_file(${KINLET_PROVIDER_TEMPLATES}/${template}.service.in ${made} @ONLY)
    cmake_path(SET installed "\${CMAKE_INSTALL_PREFIX}")
    cmake_path(APPEND installed ${folder} ${file})
    install(CODE "
        message(STATUS [[Installing: ]] \"\$ENV{DESTDIR}${installed}\")
        configure_file([[${made}]] \"\$ENV{DESTDIR}${installed}\" NO_SOURCE_PERMISSIONS)
        list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"${installed}\")")
endmacro()
