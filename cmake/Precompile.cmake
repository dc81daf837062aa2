# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later

# For those who build everything often: half of the time goes into reading Qt's headers. Sources still
# include what they use; builds without this show it.

file(CONFIGURE OUTPUT precompiled.cpp CONTENT "")
add_library(kinlet_precompiled OBJECT ${CMAKE_CURRENT_BINARY_DIR}/precompiled.cpp)
# With no other library: the compiler wants all that defines something here to be defined there too.
target_link_libraries(kinlet_precompiled PRIVATE Qt${QT_VERSION_MAJOR}::Core)
target_precompile_headers(kinlet_precompiled PRIVATE
    <QCoreApplication> <QDataStream> <QDateTime> <QDebug> <QDir> <QFile> <QJsonArray>
    <QJsonDocument> <QJsonObject> <QPluginLoader> <QPointer> <QProcess> <QRegularExpression>
    <QSharedPointer> <QTemporaryDir> <QTimer> <QUrl> <QUuid> <algorithm> <functional> <memory>)

function(kinlet_precompile target)
    target_precompile_headers(${target} REUSE_FROM kinlet_precompiled)
endfunction()
