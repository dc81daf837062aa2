// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "records/valuetypes.h"
#include "requests/goldenrequests.h"
#include "support/requesthelpers.h"

#include <QDir>
#include <QFile>

// Writes the golden files of the Qt that it is built with into the folder that is its argument:
//     goldenwriter tests/golden/qt6
int main(int argumentCount, char **arguments)
{
    if (argumentCount != 2)
        qFatal("usage: goldenwriter FOLDER");
    KinletInitializer::init();
    const QDir folder(QString::fromLocal8Bit(arguments[1]));
    for (const GoldenRequest &golden : goldenRequests()) {
        for (const GoldenVersion &version : goldenVersions()) {
            QFile file(folder.filePath(golden.name + QLatin1Char('-') + version.name
                                       + QLatin1String(".bin")));
            const QByteArray bytes = serialized(*golden.request, version.version);
            if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
                qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        }
    }
    return 0;
}
