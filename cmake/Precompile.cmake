# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later

# For those who build everything often: a third of the time goes into reading Qt's headers. Sources
# still include what they use; builds without this show it.

set(qt Qt${QT_VERSION_MAJOR})
find_package(${qt} REQUIRED COMPONENTS Test)
file(CONFIGURE OUTPUT precompiled.cpp CONTENT "")
add_library(kinlet_precompiled OBJECT ${CMAKE_CURRENT_BINARY_DIR}/precompiled.cpp)
target_link_libraries(kinlet_precompiled PRIVATE ${qt}::Core)
# Only the headers of these: what they define would have to be defined wherever the precompiled
# headers are used.
foreach(library DBus Test)
    target_include_directories(kinlet_precompiled SYSTEM PRIVATE
        $<TARGET_PROPERTY:${qt}::${library},INTERFACE_INCLUDE_DIRECTORIES>)
endforeach()
target_precompile_headers(kinlet_precompiled PRIVATE
    <QCoreApplication> <QDBusConnection> <QDBusMessage> <QDataStream> <QDateTime> <QDebug> <QDir>
    <QFile> <QJsonArray> <QJsonDocument> <QJsonObject> <QPluginLoader> <QPointer> <QProcess>
    <QRegularExpression> <QSharedPointer> <QSignalSpy> <QTemporaryDir> <QTest> <QTimer> <QUrl>
    <QUuid> <algorithm> <functional> <memory>)

function(kinlet_precompile target)
    target_precompile_headers(${target} REUSE_FROM kinlet_precompiled)
    # Qt Test has each test define where its data are. None looks there, and it would be different
    # from what was defined for the headers.
    target_compile_options(${target} PRIVATE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
endfunction()
